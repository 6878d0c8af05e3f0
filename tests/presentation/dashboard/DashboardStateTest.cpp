// SPDX-License-Identifier: GPL-3.0-or-later

#include "DashboardHarness.h"

#include <QCoreApplication>
#include <QSignalSpy>

using namespace quillhaven;
using namespace quillhaven::test;

namespace {

using Filters = SearchFilterBarModel;

/// Two locked and two unlocked items, two with a fingerprint and two with a password, one of each a folder.
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
    DashboardViewModel &dashboard = started().dashboard;
    EXPECT_FALSE(dashboard.items()->showFilters());
    EXPECT_FALSE(dashboard.items()->hasNoResults());
    EXPECT_EQ(dashboard.statistics()->protectedItems(), 0);
    EXPECT_FALSE(dashboard.filters()->hasActiveFilters());
}

TEST_F(DashboardState, ListStartsInTheOrderOfTheNames)
{
    dashboardWithFour();
    EXPECT_EQ(started().shownNames(), QStringLiteral("Alpha Bravo charlie delta"));
}

TEST_F(DashboardState, ListFollowsTheChosenOrderAndFilters)
{
    DashboardViewModel &dashboard = dashboardWithFour();
    dashboard.filters()->setSortOption(Filters::SortOption::status);
    EXPECT_EQ(started().shownNames(), QStringLiteral("delta Alpha Bravo charlie"));
    dashboard.filters()->setTypeFilter(Filters::TypeFilter::folders);
    EXPECT_EQ(started().shownNames(), QStringLiteral("Alpha Bravo"));
    dashboard.filters()->setAuthFilter(Filters::AuthFilter::touchID);
    EXPECT_EQ(started().shownNames(), QStringLiteral("Bravo"));
    dashboard.filters()->setStatusFilter(Filters::StatusFilter::locked);
    EXPECT_EQ(started().shownNames(), QString());
    EXPECT_TRUE(dashboard.items()->hasNoResults());
    EXPECT_EQ(namesOf(dashboard.items()->filteredAndSortedItems()), QStringList());
}

TEST_F(DashboardState, EachGroupIsReportedOnlyWhenItChanges)
{
    DashboardViewModel &dashboard = dashboardWithFour();
    QSignalSpy filters(dashboard.filters(), &Filters::filtersChanged);
    QSignalSpy order(dashboard.filters(), &Filters::sortOptionChanged);
    QSignalSpy figures(dashboard.statistics(), &DashboardStatisticsModel::changed);
    dashboard.filters()->setStatusFilter(Filters::StatusFilter::all);
    dashboard.filters()->setSortOption(Filters::SortOption::name);
    EXPECT_EQ(filters.size() + order.size() + figures.size(), 0) << "these values are already set";
    dashboard.filters()->setSortOption(Filters::SortOption::status);
    EXPECT_EQ(order.size(), 1);
    EXPECT_EQ(filters.size() + figures.size(), 0);
    dashboard.filters()->setStatusFilter(Filters::StatusFilter::locked);
    EXPECT_EQ(filters.size(), 1);
    spinOnce();
    EXPECT_EQ(figures.size(), 1);
}

TEST_F(DashboardState, CardsCountEveryItemByItsMethodAndNotByItsState)
{
    DashboardViewModel &dashboard = dashboardWithFour();
    EXPECT_EQ(dashboard.statistics()->protectedItems(), 4);
    EXPECT_EQ(dashboard.statistics()->currentlyUnlocked(), 2);
    EXPECT_EQ(dashboard.statistics()->touchIDProtected(), 2);
    EXPECT_EQ(dashboard.statistics()->passwordProtected(), 2);
    EXPECT_EQ(dashboard.statistics()->statisticsNote(),
              QStringLiteral("Includes both locked and unlocked items currently managed by Quillhaven."));
}

TEST_F(DashboardState, CardsCountTheShownItemsWhileAFilterIsActive)
{
    DashboardViewModel &dashboard = dashboardWithFour();
    dashboard.filters()->setSearchText(QStringLiteral("A"));
    dashboard.filters()->setStatusFilter(Filters::StatusFilter::unlocked);
    spinOnce();
    EXPECT_EQ(dashboard.statistics()->protectedItems(), 2);
    EXPECT_EQ(dashboard.statistics()->currentlyUnlocked(), 2);
    EXPECT_EQ(dashboard.statistics()->touchIDProtected(), 1);
    EXPECT_EQ(dashboard.statistics()->passwordProtected(), 1);
    EXPECT_EQ(dashboard.statistics()->statisticsNote(), QStringLiteral("Showing filtered results from 4 total items."));
}

TEST_F(DashboardState, AutoLockCardShowsMinutesHoursOrBoth)
{
    const DashboardStatisticsModel &card = *started().dashboard.statistics();
    const QSignalSpy changes(&card, &DashboardStatisticsModel::autoLockStatusChanged);
    EXPECT_EQ(card.getAutoLockStatus(), QStringLiteral("Disabled"));
    AutoLockManager &manager = started().autoLock;
    manager.setAutoLockEnabled(true);
    EXPECT_EQ(card.getAutoLockStatus(), QStringLiteral("(5m)"));
    EXPECT_EQ(changes.size(), 1);
    for (const auto &[minutes, text] : {std::pair{59, "(59m)"}, {60, "(1h)"}, {90, "(1h 30m)"}, {120, "(2h)"}}) {
        manager.updateAutoLockInterval(minutes);
        EXPECT_EQ(card.getAutoLockStatus(), QString::fromUtf8(text));
    }
    EXPECT_EQ(changes.size(), 5);
}

TEST_F(DashboardState, ClearingShowsEverythingAgainInTheChosenOrder)
{
    DashboardViewModel &dashboard = dashboardWithFour();
    dashboard.filters()->setSortOption(Filters::SortOption::status);
    dashboard.filters()->setSearchText(QStringLiteral("zzz"));
    EXPECT_EQ(dashboard.filters()->getAdaptiveCTAText(), QStringLiteral("Clear Search"));
    dashboard.filters()->clearAllFilters();
    EXPECT_EQ(dashboard.filters()->searchText(), QString());
    EXPECT_EQ(dashboard.filters()->sortOption(), Filters::SortOption::status);
    EXPECT_EQ(started().shownNames(), QStringLiteral("delta Alpha Bravo charlie"));
}

TEST_F(DashboardState, ProtectedItemAppearsInTheListImmediately)
{
    DashboardHarness &harness = started();
    QSignalSpy changes(harness.dashboard.items(), &FilteredItemsModel::itemsChanged);
    harness.protect(services.home.write(QStringLiteral("papers/will.pdf")));
    EXPECT_EQ(harness.shownNames(), QStringLiteral("will.pdf"));
    EXPECT_TRUE(harness.dashboard.items()->showFilters());
    EXPECT_GE(changes.size(), 1);
}

TEST_F(DashboardState, VersionFallsBackToOnePointZero)
{
    EXPECT_EQ(started().dashboard.versionText(), QStringLiteral("v1.0"));
    QCoreApplication::setApplicationVersion(QStringLiteral("2.5"));
    EXPECT_EQ(started().dashboard.versionText(), QStringLiteral("v2.5"));
    QCoreApplication::setApplicationVersion(QString());
}
