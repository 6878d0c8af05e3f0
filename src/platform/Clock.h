// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QDateTime>

#include <chrono>
#include <functional>
#include <memory>

namespace quillhaven {

/// A timer that runs for as long as it lives. Destroyed, it does not fire any more; its own action may destroy it.
class RunningTimer
{
public:
    RunningTimer() = default;
    virtual ~RunningTimer() = default;
    RunningTimer(const RunningTimer &) = delete;
    RunningTimer &operator=(const RunningTimer &) = delete;
};

/// Time and timers of the main thread. All but the wall clock count the time that the machine is asleep, so that 300
/// seconds are 300 seconds over a suspend too; a timer that fell due meanwhile fires when the machine wakes up.
///
/// A timer is exact to the millisecond and never early. Its action runs from the main event loop, never inside the call
/// that starts it. A delay below zero counts as zero, an interval below one millisecond as one.
class Clock
{
public:
    Clock() = default;
    virtual ~Clock() = default;
    Clock(const Clock &) = delete;
    Clock &operator=(const Clock &) = delete;

    /// The wall clock.
    [[nodiscard]] virtual QDateTime now() const = 0;
    /// The time since some fixed moment, never set back; for measuring how long something took. Any thread may ask.
    [[nodiscard]] virtual std::chrono::nanoseconds uptime() const = 0;
    /// Calls `action` once, after `delay`.
    [[nodiscard]] virtual std::unique_ptr<RunningTimer> startOneShot(std::chrono::milliseconds delay,
                                                                     std::function<void()> action) = 0;
    /// Calls `action` one interval after the start and at each further multiple of it. When several of these moments
    /// passed while the loop was busy or the machine asleep, it is called once for them all.
    [[nodiscard]] virtual std::unique_ptr<RunningTimer> startRepeating(std::chrono::milliseconds interval,
                                                                       std::function<void()> action) = 0;
};

} // namespace quillhaven
