// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "Windows.h"
#include "platform/widgets/QtStatusBar.h"
#include "presentation/popover/MenuBarViewModel.h"
#include "shell/AppDelegate.h"
#include "shell/FinderExtension.h"
#include "shell/TerminationSignals.h"
#include "shell/WindowClosing.h"
#include "shell/handover/HandedOverActions.h"
#include "shell/quillhavenApp.h"

#include <functional>
#include <optional>

namespace quillhaven {

class LaunchAtLoginServiceManager;
class QtApplicationPresence;
class SingleInstance;

/// The program between its launch and its termination: the status item, the windows, and what connects them with the
/// desktop.
class RunningProgram
{
public:
    /// Launches the program. `openLinks` starts to let the desktop open the program's links with it. The shared
    /// instances must be available, and the references must outlive this object.
    RunningProgram(const Platform &platform, SingleInstance &instance, QtApplicationPresence &presence,
                   std::function<void()> openLinks);
    ~RunningProgram();
    RunningProgram(const RunningProgram &) = delete;
    RunningProgram &operator=(const RunningProgram &) = delete;

    /// Shows the window, unless it was a start at login, and runs the event loop to the termination. Returns the exit
    /// code.
    int run();

private:
    [[nodiscard]] LaunchSequence launchSequence();
    [[nodiscard]] MenuBar menuBar();
    [[nodiscard]] std::unique_ptr<Popover> makePopover();
    [[nodiscard]] Windows::Actions windowActions();
    /// The repair of a source, whose entry says meanwhile that it is going on. The action writes the entry at its end.
    [[nodiscard]] WatchedSourcesModel::Repairs::value_type repair(WatchedSources::Source source,
                                                                  const std::function<void()> &action);
    void connectWithDesktop();
    /// Says in a notification what became of a run of locking, unless the user sees it in the window.
    void notifyOfLocking(const QString &report);

    void bringMainWindowForward();
    void openUrls(const QStringList &urls);
    /// Ends the program once no file work runs.
    void terminate();
    /// The same, and starts it again.
    void restart();

    const Platform &m_platform;
    SingleInstance &m_instance;
    QtApplicationPresence &m_presence;
    std::function<void()> m_openLinks;
    LaunchAtLoginServiceManager *m_launchAtLogin = nullptr; ///< from the launch to the termination
    FinderExtension m_finderExtension;
    QtStatusBar m_statusBar;
    std::optional<MenuBarViewModel> m_menuBar; ///< created by the launch
    std::optional<Windows> m_windows;          ///< outlives the popover, which the delegate owns
    AppDelegate m_delegate;
    WindowClosing m_closing;
    HandedOverActions m_handedOver;
    quillhavenApp m_app;
    TerminationSignals m_signals;
};

} // namespace quillhaven
