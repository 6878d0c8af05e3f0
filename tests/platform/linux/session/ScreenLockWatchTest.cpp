// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/linux/session/SessionWatchFixture.h"

#include <unistd.h>

namespace quillhaven::test {
namespace {

const QString isWatched = QStringLiteral("Locking of the screen is watched through logind.");
const QString hasNoSession = QStringLiteral("Locking of the screen is not noticed: logind has no session of yours.");
const QString mock = QStringLiteral("org.freedesktop.DBus.Mock.");
const QString sessionInterface = QStringLiteral("org.freedesktop.login1.Session");

QString pathOf(const QString &session)
{
    return QStringLiteral("/org/freedesktop/login1/session/") + session;
}

class ScreenLockWatchTest : public SessionWatchFixture
{
protected:
    ~ScreenLockWatchTest() override { qunsetenv("XDG_SESSION_ID"); }

    void addSession(const QString &id, uint user = ::getuid()) const
    {
        logind->call(mock + QStringLiteral("AddSession"), {id, QStringLiteral("seat0"), QString::number(user),
                                                           QStringLiteral("name"), QStringLiteral("true")});
    }
    void addManagerMethod(const QString &name, const QString &argument, const QString &code) const
    {
        logind->call(mock + QStringLiteral("AddMethod"),
                     {QStringLiteral("org.freedesktop.login1.Manager"), name, argument, QStringLiteral("o"), code});
    }
    /// Makes this the session of the calling process.
    void setProcessSession(const QString &id) const
    {
        addManagerMethod(QStringLiteral("GetSessionByPID"), QStringLiteral("u"),
                         QStringLiteral("ret = \"%1\"").arg(pathOf(id)));
    }
    /// Makes this the graphical session of the user.
    void setDisplaySession(const QString &id) const
    {
        logind->call(mock + QStringLiteral("AddObject"),
                     {QStringLiteral("/org/freedesktop/login1/user/self"),
                      QStringLiteral("org.freedesktop.login1.User"),
                      QStringLiteral("{'Display': <('%1', objectpath '%2')>}").arg(id, pathOf(id)),
                      QStringLiteral("@a(ssss) []")});
    }
    void startInSession()
    {
        addSession(QStringLiteral("c1"));
        setProcessSession(QStringLiteral("c1"));
        start();
        expectState(Source::ScreenLock, true, isWatched);
    }
    void act(const QString &method, const QStringList &arguments = {}, const QString &id = QStringLiteral("c1")) const
    {
        logind->call(sessionInterface + QLatin1Char('.') + method, arguments, pathOf(id));
    }
    void setLockedHint(bool isLocked) const
    {
        act(QStringLiteral("SetLockedHint"), {isLocked ? QStringLiteral("true") : QStringLiteral("false")});
    }

