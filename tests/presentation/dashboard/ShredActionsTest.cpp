// SPDX-License-Identifier: GPL-3.0-or-later

#include "DashboardHarness.h"

#include "catalogue/QuillhavenError.h"
#include "presentation/dialogs/StorageNote.h"
#include "support/CallHooks.h"
#include "support/FileManagerDecorator.h"

#include <QSemaphore>

using namespace quillhaven;
using namespace quillhaven::test;

namespace {

/// Throws a cancelled authentication from every check for a file.
class CancellingFiles : public FileManagerDecorator
{
public:
    using FileManagerDecorator::FileManagerDecorator;
    [[nodiscard]] bool fileExists(const QString &path) const override
    {
        if (isCancelling) {
            throw QuillhavenError(QuillhavenError::authenticationCancelled);
        }
        return FileManagerDecorator::fileExists(path);
    }

    bool isCancelling = false;
};

class Shredding : public DashboardTest
{
protected:
    /// Protects a folder with one file in it. A folder has no password of its own.
    QString protectFolder(const QString &name)
    {
        services.home.write(QStringLiteral("papers/") + name + QStringLiteral("/one.txt"));
        const QString path = services.home.path(QStringLiteral("papers/") + name);
        started().protect(path);
        return path;
    }
    ShredActions &shredding() { return *started().dashboard.shredding(); }
    /// Ticks the box, types the phrase and confirms.
    static void confirm(ShredActions &actions)
    {
        ShredConfirmationDialogModel &dialog = *actions.confirmation();
        dialog.setHasReadWarning(true);
        dialog.setConfirmationText(QStringLiteral("SHRED PERMANENTLY"));
        dialog.confirm();
    }
    void confirm()
    {
        confirm(shredding());
        DashboardHarness::settle();
    }
    QVariantMap finder(const char *action, const QString &path)
    {
        return {{QStringLiteral("action"), QString::fromLatin1(action)}, {QStringLiteral("path"), path}};
    }
};

} // namespace

TEST_F(Shredding, NothingIsDestroyedBeforeTheConfirmation)
{
    protectFolder(QStringLiteral("album"));
    shredding().onShred(started().item().id);
    DashboardHarness::settle();
    EXPECT_TRUE(shredding().confirmation()->isPresented());
    EXPECT_EQ(shredding().confirmation()->itemNames(), QStringList(QStringLiteral("album")));
    EXPECT_TRUE(TemporaryHome::exists(started().item().originalBackupPath));
    EXPECT_EQ(shredding().protectedItemsToShred().size(), 1);
}

TEST_F(Shredding, NamesInTheQuestionDeceiveNobody)
{
    protectFolder(QStringLiteral("album\nholiday.txt"));
    shredding().onShred(started().item().id);
    EXPECT_EQ(shredding().confirmation()->itemNames(), QStringList(QStringLiteral("album↵holiday.txt")))
        << "one name, not two";
}

TEST_F(Shredding, CancelForgetsTheItems)
{
    protectFolder(QStringLiteral("album"));
    shredding().onShred(started().item().id);
    shredding().confirmation()->cancel();
    DashboardHarness::settle();
    EXPECT_FALSE(shredding().confirmation()->isPresented());
    EXPECT_TRUE(shredding().protectedItemsToShred().isEmpty());
    EXPECT_TRUE(shredding().itemsToShred().isEmpty());
    EXPECT_EQ(started().manager.protectedItems().size(), 1);
}

TEST_F(Shredding, ConfirmedShredDestroysOneItemAndForgetsIt)
{
    const QString path = protectFolder(QStringLiteral("album"));
    const ProtectedItem item = started().item();
    started().dashboard.selection()->selectAll();
    shredding().onShred(item.id);
    confirm();
    EXPECT_TRUE(started().manager.protectedItems().isEmpty());
    for (const QString &each : {path, item.originalBackupPath, item.containerPath}) {
        EXPECT_FALSE(TemporaryHome::exists(each)) << qUtf8Printable(each);
    }
    EXPECT_FALSE(shredding().progress()->isPresented());
    EXPECT_EQ(shredding().progress()->percent(), 100);
    EXPECT_TRUE(shredding().protectedItemsToShred().isEmpty());
    EXPECT_EQ(started().dashboard.selection()->selectedCount(), 0);
    EXPECT_FALSE(started().dashboard.showingError());
}

