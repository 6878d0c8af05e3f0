// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "DashboardHarness.h"
#include "autolock/SmartAutoLockManager.h"
#include "contact/SupportManager.h"
#include "launch_at_login/FakeLaunchAtLoginService.h"
#include "launch_at_login/LaunchAtLoginServiceManager.h"
#include "presentation/preferences/PreferencesModel.h"

namespace quillhaven::test {

/// The preferences of a dashboard, with the managers that they switch.
class PreferencesHarness
{
public:
    explicit PreferencesHarness(DashboardHarness &harness)
        : autoLock(harness.autoLock),
          smartAutoLock(harness.platform, harness.manager),
          launchAtLogin(harness.platform, std::make_unique<FakeLaunchAtLoginService>(registration)),
          support(harness.platform, QStringLiteral("support@quillhaven.example"),
                  QStringLiteral("https://quillhaven.example")),
          model({.platform = harness.platform,
                 .quillhavenManager = harness.manager,
                 .masterPasswordManager = harness.masterPassword,
                 .autoLockManager = autoLock,
                 .smartAutoLockManager = smartAutoLock,
                 .launchAtLoginManager = launchAtLogin,
                 .supportManager = support,
                 .updateManager = harness.updates,
                 .confirmationDialogManager = harness.confirmationDialog,
                 .lockEverything = [&harness] { harness.dashboard.bulk()->lockEverything(); },
                 .lookForLostItems = [&harness] { harness.dashboard.rescue()->show(); },
                 .restart = [] {},
                 .repairs = {{WatchedSources::Source::Links, [this] { ++repairedLinks; }}}})
    {
        spinOnce(); // The first synchronization.
    }

    std::shared_ptr<FakeRegistration> registration = std::make_shared<FakeRegistration>();
    int repairedLinks = 0;
    AutoLockManager &autoLock;
    SmartAutoLockManager smartAutoLock;
    LaunchAtLoginServiceManager launchAtLogin;
    SupportManager support;
    PreferencesModel model;
};

} // namespace quillhaven::test
