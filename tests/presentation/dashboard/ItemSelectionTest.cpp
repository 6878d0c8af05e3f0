// SPDX-License-Identifier: GPL-3.0-or-later

#include "DashboardHarness.h"

#include <QSignalSpy>

using namespace quillhaven;
using namespace quillhaven::test;

namespace {

class Selection : public DashboardTest
{
protected:
    /// Two locked and two unlocked items: a1 and b1 locked, a2 and b2 unlocked.
    ItemSelection &selection()
    {
        if (!m_isStored) {
            m_isStored = true;
            storeCatalogue(services, {namedItem(QStringLiteral("a1")), namedItem(QStringLiteral("a2"), true),
                                      namedItem(QStringLiteral("b1")), namedItem(QStringLiteral("b2"), true)});
        }
        return *started().dashboard.selection();
    }
    void select(const QStringList &names)
    {
        for (const QString &name : names) {
            selection().onSelectionToggle(QStringLiteral("ID-") + name);
        }
    }
    QString selectedNames() { return namesOf(selection().getSelectedItems()).join(QLatin1Char(' ')); }
    bool isMarked(const QString &name)
    {
        const FilteredItemsModel &items = *started().dashboard.items();
        return items.index(items.rowOf(QStringLiteral("ID-") + name), 0)
            .data(ProtectedItemsModel::IsSelectedRole)
            .toBool();
    }

private:
    bool m_isStored = false;
};

} // namespace

TEST_F(Selection, ToggleSelectsAndDeselects)
{
    select({QStringLiteral("b1"), QStringLiteral("a1")});
    EXPECT_EQ(selectedNames(), QStringLiteral("a1 b1")) << "in display order";
    EXPECT_TRUE(isMarked(QStringLiteral("b1")));
    select({QStringLiteral("b1")});
    EXPECT_EQ(selectedNames(), QStringLiteral("a1"));
    EXPECT_FALSE(isMarked(QStringLiteral("b1")));
}

TEST_F(Selection, EnteringTheModeKeepsTheSelectionAndLeavingItClearsIt)
{
    select({QStringLiteral("a1")});
    EXPECT_EQ(selection().modeText(), QStringLiteral("Select"));
    selection().toggleSelectionMode();
    EXPECT_TRUE(selection().isInSelectionMode());
    EXPECT_EQ(selection().modeText(), QStringLiteral("Done"));
    EXPECT_EQ(selection().selectedCount(), 1);
    selection().toggleSelectionMode();
    EXPECT_FALSE(selection().isInSelectionMode());
    EXPECT_EQ(selection().selectedCount(), 0);
    EXPECT_FALSE(isMarked(QStringLiteral("a1")));
}

TEST_F(Selection, SelectAllReplacesTheSelectionByTheShownItems)
{
    select({QStringLiteral("a1")});
    EXPECT_EQ(selection().selectAllText(), QStringLiteral("Select All"));
    started().dashboard.filters()->setSearchText(QStringLiteral("b"));
    selection().toggleSelectAll();
    EXPECT_EQ(selectedNames(), QStringLiteral("b1 b2"));
    EXPECT_EQ(selection().selectedCount(), 2) << "the hidden one was deselected";
    EXPECT_EQ(selection().selectAllText(), QStringLiteral("Deselect All"));
}

TEST_F(Selection, EqualCountsDeselectEvenIfOtherItemsAreShown)
{
    select({QStringLiteral("a1"), QStringLiteral("a2")});
    started().dashboard.filters()->setSearchText(QStringLiteral("b"));
    EXPECT_EQ(selection().selectAllText(), QStringLiteral("Deselect All"));
    selection().toggleSelectAll();
    EXPECT_EQ(selection().selectedCount(), 0);
}

TEST_F(Selection, IfMoreAreSelectedThanShownNotEverythingIsSelected)
{
    select({QStringLiteral("a1"), QStringLiteral("a2"), QStringLiteral("b1")});
    started().dashboard.filters()->setSearchText(QStringLiteral("b"));
    EXPECT_EQ(selection().selectAllText(), QStringLiteral("Select All"));
    selection().toggleSelectAll();
    EXPECT_EQ(selectedNames(), QStringLiteral("b1 b2"));
}

TEST_F(Selection, EachChangeIsReported)
{
    const QSignalSpy reported(&selection(), &ItemSelection::changed);
    select({QStringLiteral("a1")});
    EXPECT_EQ(reported.size(), 1);
    selection().toggleSelectionMode();
    EXPECT_EQ(reported.size(), 2);
    selection().clearSelection();
    EXPECT_EQ(reported.size(), 3);
}

TEST_F(Selection, HiddenItemsStaySelected)
{
    select({QStringLiteral("a1"), QStringLiteral("b1")});
    started().dashboard.filters()->setSearchText(QStringLiteral("b"));
    started().dashboard.filters()->setSortOption(SearchFilterBarModel::SortOption::status);
    EXPECT_EQ(selectedNames(), QStringLiteral("b1"));
    started().dashboard.filters()->clearAllFilters();
    EXPECT_EQ(selectedNames(), QStringLiteral("a1 b1"));
    EXPECT_TRUE(isMarked(QStringLiteral("a1")));
}

TEST_F(Selection, CountIncludesHiddenItemsButTheNumbersOnTheButtonsDoNot)
{
    select({QStringLiteral("a1"), QStringLiteral("a2"), QStringLiteral("b1"), QStringLiteral("b2")});
    EXPECT_EQ(selection().canUnlockCount(), 2);
    EXPECT_EQ(selection().canLockCount(), 2);
    QSignalSpy reported(&selection(), &ItemSelection::changed);
    started().dashboard.filters()->setSearchText(QStringLiteral("b1"));
    spinOnce();
    EXPECT_GE(reported.size(), 1);
    EXPECT_EQ(selection().selectedCount(), 4);
    EXPECT_EQ(selection().canUnlockCount(), 1);
    EXPECT_EQ(selection().canLockCount(), 0);
}

TEST_F(Selection, ClearingLeavesTheMode)
{
    selection().selectAll();
    EXPECT_TRUE(selection().isInSelectionMode());
    EXPECT_EQ(selection().selectedCount(), 4);
    selection().clearSelection();
    EXPECT_FALSE(selection().isInSelectionMode());
    EXPECT_EQ(selection().selectedCount(), 0);
}

TEST_F(Selection, ExtendingEntersTheMode)
{
    selection().extendSelection(QStringLiteral("ID-a2"));
    EXPECT_TRUE(selection().isInSelectionMode());
    EXPECT_EQ(selectedNames(), QStringLiteral("a2"));
}
