// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "support/RunTask.h"

#include <QSemaphore>
#include <QTimer>

namespace quillhaven::test {

/// Checks that the event loop of the main thread keeps running while something else is done.
class EventLoopChecker
{
public:
    EventLoopChecker()
    {
        QObject::connect(&m_timer, &QTimer::timeout, [this] { m_ticks.release(); });
        m_timer.start(1);
    }

    /// Called by a worker: waits until the loop has ticked twice more, since the first tick may already have been
    /// queued. Returns false if the loop is blocked.
    [[nodiscard]] bool ticksAgain()
    {
        m_ticks.acquire(m_ticks.available());
        return m_ticks.tryAcquire(2, static_cast<int>(patience));
    }

private:
    QTimer m_timer;
    QSemaphore m_ticks;
};

} // namespace quillhaven::test
