// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/linux/session/SessionWatchFixture.h"

namespace quillhaven::test {
namespace {

const QString ofXServer = QStringLiteral("The screen saver is watched through the X server.");
const QString gnomeName = QStringLiteral("org.gnome.ScreenSaver");

class XScreenSaverTest : public SessionWatchFixture
{
protected:
    XScreenSaverTest()
    {
        QObject::connect(&centers.distributed, &NotificationCenter::posted, [this] { clock.advance(1min); });
    }

    static void xset(const QString &argument)
    {
        ASSERT_EQ(QProcess::execute(QStringLiteral("xset"), {QStringLiteral("s"), argument}), 0);
    }

    const QString started = notifications::screenSaverDidStart;
};

TEST_F(XScreenSaverTest, ItsStartIsPostedWhereThereIsNoServiceAndItsEndIsNot)
{
    start();
    expectState(Source::ScreenSaver, true, ofXServer);
    xset(QStringLiteral("activate"));
    expectPosts(distributed, {started});
    xset(QStringLiteral("reset"));
    xset(QStringLiteral("activate"));
    expectPosts(distributed, {started, started});
}

TEST_F(XScreenSaverTest, ItGivesWayToAServiceAndIsWatchedAgainWithoutIt)
{
    start();
    expectState(Source::ScreenSaver, true, ofXServer);
    auto gnome = std::make_unique<BusDouble>(MessageBus::Session, gnomeName, QStringLiteral("/org/gnome/ScreenSaver"));
    expectState(Source::ScreenSaver, true, QStringLiteral("The screen saver of GNOME is watched."));
    xset(QStringLiteral("activate"));
    xset(QStringLiteral("reset"));
    spinOnce();
    EXPECT_EQ(distributed, QStringList());
    gnome.reset();
    expectState(Source::ScreenSaver, true, ofXServer);
    xset(QStringLiteral("activate"));
    expectPosts(distributed, {started});
}

} // namespace
} // namespace quillhaven::test
