// SPDX-License-Identifier: GPL-3.0-or-later

// What a screen reader is given to read out.

#include "DashboardHarness.h"

using namespace quillhaven;
using namespace quillhaven::test;

namespace {

class Announcements : public DashboardTest
{
protected:
    Announcements()
    {
        QObject::connect(&announcer(), &Announcer::textChanged, &announcer(), [this] {
            if (!announcer().text().isEmpty()) {
                heard.append(announcer().text());
            }
        });
    }

    Announcer &announcer() { return *started().dashboard.announcer(); }
    void protect(const QString &name) { started().protect(services.home.write(QStringLiteral("papers/") + name, "x")); }
    QStringList listen()
    {
        services.clock.advance(std::chrono::seconds(1));
        return std::exchange(heard, {});
    }

    QStringList heard;
};

} // namespace

TEST_F(Announcements, AnItemIsAnnouncedWhenItIsProtectedUnlockedAndRemoved)
{
    protect(QStringLiteral("will.pdf"));
    EXPECT_EQ(listen(), QStringList(QStringLiteral("will.pdf, locked")));
    started().dashboard.itemActions()->onToggleLock(started().item().id);
    DashboardHarness::settle();
    started().typePassword(strongPassword);
    EXPECT_EQ(listen(), QStringList(QStringLiteral("will.pdf, unlocked")));
    started().manager.removeFromProtectedItems(started().item().id);
    EXPECT_EQ(listen(), QStringList(QStringLiteral("1 item removed from the list")));
}

TEST_F(Announcements, ManyItemsAtOnceAreCounted)
{
    for (const QString &name : {QStringLiteral("a"), QStringLiteral("b"), QStringLiteral("c"), QStringLiteral("d")}) {
        protect(name);
    }
    EXPECT_EQ(listen(), QStringList(QStringLiteral("4 items locked")));
}

TEST_F(Announcements, ACopiedPathIsAnnouncedEachTime)
{
    protect(QStringLiteral("will.pdf"));
    listen();
    for (int time = 0; time < 2; ++time) {
        started().dashboard.rowActions()->copyPathToClipboard(started().item().id);
        EXPECT_EQ(listen(), QStringList(QStringLiteral("Path copied to clipboard")));
        services.clock.advance(std::chrono::seconds(5));
        EXPECT_EQ(listen(), QStringList());
    }
    EXPECT_EQ(announcer().text(), QString());
}

TEST_F(Announcements, ResultsAreAnnouncedOnceWhenTheUserStopsTyping)
{
    protect(QStringLiteral("will.pdf"));
    listen();
    started().dashboard.filters()->setSearchText(QStringLiteral("w"));
    started().dashboard.filters()->setSearchText(QStringLiteral("wi"));
    services.clock.advance(std::chrono::milliseconds(500));
    EXPECT_EQ(std::exchange(heard, {}), QStringList());
    EXPECT_EQ(listen(), QStringList(QStringLiteral("1 result")));
    started().dashboard.filters()->setSearchText(QStringLiteral("wix"));
    EXPECT_EQ(listen(), QStringList(QStringLiteral("No results")));
    started().dashboard.filters()->clearAllFilters();
    EXPECT_EQ(listen(), QStringList());
}

TEST_F(Announcements, ANoticeIsAnnouncedWhenItAppearsAndWhenItChanges)
{
    NoticesModel &notices = *started().dashboard.notices();
    notices.show({.id = QStringLiteral("a"), .text = QStringLiteral("Waiting for the keyring to answer.")});
    EXPECT_EQ(listen(), QStringList(QStringLiteral("Waiting for the keyring to answer.")));
    notices.show({.id = QStringLiteral("a"), .text = QStringLiteral("It has answered.")});
    EXPECT_EQ(listen(), QStringList(QStringLiteral("It has answered.")));
}
