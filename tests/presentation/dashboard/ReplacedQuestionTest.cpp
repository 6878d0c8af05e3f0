// SPDX-License-Identifier: GPL-3.0-or-later

// A question for a password that is replaced by another one before it was answered: the operation that asked never
// continues, and the window must not wait for it.

#include "DashboardHarness.h"

#include "presentation/dashboard/BulkActions.h"
#include "presentation/dashboard/ItemActions.h"
#include "presentation/dashboard/ItemSelection.h"
#include "presentation/dashboard/ShredActions.h"

using namespace quillhaven;
using namespace quillhaven::test;

namespace {

class ReplacedQuestion : public DashboardTest
{
protected:
    void replacePasswordQuestion()
    {
        ASSERT_TRUE(started().passwordDialog.isPresented());
        started().passwordDialog.show({.title = QStringLiteral("Another"), .message = {}}, {}, {});
        DashboardHarness::settle();
    }
    void cancelMasterPasswordQuestion()
    {
        ASSERT_TRUE(started().masterPasswordDialog.isPresented());
        started().masterPasswordDialog.cancel();
        DashboardHarness::settle();
    }
    [[nodiscard]] bool isAnyRowBusy()
    {
        return std::ranges::any_of(started().manager.protectedItems(), [this](const ProtectedItem &item) {
            return started().dashboard.rows().isBusy(item.id);
        });
    }
    void shredAll()
    {
        started().dashboard.selection()->selectAll();
        ShredActions &actions = *started().dashboard.shredding();
        actions.performBulkShred();
        actions.confirmation()->setHasReadWarning(true);
        actions.confirmation()->setConfirmationText(QStringLiteral("SHRED PERMANENTLY"));
        actions.confirmation()->confirm();
        DashboardHarness::settle();
    }
};

} // namespace

TEST_F(ReplacedQuestion, TheRowOfAnUnlockCanBeUsedAgain)
{
    protectFiles({QStringLiteral("letter.txt")});
    started().dashboard.itemActions()->onToggleLock(started().item().id);
    DashboardHarness::settle();
    EXPECT_TRUE(isAnyRowBusy());
    replacePasswordQuestion();
    EXPECT_FALSE(isAnyRowBusy());

    started().dashboard.itemActions()->onToggleLock(started().item().id);
    DashboardHarness::settle();
    started().typePassword(strongPassword);
    EXPECT_TRUE(started().item().isMounted);
    EXPECT_FALSE(isAnyRowBusy());
}

TEST_F(ReplacedQuestion, TheSheetOfABulkUnlockClosesAndItsRowsCanBeUsedAgain)
{
    protectFiles({QStringLiteral("letter.txt"), QStringLiteral("notes.txt")});
    BulkActions &bulk = *started().dashboard.bulk();
    started().dashboard.selection()->selectAll();
    bulk.performBulkUnlock();
    DashboardHarness::settle();
    EXPECT_TRUE(isAnyRowBusy());
    EXPECT_TRUE(bulk.progress()->isPresented());
    replacePasswordQuestion();
    EXPECT_FALSE(isAnyRowBusy());
    EXPECT_FALSE(bulk.progress()->isPresented());
    EXPECT_FALSE(started().dashboard.showingError());
}

TEST_F(ReplacedQuestion, TheSheetOfAShredClosesAndItsRowsCanBeUsedAgain)
{
    protectFiles({QStringLiteral("letter.txt")});
    OperationProgress &progress = *started().dashboard.shredding()->progress();
    shredAll();
    EXPECT_TRUE(isAnyRowBusy());
    EXPECT_TRUE(progress.isPresented());
    EXPECT_EQ(progress.message(), QStringLiteral("Unlocking item before shredding..."));
    replacePasswordQuestion();
    EXPECT_FALSE(isAnyRowBusy());
    EXPECT_FALSE(progress.isPresented());
    EXPECT_EQ(started().manager.protectedItems().size(), 1);
}

TEST_F(ReplacedQuestion, RowsAreIdleWhileTheMasterPasswordIsAskedForSinceThatMayLastForGood)
{
    protectFiles({QStringLiteral("letter.txt")});
    started().dashboard.selection()->selectAll();
    runTask(started().masterPassword.setMasterPassword(theMasterPassword));
    started().masterPassword.endSession();

    started().dashboard.bulk()->performBulkUnlock();
    DashboardHarness::settle();
    EXPECT_FALSE(isAnyRowBusy());
    started().dashboard.bulk()->progress()->hideBeforeBeginning();
    EXPECT_FALSE(started().dashboard.bulk()->progress()->isPresented());
    cancelMasterPasswordQuestion();

    shredAll();
    EXPECT_FALSE(isAnyRowBusy());
    cancelMasterPasswordQuestion();
}
