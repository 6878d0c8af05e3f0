// SPDX-License-Identifier: GPL-3.0-or-later

#include "DashboardHarness.h"

#include "catalogue/QuillhavenError.h"
#include "engine/PlaceholderFile.h"
#include "settings/Settings.h"

#include <QSignalSpy>

#include <gmock/gmock.h>

#include <sys/stat.h>

using namespace quillhaven;
using namespace quillhaven::test;

namespace {

class Bulk : public DashboardTest
{
protected:
    QString writePaper(const QString &name)
    {
        return services.home.write(QStringLiteral("papers/") + name, name.toUtf8());
    }
    QString paper(const QString &name) { return services.home.path(QStringLiteral("papers/") + name); }
    /// Protects files with these names; they are locked.
    void protect(const QStringList &names)
    {
        for (const QString &name : names) {
            started().protect(writePaper(name));
        }
    }
    void selectAll() { selection().selectAll(); }
    ItemSelection &selection() { return *started().dashboard.selection(); }
    BulkActions &bulk() { return *started().dashboard.bulk(); }
    bool isMounted(const QString &name)
    {
        for (const ProtectedItem &item : started().manager.protectedItems()) {
            if (item.originalName == name) {
                return item.isMounted;
            }
        }
        ADD_FAILURE() << "not in the catalogue: " << qUtf8Printable(name);
        return false;
    }
    /// Unlocks all files. Each has its own password, which is asked for.
    void unlockAll()
    {
        selectAll();
        bulk().performBulkUnlock();
        DashboardHarness::settle();
        while (started().passwordDialog.isPresented()) {
            started().typePassword(strongPassword);
        }
    }
    /// Expects that an action which applies to none of the selected items shows no sheet and keeps the selection.
    template <typename Action>
    void expectNothingIsDone(Action action)
    {
        selectAll();
        const QSignalSpy shown(bulk().progress(), &OperationProgress::changed);
        action();
        DashboardHarness::settle();
        EXPECT_EQ(selection().selectedCount(), 1);
        EXPECT_TRUE(selection().isInSelectionMode());
        EXPECT_TRUE(shown.isEmpty());
    }
    void drop(const QStringList &paths)
    {
        QList<QUrl> urls;
        for (const QString &path : paths) {
            urls.append(QUrl::fromLocalFile(path));
        }
        started().dashboard.dropping()->onDrop(urls);
        DashboardHarness::settle();
    }
    QString error() { return started().dashboard.showingError() ? started().dashboard.errorMessage() : QString(); }

    const QString a = QStringLiteral("a.txt");
    const QString b = QStringLiteral("b.txt");
    const QString c = QStringLiteral("c.txt");
};

} // namespace

TEST_F(Bulk, UnlockRestoresTheSelectedItemsAndEndsTheSelection)
{
    protect({a, b});
    QStringList reported;
    OperationProgress &progress = *bulk().progress();
    QObject::connect(&progress, &OperationProgress::changed, &progress, [&] {
        if (progress.isPresented()) {
            reported.append(progress.message());
        }
    });
    unlockAll();
    EXPECT_EQ(TemporaryHome::read(paper(a)), a.toUtf8());
    EXPECT_TRUE(isMounted(a));
    EXPECT_TRUE(isMounted(b));
    EXPECT_TRUE(reported.contains(QStringLiteral("Unlocking b.txt...")))
        << qUtf8Printable(reported.join(QLatin1Char('|')));
    EXPECT_FALSE(progress.isPresented());
    EXPECT_FALSE(selection().isInSelectionMode());
    EXPECT_EQ(selection().selectedCount(), 0);
    EXPECT_EQ(error(), QString());
}

TEST_F(Bulk, FilteredSelectionLocksTheShownItemsAndClearsTheSelection)
{
    protect({a, b, c});
    unlockAll();
    selectAll();
    started().dashboard.filters()->setSearchText(QStringLiteral("b"));
    EXPECT_EQ(selection().selectedCount(), 3);
    EXPECT_EQ(selection().canLockCount(), 1);
    bulk().performBulkLock();
    DashboardHarness::settle();
    EXPECT_TRUE(isMounted(a));
    EXPECT_FALSE(isMounted(b));
    EXPECT_TRUE(isMounted(c));
    EXPECT_EQ(selection().selectedCount(), 0);
}

