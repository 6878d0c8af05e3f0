// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "../dashboard/DashboardHarness.h"
#include "platform/NotificationCenter.h"
#include "presentation/popover/MenuBarViewModel.h"
#include "shell/LaunchContextManager.h"
#include "support/RecordingPresence.h"

namespace quillhaven::test {

/// The popover's model over the engine of a dashboard. The program was started at login.
class MenuBarHarness
{
public:
    MenuBarHarness(DashboardHarness &dashboard, TestPlatform &services)
        : model({.quillhavenManager = dashboard.manager,
                 .masterPasswordManager = dashboard.masterPassword,
                 .launchContext = launchContext,
                 .presence = presence,
                 .clock = services.clock,
                 .notifications = services.notifications.standard,
                 .lockAll = [&dashboard] { dashboard.dashboard.bulk()->lockEverything(); },
                 .terminate = [this] { ++terminations; }})
    {
        services.notifications.standard.observe(notifications::showPreferences, &model,
                                                [this](const QVariantMap &) { ++preferencesShown; });
    }

    /// The text of a row, such as its name.
    [[nodiscard]] QString text(int row, int role) { return model.items()->index(row, 0).data(role).toString(); }

    RecordingPresence presence;
    LaunchContextManager launchContext{{QStringLiteral("quillhaven"), QStringLiteral("--login-item")}, presence};
    int terminations = 0;
    int preferencesShown = 0;
    MenuBarViewModel model;
};

} // namespace quillhaven::test
