// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QObject>

#include <chrono>
#include <memory>

namespace quillhaven {

class ApplicationPresence;
class Clock;
class RunningTimer;
class StatusBar;

/// What closing the main window does: the program goes on, and the user can always reach it. With a status item on the
/// screen the window is hidden, else it is minimized; and if the status bar goes away while it is hidden, it comes back
/// minimized. Main thread only.
class WindowClosing : public QObject
{
    Q_OBJECT

public:
    /// How long a status bar may be away, such as one whose panel restarts, before the window comes back.
    static constexpr std::chrono::milliseconds patience{10'000};

    /// The references must outlive this object.
    WindowClosing(StatusBar &statusBar, ApplicationPresence &presence, Clock &clock, QObject *parent = nullptr);
    ~WindowClosing() override;

    /// The user asked to close the main window.
    void close();

private:
    void statusBarChanged();

    StatusBar &m_statusBar;
    ApplicationPresence &m_presence;
    Clock &m_clock;
    bool m_wasShown; ///< the status bar, at some time
    std::unique_ptr<RunningTimer> m_waiting;
};

} // namespace quillhaven