TEST_F(Bulk, UnlockOfOnlyUnlockedItemsDoesNothingAndKeepsTheSelection)
{
    protect({a});
    unlockAll();
    expectNothingIsDone([this] { bulk().performBulkUnlock(); });
}

TEST_F(Bulk, LockOfOnlyLockedItemsDoesNothingAndKeepsTheSelection)
{
    protect({a});
    expectNothingIsDone([this] { bulk().performBulkLock(); });
}

TEST_F(Bulk, SecondPressDoesNotUnlockAgain)
{
    protect({a});
    selectAll();
    services.panels.accessRequests.clear();
    bulk().performBulkUnlock();
    bulk().performBulkUnlock();
    DashboardHarness::settle();
    ASSERT_TRUE(started().passwordDialog.isPresented());
    started().typePassword(strongPassword);
    EXPECT_FALSE(started().passwordDialog.isPresented());
    EXPECT_EQ(services.panels.accessRequests.size(), 1);
    EXPECT_EQ(error(), QString());
}

TEST_F(Bulk, SecondPressDoesNotLockAgain)
{
    protect({a});
    unlockAll();
    selectAll();
    bulk().performBulkLock();
    bulk().performBulkLock();
    DashboardHarness::settle();
    EXPECT_FALSE(isMounted(a));
    EXPECT_EQ(TemporaryHome::read(started().item().originalBackupPath), a.toUtf8())
        << "the placeholder must not replace the data";
    EXPECT_FALSE(started().dashboard.rows().isBusy(started().item().id));
}

TEST_F(Bulk, ItemThatWasLockedMeanwhileIsNotLockedAgain)
{
    DashboardHarness &harness = started();
    protect({a, b});
    unlockAll();
    selectAll();
    runTask(harness.masterPassword.setMasterPassword(theMasterPassword));
    harness.masterPassword.endSession();
    bulk().performBulkLock();
    DashboardHarness::settle();
    ASSERT_TRUE(harness.masterPasswordDialog.isPresented());
    // One item is locked elsewhere, in a session of its own, while the question is still open.
    EXPECT_TRUE(runTask(harness.masterPassword.authenticate(theMasterPassword)));
    runTask(harness.manager.lockItem(harness.item(0)));
    harness.typeMasterPassword(theMasterPassword);
    EXPECT_EQ(TemporaryHome::read(harness.item(0).originalBackupPath), a.toUtf8());
    EXPECT_FALSE(isMounted(a));
    EXPECT_FALSE(isMounted(b));
}

TEST_F(Bulk, ItemsThatWereUnlockedMeanwhileAreNotAskedForAgain)
{
    DashboardHarness &harness = started();
    protect({a, b});
    runTask(harness.masterPassword.setMasterPassword(theMasterPassword));
    // While the question for the master password is open, they are unlocked elsewhere one after the other.
    for (const QStringList &left : {QStringList(paper(b)), QStringList()}) {
        harness.masterPassword.endSession();
        selectAll();
        bulk().performBulkUnlock();
        DashboardHarness::settle();
        ASSERT_TRUE(harness.masterPasswordDialog.isPresented());
        const qsizetype index = left.size() == 1 ? 0 : 1;
        EXPECT_TRUE(runTask(harness.masterPassword.authenticate(theMasterPassword)));
        const RunningTask<void> elsewhere(harness.manager.unlockItem(harness.item(index)));
        DashboardHarness::settle();
        harness.typePassword(strongPassword);
        elsewhere.wait();
        services.panels.accessRequests.clear();
        services.panels.grant = [](const AccessRequest &) { return std::nullopt; };
        harness.typeMasterPassword(theMasterPassword);
        QStringList asked;
        for (const AccessRequest &request : services.panels.accessRequests) {
            asked += request.paths;
        }
        EXPECT_EQ(asked, left);
        EXPECT_EQ(services.panels.accessRequests.size(), left.size()) << "no panel is shown without items";
        EXPECT_EQ(error(), QString());
    }
}

TEST_F(Bulk, RowsAreBusyWhileTheJobIsRunning)
{
    protect({a});
    bool wasBusy = false;
    services.panels.grant = [&](const AccessRequest &request) {
        wasBusy = started().dashboard.rows().isBusy(started().item().id);
        return std::optional(request.paths);
    };
    unlockAll();
    EXPECT_TRUE(wasBusy);
    EXPECT_FALSE(started().dashboard.rows().isBusy(started().item().id));
}

