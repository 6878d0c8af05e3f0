// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/linux/session/Logind.h"

#include <QDBusArgument>
#include <QDBusObjectPath>
#include <QDBusVariant>

#include <unistd.h>

#include <optional>

namespace quillhaven::logind {

namespace {

/// A property of an object of logind; invalid when it cannot be read.
QCoro::Task<QVariant> property(std::shared_ptr<BusConnection> bus, QString owner, QString path, QString interface,
                               QString name)
{
    QDBusMessage message = QDBusMessage::createMethodCall(owner, path, propertiesInterface, QStringLiteral("Get"));
    message.setArguments({interface, name});
    const QDBusMessage reply = co_await BusConnection::call(bus, message, answerLimit);
    co_return reply.arguments().value(0).value<QDBusVariant>().variant();
}

QString pathIn(const QDBusMessage &reply)
{
    return reply.type() == QDBusMessage::ReplyMessage ? reply.arguments().value(0).value<QDBusObjectPath>().path()
                                                      : QString();
}

/// A structure of an identifier and a path, which logind uses for its objects.
template <typename Id>
std::optional<std::pair<Id, QString>> reference(const QVariant &value)
{
    const auto argument = value.value<QDBusArgument>();
    if (argument.currentType() != QDBusArgument::StructureType) {
        return {};
    }
    Id id{};
    QDBusObjectPath path;
    argument.beginStructure();
    argument >> id >> path;
    argument.endStructure();
    return std::pair(id, path.path());
}

QCoro::Task<bool> isOwnSession(std::shared_ptr<BusConnection> bus, QString owner, QString path)
{
    if (path.isEmpty() || path == QLatin1String("/")) {
        co_return false;
    }
    const QVariant user = co_await property(bus, owner, path, sessionInterface, QStringLiteral("User"));
    const auto reference = logind::reference<uint>(user);
    co_return reference && reference->first == ::getuid();
}

QCoro::Task<QString> graphicalSession(std::shared_ptr<BusConnection> bus, QString owner)
{
    const QVariant display =
        co_await property(bus, owner, managerPath + QStringLiteral("/user/self"),
                          QStringLiteral("org.freedesktop.login1.User"), QStringLiteral("Display"));
    const auto reference = logind::reference<QString>(display);
    co_return reference ? reference->second : QString();
}

} // namespace

QCoro::Task<QDBusMessage> callManager(std::shared_ptr<BusConnection> bus, QString owner, QString method,
                                      QVariantList arguments)
{
    QDBusMessage message = QDBusMessage::createMethodCall(owner, managerPath, managerInterface, method);
    message.setArguments(arguments);
    co_return co_await BusConnection::call(bus, message, answerLimit);
}

QCoro::Task<QString> findOwnSession(std::shared_ptr<BusConnection> bus, QString owner)
{
    const QString named = qEnvironmentVariable("XDG_SESSION_ID");
    QString path;
    if (!named.isEmpty()) {
        const QVariantList id = {named};
        path = pathIn(co_await callManager(bus, owner, QStringLiteral("GetSession"), id));
    }
    if (!co_await isOwnSession(bus, owner, path)) {
        const QVariantList callingProcess = {0U};
        path = pathIn(co_await callManager(bus, owner, QStringLiteral("GetSessionByPID"), callingProcess));
    }
    if (!co_await isOwnSession(bus, owner, path)) {
        path = co_await graphicalSession(bus, owner);
    }
    const bool isOwn = co_await isOwnSession(bus, owner, path);
    co_return isOwn ? path : QString();
}

} // namespace quillhaven::logind
