// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QCoroTask>
#include <QObject>

#include <functional>

namespace quillhaven {

class ApplicationPresence;
class LaunchContextManager;

/// Where the services that start with the program connect, in the order of the launch. An empty one is left out.
struct LaunchConnections
{
    std::function<LaunchContextManager *()> launchContext; ///< decides the context; must be given
    std::function<void()> setupMenuBar;                    ///< brings the engine into being
    std::function<void()> startAutoLockManager;
    std::function<void()> startSmartAutoLockManager;
    std::function<void()> activateFinderExtension;
    std::function<QCoro::Task<>()> performBackgroundUpdateCheck;
    std::function<QCoro::Task<>()> synchronizeLaunchAtLogin;
    std::function<void()> clearLaunchAtLoginServiceManager;
    std::function<void()> cleanupMenuBar;
};

/// The process's life cycle: the order of the launch, the reopening of the window, the termination.
class AppDelegate : public QObject
{
    Q_OBJECT

public:
    /// The reference outlives this object.
    AppDelegate(ApplicationPresence &presence, LaunchConnections connections, QObject *parent = nullptr);

    /// Runs the launch, strictly in order. The two jobs start only after it has returned.
    void applicationDidFinishLaunching();
    void applicationWillTerminate();
    /// The user asked for the program again while it runs. True: it is handled.
    bool applicationShouldHandleReopen(bool hasVisibleWindows);

    /// Empty before the launch and after the termination.
    [[nodiscard]] LaunchContextManager *launchContext() const { return m_launchContext; }

private:
    void startAutoLockManagers();
    void startJobs();
    void handleLaunchContextInitialization();
    void initializeForBackgroundLaunch();
    void showMainWindow();

    ApplicationPresence &m_presence;
    LaunchConnections m_connections;
    LaunchContextManager *m_launchContext = nullptr;
};

/// The title of the main window, by which it is found again.
inline const QString mainWindowTitle = QStringLiteral("Quillhaven");

} // namespace quillhaven
