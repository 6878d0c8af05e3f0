// SPDX-License-Identifier: GPL-3.0-or-later

#include "DashboardWindowFixture.h"
#include "OfferedUpdate.h"

using namespace quillhaven;
using namespace quillhaven::test;

namespace {

const QString page = QStringLiteral("https://downloads.example/quillhaven");

class UpdateBadgeWindow : public DashboardWindow
{
protected:
    void offer(const QString &version)
    {
        offerUpdate(services, version, page);
        runTask(started().updates.performUpdateCheck(true));
        render();
    }
    /// The visible badge, or null.
    QQuickItem *badge()
    {
        for (QQuickItem *item : visibleItems(shown().window()->contentItem())) {
            if (item->property("helpText") == QStringLiteral("Update available - Click to download")) {
                return item;
            }
        }
        return nullptr;
    }
    bool tabToBadge()
    {
        for (int presses = 0; presses < 30 && shown().window()->activeFocusItem() != badge(); ++presses) {
            press(Qt::Key_Tab);
        }
        return shown().window()->activeFocusItem() == badge();
    }
    void resize(const QSize &size)
    {
        shown().window()->resize(size);
        ASSERT_TRUE(spinUntil([&] { return shown().window()->contentItem()->size().toSize() == size; }));
        render();
    }
};

} // namespace

TEST_F(UpdateBadgeWindow, TheBadgeIsThereOnlyWhileAnUpdateIsAvailable)
{
    shown();
    EXPECT_EQ(badge(), nullptr);

    offer(QStringLiteral("9.0"));
    ASSERT_NE(badge(), nullptr);
    EXPECT_EQ(badge()->property("text"), QStringLiteral("Update available"));

    services.clock.advance(std::chrono::hours(24));
    offer(QStringLiteral("1.0"));
    EXPECT_EQ(badge(), nullptr);
}

TEST_F(UpdateBadgeWindow, AClickOpensTheDownload)
{
    shown();
    offer(QStringLiteral("9.0"));
    ASSERT_NE(badge(), nullptr);

    const QPointF center = badge()->mapToScene(QPointF(badge()->width() / 2, badge()->height() / 2));
    QTest::mouseClick(shown().window(), Qt::LeftButton, Qt::NoModifier, center.toPoint());

    EXPECT_EQ(services.opener.opened, QList<QUrl>{QUrl(page)});
}

TEST_F(UpdateBadgeWindow, TheKeyboardReachesAndPressesIt)
{
    shown();
    offer(QStringLiteral("9.0"));
    ASSERT_TRUE(tabToBadge());

    press(Qt::Key_Return);
    press(Qt::Key_Space);

    EXPECT_EQ(services.opener.opened, QList<QUrl>({QUrl(page), QUrl(page)}));
}

TEST_F(UpdateBadgeWindow, ItFitsIntoTheToolbarAtEveryWidth)
{
    shown();
    offer(QStringLiteral("9.0"));
    for (const QSize &size : {QSize(1200, 900), QSize(860, 900), QSize(859, 900), QSize(760, 560)}) {
        resize(size);
        ASSERT_NE(badge(), nullptr);

        EXPECT_GE(badge()->width(), badge()->implicitWidth()) << size.width();
        const QRectF place = badge()->mapRectToScene(QRectF(0, 0, badge()->width(), badge()->height()));
        for (QQuickItem *item : visibleItems(shown().window()->contentItem())) {
            if (item != badge() && item->inherits("QQuickButton")) {
                const QRectF other = item->mapRectToScene(QRectF(0, 0, item->width(), item->height()));
                EXPECT_LE(other.right(), size.width()) << qPrintable(item->property("text").toString());
                EXPECT_FALSE(place.intersects(other)) << size.width() << qPrintable(item->property("text").toString());
            }
        }
    }
}
