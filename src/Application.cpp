// SPDX-License-Identifier: GPL-3.0-or-later

#include "Application.h"

#include "SharedInstances.h"
#include "StartFailure.h"
#include "autolock/AutoLockManager.h"
#include "autolock/SmartAutoLockManager.h"
#include "credentials/MasterPasswordDialogManager.h"
#include "credentials/MasterPasswordManager.h"
#include "credentials/PasswordInputDialogModel.h"
#include "engine/QuillhavenManager.h"
#include "launch_at_login/LaunchAtLoginServiceManager.h"
#include "platform/NotificationCenter.h"
#include "platform/linux/LinuxPlatform.h"
#include "platform/linux/files/UserEnvironment.h"
#include "platform/linux/files/XdgDirectories.h"
#include "platform/widgets/QtApplicationPresence.h"
#include "platform/widgets/QtFilePanels.h"
#include "platform/widgets/QtUrlOpener.h"
#include "platform/widgets/QtUserInput.h"
#include "presentation/MainWindow.h"
#include "presentation/SheetModels.h"
#include "presentation/WindowEngine.h"
#include "presentation/dashboard/CredentialStoreNotice.h"
#include "presentation/dashboard/DashboardViewModel.h"
#include "presentation/dashboard/SettingsNotice.h"
#include "presentation/dialogs/ConfirmationDialogManager.h"
#include "presentation/dialogs/ProtectionMethodDialogManager.h"
#include "presentation/preferences/PreferencesModel.h"
#include "presentation/tokens/PanelPalette.h"
#include "presentation/tokens/Typography.h"
#include "shell/AppDelegate.h"
#include "shell/FinderExtension.h"
#include "shell/LaunchContextManager.h"
#include "shell/ProcessProtection.h"
#include "shell/RestartProgram.h"
#include "shell/SingleInstance.h"
#include "shell/TerminationSignals.h"
#include "shell/handover/HandedOverActions.h"
#include "shell/quillhavenApp.h"
#include "support/LocalizedError.h"

#include <QApplication>
#include <QQmlEngine>
#include <QQuickWindow>
#include <QScopeGuard>
#include <QThreadPool>