TEST_F(Shredding, SelectionIsShreddedTogether)
{
    protectFolder(QStringLiteral("album"));
    protectFolder(QStringLiteral("diary"));
    protectFolder(QStringLiteral("kept"));
    started().dashboard.filters()->setSearchText(QStringLiteral("a"));
    started().dashboard.selection()->selectAll();
    started().dashboard.filters()->clearAllFilters();
    QStringList reported;
    QObject::connect(shredding().progress(), &OperationProgress::changed, shredding().progress(),
                     [&] { reported.append(shredding().progress()->message()); });
    shredding().performBulkShred();
    EXPECT_EQ(shredding().confirmation()->itemNames(), (QStringList{QStringLiteral("album"), QStringLiteral("diary")}));
    confirm();
    EXPECT_EQ(started().shownNames(), QStringLiteral("kept"));
    EXPECT_TRUE(reported.contains(QStringLiteral("Successfully shredded 2 items")))
        << qUtf8Printable(reported.join(QLatin1Char('|')));
}

TEST_F(Shredding, ItemInUseByAnotherJobIsIgnored)
{
    protectFolder(QStringLiteral("album"));
    started().dashboard.rows().setBusy({started().item().id}, true);
    shredding().onShred(started().item().id);
    EXPECT_FALSE(shredding().confirmation()->isPresented());
}

TEST_F(Shredding, ItemThatAnotherJobStartedToUseIsNotTouched)
{
    protectFolder(QStringLiteral("album"));
    shredding().onShred(started().item().id);
    started().dashboard.rows().setBusy({started().item().id}, true);
    confirm();
    ASSERT_EQ(started().manager.protectedItems().size(), 1);
    EXPECT_TRUE(TemporaryHome::exists(started().item().originalBackupPath + QStringLiteral("/one.txt")));
    EXPECT_FALSE(shredding().progress()->isPresented());
    EXPECT_EQ(started().dashboard.errorMessage(),
              QStringLiteral("\"album\" was not shredded: no longer in the list, or in use by another operation."));
}

TEST_F(Shredding, RowIsBusyWhileItsItemIsShredded)
{
    protectFolder(QStringLiteral("album"));
    const QString id = started().item().id;
    QStringList idle;
    OperationProgress &progress = *shredding().progress();
    QObject::connect(&progress, &OperationProgress::changed, &progress, [&] {
        if (!progress.message().isEmpty() && progress.isPresented() && !started().dashboard.rows().isBusy(id)) {
            idle.append(progress.message());
        }
    });
    shredding().onShred(id);
    confirm();
    EXPECT_EQ(idle, QStringList());
    EXPECT_FALSE(started().dashboard.rows().isBusy(id));
}

TEST_F(Shredding, ItemThatWasUnlockedMeanwhileIsShreddedInItsCurrentState)
{
    const QString path = protectFolder(QStringLiteral("album"));
    const ProtectedItem item = started().item();
    shredding().onShred(item.id);
    runTask(started().manager.unlockItem(item));
    ASSERT_TRUE(TemporaryHome::exists(path + QStringLiteral("/one.txt")));
    confirm();
    EXPECT_FALSE(started().dashboard.showingError()) << qUtf8Printable(started().dashboard.errorMessage());
    EXPECT_FALSE(TemporaryHome::exists(path));
    EXPECT_TRUE(started().manager.protectedItems().isEmpty());
}