    std::unique_ptr<BusDouble> logind = BusDouble::logind();
};

TEST_F(ScreenLockWatchTest, TheLockSignalAndTheUnlockSignalArePostedOnTheDistributedCentre)
{
    startInSession();
    act(QStringLiteral("Lock"));
    expectPosts(distributed, {notifications::screenIsLocked});
    act(QStringLiteral("Unlock"));
    expectPosts(distributed, {notifications::screenIsLocked, notifications::screenIsUnlocked});
    EXPECT_EQ(standard, QStringList());
    EXPECT_EQ(workspace, QStringList());
}

TEST_F(ScreenLockWatchTest, TheLockedHintIsPostedAsLockAndUnlock)
{
    startInSession();
    setLockedHint(true);
    expectPosts(distributed, {notifications::screenIsLocked});
    setLockedHint(false);
    expectPosts(distributed, {notifications::screenIsLocked, notifications::screenIsUnlocked});
}

TEST_F(ScreenLockWatchTest, OneLockReportedInSeveralWaysWithinTwoSecondsIsPostedOnce)
{
    startInSession();
    act(QStringLiteral("Lock"));
    expectPosts(distributed, {notifications::screenIsLocked});
    clock.advance(1'999ms);
    setLockedHint(true);
    act(QStringLiteral("Unlock")); // comes after it
    expectPosts(distributed, {notifications::screenIsLocked, notifications::screenIsUnlocked});
    clock.advance(1ms);
    act(QStringLiteral("Lock"));
    expectPosts(distributed,
                {notifications::screenIsLocked, notifications::screenIsUnlocked, notifications::screenIsLocked});
}

TEST_F(ScreenLockWatchTest, OtherPropertiesOfTheSessionAreNoLock)
{
    startInSession();
    logind->call(mock + QStringLiteral("UpdateProperties"), {sessionInterface, QStringLiteral("{'Active': <false>}")},
                 pathOf(QStringLiteral("c1")));
    act(QStringLiteral("Unlock"));
    expectPosts(distributed, {notifications::screenIsUnlocked});
}

TEST_F(ScreenLockWatchTest, TheSessionIsTheOneThatTheEnvironmentNames)
{
    addSession(QStringLiteral("c1"));
    addSession(QStringLiteral("c2"));
    setProcessSession(QStringLiteral("c1"));
    qputenv("XDG_SESSION_ID", "c2");
    start();
    expectState(Source::ScreenLock, true, isWatched);
    act(QStringLiteral("Lock"), {}, QStringLiteral("c1"));
    act(QStringLiteral("Unlock"), {}, QStringLiteral("c2"));
    expectPosts(distributed, {notifications::screenIsUnlocked});
}

TEST_F(ScreenLockWatchTest, TheSessionIsTheProcessesOneIfTheEnvironmentNamesOneThatIsOver)
{
    qputenv("XDG_SESSION_ID", "c9");
    startInSession();
    act(QStringLiteral("Lock"));
    expectPosts(distributed, {notifications::screenIsLocked});
}

TEST_F(ScreenLockWatchTest, TheSessionIsTheUsersGraphicalOneIfTheProcessHasNone)
{
    addSession(QStringLiteral("c3"));
    setDisplaySession(QStringLiteral("c3"));
    start();
    expectState(Source::ScreenLock, true, isWatched);
    act(QStringLiteral("Lock"), {}, QStringLiteral("c3"));
    expectPosts(distributed, {notifications::screenIsLocked});
}

TEST_F(ScreenLockWatchTest, ASessionOfAnotherUserIsNeverWatched)
{
    addSession(QStringLiteral("c4"), ::getuid() + 1);
    addSession(QStringLiteral("c1"));
    qputenv("XDG_SESSION_ID", "c4");
    setProcessSession(QStringLiteral("c4"));
    setDisplaySession(QStringLiteral("c1"));
    start();
    expectState(Source::ScreenLock, true, isWatched);
    act(QStringLiteral("Lock"), {}, QStringLiteral("c4"));
    act(QStringLiteral("Unlock"));
    expectPosts(distributed, {notifications::screenIsUnlocked});
}

TEST_F(ScreenLockWatchTest, WithoutAnOwnSessionTheStateSaysSoUntilOneBegins)
{
    addSession(QStringLiteral("c4"), ::getuid() + 1);
    setProcessSession(QStringLiteral("c4"));
    start();
    expectState(Source::ScreenLock, false, hasNoSession);
    addSession(QStringLiteral("c5"));
    setDisplaySession(QStringLiteral("c5"));
    logind->emitSignal(QStringLiteral("org.freedesktop.login1.Manager"), QStringLiteral("SessionNew"),
                       QStringLiteral("so"),
                       QStringLiteral("[<'c5'>, <objectpath '%1'>]").arg(pathOf(QStringLiteral("c5"))));
    expectState(Source::ScreenLock, true, isWatched);
    act(QStringLiteral("Lock"), {}, QStringLiteral("c5"));
    expectPosts(distributed, {notifications::screenIsLocked});
}

TEST_F(ScreenLockWatchTest, ALogindThatAnswersTooLateIsAskedAgain)
{
    bool wasSaidToHaveNone = false;
    QObject::connect(&watched, &WatchedSources::stateChanged, [&] {
        const auto state = watched.state(Source::ScreenLock);
        wasSaidToHaveNone = wasSaidToHaveNone || (state && state->sentence == hasNoSession);
    });
    addSession(QStringLiteral("c1"));
    // The first two calls end as one does whose limit is over.
    addManagerMethod(QStringLiteral("GetSessionByPID"), QStringLiteral("u"),
                     QStringLiteral("self.calls = getattr(self, 'calls', 0) + 1\n"
                                    "if self.calls < 3:\n"
                                    "    raise dbus.exceptions.DBusException('late', "
                                    "name='org.freedesktop.DBus.Error.NoReply')\n"
                                    "ret = '%1'")
                         .arg(pathOf(QStringLiteral("c1"))));
    start();
    expectState(Source::ScreenLock, true, isWatched);
    EXPECT_FALSE(wasSaidToHaveNone);
    act(QStringLiteral("Lock"));
    expectPosts(distributed, {notifications::screenIsLocked});
}

TEST_F(ScreenLockWatchTest, ARestartedLogindIsWatchedAgain)
{
    startInSession();
    logind.reset();
    expectState(Source::ScreenLock, false,
                QStringLiteral("Locking of the screen is not noticed: logind is not running."));
    logind = BusDouble::logind();
    addSession(QStringLiteral("c1"));
    setDisplaySession(QStringLiteral("c1"));
    logind->emitSignal(QStringLiteral("org.freedesktop.login1.Manager"), QStringLiteral("SessionNew"),
                       QStringLiteral("so"),
                       QStringLiteral("[<'c1'>, <objectpath '%1'>]").arg(pathOf(QStringLiteral("c1"))));
    expectState(Source::ScreenLock, true, isWatched);
    act(QStringLiteral("Lock"));
    expectPosts(distributed, {notifications::screenIsLocked});
}

TEST_F(ScreenLockWatchTest, OnlyLogindMayReportALock)
{
    startInSession();
    QDBusConnection stranger = QDBusConnection::connectToBus(QDBusConnection::SystemBus, QStringLiteral("stranger"));
    ASSERT_TRUE(stranger.send(
        QDBusMessage::createSignal(pathOf(QStringLiteral("c1")), sessionInterface, QStringLiteral("Lock"))));
    act(QStringLiteral("Unlock")); // comes after it
    expectPosts(distributed, {notifications::screenIsUnlocked});
    QDBusConnection::disconnectFromBus(QStringLiteral("stranger"));
}

} // namespace
} // namespace quillhaven::test
