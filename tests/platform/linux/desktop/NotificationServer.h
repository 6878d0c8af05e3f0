// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "support/RunTask.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QProcess>
#include <QTemporaryFile>

#include <gtest/gtest.h>

namespace quillhaven::test {

/// A notification server in a process of its own: python3-dbusmock's, which writes down the calls that it gets.
class NotificationServer
{
public:
    explicit NotificationServer(const QString &capabilities = QStringLiteral("body actions"))
    {
        EXPECT_TRUE(m_log.open());
        m_process.setStandardOutputFile(m_log.fileName());
        m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        m_process.start(QStringLiteral("/usr/bin/python3"),
                        {QStringLiteral("-m"), QStringLiteral("dbusmock"), QStringLiteral("--template"),
                         QStringLiteral("notification_daemon"), QStringLiteral("--parameters"),
                         QStringLiteral("{\"capabilities\": \"%1\"}").arg(capabilities)});
        EXPECT_TRUE(spinUntil([] { return hasOwner(); }, 30'000));
    }
    ~NotificationServer()
    {
        m_process.kill();
        m_process.waitForFinished();
        EXPECT_TRUE(spinUntil([] { return !hasOwner(); }));
    }
    NotificationServer(const NotificationServer &) = delete;
    NotificationServer &operator=(const NotificationServer &) = delete;

    /// The calls of `Notify`, as dbusmock writes their arguments.
    [[nodiscard]] QStringList messages() const
    {
        QFile log(m_log.fileName());
        EXPECT_TRUE(log.open(QIODevice::ReadOnly));
        QStringList calls;
        for (const QString &line : QString::fromUtf8(log.readAll()).split(QLatin1Char('\n'))) {
            const qsizetype name = line.indexOf(QStringLiteral(" Notify "));
            if (name >= 0) {
                calls.append(line.mid(name + 8));
            }
        }
        return calls;
    }
    /// Waits for this many of them, and until the client has handled the answer to the last one.
    bool receives(qsizetype count) const
    {
        const bool isReached = spinUntil([&] { return messages().size() >= count; });
        EXPECT_EQ(messages().size(), count) << qUtf8Printable(messages().join(QLatin1Char('\n')));
        // The server answers in order, and Qt reads what has arrived on all connections before it waits for more.
        for (int i = 0; i < 2; ++i) {
            call(QStringLiteral("org.freedesktop.Notifications"), QStringLiteral("GetServerInformation"), {});
            spinOnce();
        }
        return isReached;
    }

    /// What the server reports when the user clicks the message, and when the message is gone.
    void invoke(uint number, const QString &action) const
    {
        emitSignal(QStringLiteral("ActionInvoked"), QStringLiteral("us"), {number, action});
    }
    void close(uint number) const
    {
        emitSignal(QStringLiteral("NotificationClosed"), QStringLiteral("uu"), {number, 1u});
    }

private:
    static bool hasOwner()
    {
        QDBusMessage question =
            QDBusMessage::createMethodCall(QStringLiteral("org.freedesktop.DBus"), QStringLiteral("/"),
                                           QStringLiteral("org.freedesktop.DBus"), QStringLiteral("NameHasOwner"));
        question << QStringLiteral("org.freedesktop.Notifications");
        return QDBusConnection::sessionBus().call(question).arguments().value(0).toBool();
    }
    static void emitSignal(const QString &name, const QString &signature, const QVariantList &arguments)
    {
        call(QStringLiteral("org.freedesktop.DBus.Mock"), QStringLiteral("EmitSignal"),
             {QStringLiteral("org.freedesktop.Notifications"), name, signature, QVariant(arguments)});
    }
    static void call(const QString &interface, const QString &method, const QVariantList &arguments)
    {
        QDBusMessage message =
            QDBusMessage::createMethodCall(QStringLiteral("org.freedesktop.Notifications"),
                                           QStringLiteral("/org/freedesktop/Notifications"), interface, method);
        message.setArguments(arguments);
        const QDBusMessage reply = QDBusConnection::sessionBus().call(message);
        EXPECT_EQ(reply.type(), QDBusMessage::ReplyMessage) << qUtf8Printable(reply.errorMessage());
    }

    QTemporaryFile m_log;
    QProcess m_process;
};

} // namespace quillhaven::test