TEST_F(Bulk, FailureIsShownAndTheSelectionIsKept)
{
    protect({a, b});
    services.panels.grant = [&](const AccessRequest &) { return std::optional(QStringList(paper(a))); };
    unlockAll();
    EXPECT_TRUE(error().contains(QStringLiteral("b.txt: "))) << qUtf8Printable(error());
    EXPECT_EQ(selection().selectedCount(), 2);
    EXPECT_TRUE(selection().isInSelectionMode());
    EXPECT_FALSE(bulk().progress()->isPresented());
    EXPECT_TRUE(isMounted(a));
    EXPECT_FALSE(isMounted(b));
}

TEST_F(Bulk, CancelInTheProgressSheetOnlyClosesIt)
{
    protect({a});
    bool wasPresented = false;
    services.panels.grant = [&](const AccessRequest &request) {
        wasPresented = bulk().progress()->isPresented();
        bulk().progress()->hide();
        return std::optional(request.paths);
    };
    QList<bool> presented;
    QObject::connect(bulk().progress(), &OperationProgress::changed, bulk().progress(),
                     [&] { presented.append(bulk().progress()->isPresented()); });
    unlockAll();
    EXPECT_TRUE(wasPresented);
    EXPECT_TRUE(isMounted(a)) << "the operation continued";
    EXPECT_EQ(presented.lastIndexOf(true), presented.indexOf(false) - 1) << "the sheet was not shown again";
}

TEST_F(Bulk, RemovalAsksWithTheNumberOfItems)
{
    protect({a});
    selectAll();
    started().askSomethingElse(false, false);
    bulk().performBulkRemove();
    ConfirmationDialogManager &dialog = started().confirmationDialog;
    ASSERT_TRUE(dialog.isPresented());
    EXPECT_EQ(dialog.title(), QStringLiteral("Remove Protection from 1 Items"));
    EXPECT_EQ(dialog.message(),
              QStringLiteral("This will restore all selected items to their original locations and remove them from "
                             "Quillhaven's protection. Your original files will NOT be deleted."));
    EXPECT_EQ(dialog.confirmTitle(), QStringLiteral("Remove Protection"));
    EXPECT_EQ(dialog.cancelTitle(), QStringLiteral("Cancel"));
    EXPECT_TRUE(dialog.isDestructive());
    EXPECT_TRUE(dialog.showCancelButton());
    dialog.cancel();
    DashboardHarness::settle();
    EXPECT_EQ(started().manager.protectedItems().size(), 1);
    EXPECT_EQ(selection().selectedCount(), 1);
    EXPECT_EQ(started().strayAnswers, 0);
}

TEST_F(Bulk, ConfirmedRemovalRestoresEverything)
{
    protect({a, b});
    selectAll();
    bulk().performBulkRemove();
    started().confirmationDialog.confirm();
    DashboardHarness::settle();
    EXPECT_TRUE(started().manager.protectedItems().isEmpty());
    EXPECT_EQ(TemporaryHome::read(paper(a)), a.toUtf8());
    EXPECT_EQ(TemporaryHome::read(paper(b)), b.toUtf8());
    EXPECT_EQ(selection().selectedCount(), 0);
}

TEST_F(Bulk, RemovalOfNothingDoesNotAsk)
{
    protect({a});
    bulk().performBulkRemove();
    EXPECT_FALSE(started().confirmationDialog.isPresented());
}

TEST_F(Bulk, ProtectByPasswordFromThePickerToTheRecords)
{
    BulkFilePickerModel &picker = *bulk().picker();
    bulk().showBulkFilePicker();
    EXPECT_TRUE(picker.isPresented());
    picker.handleFileSelection({writePaper(a), writePaper(b)});
    picker.protect();
    EXPECT_FALSE(picker.isPresented());
    ASSERT_TRUE(started().protectionMethodDialog.isPresented());
    EXPECT_EQ(started().protectionMethodDialog.title(), QStringLiteral("Protect 2 Items"));
    started().choosePassword();
    EXPECT_EQ(started().passwordDialog.title(), QStringLiteral("Set Protection for 2 Items"));
    EXPECT_EQ(started().passwordDialog.message(), QStringLiteral("Enter a password to protect these items:"));
    EXPECT_TRUE(started().passwordDialog.requiresConfirmation());
    bool wasPresented = false;
    services.panels.grant = [&](const AccessRequest &request) {
        wasPresented = bulk().progress()->isPresented();
        return std::optional(request.paths);
    };
    started().typePassword(strongPassword);
    EXPECT_TRUE(wasPresented);
    EXPECT_EQ(started().manager.protectedItems().size(), 2);
    EXPECT_FALSE(started().item().useTouchID);
    EXPECT_FALSE(bulk().progress()->isPresented());
    EXPECT_EQ(error(), QString());
}

