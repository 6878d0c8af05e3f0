// SPDX-License-Identifier: GPL-3.0-or-later

#include "Windows.h"

#include "autolock/AutoLockManager.h"
#include "autolock/SmartAutoLockManager.h"
#include "contact/SupportManager.h"
#include "credentials/MasterPasswordDialogManager.h"
#include "credentials/MasterPasswordManager.h"
#include "engine/QuillhavenManager.h"
#include "launch_at_login/LaunchAtLoginServiceManager.h"
#include "platform/NotificationCenter.h"
#include "platform/UserDefaults.h"
#include "presentation/PopoverWindow.h"
#include "presentation/WindowEngine.h"
#include "presentation/dashboard/SettingsNotice.h"
#include "presentation/dialogs/ConfirmationDialogManager.h"
#include "presentation/dialogs/ProtectionMethodDialogManager.h"
#include "presentation/popover/MenuBarViewModel.h"
#include "updates/UpdateManager.h"

#include <QQmlEngine>
#include <QQuickWindow>

namespace quillhaven {

Windows::Windows(const Platform &platform, MenuBarViewModel &menuBar, const Actions &actions)
    : m_display(platform.display),
      m_menuBar(menuBar),
      m_passwordInput(PasswordInputDialogManager::shared(), platform.defaults.standard()),
      m_dashboard(platform, QuillhavenManager::shared(), MasterPasswordManager::shared(),
                  {.confirmation = ConfirmationDialogManager::shared(),
                   .protectionMethod = ProtectionMethodDialogManager::shared(),
                   .passwordInput = PasswordInputDialogManager::shared(),
                   .masterPassword = MasterPasswordDialogManager::shared()},
                  UpdateManager::shared(), AutoLockManager::shared()),
      m_storeNotice(platform.credentialStoreState, *m_dashboard.notices(), ConfirmationDialogManager::shared()),
      m_fingerprintNote(ProtectionMethodDialogManager::shared(), platform.biometrics),
      m_preferences(preferencesContext(platform, actions)),
      m_sheetModels(sheets(platform), actions.bringMainWindowForward)
{
    BackupSectionModel *backup = m_preferences.backup();
    connect(backup, &BackupSectionModel::isBackingUpChanged, &m_dashboard,
            [this, backup] { m_dashboard.setBackgroundActivity(backup->progressText()); });
    showSettingsProblem(QuillhavenManager::shared(), *m_dashboard.notices());
}

Windows::~Windows() = default;

PreferencesContext Windows::preferencesContext(const Platform &platform, const Actions &actions)
{
    return {.platform = platform,
            .quillhavenManager = QuillhavenManager::shared(),
            .masterPasswordManager = MasterPasswordManager::shared(),
            .autoLockManager = AutoLockManager::shared(),
            .smartAutoLockManager = SmartAutoLockManager::shared(),
            .launchAtLoginManager = LaunchAtLoginServiceManager::shared(),
            .supportManager = SupportManager::shared(),
            .updateManager = UpdateManager::shared(),
            .confirmationDialogManager = ConfirmationDialogManager::shared(),
            .lockEverything = [this] { m_dashboard.bulk()->lockEverything(); },
            .lookForLostItems = [this] { m_dashboard.rescue()->show(); },
            .restart = actions.restart,
            .repairs = actions.repairs};
}

Sheets Windows::sheets(const Platform &platform)
{
    return {.confirmation = ConfirmationDialogManager::shared(),
            .protectionMethod = ProtectionMethodDialogManager::shared(),
            .passwordInput = PasswordInputDialogManager::shared(),
            .passwordInputState = m_passwordInput,
            .masterPassword = MasterPasswordDialogManager::shared(),
            .dashboard = m_dashboard,
            .preferences = m_preferences,
            .onboarding = OnboardingManager::shared(),
            .biometrics = platform.biometrics,
            .menuBarError = *m_menuBar.errorDialogManager()};
}

QQmlEngine &Windows::engine()
{
    if (!m_engine) {
        m_engine = makeWindowEngine(m_display);
    }
    return *m_engine;
}

MainWindow &Windows::mainWindow()
{
    if (!m_mainWindow) {
        m_mainWindow = std::make_unique<MainWindow>(engine(), m_dashboard, m_sheetModels);
        connect(m_mainWindow.get(), &MainWindow::contentAppeared, this, &Windows::contentAppeared);
        connect(m_mainWindow.get(), &MainWindow::closeRequested, this, &Windows::closeRequested);
        connect(m_mainWindow.get(), &MainWindow::quitRequested, this, &Windows::quitRequested);
    }
    return *m_mainWindow;
}

std::unique_ptr<QQuickWindow> Windows::makePopoverWindow()
{
    return quillhaven::makePopoverWindow(engine(), m_menuBar, m_sheetModels);
}

} // namespace quillhaven
