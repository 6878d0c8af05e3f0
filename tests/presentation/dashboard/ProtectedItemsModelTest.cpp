// SPDX-License-Identifier: GPL-3.0-or-later

#include "presentation/dashboard/ProtectedItemsModel.h"

#include "Items.h"

#include <QAbstractItemModelTester>
#include <QRandomGenerator>
#include <QSignalSpy>

#include <gtest/gtest.h>

#include <algorithm>

using namespace quillhaven;
using namespace quillhaven::testing;

namespace {

QList<ProtectedItem> itemsNamed(const char *names)
{
    QList<ProtectedItem> items;
    for (const QString &name : QString::fromUtf8(names).split(QLatin1Char(' '), Qt::SkipEmptyParts)) {
        items.append(namedItem(name));
    }
    return items;
}

class ProtectedItemsModelTest : public ::testing::Test
{
protected:
    ProtectedItemsModel model{QStringLiteral("/home/ada")};
    QAbstractItemModelTester tester{&model, QAbstractItemModelTester::FailureReportingMode::Warning};
    QSignalSpy inserted{&model, &QAbstractItemModel::rowsInserted};
    QSignalSpy removed{&model, &QAbstractItemModel::rowsRemoved};
    QSignalSpy moved{&model, &QAbstractItemModel::rowsMoved};
    QSignalSpy changed{&model, &QAbstractItemModel::dataChanged};
    QSignalSpy reset{&model, &QAbstractItemModel::modelReset};

    void show(const char *names)
    {
        model.setItems(itemsNamed(names));
        inserted.clear();
        removed.clear();
        moved.clear();
        changed.clear();
    }
};

} // namespace

TEST_F(ProtectedItemsModelTest, NewItemIsOneInsertedRow)
{
    show("a c d");
    model.setItems(itemsNamed("a b c d"));
    EXPECT_EQ(namesOf(model.items()).join(QLatin1Char(' ')), QStringLiteral("a b c d"));
    ASSERT_EQ(inserted.size(), 1);
    EXPECT_EQ(inserted.at(0).at(1).toInt(), 1);
    EXPECT_EQ(moved.size() + removed.size() + changed.size() + reset.size(), 0);
}

TEST_F(ProtectedItemsModelTest, SearchThatDropsNeighboursIsOneRemoval)
{
    show("a b c d");
    model.setItems(itemsNamed("a d"));
    ASSERT_EQ(removed.size(), 1);
    EXPECT_EQ(removed.at(0).at(1).toInt(), 1);
    EXPECT_EQ(removed.at(0).at(2).toInt(), 2);
    EXPECT_EQ(moved.size() + inserted.size() + reset.size(), 0);
}

TEST_F(ProtectedItemsModelTest, ItemThatChangesItsPlaceIsOneMoveInEitherDirection)
{
    show("a b c d e");
    model.setItems(itemsNamed("b c d e a"));
    EXPECT_EQ(moved.size(), 1);
    model.setItems(itemsNamed("a b c d e"));
    EXPECT_EQ(moved.size(), 2);
    EXPECT_EQ(inserted.size() + removed.size() + reset.size(), 0);
}

TEST_F(ProtectedItemsModelTest, ChangedRecordKeepsItsRow)
{
    show("a b");
    QList<ProtectedItem> items = itemsNamed("a b");
    items[1].isMounted = true;
    model.setItems(items);
    ASSERT_EQ(changed.size(), 1);
    EXPECT_EQ(changed.at(0).at(0).toModelIndex().row(), 1);
    EXPECT_TRUE(model.index(1).data(ProtectedItemsModel::IsMountedRole).toBool());
}

TEST_F(ProtectedItemsModelTest, SameListChangesNothing)
{
    show("a b");
    model.setItems(itemsNamed("a b"));
    EXPECT_EQ(inserted.size() + removed.size() + moved.size() + changed.size() + reset.size(), 0);
}

