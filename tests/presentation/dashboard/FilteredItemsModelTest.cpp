// SPDX-License-Identifier: GPL-3.0-or-later

#include "presentation/dashboard/FilteredItemsModel.h"

#include "ListFixture.h"
#include "support/RunTask.h"

#include <QLocale>

#include <gtest/gtest.h>

using namespace quillhaven;
using namespace quillhaven::test;

namespace {

using Filters = SearchFilterBarModel;

class FilteredItemsModelTest : public ::testing::Test, protected ListFixture
{
protected:
    RowChanges changes{shown};
};

std::string sortedIn(const char *language, const char *names)
{
    const QLocale before;
    QLocale::setDefault(QLocale(QString::fromLatin1(language)));
    ListFixture list;
    list.load(names);
    QLocale::setDefault(before);
    return list.shownNames().toStdString();
}

} // namespace

TEST_F(FilteredItemsModelTest, NameSortIgnoresCaseAndKeepsTheCatalogueOrderOfEqualNames)
{
    load("beta ALPHA alpha Alpha");
    EXPECT_EQ(shownNames(), QStringLiteral("ALPHA alpha Alpha beta"));
    load("beta Alpha alpha ALPHA");
    EXPECT_EQ(shownNames(), QStringLiteral("Alpha alpha ALPHA beta"));
    catalogue.append(namedItem(QStringLiteral("aLPHA")));
    EXPECT_EQ(shownNames(), QStringLiteral("Alpha alpha ALPHA aLPHA beta"));
}

TEST(FilteredItemsModelLanguage, NameSortFollowsTheUsersLanguageAndIgnoresCaseInIt)
{
    EXPECT_EQ(sortedIn("en_US", "zebra \u00c9clair beta Apple \u00e9cole apple"),
              "Apple apple beta \u00c9clair \u00e9cole zebra");
    EXPECT_EQ(sortedIn("sv_SE", "\u00f6l Zebra apple"), "apple Zebra \u00f6l");
    // The capital form of the dotless i, which is sorted before the dotted i.
    EXPECT_EQ(sortedIn("tr_TR", "ia Iz"), "Iz ia");
    EXPECT_EQ(sortedIn("en_US", "Iz ia"), "ia Iz");
    EXPECT_EQ(sortedIn("C", "b A a B"), "A a b B") << "also without a language";
}

TEST_F(FilteredItemsModelTest, StatusSortPutsLockedItemsFirstAndKeepsTheCatalogueOrder)
{
    filters.setSortOption(Filters::SortOption::status);
    load("z a m");
    setMounted(QStringLiteral("a"), true);
    EXPECT_EQ(shownNames(), QStringLiteral("z m a"));
    setMounted(QStringLiteral("z"), true);
    EXPECT_EQ(shownNames(), QStringLiteral("m z a"));
    setMounted(QStringLiteral("a"), false);
    EXPECT_EQ(shownNames(), QStringLiteral("a m z"));
}

TEST_F(FilteredItemsModelTest, NewItemInsertsOneRowAtItsPlace)
{
    load("a c d");
    changes.clear();
    catalogue.append(namedItem(QStringLiteral("b")));
    EXPECT_EQ(shownNames(), QStringLiteral("a b c d"));
    ASSERT_EQ(changes.inserted.size(), 1);
    EXPECT_EQ(changes.inserted.at(0).at(1).toInt(), 1);
    EXPECT_EQ(changes.count(), 1);
}

TEST_F(FilteredItemsModelTest, FilterThatExcludesNeighboursRemovesThemAtOnce)
{
    load("a b c d");
    changes.clear();
    filters.setTypeFilter(Filters::TypeFilter::files);
    EXPECT_EQ(changes.count(), 0) << "all of them are files";
    setMounted(QStringLiteral("b"), true);
    setMounted(QStringLiteral("c"), true);
    changes.clear();
    filters.setStatusFilter(Filters::StatusFilter::locked);
    EXPECT_EQ(shownNames(), QStringLiteral("a d"));
    ASSERT_EQ(changes.removed.size(), 1);
    EXPECT_EQ(changes.removed.at(0).at(1).toInt(), 1);
    EXPECT_EQ(changes.removed.at(0).at(2).toInt(), 2);
    EXPECT_EQ(changes.count(), 1);
}

TEST_F(FilteredItemsModelTest, ChangedRecordKeepsItsRowInTheOrderOfTheNames)
{
    load("b a");
    changes.clear();
    setMounted(QStringLiteral("b"), true);
    ASSERT_EQ(changes.changed.size(), 1);
    EXPECT_EQ(changes.changed.at(0).at(0).toModelIndex().row(), 1);
    EXPECT_EQ(changes.count(), 1);
    EXPECT_TRUE(shown.index(1, 0).data(ProtectedItemsModel::IsMountedRole).toBool());
}

