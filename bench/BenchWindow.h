// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "presentation/MainWindow.h"
#include "presentation/SheetModels.h"
#include "presentation/WindowEngine.h"
#include "presentation/dashboard/DashboardHarness.h"
#include "presentation/dashboard/PreferencesHarness.h"

#include <QQmlEngine>

namespace quillhaven::test {

/// The real main window on a new home, shown, with the introduction closed.
struct BenchWindow
{
    /// A platform that holds a catalogue before anything reads it.
    struct FilledPlatform : TestPlatform
    {
        explicit FilledPlatform(const QList<ProtectedItem> &items)
        {
            if (!items.isEmpty()) {
                storeCatalogue(*this, items);
            }
        }
    };

    explicit BenchWindow(const QList<ProtectedItem> &items = {}) : services(items)
    {
        harness.onboarding.close();
        window.show();
    }

    FilledPlatform services;
    DashboardHarness harness{services};
    PreferencesHarness preferences{harness};
    ErrorDialogManager noMenuBarError;
    std::unique_ptr<QQmlEngine> engine = makeWindowEngine(services.display);
    SheetModels sheets{Sheets{.confirmation = harness.confirmationDialog,
                              .protectionMethod = harness.protectionMethodDialog,
                              .passwordInput = harness.passwordDialog,
                              .passwordInputState = harness.passwordInput,
                              .masterPassword = harness.masterPasswordDialog,
                              .dashboard = harness.dashboard,
                              .preferences = preferences.model,
                              .onboarding = harness.onboarding,
                              .biometrics = services.biometrics,
                              .menuBarError = noMenuBarError},
                       [] {}};
    MainWindow window{*engine, harness.dashboard, sheets};
};

} // namespace quillhaven::test
