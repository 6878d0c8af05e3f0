// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "shell/LaunchSteps.h"

#include <QObject>

#include <functional>
#include <map>

namespace quillhaven {

class ApplicationPresence;
class LaunchContextManager;

/// The services that start with the program, in the order of the launch.
enum class LaunchPhase { setupMenuBar, autoLockManagers, activateFinderExtension, updateCheck, launchAtLogin };

/// What is given up at the end of the program, in that order, before the launch context.
enum class TerminationPhase { launchAtLoginServiceManager, cleanupMenuBar };

/// What starts and ends with the program. A phase without a step is passed over.
struct LaunchSequence
{
    std::function<LaunchContextManager &()> launchContext; ///< decides the context, before the first phase
    std::map<LaunchPhase, LaunchStep> launch;
    std::map<TerminationPhase, LaunchStep> termination;
};

/// The life cycle of the process: the launch, the reopening of the window, and the termination.
class AppDelegate : public QObject
{
    Q_OBJECT

public:
    /// The reference must outlive this object.
    AppDelegate(ApplicationPresence &presence, LaunchSequence sequence, QObject *parent = nullptr);

    /// Runs the steps of the launch in order. The jobs that they start run only after it has returned.
    void applicationDidFinishLaunching();
    void applicationWillTerminate();
    /// The user started the program again while it is running. Returns true: the request is handled.
    bool applicationShouldHandleReopen(bool hasVisibleWindows);

    /// The program was started a second time: shows the window, or brings it to the front.
    void reopen();

    /// Null before the launch and after the termination.
    [[nodiscard]] LaunchContextManager *launchContext() const { return m_launchContext; }

private:
    void handleLaunchContextInitialization();
    void initializeForBackgroundLaunch();
    void showMainWindow();

    ApplicationPresence &m_presence;
    LaunchSequence m_sequence;
    LaunchContextManager *m_launchContext = nullptr;
};

/// The title of the main window, by which the window is found.
inline const QString mainWindowTitle = QStringLiteral("Quillhaven");

} // namespace quillhaven
