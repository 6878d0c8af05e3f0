// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/linux/session/SessionWatchFixture.h"
#include "support/EventLoopChecker.h"

#include <QDBusPendingCall>

#include <atomic>

namespace quillhaven::test {
namespace {

const QString waits =
    QStringLiteral("Sleep is watched through logind, which waits for Quillhaven before the machine sleeps.");
const QString notRunning = QStringLiteral("Sleep is not noticed: logind is not running.");

class SleepWatchTest : public SessionWatchFixture
{
protected:
    void startLogind() { logind = BusDouble::logind(); }
    void startBoth()
    {
        startLogind();
        start();
        expectState(Source::Sleep, true, waits);
    }
    void prepareForSleep(bool isStarting) const
    {
        logind->emitSignal(QStringLiteral("org.freedesktop.login1.Manager"), QStringLiteral("PrepareForSleep"),
                           QStringLiteral("b"), isStarting ? QStringLiteral("[<true>]") : QStringLiteral("[<false>]"));
    }
    [[nodiscard]] QString locks() const
    {
        return logind->call(QStringLiteral("org.freedesktop.login1.Manager.ListInhibitors"));
    }
    [[nodiscard]] bool isLockHeld() const
    {
        return locks().contains(QStringLiteral("('sleep', 'Quillhaven', "
                                               "'Unlocked files are locked before the machine sleeps', 'delay',"));
    }
    bool waitForNoLock()
    {
        return spinUntil([this] { return locks() == QLatin1String("(@a(ssssuu) [],)\n"); });
    }
    bool waitForLock()
    {
        return spinUntil([this] { return isLockHeld(); });
    }

