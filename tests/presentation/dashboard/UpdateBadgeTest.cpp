// SPDX-License-Identifier: GPL-3.0-or-later

#include "DashboardHarness.h"
#include "OfferedUpdate.h"

#include <QSignalSpy>

using namespace quillhaven;
using namespace quillhaven::test;

namespace {

class UpdateBadge : public DashboardTest
{
protected:
    /// Finds this version with this address for its download.
    void offer(const QString &version, const QString &downloadURL)
    {
        offerUpdate(services, version, downloadURL);
        runTask(started().updates.performUpdateCheck(false));
    }
    UpdateBadgeModel &badge() { return *started().dashboard.updateBadge(); }
    QString error() { return started().dashboard.showingError() ? started().dashboard.errorMessage() : QString(); }
};

const QString page = QStringLiteral("https://downloads.example/quillhaven?x=1");

} // namespace

TEST_F(UpdateBadge, ItIsThereWhileANewerVersionIsAvailable)
{
    EXPECT_FALSE(badge().hasUpdateAvailable());
    const QSignalSpy changes(&badge(), &UpdateBadgeModel::changed);

    offer(QStringLiteral("9.0"), page);
    EXPECT_TRUE(badge().hasUpdateAvailable());
    EXPECT_EQ(changes.size(), 1);

    offer(QStringLiteral("1.2.0"), page);
    EXPECT_FALSE(badge().hasUpdateAvailable());
    EXPECT_EQ(changes.size(), 2);
}

TEST_F(UpdateBadge, APressOpensTheDownload)
{
    offer(QStringLiteral("9.0"), page);
    badge().download();

    EXPECT_EQ(services.opener.opened, QList<QUrl>{QUrl(page)});
    EXPECT_EQ(error(), QString());
}

TEST_F(UpdateBadge, AnHttpAddressIsOpenedToo)
{
    offer(QStringLiteral("9.0"), QStringLiteral("HTTP://downloads.example/"));
    badge().download();

    EXPECT_EQ(services.opener.opened.size(), 1);
}

TEST_F(UpdateBadge, OnlyAddressesOnTheWebAreOpened)
{
    for (const char *address :
         {"", "file:///etc/passwd", "/usr/bin/true", "quillhaven://lock?path=/x", "javascript:alert(1)", "https:///x",
          "downloads.example/x", "x-apple.systempreferences:x", " https://downloads.example/", "https://[1"}) {
        offer(QStringLiteral("9.0"), QString::fromUtf8(address));
        badge().download();

        EXPECT_EQ(error(),
                  QStringLiteral("The download address is not an address on the web: ") + QString::fromUtf8(address));
    }
    EXPECT_TRUE(services.opener.opened.isEmpty());
}

TEST_F(UpdateBadge, WithoutABrowserTheUserLearnsTheAddress)
{
    services.opener.canOpen = false;
    offer(QStringLiteral("9.0"), page);
    badge().download();

    EXPECT_EQ(error(), QStringLiteral("No browser could be started. The download is at ") + page);
}

TEST_F(UpdateBadge, APressThatComesTooLateOpensNothing)
{
    offer(QStringLiteral("1.2.0"), page);
    badge().download();

    EXPECT_TRUE(services.opener.opened.isEmpty());
    EXPECT_EQ(error(), QString());
}
