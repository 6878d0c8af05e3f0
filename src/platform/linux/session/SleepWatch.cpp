// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/linux/session/SleepWatch.h"

#include "async/Jobs.h"
#include "platform/NotificationCenter.h"
#include "platform/WatchedSources.h"
#include "platform/linux/session/Logind.h"

namespace quillhaven {

namespace {

using Source = WatchedSources::Source;

} // namespace

SleepWatch::SleepWatch(const std::shared_ptr<BusConnection> &systemBus, NotificationCenter &workspace,
                       WatchedSources &watched)
    : m_logind(systemBus, logind::service), m_workspace(workspace), m_watched(watched)
{
    connect(&m_logind, &BusNameOwner::ownerChanged, this, &SleepWatch::onOwnerChanged);
}

SleepWatch::~SleepWatch() = default;

void SleepWatch::onOwnerChanged(const QString &owner)
{
    const QString signal = QStringLiteral("PrepareForSleep");
    QDBusConnection &connection = m_logind.bus()->connection();
    if (!m_owner.isEmpty()) {
        connection.disconnect(m_owner, logind::managerPath, logind::managerInterface, signal, this,
                              SLOT(onPrepareForSleep(bool)));
    }
    m_owner = owner;
    releaseLock(); // it ended with the logind that gave it
    if (owner.isEmpty()) {
        m_watched.setState(Source::Sleep, {.isAvailable = false,
                                           .sentence = QStringLiteral("Sleep is not noticed: logind is not running.")});
        return;
    }
    connection.connect(owner, logind::managerPath, logind::managerInterface, signal, this,
                       SLOT(onPrepareForSleep(bool)));
    if (m_isAsleep) {
        wake(); // a logind that started meanwhile does not report it
    } else {
        takeLock();
    }
}

void SleepWatch::onPrepareForSleep(bool isStarting)
{
    if (!isStarting) {
        wake();
        return;
    }
    m_isAsleep = true;
    m_workspace.post(notifications::willSleep);
    releaseLock();
}

void SleepWatch::wake()
{
    m_isAsleep = false;
    takeLock();
    m_workspace.post(notifications::didWake);
}

void SleepWatch::takeLock()
{
    startJob([self = QPointer(this), turn = ++m_turn] { return takeLock(self, turn); });
}

QCoro::Task<> SleepWatch::takeLock(QPointer<SleepWatch> self, quint64 turn)
{
    bool isRefused = false;
    while (self && self->m_turn == turn && !self->m_lock.isValid() && !isRefused) {
        const std::shared_ptr<BusConnection> bus = self->m_logind.bus();
        const QString owner = self->m_owner;
        const QVariantList arguments = {QStringLiteral("sleep"), QStringLiteral("Quillhaven"),
                                        QStringLiteral("Unlocked files are locked before the machine sleeps"),
                                        QStringLiteral("delay")};
        const QDBusMessage reply = co_await logind::callManager(bus, owner, QStringLiteral("Inhibit"), arguments);
        if (self && self->m_turn == turn) {
            self->m_lock = reply.arguments().value(0).value<QDBusUnixFileDescriptor>();
            isRefused = !self->m_lock.isValid() && !isUnanswered(reply);
        }
    }
    if (self && self->m_turn == turn) {
        const QString sentence = isRefused
                                     ? QStringLiteral("Sleep is watched through logind, which refuses to wait for "
                                                      "Quillhaven before the machine sleeps.")
                                     : QStringLiteral("Sleep is watched through logind, which waits for Quillhaven "
                                                      "before the machine sleeps.");
        self->m_watched.setState(Source::Sleep, {.isAvailable = true, .sentence = sentence});
    }
}

void SleepWatch::releaseLock()
{
    ++m_turn; // one that is still asked for is not kept
    m_lock = {};
}

} // namespace quillhaven
