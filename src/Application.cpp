// SPDX-License-Identifier: GPL-3.0-or-later

#include "Application.h"

#include "SharedInstances.h"
#include "StartFailure.h"
#include "Windows.h"
#include "async/WorkInFlight.h"
#include "autolock/AutoLockManager.h"
#include "autolock/SmartAutoLockManager.h"
#include "credentials/MasterPasswordDialogManager.h"
#include "credentials/MasterPasswordManager.h"
#include "engine/QuillhavenManager.h"
#include "launch_at_login/LaunchAtLoginServiceManager.h"
#include "platform/NotificationCenter.h"
#include "platform/linux/LinuxPlatform.h"
#include "platform/linux/files/UserEnvironment.h"
#include "platform/linux/files/XdgDirectories.h"
#include "platform/widgets/QtApplicationPresence.h"
#include "platform/widgets/QtFilePanels.h"
#include "platform/widgets/QtStatusBar.h"
#include "platform/widgets/QtUrlOpener.h"
#include "platform/widgets/QtUserInput.h"
#include "presentation/PopoverWindow.h"
#include "presentation/dialogs/ConfirmationDialogManager.h"
#include "presentation/dialogs/ProtectionMethodDialogManager.h"
#include "presentation/popover/MenuBarViewModel.h"
#include "presentation/tokens/PanelPalette.h"
#include "presentation/tokens/Typography.h"
#include "shell/AppDelegate.h"
#include "shell/FinderExtension.h"
#include "shell/LaunchContextManager.h"
#include "shell/ProcessProtection.h"
#include "shell/RestartProgram.h"
#include "shell/SingleInstance.h"
#include "shell/TerminationSignals.h"
#include "shell/WindowClosing.h"
#include "shell/handover/HandedOverActions.h"
#include "shell/quillhavenApp.h"
#include "support/LocalizedError.h"

#include <QApplication>
#include <QQuickWindow>
#include <QScopeGuard>
#include <QThreadPool>

#include <optional>

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

/// The services that start and end with the program, beside the status item.
LaunchSequence launchSequence(FinderExtension &finderExtension)
{
    const auto launchAtLogin = std::make_shared<LaunchAtLoginServiceManager *>(nullptr);
    const auto synchronizeLaunchAtLogin = [launchAtLogin] {
        *launchAtLogin = &LaunchAtLoginServiceManager::shared();
        return (*launchAtLogin)->observer().performSynchronization(true);
    };
    return {.launchContext = LaunchContextManager::shared,
            .launch = {{LaunchPhase::autoLockManagers,
                        autoLockStep([] { AutoLockManager::shared(); }, [] { SmartAutoLockManager::shared(); })},
                       {LaunchPhase::activateFinderExtension,
                        [&finderExtension] { finderExtension.activateFinderExtension(); }},
                       {LaunchPhase::launchAtLogin, launchAtLoginStep(synchronizeLaunchAtLogin)}},
            .termination = {
                {TerminationPhase::launchAtLoginServiceManager, [launchAtLogin] { *launchAtLogin = nullptr; }}}};
}

MenuBarContext menuBarContext(const Platform &platform, ApplicationPresence &presence, std::function<void()> lockAll,
                              std::function<void()> terminate)
{
    return {.quillhavenManager = QuillhavenManager::shared(),
            .masterPasswordManager = MasterPasswordManager::shared(),
            .launchContext = LaunchContextManager::shared(),
            .presence = presence,
            .clock = platform.clock,
            .notifications = platform.notifications.standard,
            .lockAll = std::move(lockAll),
            .terminate = std::move(terminate)};
}

/// Creates the status item and the models of the windows, and runs the event loop, from the launch to the termination.
int runWindows(const Platform &platform, SingleInstance &instance, QtApplicationPresence &presence)
{
    installPlatform(platform, presence, QCoreApplication::arguments());
    FinderExtension finderExtension(platform, FinderExtension::placesBeside(QCoreApplication::applicationDirPath()),
                                    askToEnableExtension);
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
    QtStatusBar statusBar(platform.watched);
    std::optional<MenuBarViewModel> menuBar;
    std::optional<Windows> windows; // outlives the popover, which the delegate owns
    const auto makePopover = [&]() -> std::unique_ptr<Popover> {
        const auto lockAll = [&windows] { windows->dashboard().bulk()->lockEverything(); };
        menuBar.emplace(menuBarContext(platform, presence, lockAll, terminate));
        return std::make_unique<PopoverWindow>(platform.clock, [&windows] { return windows->makePopoverWindow(); });
    };
    AppDelegate delegate(presence, launchSequence(finderExtension),
                         MenuBar{.statusBar = statusBar, .makePopover = makePopover, .menuEntries = [&menuBar] {
                                     return menuBar->menuEntries();
                                 }});
    delegate.applicationDidFinishLaunching();

    // Handled as a reopening: after a start at login, a window that is merely shown would be hidden again immediately.
    const auto bringMainWindowForward = [&delegate] {
        if (!WorkInFlight::isClosing()) {
            delegate.applicationShouldHandleReopen(false);
        }
    };
    windows.emplace(platform, *menuBar, bringMainWindowForward, restart);
    presence.setBuilder([&windows]() -> QWindow * { return windows->mainWindow().window(); });
    WindowClosing closing(statusBar, presence, platform.clock);
    HandedOverActions handedOver(platform, QuillhavenManager::shared(), MasterPasswordManager::shared(), presence,
                                 {ConfirmationDialogManager::shared(), ProtectionMethodDialogManager::shared(),
                                  PasswordInputDialogManager::shared()});
    quillhavenApp app(LaunchContextManager::shared(), presence, platform.clock,
                      [&handedOver] { handedOver.checkForPendingActions(); });

    QObject::connect(&*windows, &Windows::contentAppeared, &delegate, [&app] { app.contentAppeared(); });
    QObject::connect(qGuiApp, &QGuiApplication::applicationStateChanged, &delegate, [&app](Qt::ApplicationState state) {
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
    QObject::connect(&*windows, &Windows::closeRequested, &closing, &WindowClosing::close);
    QObject::connect(&*windows, &Windows::quitRequested, &delegate, terminate);
    const TerminationSignals signals;
    QObject::connect(&signals, &TerminationSignals::terminationRequested, &delegate, terminate);

    windows->dashboard().rescue()->look();
    if (LaunchContextManager::shared().shouldShowMainWindow()) {
        presence.makeKeyAndOrderFront(mainWindowTitle);
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
    return runWindows(services.platform(panels, input, opener), instance, presence);
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
