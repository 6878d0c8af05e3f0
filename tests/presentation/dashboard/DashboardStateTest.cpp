// SPDX-License-Identifier: GPL-3.0-or-later

#include "DashboardHarness.h"

#include <QCoreApplication>
#include <QSignalSpy>

using namespace quillhaven;
using namespace quillhaven::testing;

namespace {

/// Two locked and two unlocked, two by finger and two by password, one of each a folder.
QList<ProtectedItem> fourItems()
{
    QList<ProtectedItem> items{namedItem(QStringLiteral("delta")), namedItem(QStringLiteral("Bravo"), true),
                               namedItem(QStringLiteral("charlie"), true), namedItem(QStringLiteral("Alpha"))};
    items[0].useTouchID = true;
    items[1].useTouchID = true;
    items[1].isFolder = true;
    items[3].isFolder = true;
    return items;
}

class DashboardState : public DashboardTest
{
protected:
    DashboardViewModel &dashboardWithFour()
    {
        storeCatalogue(services, fourItems());
        return started().dashboard;
    }
};

} // namespace

TEST_F(DashboardState, EmptyCatalogueHasNoFiltersAndNoResultsBadge)
{
    const DashboardViewModel &dashboard = started().dashboard;
    EXPECT_FALSE(dashboard.showFilters());
    EXPECT_FALSE(dashboard.hasNoResults());
    EXPECT_EQ(dashboard.protectedItemsCount(), 0);
    EXPECT_FALSE(dashboard.hasActiveFilters());
}

TEST_F(DashboardState, ListStartsInTheOrderOfTheNames)
{
    dashboardWithFour();
    EXPECT_EQ(started().shownNames(), QStringLiteral("Alpha Bravo charlie delta"));
}

TEST_F(DashboardState, ListFollowsTheChosenOrderAndFilters)
{
    DashboardViewModel &dashboard = dashboardWithFour();
    dashboard.setSortOption(QStringLiteral("Status"));
    EXPECT_EQ(started().shownNames(), QStringLiteral("delta Alpha Bravo charlie"));
    dashboard.setTypeFilter(QStringLiteral("Folders"));
    EXPECT_EQ(started().shownNames(), QStringLiteral("Alpha Bravo"));
    dashboard.setAuthFilter(QStringLiteral("Touch ID"));
    EXPECT_EQ(started().shownNames(), QStringLiteral("Bravo"));
    dashboard.setStatusFilter(QStringLiteral("Locked"));
    EXPECT_EQ(started().shownNames(), QString());
    EXPECT_TRUE(dashboard.hasNoResults());
    EXPECT_EQ(namesOf(dashboard.filteredAndSortedItems()), QStringList());
}

TEST_F(DashboardState, LabelOfNoCaseChangesNothing)
{
    DashboardViewModel &dashboard = dashboardWithFour();
    QSignalSpy changes(&dashboard, &DashboardViewModel::stateChanged);
    dashboard.setStatusFilter(QStringLiteral("Lost"));
    EXPECT_EQ(dashboard.statusFilter(), QStringLiteral("All"));
    EXPECT_EQ(changes.size(), 0);
}

TEST_F(DashboardState, CardsCountEveryItemByItsMethodAndNotByItsState)
{
    const DashboardViewModel &dashboard = dashboardWithFour();
    EXPECT_EQ(dashboard.protectedItemsCount(), 4);
    EXPECT_EQ(dashboard.currentlyUnlockedCount(), 2);
    EXPECT_EQ(dashboard.touchIDProtectedCount(), 2);
    EXPECT_EQ(dashboard.passwordProtectedCount(), 2);
    EXPECT_EQ(dashboard.statisticsNote(),
              QStringLiteral("Includes both locked and unlocked items currently managed by Quillhaven."));
}

TEST_F(DashboardState, CardsCountWhatIsShownUnderAFilter)
{
    DashboardViewModel &dashboard = dashboardWithFour();
    dashboard.setSearchText(QStringLiteral("A"));
    dashboard.setStatusFilter(QStringLiteral("Unlocked"));
    EXPECT_EQ(dashboard.protectedItemsCount(), 2);
    EXPECT_EQ(dashboard.currentlyUnlockedCount(), 2);
    EXPECT_EQ(dashboard.touchIDProtectedCount(), 1);
    EXPECT_EQ(dashboard.passwordProtectedCount(), 1);
    EXPECT_EQ(dashboard.statisticsNote(), QStringLiteral("Showing filtered results from 4 total items."));
}

TEST_F(DashboardState, ClearingShowsEverythingAgainInTheChosenOrder)
{
    DashboardViewModel &dashboard = dashboardWithFour();
    dashboard.setSortOption(QStringLiteral("Status"));
    dashboard.setSearchText(QStringLiteral("zzz"));
    EXPECT_EQ(dashboard.getAdaptiveCTAText(), QStringLiteral("Clear Search"));
    dashboard.clearAllFilters();
    EXPECT_EQ(dashboard.searchText(), QString());
    EXPECT_EQ(dashboard.sortOption(), QStringLiteral("Status"));
    EXPECT_EQ(started().shownNames(), QStringLiteral("delta Alpha Bravo charlie"));
}

TEST_F(DashboardState, ProtectedItemAppearsInTheListAtOnce)
{
    DashboardHarness &harness = started();
    QSignalSpy changes(&harness.dashboard, &DashboardViewModel::stateChanged);
    harness.protect(services.home.write(QStringLiteral("papers/will.pdf")));
    EXPECT_EQ(harness.shownNames(), QStringLiteral("will.pdf"));
    EXPECT_TRUE(harness.dashboard.showFilters());
    EXPECT_GE(changes.size(), 1);
}

TEST_F(DashboardState, VersionFallsBackToOnePointZero)
{
    EXPECT_EQ(started().dashboard.versionText(), QStringLiteral("v1.0"));
    QCoreApplication::setApplicationVersion(QStringLiteral("2.5"));
    EXPECT_EQ(started().dashboard.versionText(), QStringLiteral("v2.5"));
    QCoreApplication::setApplicationVersion(QString());
}
