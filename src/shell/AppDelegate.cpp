// SPDX-License-Identifier: GPL-3.0-or-later

#include "shell/AppDelegate.h"

#include "async/Jobs.h"
#include "platform/ApplicationPresence.h"
#include "shell/LaunchContextManager.h"
#include "support/printLogger.h"

namespace quillhaven {

namespace {

void run(const std::function<void()> &connection)
{
    if (connection) {
        connection();
    }
}

QCoro::Task<> runUpdateCheck(std::function<QCoro::Task<>()> check)
{
    printLogger(QStringLiteral("🔄 Starting background update check..."));
    printLogger(QStringLiteral("🔄 Background update check requested"));
    co_await check();
    printLogger(QStringLiteral("✅ Background update check completed"));
}

QCoro::Task<> runLoginSynchronization(std::function<QCoro::Task<>()> synchronize)
{
    co_await synchronize();
    printLogger(QStringLiteral("LaunchAtLoginServiceManager: Successfully initialized and synchronized"));
}

} // namespace

AppDelegate::AppDelegate(ApplicationPresence &presence, LaunchConnections connections, QObject *parent)
    : QObject(parent), m_presence(presence), m_connections(std::move(connections))
{
}

void AppDelegate::applicationDidFinishLaunching()
{
    m_launchContext = m_connections.launchContext();
    run(m_connections.setupMenuBar);
    startAutoLockManagers();
    run(m_connections.activateFinderExtension);
    startJobs();
    handleLaunchContextInitialization();
}

void AppDelegate::startAutoLockManagers()
{
    run(m_connections.startAutoLockManager);
    run(m_connections.startSmartAutoLockManager);
    if (m_connections.startAutoLockManager && m_connections.startSmartAutoLockManager) {
        printLogger(QStringLiteral("AutoLockManager and SmartAutoLockManager initialized"));
    }
}

void AppDelegate::startJobs()
{
    if (m_connections.performBackgroundUpdateCheck) {
        startJob([check = m_connections.performBackgroundUpdateCheck] { return runUpdateCheck(check); });
    }
    if (m_connections.synchronizeLaunchAtLogin) {
        startJob(
            [synchronize = m_connections.synchronizeLaunchAtLogin] { return runLoginSynchronization(synchronize); });
    }
}

void AppDelegate::handleLaunchContextInitialization()
{
    if (!m_launchContext) {
        return;
    }
    if (m_launchContext->shouldStartInBackground()) {
        initializeForBackgroundLaunch();
        return;
    }
    m_presence.setActivationPolicy(ApplicationPresence::ActivationPolicy::Regular);
    printLogger(QStringLiteral("App launched by user activation"));
}

void AppDelegate::initializeForBackgroundLaunch()
{
    m_presence.setActivationPolicy(ApplicationPresence::ActivationPolicy::Accessory);
    m_presence.hide();
    printLogger(QStringLiteral("App launched in background mode (login item)"));
}

bool AppDelegate::applicationShouldHandleReopen(bool hasVisibleWindows)
{
    if (hasVisibleWindows) {
        return true;
    }
    if (m_launchContext) {
        m_launchContext->setShouldShowMainWindow(true);
        m_presence.activate();
    }
    showMainWindow();
    return true;
}

void AppDelegate::showMainWindow()
{
    if (m_presence.activationPolicy() != ApplicationPresence::ActivationPolicy::Regular) {
        m_presence.setActivationPolicy(ApplicationPresence::ActivationPolicy::Regular);
    }
    m_presence.makeKeyAndOrderFront(mainWindowTitle);
    m_presence.activate();
}

void AppDelegate::applicationWillTerminate()
{
    run(m_connections.clearLaunchAtLoginServiceManager);
    run(m_connections.cleanupMenuBar);
    m_launchContext = nullptr;
}

} // namespace quillhaven
