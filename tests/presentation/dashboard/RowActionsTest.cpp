// SPDX-License-Identifier: GPL-3.0-or-later

// What a row does by itself, with real files and the real trash of a temporary home.

#include "DashboardHarness.h"

#include <QFile>
#include <QTemporaryDir>

using namespace quillhaven;
using namespace quillhaven::test;

namespace {

class RowActionsOfAnItem : public DashboardTest
{
protected:
    RowActions &actions() { return *started().dashboard.rowActions(); }
    ErrorDialogSheetModel &errorSheet() { return actions().errorSheet(); }
    DeleteConfirmationModel &question() { return actions().deleteConfirmation(); }
    QString error() { return errorSheet().isPresented() ? errorSheet().errorMessage() : QString(); }

    /// A locked item with this content.
    QString protect(const QString &name)
    {
        const QString path = services.home.write(QStringLiteral("papers/") + name, "content");
        started().protect(path);
        return path;
    }
    /// A locked item on a file system in memory, which has no trash.
    QString protectInMemory()
    {
        EXPECT_TRUE(m_inMemory.isValid());
        const QString path = m_inMemory.filePath(QStringLiteral("will.pdf"));
        QFile file(path);
        EXPECT_TRUE(file.open(QIODevice::WriteOnly) && file.write("content") > 0);
        file.close();
        started().protect(path);
        return path;
    }
    void unlock()
    {
        started().dashboard.itemActions()->onToggleLock(started().item().id);
        DashboardHarness::settle();
        started().typePassword(strongPassword);
        ASSERT_TRUE(started().item().isMounted);
    }
    QString id() { return started().item().id; }
    void moveToTrash()
    {
        actions().askToDelete(id());
        question().moveToTrash();
        DashboardHarness::settle();
    }
    /// What the trash of this test program holds under a name that no other test uses.
    static QByteArray trashed(const QString &name)
    {
        return TemporaryHome::read(qEnvironmentVariable("XDG_DATA_HOME") + QStringLiteral("/Trash/files/") + name);
    }

private:
    QTemporaryDir m_inMemory{QStringLiteral("/dev/shm/quillhaven-XXXXXX")};
};

using Shown = QList<QPair<QString, QString>>;

} // namespace

TEST_F(RowActionsOfAnItem, AnUnlockedItemIsRevealedItself)
{
    const QString path = protect(QStringLiteral("will.pdf"));
    unlock();
    actions().revealInFinder(id());
    DashboardHarness::settle();
    EXPECT_EQ(services.fileViewer.shown, (Shown{{path, QString()}}));
}

TEST_F(RowActionsOfAnItem, ALockedItemIsRevealedByItsPlaceholder)
{
    const QString path = protect(QStringLiteral("will.pdf"));
    actions().revealInFinder(id());
    DashboardHarness::settle();
    EXPECT_EQ(services.fileViewer.shown, (Shown{{path, QString()}}));
}

TEST_F(RowActionsOfAnItem, TheFolderIsOpenedWhenThePlaceholderWasDeleted)
{
    const QString path = protect(QStringLiteral("will.pdf"));
    ASSERT_TRUE(QFile::remove(path));
    actions().revealInFinder(id());
    DashboardHarness::settle();
    EXPECT_EQ(services.fileViewer.shown, (Shown{{QString(), services.home.path(QStringLiteral("papers"))}}));
}

TEST_F(RowActionsOfAnItem, ADoubleClickRevealsOnlyAnUnlockedItem)
{
    const QString path = protect(QStringLiteral("will.pdf"));
    actions().onRevealInFinder(id());
    DashboardHarness::settle();
    EXPECT_EQ(services.fileViewer.shown, Shown());
    unlock();
    actions().onRevealInFinder(id());
    DashboardHarness::settle();
    EXPECT_EQ(services.fileViewer.shown, (Shown{{path, QString()}}));
}

TEST_F(RowActionsOfAnItem, ADesktopWithoutAFileManagerIsReported)
{
    protect(QStringLiteral("will.pdf"));
    services.fileViewer.canShow = false;
    actions().revealInFinder(id());
    DashboardHarness::settle();
    EXPECT_EQ(error(), QStringLiteral("There is no file manager that can show 'will.pdf'."));
}

