// SPDX-License-Identifier: GPL-3.0-or-later

#include "presentation/dashboard/ProtectedItemsModel.h"

#include "ListFixture.h"
#include "support/RunTask.h"

#include <gtest/gtest.h>

using namespace quillhaven;
using namespace quillhaven::test;

namespace {

class ProtectedItemsModelTest : public ::testing::Test, protected ListFixture
{
protected:
    RowChanges changes{rows};

    [[nodiscard]] bool isBusy(int row) const { return rows.index(row).data(ProtectedItemsModel::IsBusyRole).toBool(); }
};

} // namespace

TEST_F(ProtectedItemsModelTest, NewRecordAddsOneRowAtTheEnd)
{
    load("b c");
    changes.clear();
    catalogue.append(namedItem(QStringLiteral("a")));
    EXPECT_EQ(rows.items(), catalogue.items());
    ASSERT_EQ(changes.inserted.size(), 1);
    EXPECT_EQ(changes.inserted.at(0).at(1).toInt(), 2);
    EXPECT_EQ(changes.count(), 1);
}

TEST_F(ProtectedItemsModelTest, NameThatDeceivesIsShownAsItIsAndStaysAsItIsInTheRecord)
{
    const QString name = QString(QChar(0x202E)) + QStringLiteral("gnp.\nexe");
    catalogue.append(namedItem(name));
    EXPECT_EQ(rows.index(0).data(ProtectedItemsModel::OriginalNameRole), QStringLiteral("\uFFFDgnp.↵exe"));
    EXPECT_TRUE(rows.index(0)
                    .data(ProtectedItemsModel::AccessibleDescriptionRole)
                    .toString()
                    .endsWith(QStringLiteral("\uFFFDgnp.↵exe")));
    EXPECT_EQ(catalogue.items().constFirst().originalName, name);
}

TEST_F(ProtectedItemsModelTest, ChangedRecordChangesOnlyItsRow)
{
    load("a b c");
    changes.clear();
    setMounted(QStringLiteral("b"), true);
    ASSERT_EQ(changes.changed.size(), 1);
    EXPECT_EQ(changes.changed.at(0).at(0).toModelIndex().row(), 1);
    EXPECT_EQ(changes.changed.at(0).at(1).toModelIndex().row(), 1);
    EXPECT_EQ(changes.count(), 1);
    EXPECT_TRUE(rows.index(1).data(ProtectedItemsModel::IsMountedRole).toBool());
}

TEST_F(ProtectedItemsModelTest, RemovedRecordsRemoveOnlyTheirRows)
{
    load("a b c d");
    changes.clear();
    catalogue.remove({QStringLiteral("ID-b"), QStringLiteral("ID-d")});
    EXPECT_EQ(rows.items(), catalogue.items());
    EXPECT_EQ(changes.removed.size(), 2);
    EXPECT_EQ(changes.count(), 2);
}

TEST_F(ProtectedItemsModelTest, EachChangeIsReportedAfterItsRowWasUpdated)
{
    load("a b");
    QStringList seen;
    QObject::connect(&rows, &ProtectedItemsModel::itemsChanged,
                     [&] { seen.append(namesOf(rows.items()).join(QLatin1Char(' '))); });
    catalogue.append(namedItem(QStringLiteral("c")));
    setMounted(QStringLiteral("a"), true);
    catalogue.remove({QStringLiteral("ID-a")});
    EXPECT_EQ(seen, QStringList({QStringLiteral("a b c"), QStringLiteral("a b c"), QStringLiteral("b c")}));
}

TEST_F(ProtectedItemsModelTest, RepeatedIdInADamagedCatalogueIsShownAndRemovedWithAllItsRows)
{
    load("a a b");
    EXPECT_EQ(rows.items(), catalogue.items());
    EXPECT_EQ(rows.rowCount(), 3);
    setMounted(QStringLiteral("a"), true);
    EXPECT_EQ(rows.items(), catalogue.items());
    catalogue.remove({QStringLiteral("ID-a")});
    EXPECT_EQ(namesOf(rows.items()), QStringList(QStringLiteral("b")));
}