namespace quillhaven {

namespace {

/// Chooses the software renderer: the window consists of text and rectangles, and without a graphics driver it starts
/// in half the time and memory. A renderer that the environment names takes precedence.
void chooseRenderer()
{
    if (qEnvironmentVariableIsEmpty("QT_QUICK_BACKEND") && qEnvironmentVariableIsEmpty("QSG_RHI_BACKEND")) {
        QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    }
}

void askToEnableExtension(const FinderExtension::Question &question, const std::function<void()> &confirm)
{
    ConfirmationDialogManager::shared().show({.title = question.title,
                                              .message = question.message,
                                              .confirmTitle = question.confirmTitle,
                                              .cancelTitle = question.cancelTitle},
                                             confirm);
}

/// The services that start and end with the program.
LaunchSequence launchSequence(FinderExtension &finderExtension)
{
    const auto launchAtLogin = std::make_shared<LaunchAtLoginServiceManager *>(nullptr);
    const auto synchronizeLaunchAtLogin = [launchAtLogin] {
        *launchAtLogin = &LaunchAtLoginServiceManager::shared();
        return (*launchAtLogin)->observer().performSynchronization(true);
    };
    return {.launchContext = LaunchContextManager::shared,
            .launch = {{LaunchPhase::setupMenuBar, [] { QuillhavenManager::shared(); }},
                       {LaunchPhase::autoLockManagers,
                        autoLockStep([] { AutoLockManager::shared(); }, [] { SmartAutoLockManager::shared(); })},
                       {LaunchPhase::activateFinderExtension,
                        [&finderExtension] { finderExtension.activateFinderExtension(); }},
                       {LaunchPhase::launchAtLogin, launchAtLoginStep(synchronizeLaunchAtLogin)}},
            .termination = {
                {TerminationPhase::launchAtLoginServiceManager, [launchAtLogin] { *launchAtLogin = nullptr; }}}};
}

/// Creates the window and runs the event loop, from the launch to the termination.
int runWindow(const Platform &platform, SingleInstance &instance, QtApplicationPresence &presence)
{
    installPlatform(platform, presence, QCoreApplication::arguments());
    FinderExtension finderExtension(platform, FinderExtension::placesBeside(QCoreApplication::applicationDirPath()),
                                    askToEnableExtension);
    AppDelegate delegate(presence, launchSequence(finderExtension));
    delegate.applicationDidFinishLaunching();

    PasswordInputDialogModel passwordInput(PasswordInputDialogManager::shared(), platform.defaults.standard());
    DashboardViewModel dashboard(platform, QuillhavenManager::shared(), MasterPasswordManager::shared(),
                                 {.confirmation = ConfirmationDialogManager::shared(),
                                  .protectionMethod = ProtectionMethodDialogManager::shared(),
                                  .passwordInput = PasswordInputDialogManager::shared(),
                                  .masterPassword = MasterPasswordDialogManager::shared()});
    const CredentialStoreNotice storeNotice(platform.credentialStoreState, *dashboard.notices(),
                                            ConfirmationDialogManager::shared());
    AutoLockSectionModel autoLockSection(AutoLockManager::shared(), SmartAutoLockManager::shared(),
                                         MasterPasswordManager::shared(), platform.defaults.standard());
    WatchedSourcesModel watchedSources(platform.watched, [&dashboard] { dashboard.bulk()->lockEverything(); });
    const auto terminate = [&instance, &presence] {
        instance.announceEnd();
        presence.terminate();
    };
    // The end is announced first, so that the new process waits for it instead of handing over to this one.
    const auto restart = [terminate, announceEnd = [&instance] { instance.announceEnd(); }] {
        if (restartProgram(QCoreApplication::applicationFilePath(), announceEnd)) {
            terminate();
        }
    };
    LaunchAtLoginToggleModel launchAtLogin(LaunchAtLoginServiceManager::shared(), ConfirmationDialogManager::shared(),
                                           platform, restart);
    PreferencesModel preferences(
        platform.notifications.standard,
        {.launchAtLogin = launchAtLogin, .autoLock = autoLockSection, .watchedSources = watchedSources});
    const Sheets sheets{.confirmation = ConfirmationDialogManager::shared(),
                        .protectionMethod = ProtectionMethodDialogManager::shared(),
                        .passwordInput = PasswordInputDialogManager::shared(),
                        .passwordInputState = passwordInput,
                        .masterPassword = MasterPasswordDialogManager::shared(),
                        .removeProtection = *dashboard.removeProtectionDialogManager(),
                        .recovery = *dashboard.backup()->recoveryDialogManager(),
                        .rescue = *dashboard.rescue()->dialog(),
                        .error = *dashboard.errorDialogManager(),
                        .bulkFilePicker = *dashboard.bulk()->picker(),
                        .bulkProgress = *dashboard.bulk()->progress(),
                        .shredConfirmation = *dashboard.shredding()->confirmation(),
                        .shredProgress = *dashboard.shredding()->progress(),
                        .preferences = preferences,
                        .biometrics = platform.biometrics};
    // Handled as a reopening: after a start at login, a window that is merely shown would be hidden again immediately.
    SheetModels sheetModels(sheets, [&delegate] { delegate.applicationShouldHandleReopen(false); });
    showSettingsProblem(QuillhavenManager::shared(), *dashboard.notices());
    const std::unique_ptr<QQmlEngine> engine = makeWindowEngine();
    MainWindow window(*engine, dashboard, sheetModels);
    presence.setMainWindow(window.window());
    HandedOverActions handedOver(platform, QuillhavenManager::shared(), MasterPasswordManager::shared(), presence,
                                 {ConfirmationDialogManager::shared(), ProtectionMethodDialogManager::shared(),
                                  PasswordInputDialogManager::shared()});
    quillhavenApp app(LaunchContextManager::shared(), presence, platform.clock,
                      [&handedOver] { handedOver.checkForPendingActions(); });

    QObject::connect(&window, &MainWindow::contentAppeared, &window, [&app] { app.contentAppeared(); });
    QObject::connect(qGuiApp, &QGuiApplication::applicationStateChanged, &window, [&app](Qt::ApplicationState state) {
        if (state == Qt::ApplicationActive) {
            app.applicationDidBecomeActive();
        }
    });
    QObject::connect(&instance, &SingleInstance::activationRequested, &delegate, &AppDelegate::reopen);
    const auto openUrls = [&delegate, &handedOver](const QStringList &urls) {
        for (const QString &url : urls) {
            if (HandedOverActions::asksForMainWindow(url)) {
                delegate.reopen();
            }
            handedOver.handleURLScheme(url);
        }
    };
    QObject::connect(&instance, &SingleInstance::openRequested, &delegate, openUrls);
    // Without a tray icon, there would be no way to open the window again.
    QObject::connect(&window, &MainWindow::closeRequested, &window, terminate);
    const TerminationSignals signals;
    QObject::connect(&signals, &TerminationSignals::terminationRequested, &window, terminate);

    dashboard.rescue()->look();
    if (LaunchContextManager::shared().shouldShowMainWindow()) {
        window.show();
    } else {
        app.contentAppeared();
    }
    openUrls(SingleInstance::urlsIn(QCoreApplication::arguments()));
    const int result = QApplication::exec();
    delegate.applicationWillTerminate();
    QuillhavenManager::shared().catalogue().saveUnsaved();
    return result;
}

/// One start of the program, to its end. Throws what prevents it.
int startAndRun()
{
    const UserDirectories directories = xdgDirectories();
    SingleInstance instance(directories.configuration, directories.temporary);
    if (instance.claim(QCoreApplication::arguments()) == SingleInstance::Role::Secondary) {
        return 0;
    }
    LinuxPlatform services(directories);
    QtFilePanels panels(panelPalette(ColorTokens()));
    QtUserInput input(services.globalInput());
    QtUrlOpener opener;
    QtApplicationPresence presence;
    const auto shutDown = qScopeGuard([] {
        shutDownSharedInstances();
        QThreadPool::globalInstance()->waitForDone();
    });
    return runWindow(services.platform(panels, input, opener), instance, presence);
}

} // namespace

int runApplication(int argc, char **argv)
{
    protectProcess();
    TerminationSignals::block();
    repairEnvironment();
    QApplication application(argc, argv);
    QApplication::setApplicationName(QStringLiteral("quillhaven"));
    QApplication::setOrganizationDomain(QStringLiteral("tarnwick.com"));
    QApplication::setApplicationVersion(QStringLiteral(QUILLHAVEN_VERSION));
    QApplication::setDesktopFileName(SingleInstance::busName);
    QApplication::setQuitOnLastWindowClosed(false);
    chooseRenderer();
    QApplication::setFont(Typography::settingLabel());
    for (;;) {
        QString failure;
        try {
            return startAndRun();
        } catch (const std::exception &error) {
            failure = localizedDescription(error);
        }
        if (reportStartFailure(failure) == AfterStartFailure::Quit) {
            return 1;
        }
    }
}

} // namespace quillhaven
