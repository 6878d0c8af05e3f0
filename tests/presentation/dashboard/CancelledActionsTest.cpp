// SPDX-License-Identifier: GPL-3.0-or-later

// What the window does when the user cancels a question in the middle of an action, and when one of several fails.

#include "DashboardHarness.h"

#include "presentation/dashboard/BulkActions.h"
#include "presentation/dashboard/ItemActions.h"
#include "presentation/dashboard/ItemSelection.h"

using namespace quillhaven;
using namespace quillhaven::test;

namespace {

class Cancelled : public DashboardTest
{
protected:
    void lockTheSession()
    {
        runTask(started().masterPassword.setMasterPassword(theMasterPassword));
        started().masterPassword.endSession();
    }
    int count() { return static_cast<int>(started().manager.protectedItems().size()); }
};

} // namespace

TEST_F(Cancelled, MasterPasswordOfABulkRunEndsItWithoutAMessage)
{
    protectFiles({QStringLiteral("a.txt"), QStringLiteral("b.txt")});
    lockTheSession();
    started().dashboard.selection()->selectAll();
    started().dashboard.bulk()->performBulkUnlock();
    DashboardHarness::settle();
    ASSERT_TRUE(started().masterPasswordDialog.isPresented());
    started().masterPasswordDialog.cancel();
    DashboardHarness::settle();
    EXPECT_FALSE(started().dashboard.bulk()->progress()->isPresented());
    EXPECT_FALSE(started().dashboard.showingError());
    EXPECT_FALSE(started().passwordDialog.isPresented());
    EXPECT_FALSE(started().item().isMounted);
}

TEST_F(Cancelled, SessionOfABulkRunThatHasNothingLeftToDoIsClosed)
{
    protectFiles({QStringLiteral("a.txt")});
    lockTheSession();
    started().dashboard.selection()->selectAll();
    started().dashboard.bulk()->performBulkUnlock();
    DashboardHarness::settle();
    started().manager.removeFromProtectedItems(started().item().id);
    started().typeMasterPassword(theMasterPassword);
    EXPECT_FALSE(started().masterPassword.isAuthenticated());
    EXPECT_FALSE(started().dashboard.bulk()->progress()->isPresented());
}

TEST_F(Cancelled, MasterPasswordOfTheDeleteGestureKeepsTheItem)
{
    protectFiles({QStringLiteral("a.txt"), QStringLiteral("b.txt")});
    lockTheSession();
    started().dashboard.itemActions()->deleteFilteredItems({1});
    DashboardHarness::settle();
    ASSERT_TRUE(started().masterPasswordDialog.isPresented());
    started().masterPasswordDialog.cancel();
    DashboardHarness::settle();
    EXPECT_EQ(count(), 2);
    EXPECT_FALSE(started().dashboard.showingError());
}

TEST_F(Cancelled, RemovalThatFailsIsShownAndTheItemStays)
{
    protectFiles({QStringLiteral("a.txt")});
    ASSERT_TRUE(QFile::remove(started().item().originalBackupPath));
    ASSERT_TRUE(QFile::remove(started().item().originalPath));
    const QString folder = services.home.path(QStringLiteral("papers"));
    ASSERT_TRUE(QDir(folder).removeRecursively());
    started().dashboard.itemActions()->onRemove(started().item().id);
    DashboardHarness::settle();
    EXPECT_TRUE(started().dashboard.showingError());
    EXPECT_FALSE(started().dashboard.rows().isBusy(started().item().id));
    EXPECT_EQ(count(), 1);
}
