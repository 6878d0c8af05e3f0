// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/linux/desktop/NotificationService.h"

#include "async/Jobs.h"

namespace quillhaven {

namespace {

constexpr std::chrono::seconds answerLimit(5);

} // namespace

NotificationService::NotificationService()
{
    m_connecting.setMaxThreadCount(1);
}

NotificationService::~NotificationService() = default;

void NotificationService::show(const Message &message)
{
    startJob([self = QPointer(this), message] { return send(self, message); });
}

QCoro::Task<> NotificationService::send(QPointer<NotificationService> self, Message message)
{
    if (self && !self->m_bus) {
        const std::shared_ptr<BusConnection> bus =
            co_await BusConnection::open(self->m_connecting, MessageBus::Session, answerLimit);
        if (self && !self->m_bus) {
            self->m_bus = bus;
        }
    }
    if (!self || !self->m_bus) {
        co_return;
    }
    const QString name = QStringLiteral("org.freedesktop.Notifications");
    QDBusMessage call = QDBusMessage::createMethodCall(name, QStringLiteral("/org/freedesktop/Notifications"), name,
                                                       QStringLiteral("Notify"));
    call.setArguments({QStringLiteral("Quillhaven"), self->m_shown.value(message.topic),
                       QStringLiteral("com.tarnwick.quillhaven"), message.title, message.text, QStringList(),
                       QVariantMap(), -1});
    const QDBusMessage reply = co_await BusConnection::call(self->m_bus, call);
    if (self && reply.type() == QDBusMessage::ReplyMessage && reply.signature() == QLatin1String("u")) {
        self->m_shown.insert(message.topic, reply.arguments().constFirst().toUInt());
    }
}

} // namespace quillhaven