TEST_F(Bulk, SecondPressKeepsTheChosenItems)
{
    BulkFilePickerModel &picker = *bulk().picker();
    bulk().showBulkFilePicker();
    picker.handleFileSelection({writePaper(a)});
    bulk().showBulkFilePicker();
    EXPECT_EQ(picker.entries().size(), 1);
    picker.cancel();
    bulk().showBulkFilePicker();
    EXPECT_TRUE(picker.entries().isEmpty()) << "a new sheet starts empty";
}

TEST_F(Bulk, PickerListsOnlyItemsThatCanBeProtected)
{
    protect({a});
    BulkFilePickerModel &picker = *bulk().picker();
    bulk().showBulkFilePicker();
    picker.handleFileSelection({paper(QStringLiteral("absent")), paper(a), writePaper(b)});
    ASSERT_EQ(picker.entries().size(), 1);
    EXPECT_EQ(picker.entries().first().toMap().value(QStringLiteral("name")).toString(), b);
}

TEST_F(Bulk, FailedProtectionIsShown)
{
    bulk().performBulkProtect({writePaper(a), writePaper(b)});
    started().choosePassword();
    ASSERT_TRUE(QFile::remove(paper(a)));
    services.panels.grant = [](const AccessRequest &request) { return std::optional(request.paths); };
    started().typePassword(strongPassword);
    EXPECT_TRUE(error().contains(QStringLiteral("Some items failed to protect:\na.txt: "))) << qUtf8Printable(error());
    EXPECT_FALSE(bulk().progress()->isPresented());
    EXPECT_EQ(started().shownNames(), b);
}

TEST_F(Bulk, ProtectByTouchIDAsksOnce)
{
    started().askSomethingElse(true, false);
    bulk().performBulkProtect({writePaper(a), writePaper(b)});
    started().chooseTouchID();
    ConfirmationDialogManager &dialog = started().confirmationDialog;
    ASSERT_TRUE(dialog.isPresented());
    EXPECT_EQ(dialog.title(), QStringLiteral("Set Protection for 2 Items"));
    EXPECT_EQ(dialog.message(), QStringLiteral("These items will be protected with Touch ID."));
    EXPECT_EQ(dialog.confirmTitle(), QStringLiteral("Protect"));
    EXPECT_EQ(dialog.cancelTitle(), QStringLiteral("Cancel"));
    EXPECT_FALSE(dialog.isDestructive());
    EXPECT_TRUE(dialog.showCancelButton());
    dialog.confirm();
    DashboardHarness::settle();
    ASSERT_EQ(started().manager.protectedItems().size(), 2);
    EXPECT_TRUE(started().item(1).useTouchID);
    const QString marker = QStringLiteral("_touchid");
    EXPECT_THAT(services.credentials.entries.keys(),
                ::testing::UnorderedElementsAre(started().item(0).id + marker, started().item(1).id + marker));
}

TEST_F(Bulk, ProtectByTouchIDStoresEmptyPasswordsWhileTouchIDIsOff)
{
    services.defaults.standard().setBool(settings::enableTouchID.key, false);
    bulk().performBulkProtect({writePaper(a), writePaper(b)});
    started().chooseTouchID();
    started().confirmationDialog.confirm();
    DashboardHarness::settle();
    ASSERT_EQ(started().manager.protectedItems().size(), 2);
    EXPECT_EQ(services.credentials.entries,
              (QMap<QString, QByteArray>{{started().item(0).id, ""}, {started().item(1).id, ""}}));
}

TEST_F(Bulk, ProtectAsksForTheMasterPasswordAfterThePassword)
{
    storeMasterPassword();
    bulk().performBulkProtect({writePaper(a)});
    EXPECT_FALSE(started().masterPasswordDialog.isPresented());
    started().choosePassword();
    started().typePassword(strongPassword);
    ASSERT_TRUE(started().masterPasswordDialog.isPresented());
    EXPECT_FALSE(bulk().progress()->isPresented());
    started().masterPasswordDialog.cancel();
    DashboardHarness::settle();
    EXPECT_TRUE(started().manager.protectedItems().isEmpty());
    EXPECT_EQ(error(), QString());
}

