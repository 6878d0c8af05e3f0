// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "support/RunTask.h"

#include <gtest/gtest.h>

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QProcess>

namespace quillhaven::test {

/// The keyring of mock_keyring.py on the session bus, as long as this exists.
class MockKeyring
{
public:
    MockKeyring()
    {
        m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        m_process.start(QStringLiteral(MOCK_KEYRING), QStringList());
        EXPECT_TRUE(spinUntil([] { return isOnBus(); }));
    }
    ~MockKeyring()
    {
        m_process.kill();
        EXPECT_TRUE(m_process.waitForFinished());
        EXPECT_TRUE(spinUntil([] { return !isOnBus(); }));
    }
    MockKeyring(const MockKeyring &) = delete;
    MockKeyring &operator=(const MockKeyring &) = delete;

    /// Changes a setting of the keyring; the script lists them.
    void change(const QString &name, const QString &value) { (void)ask(QStringLiteral("Change"), {name, value}); }
    /// Adds an entry with the value "secret".
    void addEntry(const QString &service, const QString &account, bool isLocked)
    {
        (void)ask(QStringLiteral("AddEntry"), {service, account, isLocked});
    }
    [[nodiscard]] int prompts() { return ask(QStringLiteral("Count"), {QStringLiteral("prompts")}); }
    [[nodiscard]] int dismissals() { return ask(QStringLiteral("Count"), {QStringLiteral("dismissals")}); }
    [[nodiscard]] int entries() { return ask(QStringLiteral("Count"), {QStringLiteral("entries")}); }
    /// How many calls a silent keyring has received.
    [[nodiscard]] int unanswered() { return ask(QStringLiteral("Count"), {QStringLiteral("unanswered")}); }

private:
    static bool isOnBus()
    {
        return QDBusConnection::sessionBus().interface()->isServiceRegistered(
            QStringLiteral("org.freedesktop.secrets"));
    }
    static int ask(const QString &method, const QVariantList &arguments)
    {
        QDBusMessage message = QDBusMessage::createMethodCall(QStringLiteral("org.freedesktop.secrets"),
                                                              QStringLiteral("/org/freedesktop/secrets"),
                                                              QStringLiteral("com.tarnwick.MockKeyring"), method);
        message.setArguments(arguments);
        const QDBusMessage reply = QDBusConnection::sessionBus().call(message);
        EXPECT_EQ(reply.type(), QDBusMessage::ReplyMessage) << reply.errorMessage().toStdString();
        return reply.arguments().value(0).toInt();
    }

    QProcess m_process;
};

} // namespace quillhaven::test
