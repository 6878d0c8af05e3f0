// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "support/RunTask.h"

#include <QSemaphore>
#include <QTimer>

namespace quillhaven::testing {

/// Says whether the main loop keeps running while something else does: it ticks only when the loop is free.
class EventLoopChecker
{
public:
    EventLoopChecker()
    {
        QObject::connect(&m_timer, &QTimer::timeout, [this] { m_ticks.release(); });
        m_timer.start(1);
    }

    /// Called by a worker: waits until the loop has ticked again, twice, since the first tick may have been on its way.
    /// False when the loop is blocked.
    [[nodiscard]] bool ticksAgain()
    {
        m_ticks.acquire(m_ticks.available());
        return m_ticks.tryAcquire(2, static_cast<int>(patience));
    }

private:
    QTimer m_timer;
    QSemaphore m_ticks;
};

} // namespace quillhaven::testing