TEST_F(Shredding, ItemWhoseProtectionWasRemovedMeanwhileIsNotTouched)
{
    const QString path = protectFolder(QStringLiteral("album"));
    const ProtectedItem item = started().item();
    shredding().onShred(item.id);
    runTask(started().manager.removeProtection(item));
    QStringList reported;
    OperationProgress &progress = *shredding().progress();
    QObject::connect(&progress, &OperationProgress::changed, &progress, [&] { reported.append(progress.message()); });
    confirm();
    EXPECT_TRUE(TemporaryHome::exists(path + QStringLiteral("/one.txt")));
    EXPECT_EQ(reported.join(QString()), QString()) << "no progress is reported without items";
    EXPECT_EQ(started().dashboard.errorMessage(),
              QStringLiteral("\"album\" was not shredded: no longer in the list, or in use by another operation."));
}

TEST_F(Shredding, ItemsThatWerePassedOverAreCountedAndTheOthersAreShredded)
{
    for (const char *name : {"one", "two", "three"}) {
        protectFolder(QString::fromLatin1(name));
    }
    started().dashboard.selection()->selectAll();
    shredding().performBulkShred();
    const QString first = started().item(0).id;
    const QString second = started().item(1).id;
    started().dashboard.rows().setBusy({first, second}, true);
    confirm();
    EXPECT_EQ(started().manager.protectedItems().size(), 2);
    EXPECT_EQ(started().dashboard.errorMessage(),
              QStringLiteral("2 items were not shredded: no longer in the list, or in use by another operation."));
    EXPECT_EQ(started().dashboard.selection()->getSelectedItems().size(), 2);
}

TEST_F(Shredding, OnlyWhatWasConfirmedIsShreddedAlthoughAnotherQuestionComesAtOnce)
{
    const QString first = services.home.write(QStringLiteral("papers/first.txt"));
    const QString second = services.home.write(QStringLiteral("papers/second.txt"));
    shredding().handleShredAction(first);
    confirm(shredding());
    shredding().handleShredAction(second);
    DashboardHarness::settle();
    EXPECT_FALSE(TemporaryHome::exists(first));
    EXPECT_TRUE(TemporaryHome::exists(second));
    EXPECT_EQ(shredding().itemsToShred(), QStringList(second));
    EXPECT_TRUE(shredding().confirmation()->isPresented());
}

TEST_F(Shredding, FailureIsShownAndClearsTheListButNotTheSelection)
{
    DashboardHarness &harness = started();
    harness.protect(services.home.write(QStringLiteral("papers/will.pdf")));
    harness.dashboard.selection()->selectAll();
    shredding().onShred(harness.item().id);
    confirm();
    ASSERT_TRUE(harness.passwordDialog.isPresented());
    EXPECT_TRUE(shredding().progress()->isPresented());
    harness.typePassword(QStringLiteral("wrong"));
    EXPECT_EQ(harness.dashboard.errorMessage(),
              QuillhavenError(QuillhavenError::authenticationFailed).errorDescription());
    EXPECT_TRUE(harness.dashboard.showingError());
    EXPECT_FALSE(shredding().progress()->isPresented());
    EXPECT_TRUE(shredding().protectedItemsToShred().isEmpty());
    EXPECT_EQ(harness.dashboard.selection()->selectedCount(), 1);
    EXPECT_EQ(harness.manager.protectedItems().size(), 1);
    EXPECT_FALSE(harness.dashboard.rows().isBusy(harness.item().id));
}

TEST_F(Shredding, CancelledAuthenticationKeepsTheListAndShowsNothing)
{
    CancellingFiles files(services.fileManager);
    DashboardHarness harness(services.platform(files));
    services.home.write(QStringLiteral("papers/album/one.txt"));
    harness.protect(services.home.path(QStringLiteral("papers/album")));
    ShredActions &actions = *harness.dashboard.shredding();
    harness.dashboard.selection()->selectAll();
    actions.onShred(harness.item().id);
    files.isCancelling = true;
    actions.performShredOperation();
    DashboardHarness::settle();
    files.isCancelling = false;
    EXPECT_TRUE(log.contains(QStringLiteral("Authentication cancelled by user")));
    EXPECT_FALSE(harness.dashboard.showingError());
    EXPECT_FALSE(actions.progress()->isPresented());
    EXPECT_EQ(actions.protectedItemsToShred().size(), 1);
    EXPECT_EQ(harness.dashboard.selection()->selectedCount(), 1);
}

