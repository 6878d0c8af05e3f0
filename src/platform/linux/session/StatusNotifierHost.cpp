// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/linux/session/StatusNotifierHost.h"

#include "async/Jobs.h"

#include <QDBusServiceWatcher>
#include <QDBusVariant>

namespace quillhaven {

namespace {

const QString watcherService = QStringLiteral("org.kde.StatusNotifierWatcher");
const QString watcherPath = QStringLiteral("/StatusNotifierWatcher");
constexpr std::chrono::seconds answerLimit(2);

} // namespace

StatusNotifierHost::StatusNotifierHost(QObject *parent) : QObject(parent)
{
    m_connecting.setMaxThreadCount(1);
    startJob([self = QPointer(this)] { return connectToBus(self); });
}

StatusNotifierHost::~StatusNotifierHost() = default;

QCoro::Task<> StatusNotifierHost::connectToBus(QPointer<StatusNotifierHost> self)
{
    if (!self) {
        co_return;
    }
    const std::shared_ptr<BusConnection> bus =
        co_await BusConnection::open(self->m_connecting, MessageBus::Session, answerLimit);
    if (!self) {
        co_return;
    }
    self->m_bus = bus;
    if (bus) {
        self->watch();
    } else {
        self->setPresent(false);
    }
}

void StatusNotifierHost::watch()
{
    QDBusConnection &connection = m_bus->connection();
    m_service =
        std::make_unique<QDBusServiceWatcher>(watcherService, connection, QDBusServiceWatcher::WatchForOwnerChange);
    connect(m_service.get(), &QDBusServiceWatcher::serviceOwnerChanged, this, &StatusNotifierHost::look);
    // The watcher may be there before there is a host that shows the items.
    for (const char *change : {"StatusNotifierHostRegistered", "StatusNotifierHostUnregistered"}) {
        connection.connect(QString(), watcherPath, watcherService, QLatin1String(change), this, SLOT(look()));
    }
    look();
}

void StatusNotifierHost::look()
{
    const quint64 current = ++m_looks;
    startJob([self = QPointer(this), current] { return askWatcher(self, current); });
}

QCoro::Task<> StatusNotifierHost::askWatcher(QPointer<StatusNotifierHost> self, quint64 look)
{
    if (!self || self->m_looks != look) {
        co_return;
    }
    QDBusMessage question = QDBusMessage::createMethodCall(
        watcherService, watcherPath, QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Get"));
    question << watcherService << QStringLiteral("IsStatusNotifierHostRegistered");
    question.setAutoStartService(false);
    const std::shared_ptr<BusConnection> bus = self->m_bus;
    const QDBusMessage reply = co_await BusConnection::call(bus, question);
    if (self && self->m_looks == look) {
        self->setPresent(reply.type() == QDBusMessage::ReplyMessage &&
                         reply.arguments().value(0).value<QDBusVariant>().variant().toBool());
    }
}

void StatusNotifierHost::setPresent(bool value)
{
    if (!m_isKnown || m_isPresent != value) {
        m_isKnown = true;
        m_isPresent = value;
        Q_EMIT changed();
    }
}

} // namespace quillhaven
