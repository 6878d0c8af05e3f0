// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/linux/desktop/NotificationService.h"
#include "async/WorkInFlight.h"
#include "platform/linux/desktop/NotificationServer.h"

namespace quillhaven::test {
namespace {

class NotificationServiceTest : public ::testing::Test
{
protected:
    ~NotificationServiceTest() override { settle(); }

    static void settle()
    {
        spinOnce(); // a job that has not started
        spinUntil([] { return WorkInFlight::count() == 0; });
        spinOnce();
    }
    void show(const QString &text, const QString &topic = QStringLiteral("lock"))
    {
        service->show({.title = QStringLiteral("Title"), .text = text, .topic = topic, .onActivated = [this, text] {
                           activated.append(text);
                       }});
    }

    std::unique_ptr<NotificationService> service = std::make_unique<NotificationService>();
    QStringList activated;
};

const QString one = QStringLiteral("one");
const QString two = QStringLiteral("two");
const QString clicked = QStringLiteral("default");

TEST_F(NotificationServiceTest, TheServerGetsTheMessageWithOneAction)
{
    const NotificationServer server;
    show(one);
    ASSERT_TRUE(server.receives(1));
    const QString call = server.messages().first();
    EXPECT_TRUE(call.startsWith(QStringLiteral("\"Quillhaven\" 0 \"com.tarnwick.quillhaven\" \"Title\" \"one\" "
                                               "[\"default\", \"Open Quillhaven\"]")))
        << qUtf8Printable(call);
    EXPECT_TRUE(call.contains(QStringLiteral("desktop-entry"))) << qUtf8Printable(call);
}

TEST_F(NotificationServiceTest, AMessageWithoutAnActionOffersNone)
{
    const NotificationServer server;
    service->show({.title = QStringLiteral("Title"), .text = one, .topic = one, .onActivated = {}});
    ASSERT_TRUE(server.receives(1));
    EXPECT_TRUE(server.messages().first().contains(QStringLiteral("\"one\" []")))
        << qUtf8Printable(server.messages().first());
}

TEST_F(NotificationServiceTest, AClickActivatesItsMessageAndNothingElseDoes)
{
    const NotificationServer server;
    show(one, one);
    ASSERT_TRUE(server.receives(1));
    show(two, two);
    ASSERT_TRUE(server.receives(2));
    settle();
    server.invoke(7, clicked); // that of another program
    server.invoke(1, QStringLiteral("settings"));
    server.invoke(2, clicked);
    EXPECT_TRUE(spinUntil([&] { return !activated.isEmpty(); }));
    EXPECT_EQ(activated, QStringList(two));
    server.invoke(1, clicked);
    EXPECT_TRUE(spinUntil([&] { return activated.size() > 1; }));
    EXPECT_EQ(activated, QStringList({two, one}));
}

TEST_F(NotificationServiceTest, ALaterMessageOfTheTopicTakesThePlaceOfTheEarlierOne)
{
    const NotificationServer server;
    show(one);
    ASSERT_TRUE(server.receives(1));
    settle();
    show(two);
    ASSERT_TRUE(server.receives(2));
    settle();
    EXPECT_TRUE(server.messages().at(1).startsWith(QStringLiteral("\"Quillhaven\" 1 ")))
        << qUtf8Printable(server.messages().at(1));
    server.invoke(1, clicked);
    EXPECT_TRUE(spinUntil([&] { return !activated.isEmpty(); }));
    EXPECT_EQ(activated, QStringList(two));
}

TEST_F(NotificationServiceTest, AMessageThatWasClosedIsNeitherReplacedNorActivated)
{
    const NotificationServer server;
    show(one);
    ASSERT_TRUE(server.receives(1));
    settle();
    server.close(1);
    server.invoke(1, clicked);
    show(two);
    ASSERT_TRUE(server.receives(2));
    EXPECT_TRUE(server.messages().at(1).startsWith(QStringLiteral("\"Quillhaven\" 0 ")))
        << qUtf8Printable(server.messages().at(1));
    EXPECT_EQ(activated, QStringList()) << "the signals came before the answer to the second call";
}

TEST_F(NotificationServiceTest, TextIsEscapedForAServerThatReadsMarkup)
{
    const QString text = QStringLiteral("\"<b>&\"");
    {
        const NotificationServer server(QStringLiteral("body body-markup"));
        show(text);
        ASSERT_TRUE(server.receives(1));
        EXPECT_TRUE(server.messages().first().contains(QStringLiteral("&lt;b&gt;&amp;")))
            << qUtf8Printable(server.messages().first());
        settle();
    }
    const NotificationServer server;
    show(text);
    ASSERT_TRUE(server.receives(1));
    EXPECT_TRUE(server.messages().first().contains(QStringLiteral("<b>&")))
        << qUtf8Printable(server.messages().first());
}

TEST_F(NotificationServiceTest, WithoutAServerNothingHappensAndALaterOneIsUsed)
{
    show(one);
    settle();
    EXPECT_EQ(activated, QStringList());
    const NotificationServer server;
    EXPECT_EQ(server.messages(), QStringList()) << "an old message is not shown late";
    show(two);
    EXPECT_TRUE(server.receives(1));
}

TEST_F(NotificationServiceTest, TheNumbersOfAServerThatHasEndedAreForgotten)
{
    {
        const NotificationServer server;
        show(one);
        ASSERT_TRUE(server.receives(1));
        settle();
    }
    show(one); // nobody answers
    settle();
    const NotificationServer server;
    server.invoke(1, clicked);
    show(two);
    ASSERT_TRUE(server.receives(1));
    EXPECT_TRUE(server.messages().first().startsWith(QStringLiteral("\"Quillhaven\" 0 ")))
        << qUtf8Printable(server.messages().first());
    EXPECT_EQ(activated, QStringList());
}

TEST_F(NotificationServiceTest, AClickAfterTheEndOfTheServiceDoesNothing)
{
    const NotificationServer server;
    show(one);
    ASSERT_TRUE(server.receives(1));
    service.reset();
    settle();
    server.invoke(1, clicked);
    spinOnce();
    EXPECT_EQ(activated, QStringList());
}

TEST_F(NotificationServiceTest, WithoutASessionBusNothingHappens)
{
    const QByteArray address = qgetenv("DBUS_SESSION_BUS_ADDRESS");
    const QByteArray runtime = qgetenv("XDG_RUNTIME_DIR");
    qunsetenv("DBUS_SESSION_BUS_ADDRESS");
    qunsetenv("XDG_RUNTIME_DIR");
    show(one);
    settle();
    qputenv("DBUS_SESSION_BUS_ADDRESS", address);
    qputenv("XDG_RUNTIME_DIR", runtime);
    const NotificationServer server;
    show(two);
    EXPECT_TRUE(server.receives(1)) << "the bus is looked for again";
}

} // namespace
} // namespace quillhaven::test