TEST_F(RowActionsOfAnItem, TheDeleteQuestionNamesTheItemAndSecureDeleteLeadsToTheShredConfirmation)
{
    protect(QStringLiteral("will.pdf"));
    actions().askToDelete(id());
    ASSERT_TRUE(question().isPresented());
    EXPECT_EQ(question().title(), QStringLiteral("Secure delete \"will.pdf\"?"));
    question().secureDelete();
    EXPECT_FALSE(question().isPresented());
    EXPECT_TRUE(started().dashboard.shredding()->confirmation()->isPresented());
    EXPECT_EQ(started().dashboard.shredding()->confirmation()->itemNames(), QStringList{QStringLiteral("will.pdf")});
}

TEST_F(RowActionsOfAnItem, SecureDeleteWithoutAShredActionOnlyClosesTheQuestion)
{
    protect(QStringLiteral("will.pdf"));
    actions().onShred = {};
    actions().askToDelete(id());
    question().secureDelete();
    DashboardHarness::settle();
    EXPECT_FALSE(question().isPresented());
    EXPECT_FALSE(started().dashboard.shredding()->confirmation()->isPresented());
    EXPECT_EQ(started().manager.protectedItems().size(), 1);
}

TEST_F(RowActionsOfAnItem, CancelInTheDeleteQuestionChangesNothing)
{
    const QString path = protect(QStringLiteral("will.pdf"));
    actions().askToDelete(id());
    question().cancel();
    DashboardHarness::settle();
    EXPECT_FALSE(question().isPresented());
    EXPECT_TRUE(QFile::exists(path));
    EXPECT_EQ(started().manager.protectedItems().size(), 1);
}

TEST_F(RowActionsOfAnItem, AnUnlockedItemGoesToTheTrashWithItsContent)
{
    const QString path = protect(QStringLiteral("unlocked.pdf"));
    unlock();
    moveToTrash();
    EXPECT_EQ(error(), QString());
    EXPECT_FALSE(QFile::exists(path));
    EXPECT_EQ(trashed(QStringLiteral("unlocked.pdf")), QByteArray("content"));
    EXPECT_TRUE(started().manager.protectedItems().isEmpty());
    EXPECT_TRUE(DashboardHarness(services).manager.protectedItems().isEmpty()) << "the list was saved";
}

TEST_F(RowActionsOfAnItem, OfALockedItemThePlaceholderGoesToTheTrashAndTheDataStaysBehind)
{
    const QString path = protect(QStringLiteral("locked.pdf"));
    const QString privateCopy = started().item().originalBackupPath;
    actions().askToDelete(id());
    EXPECT_FALSE(question().trashNote().isEmpty()) << "the user is told what the trash gets";
    moveToTrash();
    EXPECT_EQ(error(), QString());
    EXPECT_FALSE(QFile::exists(path));
    EXPECT_TRUE(trashed(QStringLiteral("locked.pdf")).startsWith("This file is protected by Quillhaven."));
    EXPECT_EQ(TemporaryHome::read(privateCopy), QByteArray("content"));
    EXPECT_TRUE(started().manager.protectedItems().isEmpty());
    EXPECT_TRUE(DashboardHarness(services).manager.protectedItems().isEmpty()) << "the list was not saved";
}

TEST_F(RowActionsOfAnItem, AnItemThatWasLockedMeanwhileIsAskedAboutAgain)
{
    const QString path = protect(QStringLiteral("meanwhile.pdf"));
    unlock();
    actions().askToDelete(id());
    EXPECT_TRUE(question().trashNote().isEmpty());
    runTask(started().manager.lockItem(started().item()));
    question().moveToTrash();
    DashboardHarness::settle();
    ASSERT_TRUE(question().isPresented());
    EXPECT_FALSE(question().trashNote().isEmpty());
    EXPECT_TRUE(QFile::exists(path));
    EXPECT_EQ(started().manager.protectedItems().size(), 1);
}

TEST_F(RowActionsOfAnItem, AFailingTrashAfterTheRemovalLeavesTheFileOutOfTheList)
{
    const QString path = protectInMemory();
    ASSERT_TRUE(QFile::remove(path));
    moveToTrash();
    EXPECT_NE(error(), QString());
    EXPECT_EQ(TemporaryHome::read(path), QByteArray("content"));
    EXPECT_TRUE(started().manager.protectedItems().isEmpty());
}

