// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

// Before the standard library's coroutines, whose concepts moc cannot read otherwise.
#include <QObject>

#include "platform/linux/session/BusNameOwner.h"

#include <QPointer>
#include <QStringList>
#include <QVariantMap>

#include <memory>

namespace quillhaven {

class ScreenEvents;
class WatchedSources;

/// The lock of one session of logind.
class SessionLock : public QObject
{
    Q_OBJECT

public:
    SessionLock(QDBusConnection &bus, const QString &owner, const QString &path, ScreenEvents &events);

private Q_SLOTS:
    void onLock();
    void onUnlock();
    void onPropertiesChanged(const QString &interface, const QVariantMap &changed, const QStringList &invalidated);

private:
    ScreenEvents &m_events;
};

/// Posts that the screen of this session was locked and unlocked, as logind reports it.
class ScreenLockWatch : public QObject
{
    Q_OBJECT

public:
    ScreenLockWatch(const std::shared_ptr<BusConnection> &systemBus, ScreenEvents &events, WatchedSources &watched);
    ~ScreenLockWatch() override;

private Q_SLOTS:
    /// The user's session may begin after the process.
    void onSessionNew();

private:
    void onOwnerChanged(const QString &owner);
    void findSession();
    [[nodiscard]] static QCoro::Task<> findSession(QPointer<ScreenLockWatch> self);

    BusNameOwner m_logind;
    ScreenEvents &m_events;
    WatchedSources &m_watched;
    QString m_owner; ///< whose signals arrive here
    std::unique_ptr<SessionLock> m_session;
};

} // namespace quillhaven
