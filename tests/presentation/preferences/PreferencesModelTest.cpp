// SPDX-License-Identifier: GPL-3.0-or-later

#include "PreferencesHarness.h"
#include "platform/NotificationCenter.h"

using namespace quillhaven;
using namespace quillhaven::test;

using PreferencesSheet = DashboardTest;

TEST_F(PreferencesSheet, IsShownOnItsNotification)
{
    PreferencesHarness preferences(started());
    EXPECT_FALSE(preferences.model.isPresented());
    services.notifications.standard.post(notifications::showPreferences);
    EXPECT_TRUE(preferences.model.isPresented());
    preferences.model.close();
    EXPECT_FALSE(preferences.model.isPresented());
}
