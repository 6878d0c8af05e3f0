// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/linux/session/ScreenLockWatch.h"

#include "async/Jobs.h"
#include "platform/NotificationCenter.h"
#include "platform/WatchedSources.h"
#include "platform/linux/session/Logind.h"
#include "platform/linux/session/ScreenEvents.h"

namespace quillhaven {

namespace {

using Source = WatchedSources::Source;

const QString sessionNew = QStringLiteral("SessionNew");

} // namespace

SessionLock::SessionLock(QDBusConnection &bus, const QString &owner, const QString &path, ScreenEvents &events)
    : m_events(events)
{
    bus.connect(owner, path, logind::sessionInterface, QStringLiteral("Lock"), this, SLOT(onLock()));
    bus.connect(owner, path, logind::sessionInterface, QStringLiteral("Unlock"), this, SLOT(onUnlock()));
    bus.connect(owner, path, logind::propertiesInterface, QStringLiteral("PropertiesChanged"), this,
                SLOT(onPropertiesChanged(QString, QVariantMap, QStringList)));
}

void SessionLock::onLock()
{
    m_events.post(notifications::screenIsLocked);
}

void SessionLock::onUnlock()
{
    m_events.post(notifications::screenIsUnlocked);
}

void SessionLock::onPropertiesChanged(const QString &interface, const QVariantMap &changed,
                                      const QStringList & /*invalidated*/)
{
    const auto lockedHint = changed.constFind(QStringLiteral("LockedHint"));
    if (interface == logind::sessionInterface && lockedHint != changed.cend()) {
        lockedHint->toBool() ? onLock() : onUnlock();
    }
}

ScreenLockWatch::ScreenLockWatch(const std::shared_ptr<BusConnection> &systemBus, ScreenEvents &events,
                                 WatchedSources &watched)
    : m_logind(systemBus, logind::service), m_events(events), m_watched(watched)
{
    connect(&m_logind, &BusNameOwner::ownerChanged, this, &ScreenLockWatch::onOwnerChanged);
}

ScreenLockWatch::~ScreenLockWatch() = default;

void ScreenLockWatch::onOwnerChanged(const QString &owner)
{
    QDBusConnection &connection = m_logind.bus()->connection();
    if (!m_owner.isEmpty()) {
        connection.disconnect(m_owner, logind::managerPath, logind::managerInterface, sessionNew, this,
                              SLOT(onSessionNew()));
    }
    m_owner = owner;
    m_session.reset();
    if (owner.isEmpty()) {
        m_watched.setState(Source::ScreenLock, {.isAvailable = false,
                                                .sentence = QStringLiteral(
                                                    "Locking of the screen is not noticed: logind is not running.")});
        return;
    }
    connection.connect(owner, logind::managerPath, logind::managerInterface, sessionNew, this, SLOT(onSessionNew()));
    findSession();
}

void ScreenLockWatch::onSessionNew()
{
    if (!m_session) {
        findSession();
    }
}

void ScreenLockWatch::findSession()
{
    startJob([self = QPointer(this)] { return findSession(self); });
}

QCoro::Task<> ScreenLockWatch::findSession(QPointer<ScreenLockWatch> self)
{
    if (!self) {
        co_return;
    }
    const std::shared_ptr<BusConnection> bus = self->m_logind.bus();
    const QString owner = self->m_owner;
    std::optional<QString> path; // nothing while logind answers too late
    while (self && self->m_owner == owner && !self->m_session && !path) {
        path = co_await logind::findOwnSession(bus, owner);
    }
    if (!self || self->m_owner != owner || self->m_session) {
        co_return;
    }
    if (path->isEmpty()) {
        self->m_watched.setState(
            Source::ScreenLock,
            {.isAvailable = false,
             .sentence = QStringLiteral("Locking of the screen is not noticed: logind has no session of yours.")});
        co_return;
    }
    self->m_session = std::make_unique<SessionLock>(bus->connection(), owner, *path, self->m_events);
    self->m_watched.setState(
        Source::ScreenLock,
        {.isAvailable = true, .sentence = QStringLiteral("Locking of the screen is watched through logind.")});
}

} // namespace quillhaven
