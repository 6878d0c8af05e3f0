// SPDX-License-Identifier: GPL-3.0-or-later

#include "presentation/dashboard/SearchFilterBarModel.h"

#include "ListFixture.h"

#include <gtest/gtest.h>

using namespace quillhaven;
using namespace quillhaven::test;

namespace {

using Bar = SearchFilterBarModel;

/// The names of the items that pass, in the order of `items`.
QString passing(const Bar &bar, const QList<ProtectedItem> &items)
{
    QStringList names;
    for (const ProtectedItem &item : items) {
        if (bar.passes(item)) {
            names.append(item.originalName);
        }
    }
    return names.join(QLatin1Char(' '));
}

QList<ProtectedItem> mixedItems()
{
    QList<ProtectedItem> items{namedItem(QStringLiteral("Taxes.pdf"), true), namedItem(QStringLiteral("album")),
                               namedItem(QStringLiteral("letters")), namedItem(QStringLiteral("Budget.txt"), true)};
    items[1].isFolder = true;
    items[2].isFolder = true;
    items[2].useTouchID = true;
    items[3].useTouchID = true;
    return items;
}

} // namespace

TEST(SearchFilterBarModel, EnumerationsAreListedInOrderWithTheirLabels)
{
    EXPECT_EQ(Bar::statusFilters().join(QLatin1Char(' ')), QStringLiteral("All Locked Unlocked"));
    EXPECT_EQ(Bar::authFilters().join(QLatin1Char(',')), QStringLiteral("All,Password,Touch ID"));
    EXPECT_EQ(Bar::typeFilters().join(QLatin1Char(' ')), QStringLiteral("All Files Folders"));
    EXPECT_EQ(Bar::sortOptions().join(QLatin1Char(' ')), QStringLiteral("Name Status"));
    EXPECT_EQ(static_cast<int>(Bar::StatusFilter::unlocked), 2);
    EXPECT_EQ(static_cast<int>(Bar::AuthFilter::touchID), 2);
    EXPECT_EQ(static_cast<int>(Bar::TypeFilter::folders), 2);
    EXPECT_EQ(static_cast<int>(Bar::SortOption::status), 1);
}

TEST(SearchFilterBarModel, SearchIgnoresCase)
{
    Bar bar;
    bar.setSearchText(QStringLiteral("TAX"));
    EXPECT_EQ(passing(bar, mixedItems()), QStringLiteral("Taxes.pdf"));
}

TEST(SearchFilterBarModel, SearchFindsAnAccentedLetterInEitherForm)
{
    ProtectedItem item = namedItem(QStringLiteral("Re\u0301sume\u0301.pdf")); // as some systems write names
    Bar bar;
    bar.setSearchText(QStringLiteral("R\u00C9SUM\u00E9"));
    EXPECT_TRUE(bar.passes(item));
    item.originalName = QStringLiteral("R\u00E9sum\u00E9.pdf");
    bar.setSearchText(QStringLiteral("sume\u0301"));
    EXPECT_TRUE(bar.passes(item));
}

TEST(SearchFilterBarModel, SearchIgnoresThePathTheContainerAndTheId)
{
    QList<ProtectedItem> items = mixedItems();
    for (ProtectedItem &item : items) {
        item.containerPath = QStringLiteral("/vault/papers.secured");
    }
    for (const QString &text : {QStringLiteral("papers"), QStringLiteral("ID-"), QStringLiteral("secured")}) {
        Bar bar;
        bar.setSearchText(text);
        EXPECT_EQ(passing(bar, items), QString()) << qUtf8Printable(text);
    }
}

TEST(SearchFilterBarModel, SingleSpaceIsAnActiveSearch)
{
    Bar bar;
    bar.setSearchText(QStringLiteral(" "));
    EXPECT_TRUE(bar.hasActiveFilters());
    EXPECT_EQ(passing(bar, {namedItem(QStringLiteral("a b")), namedItem(QStringLiteral("ab"))}), QStringLiteral("a b"));
}

TEST(SearchFilterBarModel, EachFilterKeepsItsItemsAndFiltersCombine)
{
    const QList<ProtectedItem> items = mixedItems();
    Bar bar;
    bar.setStatusFilter(Bar::StatusFilter::locked);
    EXPECT_EQ(passing(bar, items), QStringLiteral("album letters"));
    bar.setStatusFilter(Bar::StatusFilter::unlocked);
    EXPECT_EQ(passing(bar, items), QStringLiteral("Taxes.pdf Budget.txt"));
    bar.setAuthFilter(Bar::AuthFilter::password);
    EXPECT_EQ(passing(bar, items), QStringLiteral("Taxes.pdf"));
    bar.setAuthFilter(Bar::AuthFilter::touchID);
    EXPECT_EQ(passing(bar, items), QStringLiteral("Budget.txt"));
    bar.setTypeFilter(Bar::TypeFilter::folders);
    EXPECT_EQ(passing(bar, items), QString());
    bar.setStatusFilter(Bar::StatusFilter::all);
    EXPECT_EQ(passing(bar, items), QStringLiteral("letters"));
    bar.setTypeFilter(Bar::TypeFilter::files);
    EXPECT_EQ(passing(bar, items), QStringLiteral("Budget.txt"));
}

TEST(SearchFilterBarModel, SortOptionIsNotAnActiveFilter)
{
    Bar bar;
    bar.setSortOption(Bar::SortOption::status);
    EXPECT_FALSE(bar.hasActiveFilters());
    bar.setTypeFilter(Bar::TypeFilter::files);
    EXPECT_TRUE(bar.hasActiveFilters());
}

TEST(SearchFilterBarModel, ButtonNamesTheSearchRatherThanTheFilters)
{
    Bar bar;
    EXPECT_EQ(bar.getAdaptiveCTAText(), QStringLiteral("Clear All"));
    bar.setAuthFilter(Bar::AuthFilter::touchID);
    EXPECT_EQ(bar.getAdaptiveCTAText(), QStringLiteral("Clear Filters"));
    bar.setSearchText(QStringLiteral("x"));
    EXPECT_EQ(bar.getAdaptiveCTAText(), QStringLiteral("Clear Search"));
}

TEST(SearchFilterBarModel, ClearingKeepsTheOrder)
{
    Bar bar;
    bar.setSearchText(QStringLiteral("x"));
    bar.setStatusFilter(Bar::StatusFilter::locked);
    bar.setAuthFilter(Bar::AuthFilter::password);
    bar.setTypeFilter(Bar::TypeFilter::files);
    bar.setSortOption(Bar::SortOption::status);
    const QSignalSpy filters(&bar, &Bar::filtersChanged);
    bar.clearAllFilters();
    EXPECT_FALSE(bar.hasActiveFilters());
    EXPECT_EQ(bar.searchText(), QString());
    EXPECT_EQ(filters.size(), 1);
    EXPECT_EQ(bar.sortOption(), Bar::SortOption::status);
}