TEST_F(Shredding, FinderShredOfAnUnknownPathShredsItAfterTheConfirmation)
{
    const QString path = services.home.write(QStringLiteral("papers/loose.txt"));
    started().dashboard.handleFinderAction(finder("shred", path));
    DashboardHarness::settle();
    EXPECT_EQ(shredding().confirmation()->itemNames(), QStringList(QStringLiteral("loose.txt")));
    EXPECT_EQ(shredding().itemsToShred(), QStringList(path));
    EXPECT_TRUE(shredding().protectedItemsToShred().isEmpty());
    EXPECT_TRUE(TemporaryHome::exists(path));
    confirm();
    EXPECT_FALSE(TemporaryHome::exists(path));
    EXPECT_TRUE(shredding().itemsToShred().isEmpty());
}

TEST_F(Shredding, FinderShredOfAnItemShredsTheItem)
{
    const QString path = protectFolder(QStringLiteral("album"));
    started().dashboard.handleFinderAction(finder("shred", path));
    EXPECT_TRUE(shredding().itemsToShred().isEmpty());
    EXPECT_EQ(shredding().protectedItemsToShred().size(), 1);
}

TEST_F(Shredding, FinderShredFindsAnItemOnlyByItsExactPath)
{
    protectFolder(QStringLiteral("album"));
    const QString other = services.home.write(QStringLiteral("papers/Album"));
    started().dashboard.handleFinderAction(finder("shred", other));
    EXPECT_TRUE(shredding().protectedItemsToShred().isEmpty());
    EXPECT_EQ(shredding().itemsToShred(), QStringList(other));
}

TEST_F(Shredding, LaterQuestionReplacesTheEarlierOne)
{
    const QString first = services.home.write(QStringLiteral("papers/first.txt"));
    const QString second = services.home.write(QStringLiteral("papers/second.txt"));
    started().dashboard.handleFinderAction(finder("shred", first));
    started().dashboard.handleFinderAction(finder("shred", second));
    EXPECT_EQ(shredding().confirmation()->itemNames(), QStringList(QStringLiteral("second.txt")));
    confirm();
    EXPECT_TRUE(TemporaryHome::exists(first));
    EXPECT_FALSE(TemporaryHome::exists(second));
}

TEST_F(Shredding, QuestionAskedDuringAShredRemainsOpenAfterIt)
{
    SeamHooks hooks;
    HookedFileManager files(services.fileManager, hooks);
    DashboardHarness harness(services.platform(files));
    ShredActions &actions = *harness.dashboard.shredding();
    const QString first = services.home.write(QStringLiteral("papers/first.txt"), "first");
    const QString second = services.home.write(QStringLiteral("papers/second.txt"), "second");
    HeldCall rename(hooks, "renameItem", first);
    actions.handleShredAction(first);
    confirm(actions);
    ASSERT_TRUE(rename.hasStarted());
    actions.handleShredAction(second);
    rename.letGo();
    DashboardHarness::settle();
    EXPECT_FALSE(TemporaryHome::exists(first));
    EXPECT_TRUE(actions.confirmation()->isPresented());
    EXPECT_EQ(actions.itemsToShred(), QStringList(second));
    confirm(actions);
    DashboardHarness::settle();
    EXPECT_FALSE(TemporaryHome::exists(second)) << "the confirmed shred is completed";
    EXPECT_TRUE(actions.itemsToShred().isEmpty());
}

TEST_F(Shredding, ConfirmationNotesWhatTheVolumesOfTheItemsMayKeep)
{
    const QString path = services.home.write(QStringLiteral("papers/loose.txt"));
    services.volumes.facts[path] = {.isSolidState = true, .isUnencrypted = true};
    shredding().handleShredAction(path);
    EXPECT_EQ(shredding().confirmation()->storageNote(), QString()) << "the sheet does not wait for the disk";
    DashboardHarness::settle();
    EXPECT_EQ(shredding().confirmation()->storageNote(), storageNote({.isSolidState = true, .isUnencrypted = true}));
    shredding().confirmation()->cancel();
    shredding().handleShredAction(services.home.write(QStringLiteral("papers/other.txt")));
    DashboardHarness::settle();
    EXPECT_EQ(shredding().confirmation()->storageNote(), QString()) << "nothing is known of the other file";
}