    std::unique_ptr<BusDouble> logind;
};

TEST_F(SleepWatchTest, SleepAndWakingArePostedOnTheWorkspacesCentreAndOnNoOther)
{
    startBoth();
    prepareForSleep(true);
    expectPosts(workspace, {notifications::willSleep});
    prepareForSleep(false);
    expectPosts(workspace, {notifications::willSleep, notifications::didWake});
    EXPECT_EQ(standard, QStringList());
    EXPECT_EQ(distributed, QStringList());
}

TEST_F(SleepWatchTest, TheLockIsHeldUntilTheObserversReturnAndTakenAgainAfterWaking)
{
    startBoth();
    EXPECT_TRUE(isLockHeld());
    std::optional<bool> isHeldWhileObserved;
    centers.workspace.observe(notifications::willSleep, watch.get(),
                              [&](const QVariantMap &) { isHeldWhileObserved = isLockHeld(); });
    for (int sleep = 0; sleep < 3; ++sleep) {
        isHeldWhileObserved.reset();
        prepareForSleep(true);
        EXPECT_TRUE(spinUntil([&] { return isHeldWhileObserved.has_value(); }));
        EXPECT_TRUE(*isHeldWhileObserved);
        EXPECT_TRUE(waitForNoLock());
        prepareForSleep(false);
        EXPECT_TRUE(waitForLock());
        EXPECT_EQ(locks().count(QStringLiteral("Quillhaven")), 1);
    }
}

TEST_F(SleepWatchTest, TheLockEndsWithTheWatch)
{
    startBoth();
    ASSERT_TRUE(isLockHeld());
    watch.reset();
    EXPECT_TRUE(waitForNoLock());
}

TEST_F(SleepWatchTest, ARestartedLogindGivesTheLockAgain)
{
    startBoth();
    logind.reset();
    expectState(Source::Sleep, false, notRunning);
    startLogind();
    expectState(Source::Sleep, true, waits);
    EXPECT_TRUE(waitForLock());
    prepareForSleep(true);
    expectPosts(workspace, {notifications::willSleep});
    EXPECT_TRUE(waitForNoLock());
}

TEST_F(SleepWatchTest, ALogindThatIsRestartedWhileTheMachineSleepsIsTakenAsWaking)
{
    startBoth();
    prepareForSleep(true);
    expectPosts(workspace, {notifications::willSleep});
    logind.reset();
    startLogind();
    expectPosts(workspace, {notifications::willSleep, notifications::didWake});
    EXPECT_TRUE(waitForLock());
}

TEST_F(SleepWatchTest, ALogindThatStartsLaterIsWatched)
{
    start();
    expectState(Source::Sleep, false, notRunning);
    startLogind();
    expectState(Source::Sleep, true, waits);
    EXPECT_TRUE(isLockHeld());
}

TEST_F(SleepWatchTest, ASlowLogindDoesNotBlockTheLoopAndGivesTheLockWhenItAnswers)
{
    startLogind();
    logind->send(SIGSTOP);
    EventLoopChecker loop;
    start();
    QThreadPool pool;
    std::atomic<bool> hasTicked = false;
    pool.start([&] { hasTicked = loop.ticksAgain() && loop.ticksAgain() && loop.ticksAgain(); });
    EXPECT_TRUE(spinUntil([&pool] { return pool.waitForDone(0); }));
    EXPECT_TRUE(hasTicked);
    EXPECT_EQ(watched.state(Source::Sleep), std::nullopt);
    logind->send(SIGCONT);
    expectState(Source::Sleep, true, waits);
    EXPECT_TRUE(isLockHeld());
}

TEST_F(SleepWatchTest, ALockThatComesWhenTheSleepHasBegunIsNotHeld)
{
    startBoth();
    prepareForSleep(true);
    EXPECT_TRUE(waitForNoLock());
    QDBusConnection client = QDBusConnection::connectToBus(QDBusConnection::SystemBus, QStringLiteral("client"));
    // On waking the lock is asked for only after logind has been asked to report the next sleep.
    centers.workspace.observe(notifications::didWake, watch.get(), [&](const QVariantMap &) {
        logind->send(SIGSTOP);
        QDBusMessage sleepAgain = QDBusMessage::createMethodCall(
            QStringLiteral("org.freedesktop.login1"), QStringLiteral("/org/freedesktop/login1"),
            QStringLiteral("org.freedesktop.DBus.Mock"), QStringLiteral("EmitSignal"));
        sleepAgain.setArguments({QStringLiteral("org.freedesktop.login1.Manager"), QStringLiteral("PrepareForSleep"),
                                 QStringLiteral("b"), QVariantList{true}});
        client.asyncCall(sleepAgain);
        const QDBusMessage toTheBus = QDBusMessage::createMethodCall(
            QStringLiteral("org.freedesktop.DBus"), QStringLiteral("/org/freedesktop/DBus"),
            QStringLiteral("org.freedesktop.DBus"), QStringLiteral("GetId"));
        client.call(toTheBus); // it has the first message by then
    });
    QProcess waking;
    waking.start(QStringLiteral("gdbus"),
                 {QStringLiteral("call"), QStringLiteral("--system"), QStringLiteral("-d"),
                  QStringLiteral("org.freedesktop.login1"), QStringLiteral("-o"),
                  QStringLiteral("/org/freedesktop/login1"), QStringLiteral("-m"),
                  QStringLiteral("org.freedesktop.DBus.Mock.EmitSignal"),
                  QStringLiteral("org.freedesktop.login1.Manager"), QStringLiteral("PrepareForSleep"),
                  QStringLiteral("b"), QStringLiteral("[<false>]")});
    EXPECT_TRUE(spinUntil([this] { return workspace.contains(notifications::didWake); }));
    spinOnce(); // the lock is asked for
    logind->send(SIGCONT);
    expectPosts(workspace, {notifications::willSleep, notifications::didWake, notifications::willSleep});
    EXPECT_TRUE(spinUntil([&waking] { return waking.state() == QProcess::NotRunning; }));
    EXPECT_TRUE(waitForNoLock());
    spinOnce();
    EXPECT_FALSE(isLockHeld());
    QDBusConnection::disconnectFromBus(QStringLiteral("client"));
}

TEST_F(SleepWatchTest, ALogindThatRefusesTheLockIsStillListenedToAndTheStateSaysSo)
{
    logind = BusDouble::logind({QStringLiteral("org.freedesktop.login1"), QStringLiteral("/org/freedesktop/login1"),
                                QStringLiteral("org.freedesktop.login1.Manager")});
    start();
    expectState(Source::Sleep, true,
                QStringLiteral("Sleep is watched through logind, which refuses to wait for Quillhaven before the "
                               "machine sleeps."));
    prepareForSleep(true);
    expectPosts(workspace, {notifications::willSleep});
}

TEST_F(SleepWatchTest, OnlyLogindMayReportSleep)
{
    startBoth();
    QDBusConnection stranger = QDBusConnection::connectToBus(QDBusConnection::SystemBus, QStringLiteral("stranger"));
    QDBusMessage signal =
        QDBusMessage::createSignal(QStringLiteral("/org/freedesktop/login1"),
                                   QStringLiteral("org.freedesktop.login1.Manager"), QStringLiteral("PrepareForSleep"));
    signal.setArguments({true});
    ASSERT_TRUE(stranger.send(signal));
    prepareForSleep(false); // comes after it
    expectPosts(workspace, {notifications::didWake});
    QDBusConnection::disconnectFromBus(QStringLiteral("stranger"));
}

TEST_F(SleepWatchTest, WithoutASystemBusTheStateSaysSo)
{
    const QByteArray former = qgetenv("DBUS_SYSTEM_BUS_ADDRESS");
    qputenv("DBUS_SYSTEM_BUS_ADDRESS", "unix:path=/nonexistent");
    start();
    expectState(Source::Sleep, false, QStringLiteral("Sleep is not noticed: there is no system bus."));
    expectState(Source::ScreenLock, false,
                QStringLiteral("Locking of the screen is not noticed: there is no system bus."));
    qputenv("DBUS_SYSTEM_BUS_ADDRESS", former);
}

} // namespace
} // namespace quillhaven::test