TEST_F(Bulk, CancellingTheMethodEndsTheSession)
{
    storeMasterPassword();
    EXPECT_TRUE(runTask(started().masterPassword.authenticate(theMasterPassword)));
    bulk().performBulkProtect({writePaper(a)});
    started().cancelMethod();
    EXPECT_FALSE(started().masterPassword.isAuthenticated());
}

TEST_F(Bulk, CancellingThePasswordEndsTheSession)
{
    storeMasterPassword();
    EXPECT_TRUE(runTask(started().masterPassword.authenticate(theMasterPassword)));
    bulk().performBulkProtect({writePaper(a)});
    started().choosePassword();
    EXPECT_TRUE(started().masterPassword.isAuthenticated());
    started().passwordInput.cancel();
    DashboardHarness::settle();
    EXPECT_FALSE(started().masterPassword.isAuthenticated());
    EXPECT_FALSE(started().masterPassword.hasAuthenticationTimer());
    EXPECT_TRUE(started().manager.protectedItems().isEmpty());
}

TEST_F(Bulk, CancellingTheTouchIDQuestionDoesNothing)
{
    storeMasterPassword();
    EXPECT_TRUE(runTask(started().masterPassword.authenticate(theMasterPassword)));
    started().askSomethingElse(true, true);
    bulk().performBulkProtect({writePaper(a)});
    started().chooseTouchID();
    started().confirmationDialog.cancel();
    DashboardHarness::settle();
    EXPECT_EQ(started().strayAnswers, 0);
    EXPECT_TRUE(started().masterPassword.isAuthenticated());
    EXPECT_TRUE(started().manager.protectedItems().isEmpty());
}

TEST_F(Bulk, ProtectOfNothingShowsNothing)
{
    bulk().performBulkProtect({});
    EXPECT_FALSE(started().protectionMethodDialog.isPresented());
}

TEST_F(Bulk, DropOfNothingDoesNothing)
{
    started().dashboard.dropping()->onDrop({});
    started().dashboard.dropping()->onDrop({QUrl(QStringLiteral("https://example.org/a.txt"))});
    DashboardHarness::settle();
    EXPECT_EQ(error(), QString());
    EXPECT_FALSE(started().protectionMethodDialog.isPresented());
}

TEST_F(Bulk, OnlyADragWithALocalFileIsTaken)
{
    const DropActions &dropping = *started().dashboard.dropping();
    const QUrl link(QStringLiteral("https://example.org/a.txt"));
    EXPECT_FALSE(dropping.canDrop({}));
    EXPECT_FALSE(dropping.canDrop({link, QUrl(QStringLiteral("sftp://example.org/a.txt")), QUrl()}));
    EXPECT_TRUE(dropping.canDrop({link, QUrl::fromLocalFile(paper(QStringLiteral("absent")))}));
}

TEST_F(Bulk, DropOfOneItemAsksForItsMethod)
{
    drop({writePaper(a)});
    EXPECT_TRUE(started().protectionMethodDialog.isPresented());
    EXPECT_EQ(started().protectionMethodDialog.title(), QStringLiteral("Protect a.txt"));
}

TEST_F(Bulk, DropWithThisComputerAsItsHostIsADropOfALocalFile)
{
    const QString path = writePaper(a);
    started().dashboard.dropping()->onDrop({QUrl(QStringLiteral("file://localhost") + path)});
    DashboardHarness::settle();
    EXPECT_EQ(error(), QString());
    EXPECT_EQ(started().protectionMethodDialog.title(), QStringLiteral("Protect a.txt"));
}

TEST_F(Bulk, DropOfAPipeIsRejectedBeforeTheMethodIsAsked)
{
    writePaper(a);
    ASSERT_EQ(::mkfifo(QFile::encodeName(paper(QStringLiteral("pipe"))).constData(), 0600), 0);
    drop({paper(QStringLiteral("pipe"))});
    EXPECT_EQ(error(), QStringLiteral("Could not protect \"pipe\" because it is neither a file nor a folder."));
    EXPECT_FALSE(started().protectionMethodDialog.isPresented());
}

TEST_F(Bulk, DropOfOneRejectedItemShowsTheReason)
{
    drop({paper(QStringLiteral("absent"))});
    EXPECT_EQ(error(), QStringLiteral("File or folder does not exist"));
}

