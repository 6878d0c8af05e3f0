// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "platform/StatusBar.h"
#include "shell/LaunchSteps.h"

#include <QObject>

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <vector>

namespace quillhaven {

class ApplicationPresence;
class LaunchContextManager;
class Popover;

/// What the status item and its popover are made from.
struct MenuBar
{
    StatusBar &statusBar;
    std::function<std::unique_ptr<Popover>()> makePopover;
    /// The entries of the item's menu; asked for when there is a popover.
    std::function<std::vector<StatusItem::MenuEntry>()> menuEntries;
};

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
    /// With a menu bar, the phases `setupMenuBar` and `cleanupMenuBar` are this object's functions of these names. The
    /// references must outlive this object.
    AppDelegate(ApplicationPresence &presence, LaunchSequence sequence, std::optional<MenuBar> menuBar = std::nullopt,
                QObject *parent = nullptr);
    ~AppDelegate() override;

    /// Runs the steps of the launch in order. The jobs that they start run only after it has returned.
    void applicationDidFinishLaunching();
    void applicationWillTerminate();
    /// The user started the program again while it is running. Returns true: the request is handled.
    bool applicationShouldHandleReopen(bool hasVisibleWindows);

    /// The program was started a second time: shows the window, or brings it to the front.
    void reopen();

    /// Null before the launch and after the termination, as are the status item and the popover.
    [[nodiscard]] LaunchContextManager *launchContext() const { return m_launchContext; }
    [[nodiscard]] StatusItem *statusItem() const { return m_statusItem.get(); }
    [[nodiscard]] Popover *popover() const { return m_popover.get(); }

    /// A click on the status item: closes the popover, or makes the program a regular application and shows it.
    void toggleMenu();
    void popoverDidShow() {}
    void popoverDidClose() {}

private:
    void setupMenuBar();
    void setupPopover();
    void cleanupMenuBar();
    void handleLaunchContextInitialization();
    void initializeForBackgroundLaunch();
    void showMainWindow();

    ApplicationPresence &m_presence;
    LaunchSequence m_sequence;
    std::optional<MenuBar> m_menuBar;
    std::unique_ptr<StatusItem> m_statusItem;
    std::unique_ptr<Popover> m_popover;
    LaunchContextManager *m_launchContext = nullptr;
};

/// The title of the main window, by which the window is found.
inline const QString mainWindowTitle = QStringLiteral("Quillhaven");

} // namespace quillhaven