TEST_F(ProtectedItemsModelTest, AnyListFollowsAnyOther)
{
    QRandomGenerator random(20261121);
    for (int round = 0; round < 300; ++round) {
        QList<ProtectedItem> items;
        for (int name = 0; name < 12; ++name) {
            if (random.bounded(3) > 0) {
                items.append(namedItem(QString::number(name), random.bounded(2) == 1));
            }
        }
        std::shuffle(items.begin(), items.end(), random);
        model.setItems(items);
        ASSERT_EQ(model.items(), items) << "round " << round;
    }
    EXPECT_EQ(reset.size(), 0);
}

TEST_F(ProtectedItemsModelTest, RepeatedIdOfADamagedCatalogueIsShown)
{
    show("a b c");
    const QList<ProtectedItem> items = itemsNamed("a a b");
    model.setItems(items);
    EXPECT_EQ(model.items(), items);
}

TEST_F(ProtectedItemsModelTest, ThousandRowsTurnedRoundAreReset)
{
    QList<ProtectedItem> items;
    for (int name = 0; name < 1000; ++name) {
        items.append(namedItem(QString::number(name)));
    }
    model.setItems(items);
    std::reverse(items.begin(), items.end());
    model.setItems(items);
    EXPECT_EQ(model.items(), items);
    EXPECT_EQ(reset.size(), 1);
    EXPECT_EQ(moved.size(), 0);
}

TEST_F(ProtectedItemsModelTest, BusyMarkStaysWithItsItemAndTellsItsRow)
{
    show("a b");
    model.setBusy({QStringLiteral("ID-b")}, true);
    ASSERT_EQ(changed.size(), 1);
    EXPECT_EQ(changed.at(0).at(0).toModelIndex().row(), 1);
    model.setItems(itemsNamed("b a"));
    EXPECT_TRUE(model.index(0).data(ProtectedItemsModel::IsBusyRole).toBool());
    EXPECT_FALSE(model.index(1).data(ProtectedItemsModel::IsBusyRole).toBool());
    model.setBusy({QStringLiteral("ID-b")}, false);
    EXPECT_FALSE(model.index(0).data(ProtectedItemsModel::IsBusyRole).toBool());
}

TEST_F(ProtectedItemsModelTest, SeveralItemsTurnBusyAtOnceAndTheRowsFromTheFirstToTheLastAreTold)
{
    show("a b c d");
    model.setBusy({QStringLiteral("ID-d"), QStringLiteral("ID-b"), QStringLiteral("ID-gone")}, true);
    ASSERT_EQ(changed.size(), 1);
    EXPECT_EQ(changed.at(0).at(0).toModelIndex().row(), 1);
    EXPECT_EQ(changed.at(0).at(1).toModelIndex().row(), 3);
    QList<bool> marks;
    for (int row = 0; row < 4; ++row) {
        marks.append(model.index(row).data(ProtectedItemsModel::IsBusyRole).toBool());
    }
    EXPECT_EQ(marks, QList({false, true, false, true}));
    model.setBusy({QStringLiteral("ID-gone")}, false);
    EXPECT_EQ(changed.size(), 1) << "no row shows that";
}

TEST_F(ProtectedItemsModelTest, RowTellsAllThatItShows)
{
    show("notes.txt");
    const QModelIndex row = model.index(0);
    EXPECT_EQ(row.data(ProtectedItemsModel::ItemIdRole).toString(), QStringLiteral("ID-notes.txt"));
    EXPECT_EQ(row.data(ProtectedItemsModel::OriginalNameRole).toString(), QStringLiteral("notes.txt"));
    EXPECT_EQ(row.data(ProtectedItemsModel::ShortenedPathRole).toString(), QStringLiteral("~/papers"));
    EXPECT_EQ(row.data(ProtectedItemsModel::LeadingIconRole).toString(), QStringLiteral("doc.text.fill"));
    EXPECT_EQ(row.data(ProtectedItemsModel::ToggleLockTextRole).toString(), QStringLiteral("Unlock Item"));
    EXPECT_EQ(row.data(ProtectedItemsModel::AccessibleTextRole).toString(), QStringLiteral("notes.txt, locked"));
}