TEST_F(Bulk, MixedDropContinuesWithTheItemsThatCanBeProtected)
{
    drop({paper(QStringLiteral("absent")), writePaper(a)});
    EXPECT_EQ(started().protectionMethodDialog.title(), QStringLiteral("Protect 1 Items"));
    EXPECT_EQ(error(), QString());
}

TEST_F(Bulk, DropOfSeveralRejectedItemsIsReported)
{
    drop({paper(QStringLiteral("absent")), paper(QStringLiteral("gone"))});
    EXPECT_EQ(error(), QStringLiteral("None of the selected items can be protected"));
    EXPECT_FALSE(started().protectionMethodDialog.isPresented());
}

TEST_F(Bulk, DroppedLinkIsReplacedByItsTarget)
{
    const QString target = writePaper(a);
    const QString link = paper(QStringLiteral("link"));
    ASSERT_TRUE(QFile::link(target, link));
    drop({link});
    EXPECT_EQ(started().protectionMethodDialog.title(), QStringLiteral("Protect a.txt"));
}

TEST_F(Bulk, DeleteGestureRemovesEachRowSeparately)
{
    protect({a, b, c});
    started().dashboard.itemActions()->deleteFilteredItems({0, 2, 7});
    DashboardHarness::settle();
    EXPECT_EQ(started().shownNames(), QStringLiteral("b.txt"));
    EXPECT_EQ(TemporaryHome::read(paper(c)), c.toUtf8());
}

TEST_F(Bulk, LockingEverythingKeepsTheSelection)
{
    protect({a, b});
    unlockAll();
    started().dashboard.selection()->onSelectionToggle(started().item().id);
    started().dashboard.bulk()->lockEverything();
    DashboardHarness::settle();
    for (const ProtectedItem &item : started().manager.protectedItems()) {
        EXPECT_FALSE(item.isMounted);
    }
    EXPECT_EQ(started().dashboard.selection()->selectedCount(), 1);
}

TEST_F(Bulk, DuplicateOfALockedItemIsListedAndLogged)
{
    protect({a});
    started().dashboard.rowActions()->duplicateAsEncryptedCopy(started().item().id);
    DashboardHarness::settle();
    EXPECT_EQ(started().manager.protectedItems().size(), 1);
    ASSERT_TRUE(started().confirmationDialog.isPresented());
    EXPECT_EQ(started().confirmationDialog.title(), QStringLiteral("Duplicate as Encrypted Copy"));
    started().confirmationDialog.confirm();
    DashboardHarness::settle();
    EXPECT_EQ(started().shownNames(), QStringLiteral("a Copy.txt a.txt"));
    EXPECT_TRUE(log.contains(QStringLiteral("✅ Successfully duplicated: a.txt")));
    EXPECT_TRUE(log.contains(QStringLiteral("Duplicate progress: 0.3")));
    EXPECT_EQ(error(), QString());
}

TEST_F(Bulk, DuplicateThatIsNotConfirmedLeavesNoCopy)
{
    protect({a});
    started().dashboard.rowActions()->duplicateAsEncryptedCopy(started().item().id);
    DashboardHarness::settle();
    started().confirmationDialog.cancel();
    DashboardHarness::settle();
    EXPECT_EQ(started().shownNames(), a);
    EXPECT_FALSE(QFile::exists(paper(QStringLiteral("a Copy.txt"))));
}

TEST_F(Bulk, DuplicateOfAFolderWithAPasswordSaysThatItStaysUnprotected)
{
    started().protect(QFileInfo(services.home.write(QStringLiteral("papers/letters/one.txt"))).path());
    started().dashboard.rowActions()->duplicateAsEncryptedCopy(started().item().id);
    DashboardHarness::settle();
    EXPECT_TRUE(started().confirmationDialog.message().startsWith(
        QStringLiteral("The copy of this folder would stay unprotected in ")));
    started().confirmationDialog.cancel();
    DashboardHarness::settle();
}

TEST_F(Bulk, DuplicateOfAnUnlockedItemShowsTheReason)
{
    protect({a});
    unlockAll();
    started().dashboard.rowActions()->duplicateAsEncryptedCopy(started().item().id);
    DashboardHarness::settle();
    const ErrorDialogSheetModel &sheet = started().dashboard.rowActions()->errorSheet();
    EXPECT_TRUE(sheet.isPresented());
    EXPECT_EQ(sheet.errorMessage(), QuillhavenError(QuillhavenError::itemNotFound).errorDescription());
}
