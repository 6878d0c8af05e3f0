// SPDX-License-Identifier: GPL-3.0-or-later

#include "presentation/dashboard/SearchFilterBar.h"

#include "Items.h"

#include <QLocale>

#include <gtest/gtest.h>

using namespace quillhaven;
using namespace quillhaven::testing;

namespace {

QStringList shown(const SearchFilterBar &bar, const QList<ProtectedItem> &items)
{
    return namesOf(bar.filteredAndSortedItems(items));
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

TEST(SearchFilterBar, EnumerationsAreListedInOrderWithTheirLabels)
{
    EXPECT_EQ(statusFilterLabels().join(QLatin1Char(' ')), QStringLiteral("All Locked Unlocked"));
    EXPECT_EQ(authFilterLabels().join(QLatin1Char(',')), QStringLiteral("All,Password,Touch ID"));
    EXPECT_EQ(typeFilterLabels().join(QLatin1Char(' ')), QStringLiteral("All Files Folders"));
    EXPECT_EQ(sortOptionLabels().join(QLatin1Char(' ')), QStringLiteral("Name Status"));
}

TEST(SearchFilterBar, SearchIgnoresCase)
{
    SearchFilterBar bar;
    bar.searchText = QStringLiteral("TAX");
    EXPECT_EQ(shown(bar, mixedItems()), QStringList{QStringLiteral("Taxes.pdf")});
}

TEST(SearchFilterBar, SearchNeverLooksAtThePathTheContainerOrTheId)
{
    QList<ProtectedItem> items = mixedItems();
    for (ProtectedItem &item : items) {
        item.containerPath = QStringLiteral("/vault/papers.secured");
    }
    for (const QString &text : {QStringLiteral("papers"), QStringLiteral("ID-"), QStringLiteral("secured")}) {
        SearchFilterBar bar;
        bar.searchText = text;
        EXPECT_TRUE(shown(bar, items).isEmpty()) << qUtf8Printable(text);
    }
}

TEST(SearchFilterBar, LoneSpaceIsAnActiveSearchAsTyped)
{
    SearchFilterBar bar;
    bar.searchText = QStringLiteral(" ");
    EXPECT_TRUE(bar.hasActiveFilters());
    EXPECT_EQ(shown(bar, {namedItem(QStringLiteral("a b")), namedItem(QStringLiteral("ab"))}),
              QStringList{QStringLiteral("a b")});
}

TEST(SearchFilterBar, EachFilterKeepsItsOwnAndTheyCombine)
{
    const QList<ProtectedItem> items = mixedItems();
    SearchFilterBar bar;
    bar.statusFilter = StatusFilter::locked;
    EXPECT_EQ(shown(bar, items).join(QLatin1Char(' ')), QStringLiteral("album letters"));
    bar.statusFilter = StatusFilter::unlocked;
    EXPECT_EQ(shown(bar, items).join(QLatin1Char(' ')), QStringLiteral("Budget.txt Taxes.pdf"));
    bar.authFilter = AuthFilter::password;
    EXPECT_EQ(shown(bar, items), QStringList{QStringLiteral("Taxes.pdf")});
    bar.authFilter = AuthFilter::touchID;
    EXPECT_EQ(shown(bar, items), QStringList{QStringLiteral("Budget.txt")});
    bar.typeFilter = TypeFilter::folders;
    EXPECT_TRUE(shown(bar, items).isEmpty());
    bar.statusFilter = StatusFilter::all;
    EXPECT_EQ(shown(bar, items), QStringList{QStringLiteral("letters")});
    bar.typeFilter = TypeFilter::files;
    EXPECT_EQ(shown(bar, items), QStringList{QStringLiteral("Budget.txt")});
}

TEST(SearchFilterBar, NameSortIgnoresCaseAndKeepsTheCatalogueOrderOfEquals)
{
    QList<ProtectedItem> items{namedItem(QStringLiteral("beta")), namedItem(QStringLiteral("ALPHA")),
                               namedItem(QStringLiteral("alpha")), namedItem(QStringLiteral("Alpha"))};
    EXPECT_EQ(shown({}, items).join(QLatin1Char(' ')), QStringLiteral("ALPHA alpha Alpha beta"));
    items.swapItemsAt(1, 3);
    EXPECT_EQ(shown({}, items).join(QLatin1Char(' ')), QStringLiteral("Alpha alpha ALPHA beta"));
}

TEST(SearchFilterBar, NameSortFollowsTheUsersLanguageAndIgnoresCaseInIt)
{
    const QLocale before;
    const auto sortedIn = [](const char *language, const char *names) {
        QLocale::setDefault(QLocale(QString::fromLatin1(language)));
        QList<ProtectedItem> items;
        for (const QString &name : QString::fromUtf8(names).split(QLatin1Char(' '))) {
            items.append(namedItem(name));
        }
        return shown({}, items).join(QLatin1Char(' ')).toStdString();
    };
    EXPECT_EQ(sortedIn("en_US", "zebra \u00c9clair beta Apple \u00e9cole apple"),
              "Apple apple beta \u00c9clair \u00e9cole zebra");
    EXPECT_EQ(sortedIn("sv_SE", "\u00f6l Zebra apple"), "apple Zebra \u00f6l");
    // The capital of the dotless letter, which stands before the dotted one.
    EXPECT_EQ(sortedIn("tr_TR", "ia Iz"), "Iz ia");
    EXPECT_EQ(sortedIn("en_US", "Iz ia"), "ia Iz");
    QLocale::setDefault(before);
}

TEST(SearchFilterBar, StatusSortPutsLockedFirstInCatalogueOrderHoweverNamed)
{
    SearchFilterBar bar;
    bar.sortOption = SortOption::status;
    const QList<ProtectedItem> items{namedItem(QStringLiteral("z")), namedItem(QStringLiteral("a"), true),
                                     namedItem(QStringLiteral("m"))};
    EXPECT_EQ(shown(bar, items).join(QLatin1Char(' ')), QStringLiteral("z m a"));
}

TEST(SearchFilterBar, SortOptionIsNoActiveFilter)
{
    SearchFilterBar bar;
    bar.sortOption = SortOption::status;
    EXPECT_FALSE(bar.hasActiveFilters());
    bar.typeFilter = TypeFilter::files;
    EXPECT_TRUE(bar.hasActiveFilters());
}

TEST(SearchFilterBar, ButtonNamesTheSearchBeforeTheFilters)
{
    SearchFilterBar bar;
    EXPECT_EQ(bar.getAdaptiveCTAText(), QStringLiteral("Clear All"));
    bar.authFilter = AuthFilter::touchID;
    EXPECT_EQ(bar.getAdaptiveCTAText(), QStringLiteral("Clear Filters"));
    bar.searchText = QStringLiteral("x");
    EXPECT_EQ(bar.getAdaptiveCTAText(), QStringLiteral("Clear Search"));
}

TEST(SearchFilterBar, ClearingLeavesTheOrder)
{
    SearchFilterBar bar{QStringLiteral("x"), StatusFilter::locked, AuthFilter::password, TypeFilter::files,
                        SortOption::status};
    bar.clearAllFilters();
    EXPECT_FALSE(bar.hasActiveFilters());
    EXPECT_EQ(bar.sortOption, SortOption::status);
}
