// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "shell/LaunchSteps.h"

#include <QObject>
#include <QStringList>

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

/// The process's life cycle: the order of the launch, the reopening of the window, the termination.
class AppDelegate : public QObject
{
    Q_OBJECT

public:
    /// The reference must outlive this object.
    AppDelegate(ApplicationPresence &presence, LaunchSequence sequence, QObject *parent = nullptr);

    /// Runs the launch, strictly in order. The jobs that its steps start run only after it has returned.
    void applicationDidFinishLaunching();
    void applicationWillTerminate();
    /// The user asked for the program again while it runs. True: it is handled.
    bool applicationShouldHandleReopen(bool hasVisibleWindows);

    /// A second start: brings the window back, or to the front.
    void reopen();
    /// A second start with something to open.
    void openUrls(const QStringList &urls);

    /// Empty before the launch and after the termination.
    [[nodiscard]] LaunchContextManager *launchContext() const { return m_launchContext; }

private:
    void handleLaunchContextInitialization();
    void initializeForBackgroundLaunch();
    void showMainWindow();

    ApplicationPresence &m_presence;
    LaunchSequence m_sequence;
    LaunchContextManager *m_launchContext = nullptr;
};

/// The title of the main window, by which it is found again.
inline const QString mainWindowTitle = QStringLiteral("Quillhaven");

} // namespace quillhaven
