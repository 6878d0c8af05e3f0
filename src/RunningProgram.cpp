// SPDX-License-Identifier: GPL-3.0-or-later

#include "RunningProgram.h"

#include "async/WorkInFlight.h"
#include "autolock/AutoLockManager.h"
#include "autolock/SmartAutoLockManager.h"
#include "credentials/MasterPasswordDialogManager.h"
#include "credentials/MasterPasswordManager.h"
#include "credentials/PasswordInputDialogManager.h"
#include "engine/QuillhavenManager.h"
#include "launch_at_login/LaunchAtLoginServiceManager.h"
#include "platform/DesktopNotifications.h"
#include "platform/NotificationCenter.h"
#include "platform/WatchedSources.h"
#include "platform/widgets/QtApplicationPresence.h"
#include "presentation/PopoverWindow.h"
#include "presentation/dialogs/ConfirmationDialogManager.h"
#include "presentation/dialogs/ProtectionMethodDialogManager.h"
#include "shell/LaunchContextManager.h"
#include "shell/RestartProgram.h"
#include "shell/SingleInstance.h"
#include "updates/UpdateManager.h"

#include <QApplication>
#include <QQuickWindow>

namespace quillhaven {

namespace {

void askToEnableExtension(const FinderExtension::Question &question, const std::function<void()> &confirm)
{
    ConfirmationDialogManager::shared().show({.title = question.title,
                                              .message = question.message,
                                              .confirmTitle = question.confirmTitle,
                                              .cancelTitle = question.cancelTitle},
                                             confirm);
}

} // namespace

RunningProgram::RunningProgram(const Platform &platform, SingleInstance &instance, QtApplicationPresence &presence,
                               std::function<void()> openLinks)
    : m_platform(platform),
      m_instance(instance),
      m_presence(presence),
      m_openLinks(std::move(openLinks)),
      m_finderExtension(platform, FinderExtension::placesBeside(QCoreApplication::applicationDirPath()),
                        askToEnableExtension),
      m_statusBar(platform.watched),
      m_delegate(presence, launchSequence(), menuBar()),
      m_closing(m_statusBar, presence, platform.clock),
      m_handedOver(platform, QuillhavenManager::shared(), MasterPasswordManager::shared(), presence,
                   {ConfirmationDialogManager::shared(), ProtectionMethodDialogManager::shared(),
                    PasswordInputDialogManager::shared(), MasterPasswordDialogManager::shared()}),
      m_app(LaunchContextManager::shared(), presence, platform.clock, [this] { m_handedOver.checkForPendingActions(); })
{
    m_delegate.applicationDidFinishLaunching();
    m_windows.emplace(platform, *m_menuBar, windowActions());
    presence.setBuilder([this]() -> QWindow * { return m_windows->mainWindow().window(); });
    connectWithDesktop();
}

RunningProgram::~RunningProgram()
{
    m_presence.setBuilder({});
}

LaunchSequence RunningProgram::launchSequence()
{
    const auto synchronizeLaunchAtLogin = [this] {
        m_launchAtLogin = &LaunchAtLoginServiceManager::shared();
        return m_launchAtLogin->observer().performSynchronization(true);
    };
    return {.launchContext = LaunchContextManager::shared,
            .launch = {{LaunchPhase::autoLockManagers,
                        autoLockStep([] { AutoLockManager::shared(); }, [] { SmartAutoLockManager::shared(); })},
                       {LaunchPhase::activateFinderExtension, [this] { m_finderExtension.activateFinderExtension(); }},
                       {LaunchPhase::updateCheck,
                        updateCheckStep([] { return UpdateManager::shared().performUpdateCheck(true); })},
                       {LaunchPhase::launchAtLogin, launchAtLoginStep(synchronizeLaunchAtLogin)}},
            .termination = {{TerminationPhase::launchAtLoginServiceManager, [this] { m_launchAtLogin = nullptr; }}}};
}

MenuBar RunningProgram::menuBar()
{
    return {.statusBar = m_statusBar,
            .makePopover = [this] { return makePopover(); },
            .menuEntries = [this] { return m_menuBar->menuEntries(); }};
}

std::unique_ptr<Popover> RunningProgram::makePopover()
{
    m_menuBar.emplace(MenuBarContext{.quillhavenManager = QuillhavenManager::shared(),
                                     .masterPasswordManager = MasterPasswordManager::shared(),
                                     .launchContext = LaunchContextManager::shared(),
                                     .presence = m_presence,
                                     .clock = m_platform.clock,
                                     .notifications = m_platform.notifications.standard,
                                     .lockAll = [this] { m_windows->dashboard().bulk()->lockEverything(); },
                                     .terminate = [this] { terminate(); }});
    return std::make_unique<PopoverWindow>(m_platform.clock, [this] { return m_windows->makePopoverWindow(); });
}

void RunningProgram::connectWithDesktop()
{
    QObject::connect(&*m_windows, &Windows::contentAppeared, &m_delegate, [this] { m_app.contentAppeared(); });
    QObject::connect(&*m_windows, &Windows::closeRequested, &m_closing, [this] {
        m_app.mainWindowClosed();
        m_closing.close();
    });
    QObject::connect(&*m_windows, &Windows::quitRequested, &m_delegate, [this] { terminate(); });
    QObject::connect(qGuiApp, &QGuiApplication::applicationStateChanged, &m_delegate,
                     [this](Qt::ApplicationState state) {
                         if (state == Qt::ApplicationActive) {
                             m_app.applicationDidBecomeActive();
                         }
                     });
    const auto notify = [this](const QString &report) { notifyOfLocking(report); };
    QObject::connect(&AutoLockManager::shared(), &AutoLockManager::itemsLocked, &m_delegate, notify);
    QObject::connect(&SmartAutoLockManager::shared(), &SmartAutoLockManager::itemsLocked, &m_delegate, notify);
    QObject::connect(&m_instance, &SingleInstance::activationRequested, &m_delegate, &AppDelegate::reopen);
    QObject::connect(&m_instance, &SingleInstance::openRequested, &m_delegate,
                     [this](const QStringList &urls) { openUrls(urls); });
    QObject::connect(&m_signals, &TerminationSignals::terminationRequested, &m_delegate, [this] { terminate(); });
}

void RunningProgram::notifyOfLocking(const QString &report)
{
    if (!m_presence.isInFront()) {
        m_platform.desktopNotifications.show({.title = QStringLiteral("Quillhaven"),
                                              .text = report,
                                              .topic = QStringLiteral("auto-lock"),
                                              .onActivated = [this] { bringMainWindowForward(); }});
    }
}

WatchedSourcesModel::Repairs::value_type RunningProgram::repair(WatchedSources::Source source,
                                                                const std::function<void()> &action)
{
    return {source, [this, source, action] {
                m_platform.watched.setState(
                    source, {.isAvailable = false, .sentence = QStringLiteral("Is being set up again…")});
                action();
            }};
}

Windows::Actions RunningProgram::windowActions()
{
    const auto setUpMenus = [this] { m_finderExtension.activateFinderExtension(); };
    return {.bringMainWindowForward = [this] { bringMainWindowForward(); },
            .restart = [this] { restart(); },
            .repairs = {repair(WatchedSources::Source::FileManagerMenus, setUpMenus),
                        repair(WatchedSources::Source::Links, m_openLinks)}};
}

int RunningProgram::run()
{
    m_openLinks();
    m_windows->dashboard().rescue()->look();
    if (LaunchContextManager::shared().shouldShowMainWindow()) {
        m_presence.makeKeyAndOrderFront(mainWindowTitle);
    } else {
        m_app.contentAppeared();
    }
    openUrls(SingleInstance::urlsIn(QCoreApplication::arguments()));
    const int result = QApplication::exec();
    m_delegate.applicationWillTerminate();
    QuillhavenManager::shared().catalogue().saveUnsaved();
    return result;
}

void RunningProgram::bringMainWindowForward()
{
    // Handled as a reopening: after a start at login, a window that is merely shown would be hidden again immediately.
    if (!WorkInFlight::isClosing()) {
        m_delegate.applicationShouldHandleReopen(false);
    }
}

void RunningProgram::openUrls(const QStringList &urls)
{
    for (const QString &url : urls) {
        if (HandedOverActions::asksForMainWindow(url)) {
            m_delegate.reopen();
        }
        m_handedOver.handleURLScheme(url);
    }
}

void RunningProgram::terminate()
{
    m_instance.announceEnd();
    m_presence.terminate();
}

void RunningProgram::restart()
{
    // The end is announced first, so that the new process waits for it instead of handing over to this one.
    if (restartProgram(QCoreApplication::applicationFilePath(), [this] { m_instance.announceEnd(); })) {
        terminate();
    }
}

} // namespace quillhaven
