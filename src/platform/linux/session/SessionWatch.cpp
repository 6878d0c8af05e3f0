// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/linux/session/SessionWatch.h"

#include "async/Jobs.h"
#include "platform/NotificationCenter.h"
#include "platform/WatchedSources.h"
#include "platform/linux/session/ScreenLockWatch.h"
#include "platform/linux/session/ScreenSaverWatch.h"
#include "platform/linux/session/SleepWatch.h"

namespace quillhaven {

namespace {

constexpr std::chrono::seconds answerLimit(2);

using Source = WatchedSources::Source;

} // namespace

SessionWatch::SessionWatch(NotificationCenters &centers, WatchedSources &watched, const Clock &clock)
    : m_centers(centers), m_watched(watched), m_screen(centers.distributed, clock)
{
    m_connecting.setMaxThreadCount(2); // a bus that does not answer does not hold up the other
    startJob([self = QPointer(this)] { return watchSystemBus(self); });
    startJob([self = QPointer(this)] { return watchSessionBus(self); });
}

SessionWatch::~SessionWatch() = default;

QCoro::Task<> SessionWatch::watchSystemBus(QPointer<SessionWatch> self)
{
    if (!self) {
        co_return;
    }
    const std::shared_ptr<BusConnection> bus =
        co_await BusConnection::open(self->m_connecting, MessageBus::System, answerLimit);
    if (!self) {
        co_return;
    }
    if (!bus) {
        self->m_watched.setState(
            Source::Sleep,
            {.isAvailable = false, .sentence = QStringLiteral("Sleep is not noticed: there is no system bus.")});
        self->m_watched.setState(
            Source::ScreenLock,
            {.isAvailable = false,
             .sentence = QStringLiteral("Locking of the screen is not noticed: there is no system bus.")});
        co_return;
    }
    self->m_sleep = std::make_unique<SleepWatch>(bus, self->m_centers.workspace, self->m_watched);
    self->m_lock = std::make_unique<ScreenLockWatch>(bus, self->m_screen, self->m_watched);
}

QCoro::Task<> SessionWatch::watchSessionBus(QPointer<SessionWatch> self)
{
    if (!self) {
        co_return;
    }
    const std::shared_ptr<BusConnection> bus =
        co_await BusConnection::open(self->m_connecting, MessageBus::Session, answerLimit);
    if (self) {
        self->m_saver = std::make_unique<ScreenSaverWatch>(bus, self->m_screen, self->m_watched);
    }
}

} // namespace quillhaven
