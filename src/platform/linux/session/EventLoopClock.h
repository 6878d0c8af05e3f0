// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "platform/Clock.h"

namespace quillhaven {

/// The system's clocks, with a timerfd on CLOCK_BOOTTIME for each timer. A timer that cannot be made, for want of file
/// descriptors, throws a std::system_error.
class EventLoopClock : public Clock
{
public:
    [[nodiscard]] QDateTime now() const override;
    [[nodiscard]] std::chrono::nanoseconds uptime() const override;
    [[nodiscard]] std::unique_ptr<RunningTimer> startOneShot(std::chrono::milliseconds delay,
                                                             std::function<void()> action) override;
    [[nodiscard]] std::unique_ptr<RunningTimer> startRepeating(std::chrono::milliseconds interval,
                                                               std::function<void()> action) override;
};

} // namespace quillhaven