TEST_F(ProtectedItemsModelTest, ItemIsBusyWhileAnOperationHoldsItsLease)
{
    load("a b");
    changes.clear();
    {
        const ItemLease lease = runTask(catalogue.lease(QStringLiteral("ID-b")));
        EXPECT_TRUE(isBusy(1));
        EXPECT_FALSE(isBusy(0));
        EXPECT_EQ(rows.index(1).data(ProtectedItemsModel::AccessibleDescriptionRole).toString(),
                  QStringLiteral("Busy"));
        ASSERT_EQ(changes.changed.size(), 1);
        EXPECT_EQ(changes.changed.at(0).at(0).toModelIndex().row(), 1);
    }
    EXPECT_FALSE(isBusy(1));
    EXPECT_EQ(rows.index(1).data(ProtectedItemsModel::AccessibleDescriptionRole).toString(),
              QStringLiteral("/home/ada/papers/b"));
    EXPECT_EQ(changes.changed.size(), 2);
}

TEST_F(ProtectedItemsModelTest, BusyMarkStaysWithItsItemWhenRowsAboveAreRemoved)
{
    load("a b");
    changes.clear();
    rows.setBusy({QStringLiteral("ID-b")}, true);
    ASSERT_EQ(changes.changed.size(), 1);
    EXPECT_EQ(changes.changed.at(0).at(0).toModelIndex().row(), 1);
    EXPECT_FALSE(isBusy(0));
    catalogue.remove({QStringLiteral("ID-a")});
    EXPECT_TRUE(isBusy(0));
    rows.setBusy({QStringLiteral("ID-b")}, false);
    EXPECT_FALSE(isBusy(0));
}

TEST_F(ProtectedItemsModelTest, OnlyRowsWhoseSelectionChangesAreReported)
{
    load("a b c");
    rows.setSelected({QStringLiteral("ID-a"), QStringLiteral("ID-b")});
    changes.clear();
    rows.setSelected({QStringLiteral("ID-a"), QStringLiteral("ID-c")});
    ASSERT_EQ(changes.changed.size(), 1);
    EXPECT_EQ(changes.changed.at(0).at(0).toModelIndex().row(), 1);
    EXPECT_EQ(changes.changed.at(0).at(1).toModelIndex().row(), 2);
    rows.setSelected({QStringLiteral("ID-a"), QStringLiteral("ID-c")});
    EXPECT_EQ(changes.changed.size(), 1);
    EXPECT_TRUE(rows.index(2).data(ProtectedItemsModel::IsSelectedRole).toBool());
}

TEST_F(ProtectedItemsModelTest, SeveralItemsBecomeBusyTogetherWithOneChangeFromTheFirstRowToTheLast)
{
    load("a b c d");
    changes.clear();
    rows.setBusy({QStringLiteral("ID-d"), QStringLiteral("ID-b"), QStringLiteral("ID-gone")}, true);
    ASSERT_EQ(changes.changed.size(), 1);
    EXPECT_EQ(changes.changed.at(0).at(0).toModelIndex().row(), 1);
    EXPECT_EQ(changes.changed.at(0).at(1).toModelIndex().row(), 3);
    QList<bool> marks;
    for (int row = 0; row < 4; ++row) {
        marks.append(rows.index(row).data(ProtectedItemsModel::IsBusyRole).toBool());
    }
    EXPECT_EQ(marks, QList({false, true, false, true}));
    rows.setBusy({QStringLiteral("ID-gone")}, false);
    EXPECT_EQ(changes.changed.size(), 1) << "no row shows that item";
}

TEST_F(ProtectedItemsModelTest, RowHasAllItsData)
{
    load("notes.txt");
    const QModelIndex row = rows.index(0);
    EXPECT_EQ(row.data(ProtectedItemsModel::ItemIdRole).toString(), QStringLiteral("ID-notes.txt"));
    EXPECT_EQ(row.data(ProtectedItemsModel::OriginalNameRole).toString(), QStringLiteral("notes.txt"));
    EXPECT_EQ(row.data(ProtectedItemsModel::ShortenedPathRole).toString(), QStringLiteral("~/papers"));
    EXPECT_EQ(row.data(ProtectedItemsModel::LeadingIconRole).toString(), QStringLiteral("doc.text.fill"));
    EXPECT_EQ(row.data(ProtectedItemsModel::StatusTextRole).toString(), QStringLiteral("Locked"));
    EXPECT_EQ(row.data(ProtectedItemsModel::AccessibleDescriptionRole).toString(),
              QStringLiteral("/home/ada/papers/notes.txt"));
    EXPECT_EQ(row.data(ProtectedItemsModel::ToggleLockTextRole).toString(), QStringLiteral("Unlock Item"));
    EXPECT_EQ(row.data(ProtectedItemsModel::AccessibleTextRole).toString(), QStringLiteral("notes.txt, locked"));
}
