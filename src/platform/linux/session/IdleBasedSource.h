// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "platform/linux/session/GlobalInputSource.h"

#include <memory>

namespace quillhaven {

class Clock;
class RunningTimer;

/// A desktop that only reports when the user becomes idle, after one period without input, and when they return. Input
/// is reported on the return, and then once in each period until the user is idle; no timer runs after that.
class IdleBasedSource : public GlobalInputSource
{
    Q_OBJECT

public:
    ~IdleBasedSource() override;

protected:
    IdleBasedSource(Clock &clock, std::chrono::milliseconds period);

    [[nodiscard]] std::chrono::milliseconds period() const { return m_period; }
    /// The desktop counts from now on; until it reports that the user is idle, they are not.
    void start();
    void userBecameIdle();
    void userReturned();

private:
    Clock &m_clock;
    std::chrono::milliseconds m_period;
    std::unique_ptr<RunningTimer> m_whileActive;
};

} // namespace quillhaven
