// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/linux/session/SessionWatchFixture.h"

namespace quillhaven::test {
namespace {

const QString gnomeName = QStringLiteral("org.gnome.ScreenSaver");
const QString gnomePath = QStringLiteral("/org/gnome/ScreenSaver");
const QString none = QStringLiteral("A screen saver is not noticed: this desktop has no service that reports it.");

const QString gnomeIsWatched = QStringLiteral("The screen saver of GNOME is watched.");

void setActive(const BusDouble &saver, const QString &name, bool isActive)
{
    saver.emitSignal(name, QStringLiteral("ActiveChanged"), QStringLiteral("b"),
                     isActive ? QStringLiteral("[<true>]") : QStringLiteral("[<false>]"));
}

std::unique_ptr<BusDouble> startSaver(const QString &name, const QString &path)
{
    return std::make_unique<BusDouble>(MessageBus::Session, name, path);
}

class ScreenSaverWatchTest : public SessionWatchFixture
{
protected:
    /// Each report counts as an event by itself.
    void separateEvents()
    {
        QObject::connect(&centers.distributed, &NotificationCenter::posted, [this] { clock.advance(1min); });
    }

    const QString started = notifications::screenSaverDidStart;
};

struct Saver
{
    const char *title;
    const char *name;
    const char *path;
};

class EachSaverTest : public ScreenSaverWatchTest, public ::testing::WithParamInterface<Saver>
{
};

INSTANTIATE_TEST_SUITE_P(
    Savers, EachSaverTest,
    ::testing::Values(Saver{"The desktop's screen saver", "org.freedesktop.ScreenSaver",
                            "/org/freedesktop/ScreenSaver"},
                      Saver{"The desktop's screen saver", "org.freedesktop.ScreenSaver", "/ScreenSaver"},
                      Saver{"The screen saver of GNOME", "org.gnome.ScreenSaver", "/org/gnome/ScreenSaver"},
                      Saver{"The screen saver of Cinnamon", "org.cinnamon.ScreenSaver", "/org/cinnamon/ScreenSaver"},
                      Saver{"The screen saver of MATE", "org.mate.ScreenSaver", "/org/mate/ScreenSaver"},
                      Saver{"The screen saver of Xfce", "org.xfce.ScreenSaver", "/org/xfce/ScreenSaver"}));

TEST_P(EachSaverTest, ItsStartIsPostedOnTheDistributedCentreAndItsEndIsNot)
{
    separateEvents();
    const QString name = QString::fromLatin1(GetParam().name);
    const auto saver = startSaver(name, QString::fromLatin1(GetParam().path));
    start();
    expectState(Source::ScreenSaver, true, QString::fromLatin1(GetParam().title) + QStringLiteral(" is watched."));
    setActive(*saver, name, false);
    setActive(*saver, name, true);
    setActive(*saver, name, false);
    setActive(*saver, name, true);
    expectPosts(distributed, {started, started});
    EXPECT_EQ(standard, QStringList());
    EXPECT_EQ(workspace, QStringList());
}

TEST_F(ScreenSaverWatchTest, OneStartReportedBySeveralSaversWithinTwoSecondsIsPostedOnce)
{
    const QString mateName = QStringLiteral("org.mate.ScreenSaver");
    const auto gnome = startSaver(gnomeName, gnomePath);
    const auto mate = startSaver(mateName, QStringLiteral("/org/mate/ScreenSaver"));
    start();
    expectState(Source::ScreenSaver, true,
                QStringLiteral("The screen saver of GNOME and the screen saver of MATE are watched."));
    setActive(*gnome, gnomeName, true);
    expectPosts(distributed, {started});
    clock.advance(1'999ms);
    setActive(*mate, mateName, true);
    // The bus delivers in order: this one's coming was noticed after the report before it.
    const auto last = startSaver(QStringLiteral("org.xfce.ScreenSaver"), QStringLiteral("/org/xfce/ScreenSaver"));
    expectState(Source::ScreenSaver, true,
                QStringLiteral(
                    "The screen saver of GNOME, the screen saver of MATE and the screen saver of Xfce are watched."));
    EXPECT_EQ(distributed, QStringList{started});
    clock.advance(1ms);
    setActive(*mate, mateName, true);
    expectPosts(distributed, {started, started});
}

TEST_F(ScreenSaverWatchTest, SaversThatComeAndGoAreWatchedAndNamed)
{
    start();
    expectState(Source::ScreenSaver, false, none);
    auto saver = startSaver(gnomeName, gnomePath);
    expectState(Source::ScreenSaver, true, gnomeIsWatched);
    setActive(*saver, gnomeName, true);
    expectPosts(distributed, {started});
    saver.reset();
    expectState(Source::ScreenSaver, false, none);
    saver = startSaver(gnomeName, gnomePath);
    expectState(Source::ScreenSaver, true, gnomeIsWatched);
    clock.advance(1min);
    setActive(*saver, gnomeName, true);
    expectPosts(distributed, {started, started});
}

TEST_F(ScreenSaverWatchTest, OnlyTheOwnerOfTheNameMayReportAStart)
{
    separateEvents();
    const auto saver = startSaver(gnomeName, gnomePath);
    start();
    expectState(Source::ScreenSaver, true, gnomeIsWatched);
    QDBusConnection stranger = QDBusConnection::connectToBus(QDBusConnection::SessionBus, QStringLiteral("stranger"));
    QDBusMessage signal = QDBusMessage::createSignal(gnomePath, gnomeName, QStringLiteral("ActiveChanged"));
    signal.setArguments({true});
    ASSERT_TRUE(stranger.send(signal));
    // Nor may it say that the name changed hands.
    QDBusMessage change =
        QDBusMessage::createSignal(QStringLiteral("/org/freedesktop/DBus"), QStringLiteral("org.freedesktop.DBus"),
                                   QStringLiteral("NameOwnerChanged"));
    change.setArguments({gnomeName, QString(), stranger.baseService()});
    ASSERT_TRUE(stranger.send(change));
    // Noticed after it.
    const auto later = startSaver(QStringLiteral("org.xfce.ScreenSaver"), QStringLiteral("/org/xfce/ScreenSaver"));
    expectState(Source::ScreenSaver, true,
                QStringLiteral("The screen saver of GNOME and the screen saver of Xfce are watched."));
    setActive(*saver, gnomeName, true);
    expectPosts(distributed, {started});
    spinOnce();
    EXPECT_EQ(distributed.size(), 1);
    QDBusConnection::disconnectFromBus(QStringLiteral("stranger"));
}

TEST_F(ScreenSaverWatchTest, WithoutASessionBusTheStateSaysThatThereIsNone)
{
    const QByteArray former = qgetenv("DBUS_SESSION_BUS_ADDRESS");
    qputenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent");
    start();
    expectState(Source::ScreenSaver, false, none);
    qputenv("DBUS_SESSION_BUS_ADDRESS", former);
}

} // namespace
} // namespace quillhaven::test
