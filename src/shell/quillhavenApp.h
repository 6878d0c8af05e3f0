// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <functional>
#include <memory>
#include <vector>

namespace quillhaven {

class ApplicationPresence;
class Clock;
class LaunchContextManager;
class RunningTimer;

/// Handles each appearance of the main window's content. Main thread only.
class quillhavenApp
{
public:
    /// `checkForPendingActions` is called at each appearance, each time the application becomes active, and once a
    /// second after an appearance; it may be empty. The references must outlive this object.
    quillhavenApp(LaunchContextManager &launchContext, ApplicationPresence &presence, Clock &clock,
                  std::function<void()> checkForPendingActions);
    ~quillhavenApp();

    /// The content of the main window appeared. Every appearance starts another one-second timer.
    void contentAppeared();
    /// The user closed the main window: it stays closed, even if it appeared a moment ago.
    void mainWindowClosed();
    /// The application came to the foreground.
    void applicationDidBecomeActive();

private:
    void handleMainWindowAppearance();
    void checkForPendingActions() const;

    LaunchContextManager &m_launchContext;
    ApplicationPresence &m_presence;
    Clock &m_clock;
    std::function<void()> m_checkForPendingActions;
    std::unique_ptr<RunningTimer> m_afterAppearance;     ///< of the latest appearance
    std::vector<std::unique_ptr<RunningTimer>> m_checks; ///< never cancelled while the program runs
};

} // namespace quillhaven
