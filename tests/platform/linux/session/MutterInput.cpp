// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/linux/session/MutterInput.h"

#include <QDBusMessage>
#include <QDBusObjectPath>

#include <stdexcept>

namespace quillhaven::test {

namespace {

const QString service = QStringLiteral("org.gnome.Mutter.RemoteDesktop");
const QString connectionName = QStringLiteral("mutter-input");

} // namespace

MutterInput::MutterInput() : m_bus(QDBusConnection::connectToBus(QDBusConnection::SessionBus, connectionName))
{
    const QVariant session =
        call(QStringLiteral("/org/gnome/Mutter/RemoteDesktop"), service, QStringLiteral("CreateSession"));
    m_session = session.value<QDBusObjectPath>().path();
    callSession(QStringLiteral("Start"));
}

MutterInput::~MutterInput()
{
    QDBusConnection::disconnectFromBus(connectionName);
}

void MutterInput::movePointer()
{
    callSession(QStringLiteral("NotifyPointerMotionRelative"), {5.0, 5.0});
}

void MutterInput::pressKey()
{
    constexpr uint keyA = 30;
    callSession(QStringLiteral("NotifyKeyboardKeycode"), {keyA, true});
    callSession(QStringLiteral("NotifyKeyboardKeycode"), {keyA, false});
}

QVariant MutterInput::call(const QString &path, const QString &interface, const QString &method,
                           const QVariantList &arguments)
{
    QDBusMessage message = QDBusMessage::createMethodCall(service, path, interface, method);
    message.setArguments(arguments);
    const QDBusMessage reply = m_bus.call(message);
    if (reply.type() != QDBusMessage::ReplyMessage) {
        throw std::runtime_error(qPrintable(method + QStringLiteral(": ") + reply.errorMessage()));
    }
    return reply.arguments().value(0);
}

void MutterInput::callSession(const QString &method, const QVariantList &arguments)
{
    call(m_session, service + QStringLiteral(".Session"), method, arguments);
}

} // namespace quillhaven::test
