// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

// Before the standard library's coroutines, whose concepts moc cannot read otherwise.
#include <QObject>

#include "platform/linux/session/BusNameOwner.h"

#include <QDBusUnixFileDescriptor>
#include <QPointer>

namespace quillhaven {

class NotificationCenter;
class WatchedSources;

/// Posts that the machine is about to sleep and that it woke, as logind reports it. While the machine is awake, a lock
/// of logind is held that delays the sleep until the observers have returned; without it the process could be frozen
/// before it hears of the sleep.
class SleepWatch : public QObject
{
    Q_OBJECT

public:
    SleepWatch(const std::shared_ptr<BusConnection> &systemBus, NotificationCenter &workspace, WatchedSources &watched);
    /// Releases the lock.
    ~SleepWatch() override;

private Q_SLOTS:
    void onPrepareForSleep(bool isStarting);

private:
    void onOwnerChanged(const QString &owner);
    void wake();
    void takeLock();
    /// `turn` is over when the machine is about to sleep, or when logind was restarted.
    [[nodiscard]] static QCoro::Task<> takeLock(QPointer<SleepWatch> self, quint64 turn);
    void releaseLock();

    BusNameOwner m_logind;
    NotificationCenter &m_workspace;
    WatchedSources &m_watched;
    QString m_owner; ///< whose signals arrive here
    bool m_isAsleep = false;
    quint64 m_turn = 0;
    QDBusUnixFileDescriptor m_lock;
};

} // namespace quillhaven
