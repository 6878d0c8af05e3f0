// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "platform/linux/session/GlobalInputSource.h"
#include "platform/linux/session/XConnection.h"

#include <memory>
#include <optional>

namespace quillhaven {

class Clock;
class RunningTimer;

/// The raw events of XInput 2.2. After each report none are selected for a period, so that a moving pointer does not
/// wake the process.
class XInputSource : public GlobalInputSource
{
    Q_OBJECT

public:
    /// Null when the X server does not have XInput 2.2.
    [[nodiscard]] static QCoro::Task<std::unique_ptr<XConnection>> connectTo(QThreadPool &pool);

    /// `events` are watched from now on, over a connection made by `connectTo`.
    XInputSource(std::unique_ptr<XConnection> server, Clock &clock, InputEvents events,
                 std::chrono::milliseconds period);
    ~XInputSource() override;

    [[nodiscard]] QString sentence() const override;

private:
    enum class Phase {
        AskingForButtons, ///< a move counts only while no button is held, which the server is asked for
        Watching,         ///< no button is held
        Dragging,         ///< a button is held: until its release, moves are not selected
        Quiet,            ///< input was reported less than a period ago
    };

    void startWatching();
    void enter(Phase phase);
    [[nodiscard]] uint32_t selection() const;
    void onEvent(const xcb_generic_event_t *event);
    void onPress(uint32_t button);
    void onRelease(uint32_t button);
    void readButtons();
    void dropQuestion();
    void report();

    std::unique_ptr<XConnection> m_server;
    Clock &m_clock;
    InputEvents m_events;
    std::chrono::milliseconds m_period;
    Phase m_phase = Phase::Quiet;
    std::optional<unsigned int> m_question; ///< the sequence number of the question for the buttons
    std::unique_ptr<RunningTimer> m_untilWatching;
};

} // namespace quillhaven
