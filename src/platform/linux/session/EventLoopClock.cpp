// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/linux/session/EventLoopClock.h"

#include <QObject>
#include <QTimer>

#include <algorithm>
#include <limits>
#include <utility>

namespace quillhaven {

namespace {

using std::chrono::milliseconds;

/// By value: the action outlives the timer that it may destroy.
void runToItsEnd(std::shared_ptr<std::function<void()>> action)
{
    (*action)();
}

/// One QTimer. Its action may destroy it.
class EventLoopTimer : public RunningTimer
{
public:
    EventLoopTimer(milliseconds interval, bool isSingleShot, std::function<void()> action)
        : m_action(std::make_shared<std::function<void()>>(std::move(action)))
    {
        // Longer stretches may be off by up to a second, so that the machine wakes up less often.
        constexpr milliseconds longestPrecise(20'000);
        constexpr milliseconds longest(std::numeric_limits<int>::max());
        m_timer.setTimerType(interval <= longestPrecise ? Qt::PreciseTimer : Qt::CoarseTimer);
        m_timer.setSingleShot(isSingleShot);
        m_timer.setInterval(std::clamp(interval, milliseconds(0), longest));
        QObject::connect(&m_timer, &QTimer::timeout, &m_timer, [held = m_action] { runToItsEnd(held); });
        m_timer.start();
    }

private:
    QTimer m_timer;
    std::shared_ptr<std::function<void()>> m_action;
};

} // namespace

QDateTime EventLoopClock::now() const
{
    return QDateTime::currentDateTime();
}

std::chrono::nanoseconds EventLoopClock::uptime() const
{
    return std::chrono::steady_clock::now().time_since_epoch();
}

std::unique_ptr<RunningTimer> EventLoopClock::startOneShot(milliseconds delay, std::function<void()> action)
{
    return std::make_unique<EventLoopTimer>(delay, true, std::move(action));
}

std::unique_ptr<RunningTimer> EventLoopClock::startRepeating(milliseconds interval, std::function<void()> action)
{
    return std::make_unique<EventLoopTimer>(interval, false, std::move(action));
}

} // namespace quillhaven
