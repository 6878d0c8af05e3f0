// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/linux/session/BusConnection.h"
#include "support/EventLoopChecker.h"
#include "support/RunTask.h"

#include <QDBusContext>
#include <QLocalServer>
#include <QLocalSocket>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <atomic>
#include <map>

namespace quillhaven::test {
namespace {

using namespace std::chrono_literals;

const QString objectPath = QStringLiteral("/test");
const QString interfaceName = QStringLiteral("org.example.Test");

/// An object that answers one of its two calls.
class Service : public QObject, protected QDBusContext
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.example.Test")

public:
    Service() { m_bus.registerObject(objectPath, this, QDBusConnection::ExportScriptableSlots); }
    ~Service() override { m_bus.unregisterObject(objectPath); }

    [[nodiscard]] QDBusMessage question(const QString &method) const
    {
        return QDBusMessage::createMethodCall(m_bus.baseService(), objectPath, interfaceName, method);
    }

public Q_SLOTS:
    Q_SCRIPTABLE int Answered() { return 42; }
    Q_SCRIPTABLE int Kept()
    {
        setDelayedReply(true);
        return 0;
    }

private:
    QDBusConnection m_bus = QDBusConnection::sessionBus();
};

class BusConnectionTest : public ::testing::TestWithParam<MessageBus>
{
protected:
    ~BusConnectionTest() override
    {
        for (const auto &[name, value] : m_before) {
            value.isNull() ? qunsetenv(name.constData()) : qputenv(name.constData(), value);
        }
    }
    void set(const char *name, const QByteArray &value)
    {
        m_before.try_emplace(name, qgetenv(name));
        qputenv(name, value);
    }
    /// Makes this the address of the tested bus.
    void setAddress(const QString &path)
    {
        const bool isSession = GetParam() == MessageBus::Session;
        set(isSession ? "DBUS_SESSION_BUS_ADDRESS" : "DBUS_SYSTEM_BUS_ADDRESS", "unix:path=" + path.toUtf8());
    }
    std::shared_ptr<BusConnection> open(std::chrono::milliseconds limit)
    {
        return runTask(BusConnection::open(pool, GetParam(), limit));
    }

    QTemporaryDir folder;
    QThreadPool pool;

private:
    std::map<QByteArray, QByteArray> m_before;
};

using SessionBusTest = BusConnectionTest;

INSTANTIATE_TEST_SUITE_P(Buses, BusConnectionTest, ::testing::Values(MessageBus::Session, MessageBus::System),
                         [](const auto &bus) { return bus.param == MessageBus::Session ? "Session" : "System"; });

TEST_P(BusConnectionTest, NoConnectionIfNothingListens)
{
    setAddress(folder.filePath(QStringLiteral("none")));
    EXPECT_EQ(open(1min), nullptr);
}

TEST_P(BusConnectionTest, NoConnectionIfTheListenerDoesNotAnswerAndTheLoopIsNotBlocked)
{
    QLocalServer silent;
    ASSERT_TRUE(silent.listen(folder.filePath(QStringLiteral("silent"))));
    setAddress(silent.fullServerName());
    EventLoopChecker loop;
    const RunningTask<std::shared_ptr<BusConnection>> opening(BusConnection::open(pool, GetParam(), 50ms));
    EXPECT_TRUE(opening.hasSuspended());
    QThreadPool watcher;
    std::atomic<bool> hasTicked = false;
    watcher.start([&] { hasTicked = loop.ticksAgain(); });
    EXPECT_EQ(opening.wait(), nullptr);
    EXPECT_TRUE(spinUntil([&watcher] { return watcher.waitForDone(0); }));
    EXPECT_TRUE(hasTicked);
}

TEST_P(BusConnectionTest, NoConnectionIfTheListenerUsesAnotherProtocol)
{
    QLocalServer other;
    ASSERT_TRUE(other.listen(folder.filePath(QStringLiteral("other"))));
    QObject::connect(&other, &QLocalServer::newConnection,
                     [&other] { other.nextPendingConnection()->write("220 mail.example.org ESMTP\r\n"); });
    setAddress(other.fullServerName());
    EXPECT_EQ(open(200ms), nullptr);
}

TEST_P(BusConnectionTest, APrivateUsableConnectionIfThereIsABus)
{
    setAddress(QString::fromUtf8(qgetenv("DBUS_SESSION_BUS_ADDRESS"))
                   .section(QLatin1Char('='), 1)
                   .section(QLatin1Char(','), 0, 0));
    const auto first = open(1min);
    const auto second = open(1min);
    ASSERT_TRUE(first && second);
    EXPECT_TRUE(first->isUsable());
    EXPECT_NE(first->connection().baseService(), second->connection().baseService());
}

INSTANTIATE_TEST_SUITE_P(Buses, SessionBusTest, ::testing::Values(MessageBus::Session),
                         [](const auto &) { return "Session"; });

TEST_P(SessionBusTest, AnUnansweredCallIsAnErrorAndMakesTheConnectionUnusable)
{
    const Service service;
    const auto bus = open(1s);
    ASSERT_TRUE(bus);
    const QDBusMessage reply = runTask(BusConnection::call(bus, service.question(QStringLiteral("Answered"))));
    EXPECT_EQ(reply.arguments(), QVariantList{42});
    EXPECT_TRUE(bus->isUsable());
    const QDBusMessage none = runTask(BusConnection::call(bus, service.question(QStringLiteral("Kept"))));
    EXPECT_EQ(none.type(), QDBusMessage::ErrorMessage);
    EXPECT_FALSE(bus->isUsable());
}

TEST_P(SessionBusTest, AnErrorReplyLeavesTheConnectionUsable)
{
    const Service service;
    const auto bus = open(1min);
    ASSERT_TRUE(bus);
    const QDBusMessage reply = runTask(BusConnection::call(bus, service.question(QStringLiteral("Unknown"))));
    EXPECT_EQ(reply.type(), QDBusMessage::ErrorMessage);
    EXPECT_TRUE(bus->isUsable());
}

TEST_P(SessionBusTest, NoBusIsStartedInASessionWithoutOne)
{
    set("DBUS_SESSION_BUS_ADDRESS", {});
    set("XDG_RUNTIME_DIR", folder.path().toUtf8());
    EXPECT_FALSE(hasSessionBus());
    EXPECT_EQ(open(1min), nullptr);
    set("XDG_RUNTIME_DIR", {});
    EXPECT_FALSE(hasSessionBus());
}

TEST_P(SessionBusTest, ABusInTheRuntimeFolderIsFoundWithoutAnAddress)
{
    const QString bus = QString::fromUtf8(qgetenv("DBUS_SESSION_BUS_ADDRESS"))
                            .section(QLatin1Char('='), 1)
                            .section(QLatin1Char(','), 0, 0);
    ASSERT_TRUE(QFile::link(bus, folder.filePath(QStringLiteral("bus"))));
    set("DBUS_SESSION_BUS_ADDRESS", {});
    set("XDG_RUNTIME_DIR", folder.path().toUtf8());
    EXPECT_TRUE(hasSessionBus());
    EXPECT_TRUE(open(1min));
}

} // namespace
} // namespace quillhaven::test

#include "BusConnectionTest.moc"