TEST_F(RowActionsOfAnItem, ADeclinedPanelEndsTheMoveToTheTrashAndTheItemStaysInTheList)
{
    const QString path = protect(QStringLiteral("will.pdf"));
    ASSERT_TRUE(QFile::remove(path));
    services.panels.confirm = [](const PlaceRequest &) { return std::nullopt; };
    moveToTrash();
    EXPECT_EQ(error(), QStringLiteral("The file 'will.pdf' could not be found. It may have been moved or deleted."));
    EXPECT_EQ(started().manager.protectedItems().size(), 1);
}

TEST_F(RowActionsOfAnItem, AnItemThatIsNotAtItsPlaceIsGivenBackFirst)
{
    const QString path = protect(QStringLiteral("missing.pdf"));
    ASSERT_TRUE(QFile::remove(path));
    moveToTrash();
    EXPECT_TRUE(log.contains(QStringLiteral("🔓 File is locked, removing protection first")));
    EXPECT_EQ(error(), QString());
    EXPECT_EQ(trashed(QStringLiteral("missing.pdf")), QByteArray("content"));
    EXPECT_TRUE(started().manager.protectedItems().isEmpty());
}

TEST_F(RowActionsOfAnItem, AFileThatIsNowhereIsReportedByItsName)
{
    const QString path = protect(QStringLiteral("will.pdf"));
    unlock();
    ASSERT_TRUE(QFile::remove(path));
    moveToTrash();
    EXPECT_EQ(error(), QStringLiteral("The file 'will.pdf' could not be found. It may have been moved or deleted."));
}

TEST_F(RowActionsOfAnItem, WhereThereIsNoTrashTheListAndTheFileStay)
{
    const QString path = protectInMemory();
    unlock();
    moveToTrash();
    EXPECT_EQ(error(),
              QStringLiteral("Could not move \"will.pdf\" to the trash: its volume has no trash, and none can be "
                             "made there."));
    EXPECT_EQ(TemporaryHome::read(path), QByteArray("content"));
    EXPECT_EQ(started().manager.protectedItems().size(), 1);
}

TEST_F(RowActionsOfAnItem, ABusyItemIsNotMovedToTheTrash)
{
    const QString path = protect(QStringLiteral("will.pdf"));
    started().dashboard.rows().setBusy({id()}, true);
    actions().moveToTrash(id());
    DashboardHarness::settle();
    EXPECT_TRUE(QFile::exists(path));
    EXPECT_EQ(started().manager.protectedItems().size(), 1);
}

TEST_F(RowActionsOfAnItem, TroubleshootingIsOfferedForPermissionsAndShownInTheConfirmationDialog)
{
    ErrorDialogSheetModel &sheet = errorSheet();
    sheet.show(QStringLiteral("You don't have permission."));
    EXPECT_FALSE(sheet.hint().isEmpty());
    sheet.showTroubleshooting();
    EXPECT_FALSE(sheet.isPresented());
    ConfirmationDialogManager &dialog = started().confirmationDialog;
    ASSERT_TRUE(dialog.isPresented());
    EXPECT_EQ(dialog.title(), QStringLiteral("Troubleshooting Permission Issues"));
    EXPECT_EQ(dialog.confirmTitle(), QStringLiteral("OK"));
    EXPECT_EQ(dialog.cancelTitle(), QStringLiteral("Cancel"));
    EXPECT_FALSE(dialog.showCancelButton());
    EXPECT_FALSE(dialog.isDestructive());
    EXPECT_EQ(dialog.message(),
              QStringLiteral("If you're getting permission errors when trying to remove protection:\n\n"
                             "1. Make sure the file is not currently open in another application\n"
                             "2. Check that you have write permissions for the folder containing the file\n"
                             "3. Try moving the file to your Desktop or Documents folder first\n"
                             "4. Make sure the file is not in a system-protected location\n"
                             "5. If the file is on an external drive, ensure it's properly mounted\n\n"
                             "The app needs write access to restore your original file to its location."));
}

TEST_F(RowActionsOfAnItem, AnErrorWithoutThoseWordsHasNoHint)
{
    errorSheet().show(QStringLiteral("It was denied."));
    EXPECT_EQ(errorSheet().hint(), QString());
}
