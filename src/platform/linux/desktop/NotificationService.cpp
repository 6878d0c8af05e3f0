// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/linux/desktop/NotificationService.h"

#include "async/Jobs.h"

#include <algorithm>

namespace quillhaven {

namespace {

constexpr std::chrono::seconds answerLimit(5);
const QString serverName = QStringLiteral("org.freedesktop.Notifications"); // also that of its interface
const QString serverPath = QStringLiteral("/org/freedesktop/Notifications");
/// The action of a click on the message itself.
const QString clicked = QStringLiteral("default");

QDBusMessage callOf(const QString &method)
{
    return QDBusMessage::createMethodCall(serverName, serverPath, serverName, method);
}

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
        if (self && !self->m_bus && bus) {
            self->use(bus);
        }
    }
    if (!self || !self->m_bus) {
        co_return;
    }
    const std::shared_ptr<BusConnection> bus = self->m_bus;
    const QDBusMessage question = callOf(QStringLiteral("GetCapabilities"));
    const QDBusMessage capabilities = co_await BusConnection::call(bus, question);
    if (!self || capabilities.type() != QDBusMessage::ReplyMessage) {
        co_return;
    }
    const bool readsMarkup = capabilities.arguments().value(0).toStringList().contains(QStringLiteral("body-markup"));
    const QDBusMessage call = self->notifyCall(message, readsMarkup);
    const QDBusMessage reply = co_await BusConnection::call(bus, call);
    if (self && reply.type() == QDBusMessage::ReplyMessage && reply.signature() == QLatin1String("u")) {
        self->m_shown.insert(message.topic,
                             {.number = reply.arguments().constFirst().toUInt(), .onActivated = message.onActivated});
    }
}

void NotificationService::use(const std::shared_ptr<BusConnection> &bus)
{
    m_bus = bus;
    QDBusConnection &connection = m_bus->connection();
    connection.connect(QString(), serverPath, serverName, QStringLiteral("ActionInvoked"), this,
                       SLOT(activate(uint, QString)));
    connection.connect(QString(), serverPath, serverName, QStringLiteral("NotificationClosed"), this,
                       SLOT(forget(uint)));
    m_server = std::make_unique<BusNameOwner>(bus, serverName);
    // Another server gives the numbers of this one to the messages of others.
    connect(m_server.get(), &BusNameOwner::ownerChanged, this, [this] { m_shown.clear(); });
}

QDBusMessage NotificationService::notifyCall(const Message &message, bool readsMarkup) const
{
    const QString application = QStringLiteral("com.tarnwick.quillhaven");
    const QStringList actions =
        message.onActivated ? QStringList{clicked, QStringLiteral("Open Quillhaven")} : QStringList();
    QDBusMessage call = callOf(QStringLiteral("Notify"));
    call.setArguments({QStringLiteral("Quillhaven"), m_shown.value(message.topic).number, application, message.title,
                       readsMarkup ? message.text.toHtmlEscaped() : message.text, actions,
                       QVariantMap{{QStringLiteral("desktop-entry"), application}}, -1});
    return call;
}

QString NotificationService::topicOf(quint32 number) const
{
    const auto shown = std::find_if(m_shown.cbegin(), m_shown.cend(),
                                    [number](const Shown &message) { return message.number == number; });
    return shown == m_shown.cend() ? QString() : shown.key();
}

void NotificationService::activate(uint number, const QString &action)
{
    const auto shown = m_shown.constFind(topicOf(number));
    if (action == clicked && shown != m_shown.constEnd() && shown->onActivated) {
        const std::function<void()> act = shown->onActivated; // it may show the next message
        act();
    }
}

void NotificationService::forget(uint number)
{
    const QString topic = topicOf(number);
    if (m_shown.value(topic).number == number) {
        m_shown.remove(topic);
    }
}

} // namespace quillhaven
