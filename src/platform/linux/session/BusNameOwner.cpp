// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/linux/session/BusNameOwner.h"

#include "async/Jobs.h"

#include <QPointer>

namespace quillhaven {

namespace {

const QString busName = QStringLiteral("org.freedesktop.DBus");
const QString busPath = QStringLiteral("/org/freedesktop/DBus");

} // namespace

BusNameOwner::BusNameOwner(std::shared_ptr<BusConnection> bus, const QString &name)
    : m_bus(std::move(bus)), m_name(name)
{
    QDBusConnection &connection = m_bus->connection();
    connection.connect({}, busPath, busName, QStringLiteral("NameOwnerChanged"), {m_name}, QStringLiteral("sss"), this,
                       SLOT(onNameOwnerChanged(QDBusMessage)));
    connection.connect({}, busPath + QStringLiteral("/Local"), busName + QStringLiteral(".Local"),
                       QStringLiteral("Disconnected"), this, SLOT(onDisconnected()));

    const auto ask = [](QPointer<BusNameOwner> self) -> QCoro::Task<> {
        if (!self) {
            co_return;
        }
        const std::shared_ptr<BusConnection> asked = self->m_bus;
        QDBusMessage question =
            QDBusMessage::createMethodCall(busName, busPath, busName, QStringLiteral("GetNameOwner"));
        question.setArguments({self->m_name});
        const QDBusMessage reply = co_await BusConnection::call(asked, question);
        // A change that was reported meanwhile is newer than the reply.
        if (self && !self->m_owner) {
            const bool isOwned = reply.type() == QDBusMessage::ReplyMessage;
            self->setOwner(isOwned ? reply.arguments().value(0).toString() : QString());
        }
    };
    startJob([ask, self = QPointer(this)] { return ask(self); });
}

void BusNameOwner::onNameOwnerChanged(const QDBusMessage &message)
{
    // Any client may send a signal of this name.
    if (message.service() == busName) {
        setOwner(message.arguments().value(2).toString());
    }
}

void BusNameOwner::setOwner(const QString &owner)
{
    if (m_owner != owner) {
        m_owner = owner;
        Q_EMIT ownerChanged(owner);
    }
}

} // namespace quillhaven
