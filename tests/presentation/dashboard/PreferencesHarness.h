// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "DashboardHarness.h"
#include "autolock/AutoLockManager.h"
#include "autolock/SmartAutoLockManager.h"
#include "launch_at_login/FakeLaunchAtLoginService.h"
#include "launch_at_login/LaunchAtLoginServiceManager.h"
#include "presentation/preferences/PreferencesModel.h"

namespace quillhaven::test {

/// The preferences of a dashboard, with the managers that they switch.
class PreferencesHarness
{
public:
    explicit PreferencesHarness(DashboardHarness &harness)
        : autoLock(harness.platform, harness.manager),
          smartAutoLock(harness.platform, harness.manager),
          autoLockSection(autoLock, smartAutoLock, harness.masterPassword, harness.platform.defaults.standard(),
                          harness.platform.watched),
          watchedSources(harness.platform.watched, [&harness] { harness.dashboard.bulk()->lockEverything(); }),
          launchAtLogin(harness.platform,
                        std::make_unique<FakeLaunchAtLoginService>(std::make_shared<FakeRegistration>())),
          launchAtLoginToggle(launchAtLogin, harness.confirmationDialog, harness.platform, [] {}),
          model(harness.platform.notifications.standard, {launchAtLoginToggle, autoLockSection, watchedSources})
    {
        spinOnce(); // The first synchronization.
    }

    AutoLockManager autoLock;
    SmartAutoLockManager smartAutoLock;
    AutoLockSectionModel autoLockSection;
    WatchedSourcesModel watchedSources;
    LaunchAtLoginServiceManager launchAtLogin;
    LaunchAtLoginToggleModel launchAtLoginToggle;
    PreferencesModel model;
};

} // namespace quillhaven::test
