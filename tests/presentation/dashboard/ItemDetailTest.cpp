// SPDX-License-Identifier: GPL-3.0-or-later

#include "DashboardHarness.h"

using namespace quillhaven;
using namespace quillhaven::test;

namespace {

class ItemDetail : public DashboardTest
{
protected:
    ItemDetailModel &details() { return *started().dashboard.itemDetails(); }
    QString path;

    void showProtected()
    {
        path = services.home.write(QStringLiteral("papers/will.pdf"), "content");
        started().protect(path);
        details().show(started().item().id);
    }
};

} // namespace

TEST_F(ItemDetail, ItShowsTheItemAndFollowsItsRecord)
{
    showProtected();
    ASSERT_TRUE(details().isPresented());
    EXPECT_EQ(details().itemName(), QStringLiteral("will.pdf"));
    EXPECT_EQ(details().icon(), QStringLiteral("doc.fill"));
    EXPECT_EQ(details().status(), QStringLiteral("Locked"));
    EXPECT_EQ(details().type(), QStringLiteral("File"));
    EXPECT_EQ(details().authentication(), QStringLiteral("Password"));
    details().toggleLock();
    DashboardHarness::settle();
    started().typePassword(strongPassword);
    EXPECT_EQ(details().status(), QStringLiteral("Unlocked"));
}

TEST_F(ItemDetail, AFolderWithTouchIDSaysSo)
{
    ProtectedItem folder = namedItem(QStringLiteral("letters"));
    folder.isFolder = true;
    folder.useTouchID = true;
    storeCatalogue(services, {folder});
    details().show(folder.id);
    EXPECT_EQ(details().icon(), QStringLiteral("folder.fill"));
    EXPECT_EQ(details().type(), QStringLiteral("Folder"));
    EXPECT_EQ(details().authentication(), QStringLiteral("Touch ID"));
}

TEST_F(ItemDetail, RemovalIsAskedForAndClosesTheSheet)
{
    showProtected();
    details().removeProtection();
    ConfirmationDialogManager &question = started().confirmationDialog;
    ASSERT_TRUE(question.isPresented());
    EXPECT_EQ(question.title(), QStringLiteral("Remove Protection"));
    EXPECT_EQ(question.message(),
              QStringLiteral("Are you sure you want to remove protection from 'will.pdf'? This will RESTORE your "
                             "original file/folder and delete the encrypted container."));
    question.confirm();
    DashboardHarness::settle();
    EXPECT_EQ(TemporaryHome::read(path), QByteArray("content"));
    EXPECT_FALSE(details().isPresented());
    EXPECT_FALSE(details().selectedItem());
}

TEST_F(ItemDetail, CancelKeepsTheItemAndTheSheet)
{
    showProtected();
    details().removeProtection();
    started().confirmationDialog.cancel();
    DashboardHarness::settle();
    EXPECT_EQ(started().manager.protectedItems().size(), 1);
    EXPECT_TRUE(details().isPresented());
    details().done();
    EXPECT_FALSE(details().isPresented());
}

TEST_F(ItemDetail, AFailureIsShownInTheErrorDialog)
{
    showProtected();
    details().toggleLock();
    DashboardHarness::settle();
    started().typePassword(QStringLiteral("Wrong9Password"));
    EXPECT_TRUE(started().dashboard.showingError());
    EXPECT_EQ(started().dashboard.errorDialogManager()->errorTitle(), QStringLiteral("Error"));
}