TEST_F(Shredding, NoteCoversAllPlacesOfAllItems)
{
    const QString album = protectFolder(QStringLiteral("album"));
    protectFolder(QStringLiteral("diary"));
    const auto facts = [this](const QString &path) -> StorageFacts & { return services.volumes.facts[path]; };
    facts(album).isSynced = true;
    facts(started().item(0).originalBackupPath).isSolidState = true;
    facts(started().item(1).containerPath).hasSnapshots = true;
    started().dashboard.selection()->selectAll();
    shredding().performBulkShred();
    DashboardHarness::settle();
    EXPECT_EQ(shredding().confirmation()->storageNote(),
              storageNote({.isSolidState = true, .isSynced = true, .hasSnapshots = true}));
}

TEST_F(Shredding, NoteForAnEarlierQuestionIsDropped)
{
    const QString slow = services.home.write(QStringLiteral("papers/slow.txt"));
    const QString fast = services.home.write(QStringLiteral("papers/fast.txt"));
    services.volumes.facts[slow].isRemote = true;
    services.volumes.facts[fast].isSolidState = true;
    QSemaphore isAsked;
    QSemaphore letGo;
    services.volumes.onQuestion = [&](const QString &path) {
        if (path == slow) {
            isAsked.release();
            letGo.acquire();
        }
    };
    shredding().handleShredAction(slow);
    ASSERT_TRUE(spinUntil([&] { return isAsked.tryAcquire(); }));
    shredding().handleShredAction(fast);
    const QString expected = storageNote({.isSolidState = true});
    EXPECT_TRUE(spinUntil([&] { return shredding().confirmation()->storageNote() == expected; }));
    letGo.release();
    DashboardHarness::settle();
    EXPECT_EQ(shredding().confirmation()->storageNote(), expected);
}

TEST_F(Shredding, FinderUnlockAndLockWorkOnTheItemOfThePath)
{
    const QString path = protectFolder(QStringLiteral("album"));
    started().dashboard.handleFinderAction(finder("lock", path));
    DashboardHarness::settle();
    EXPECT_TRUE(TemporaryHome::exists(started().item().originalBackupPath + QStringLiteral("/one.txt")))
        << "a locked item is not locked again";
    started().dashboard.handleFinderAction(finder("unlock", path));
    DashboardHarness::settle();
    EXPECT_TRUE(started().item().isMounted);
    started().dashboard.handleFinderAction(finder("lock", path));
    DashboardHarness::settle();
    EXPECT_FALSE(started().item().isMounted);
}

TEST_F(Shredding, FinderActionOfAnUnknownKindOrPathDoesNothing)
{
    const QString path = protectFolder(QStringLiteral("album"));
    DashboardViewModel &dashboard = started().dashboard;
    dashboard.handleFinderAction(finder("unlock", path + QStringLiteral("2")));
    dashboard.handleFinderAction(finder("Unlock", path));
    dashboard.handleFinderAction({{QStringLiteral("action"), QStringLiteral("unlock")}});
    dashboard.handleFinderAction({{QStringLiteral("action"), 1}, {QStringLiteral("path"), path}});
    DashboardHarness::settle();
    EXPECT_FALSE(started().item().isMounted);
    EXPECT_FALSE(dashboard.showingError());
    EXPECT_FALSE(shredding().confirmation()->isPresented());
}

TEST_F(Shredding, FinderProtectAsksForTheMethod)
{
    started().dashboard.handleFinderAction(finder("protect", services.home.write(QStringLiteral("papers/a.txt"))));
    DashboardHarness::settle();
    EXPECT_EQ(started().protectionMethodDialog.title(), QStringLiteral("Protect a.txt"));
    started().cancelMethod();
}
