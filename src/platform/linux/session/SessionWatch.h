// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

// Before the standard library's coroutines, whose concepts moc cannot read otherwise.
#include <QObject>

#include "platform/linux/session/ScreenEvents.h"

#include <QCoroTask>
#include <QPointer>
#include <QThreadPool>

#include <memory>

namespace quillhaven {

class Clock;
class ScreenLockWatch;
class ScreenSaverWatch;
class SleepWatch;
class WatchedSources;
struct NotificationCenters;

/// Posts what happens to the machine and to the user's session: sleep and waking on the workspace's centre, the lock of
/// the screen and the start of the screen saver on the distributed one. What of it is watched is entered as watched
/// sources.
class SessionWatch : public QObject
{
    Q_OBJECT

public:
    SessionWatch(NotificationCenters &centers, WatchedSources &watched, const Clock &clock);
    ~SessionWatch() override;

private:
    [[nodiscard]] static QCoro::Task<> watchSystemBus(QPointer<SessionWatch> self);
    [[nodiscard]] static QCoro::Task<> watchSessionBus(QPointer<SessionWatch> self);

    NotificationCenters &m_centers;
    WatchedSources &m_watched;
    ScreenEvents m_screen;
    QThreadPool m_connecting;
    std::unique_ptr<SleepWatch> m_sleep;
    std::unique_ptr<ScreenLockWatch> m_lock;
    std::unique_ptr<ScreenSaverWatch> m_saver;
};

} // namespace quillhaven
