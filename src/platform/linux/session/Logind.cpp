// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/linux/session/Logind.h"

#include <QDBusArgument>
#include <QDBusObjectPath>
#include <QDBusVariant>

#include <unistd.h>

#include <exception>

namespace quillhaven::logind {

namespace {

/// logind did not answer in time.
struct LateReply : std::exception
{
};

/// The reply of logind, which may be another error than a missing one.
QCoro::Task<QDBusMessage> replyTo(std::shared_ptr<BusConnection> bus, QDBusMessage message)
{
    QDBusMessage reply = co_await BusConnection::call(bus, message, answerLimit);
    if (isUnanswered(reply)) {
        throw LateReply();
    }
    co_return reply;
}

/// A property of an object of logind; invalid when it cannot be read.
QCoro::Task<QVariant> property(std::shared_ptr<BusConnection> bus, QString owner, QString path, QString interface,
                               QString name)
{
    QDBusMessage message = QDBusMessage::createMethodCall(owner, path, propertiesInterface, QStringLiteral("Get"));
    message.setArguments({interface, name});
    const QDBusMessage reply = co_await replyTo(bus, message);
    co_return reply.arguments().value(0).value<QDBusVariant>().variant();
}

QDBusMessage callOfManager(const QString &owner, const QString &method, const QVariantList &arguments)
{
    QDBusMessage message = QDBusMessage::createMethodCall(owner, managerPath, managerInterface, method);
    message.setArguments(arguments);
    return message;
}

/// The session that a method of the manager returns; empty when there is none.
QCoro::Task<QString> sessionFrom(std::shared_ptr<BusConnection> bus, QString owner, QString method, QVariant argument)
{
    const QDBusMessage message = callOfManager(owner, method, {argument});
    const QDBusMessage reply = co_await replyTo(bus, message);
    co_return reply.type() == QDBusMessage::ReplyMessage ? reply.arguments().value(0).value<QDBusObjectPath>().path()
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

QCoro::Task<QString> ownSession(std::shared_ptr<BusConnection> bus, QString owner)
{
    const QString named = qEnvironmentVariable("XDG_SESSION_ID");
    QString path;
    if (!named.isEmpty()) {
        path = co_await sessionFrom(bus, owner, QStringLiteral("GetSession"), named);
    }
    if (!co_await isOwnSession(bus, owner, path)) {
        constexpr uint callingProcess = 0;
        path = co_await sessionFrom(bus, owner, QStringLiteral("GetSessionByPID"), callingProcess);
    }
    if (!co_await isOwnSession(bus, owner, path)) {
        path = co_await graphicalSession(bus, owner);
    }
    const bool isOwn = co_await isOwnSession(bus, owner, path);
    co_return isOwn ? path : QString();
}

} // namespace

QCoro::Task<QDBusMessage> callManager(std::shared_ptr<BusConnection> bus, QString owner, QString method,
                                      QVariantList arguments)
{
    const QDBusMessage message = callOfManager(owner, method, arguments);
    co_return co_await BusConnection::call(bus, message, answerLimit);
}

QCoro::Task<std::optional<QString>> findOwnSession(std::shared_ptr<BusConnection> bus, QString owner)
{
    try {
        const QString path = co_await ownSession(bus, owner);
        co_return path;
    } catch (const LateReply &) {
        co_return std::nullopt;
    }
}

} // namespace quillhaven::logind