TEST_F(FilteredItemsModelTest, ItemThatNoLongerPassesIsRemovedAndAddedAgainLater)
{
    load("b a c");
    filters.setStatusFilter(Filters::StatusFilter::locked);
    changes.clear();
    setMounted(QStringLiteral("b"), true);
    EXPECT_EQ(shownNames(), QStringLiteral("a c"));
    EXPECT_EQ(changes.removed.size(), 1);
    setMounted(QStringLiteral("b"), false);
    EXPECT_EQ(shownNames(), QStringLiteral("a b c"));
    EXPECT_EQ(changes.inserted.size(), 1);
    EXPECT_EQ(changes.count(), 2);
}

TEST_F(FilteredItemsModelTest, ChangeOfOrderIsSignalledBeforeAndAfter)
{
    load("b a");
    QString before;
    QString after;
    QObject::connect(&shown, &FilteredItemsModel::orderAboutToChange, [&] { before = shown.idAt(1); });
    QObject::connect(&shown, &FilteredItemsModel::orderChanged, [&] { after = shown.idAt(shown.rowOf(before)); });
    filters.setSortOption(Filters::SortOption::status);
    spinOnce();
    EXPECT_EQ(before, QStringLiteral("ID-b"));
    EXPECT_EQ(after, QStringLiteral("ID-b"));
    EXPECT_EQ(shown.rowOf(QStringLiteral("ID-b")), 0);
}

TEST_F(FilteredItemsModelTest, RowsAreFoundByTheirIdsOnlyWhileTheyAreShown)
{
    load("b a");
    EXPECT_EQ(shown.rowOf(QStringLiteral("ID-b")), 1);
    EXPECT_EQ(shown.idAt(0), QStringLiteral("ID-a"));
    EXPECT_EQ(shown.idAt(2), QString());
    EXPECT_EQ(shown.idAt(-1), QString());
    EXPECT_EQ(shown.rowOf(QStringLiteral("ID-x")), -1);
    filters.setSearchText(QStringLiteral("a"));
    EXPECT_EQ(shown.rowOf(QStringLiteral("ID-b")), -1);
}

TEST_F(FilteredItemsModelTest, ScatteredResultsOfASearchReachAViewInThreeChangesAtMost)
{
    load("a1 b c1 d e1 f");
    const QPersistentModelIndex kept = shown.index(4, 0);
    const QPersistentModelIndex hidden = shown.index(1, 0);
    changes.clear();
    filters.setSearchText(QStringLiteral("1"));
    EXPECT_EQ(shownNames(), QStringLiteral("a1 c1 e1"));
    EXPECT_EQ(kept.row(), 2);
    EXPECT_FALSE(hidden.isValid());
    EXPECT_EQ(changes.layoutChanged.size(), 1);
    EXPECT_EQ(changes.removed.size(), 1);
    EXPECT_EQ(changes.count(), 2);
    changes.clear();
    filters.setSearchText(QString());
    EXPECT_EQ(shownNames(), QStringLiteral("a1 b c1 d e1 f"));
    EXPECT_EQ(kept.row(), 4);
    EXPECT_EQ(changes.count(), 2);
    filters.setSearchText(QStringLiteral("c"));
    changes.clear();
    filters.setSearchText(QStringLiteral("d"));
    EXPECT_EQ(shownNames(), QStringLiteral("d"));
    EXPECT_EQ(changes.count(), 3);
}

TEST_F(FilteredItemsModelTest, PlaceOfAHiddenItemIsTheRowOfTheNextOne)
{
    load("b1 a c d1 e");
    filters.setSearchText(QStringLiteral("1"));
    EXPECT_EQ(shown.rowNear(QStringLiteral("ID-a")), 0);
    EXPECT_EQ(shown.rowNear(QStringLiteral("ID-d1")), 1);
    EXPECT_EQ(shown.rowNear(QStringLiteral("ID-c")), 1);
    EXPECT_EQ(shown.rowNear(QStringLiteral("ID-e")), 1) << "none is after it";
    EXPECT_EQ(shown.rowNear(QStringLiteral("ID-x")), -1);
}

TEST_F(FilteredItemsModelTest, RenamedItemMovesToItsPlace)
{
    load("a b c");
    catalogue.updateUnsaved(QStringLiteral("ID-a"),
                            [](ProtectedItem &item) { item.originalName = QStringLiteral("d"); });
    EXPECT_EQ(shownNames(), QStringLiteral("b c d"));
    catalogue.append(namedItem(QStringLiteral("cc")));
    EXPECT_EQ(shownNames(), QStringLiteral("b c cc d"));
}

TEST_F(FilteredItemsModelTest, EmptyCatalogueIsNotALackOfResults)
{
    EXPECT_FALSE(shown.showFilters());
    EXPECT_FALSE(shown.hasNoResults());
    load("a");
    filters.setSearchText(QStringLiteral("zzz"));
    EXPECT_TRUE(shown.showFilters());
    EXPECT_TRUE(shown.hasNoResults());
}
