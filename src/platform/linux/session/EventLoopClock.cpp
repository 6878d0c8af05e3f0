// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/linux/session/EventLoopClock.h"

#include "async/MainThread.h"
#include "platform/linux/files/ScopedFd.h"

#include <QSocketNotifier>

#include <sys/timerfd.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <ctime>
#include <system_error>
#include <utility>

namespace quillhaven {

namespace {

using std::chrono::milliseconds;
using std::chrono::nanoseconds;

timespec timespecOf(nanoseconds duration)
{
    const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(duration);
    return {.tv_sec = seconds.count(), .tv_nsec = (duration - seconds).count()};
}

ScopedFd startedTimer(nanoseconds delay, nanoseconds interval)
{
    ScopedFd fd(::timerfd_create(CLOCK_BOOTTIME, TFD_CLOEXEC | TFD_NONBLOCK));
    const itimerspec spec{.it_interval = timespecOf(interval), .it_value = timespecOf(delay)};
    if (!fd.isOpen() || ::timerfd_settime(fd.get(), 0, &spec, nullptr) != 0) {
        throw std::system_error(errno, std::generic_category(), "a timer could not be started");
    }
    return fd;
}

class BootTimeTimer : public RunningTimer
{
public:
    BootTimeTimer(nanoseconds delay, nanoseconds interval, std::function<void()> action)
        : m_fd(startedTimer(delay, interval)),
          m_notifier(m_fd.get(), QSocketNotifier::Read),
          m_action(std::make_shared<std::function<void()>>(std::move(action)))
    {
        QObject::connect(&m_notifier, &QSocketNotifier::activated, &m_notifier, [this] { postAction(); });
    }

private:
    void postAction() const
    {
        uint64_t expirations = 0;
        if (::read(m_fd.get(), &expirations, sizeof expirations) != sizeof expirations) {
            return;
        }
        // Posted, since the action may destroy this timer, and with it the notifier that calls.
        postToMainThread([watched = std::weak_ptr(m_action)] {
            if (const auto held = watched.lock()) {
                (*held)();
            }
        });
    }

    ScopedFd m_fd;
    QSocketNotifier m_notifier;
    std::shared_ptr<std::function<void()>> m_action; ///< ends with the timer, or with the call that destroys the timer
};

} // namespace

QDateTime EventLoopClock::now() const
{
    return QDateTime::currentDateTime();
}

nanoseconds EventLoopClock::uptime() const
{
    timespec now{};
    ::clock_gettime(CLOCK_BOOTTIME, &now);
    return std::chrono::seconds(now.tv_sec) + nanoseconds(now.tv_nsec);
}

std::unique_ptr<RunningTimer> EventLoopClock::startOneShot(milliseconds delay, std::function<void()> action)
{
    // Zero would stop the timer.
    const nanoseconds positive = std::max<nanoseconds>(delay, nanoseconds(1));
    return std::make_unique<BootTimeTimer>(positive, nanoseconds(0), std::move(action));
}

std::unique_ptr<RunningTimer> EventLoopClock::startRepeating(milliseconds interval, std::function<void()> action)
{
    const milliseconds positive = std::max(interval, milliseconds(1));
    return std::make_unique<BootTimeTimer>(positive, positive, std::move(action));
}

} // namespace quillhaven
