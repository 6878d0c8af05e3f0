// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QDateTime>

#include <chrono>
#include <functional>
#include <memory>

namespace quillhaven {

/// A timer that runs until it is destroyed, or once, until it fired.
class RunningTimer
{
public:
    RunningTimer() = default;
    virtual ~RunningTimer() = default;
    RunningTimer(const RunningTimer &) = delete;
    RunningTimer &operator=(const RunningTimer &) = delete;
};

/// Time and timers of the main thread. A test advances its own by hand.
class Clock
{
public:
    Clock() = default;
    virtual ~Clock() = default;
    Clock(const Clock &) = delete;
    Clock &operator=(const Clock &) = delete;

    /// The wall clock.
    [[nodiscard]] virtual QDateTime now() const = 0;
    /// Time since some fixed moment, never set back; for measuring stretches.
    [[nodiscard]] virtual std::chrono::nanoseconds uptime() const = 0;
    /// Calls `action` once after `delay`, on the main thread, unless the timer is destroyed before.
    [[nodiscard]] virtual std::unique_ptr<RunningTimer> startOneShot(std::chrono::milliseconds delay,
                                                                     std::function<void()> action) = 0;
    /// Calls `action` after each `interval` until the timer is destroyed.
    [[nodiscard]] virtual std::unique_ptr<RunningTimer> startRepeating(std::chrono::milliseconds interval,
                                                                       std::function<void()> action) = 0;
};

} // namespace quillhaven
