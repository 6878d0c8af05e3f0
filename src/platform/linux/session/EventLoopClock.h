// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "platform/Clock.h"

namespace quillhaven {

/// The system's clocks, with timers on the main event loop.
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
