// SPDX-License-Identifier: GPL-3.0-or-later

#include "engine/PlaceholderFile.h"
#include "engine/ProgressLog.h"
#include "support/CallHooks.h"
#include "support/EngineHarness.h"

#include <QFile>

using namespace quillhaven;
using namespace quillhaven::test;

namespace {

using Lines = QStringList;

class BulkOperations : public ::testing::Test
{
protected:
    BulkOperations() { services.credentials.entries.insert(QStringLiteral("master_password"), "Master12"); }

    QString desktop(const QString &name) const { return services.home.path(QStringLiteral("Desktop/") + name); }
    QStringList writeFiles(const QStringList &names) const
    {
        QStringList paths;
        for (const QString &name : names) {
            paths.append(services.home.write(QStringLiteral("Desktop/") + name, name.toUtf8()));
        }
        return paths;
    }
    /// Starts the engine and protects files with these names; they are locked, and no master session is open.
    void start(const QStringList &names)
    {
        engine.emplace(services, files);
        engine->masterPasswordEntry = QStringLiteral("Master12");
        for (const QString &path : writeFiles(names)) {
            engine->protect(path);
        }
        settle();
    }
    void startUnlocked(const QStringList &names)
    {
        start(names);
        for (qsizetype index = 0; index < names.size(); ++index) {
            engine->unlock(index);
        }
        settle();
    }
    /// Resets the counts and logs of the preparation.
    void settle()
    {
        engine->masterPrompts = 0;
        engine->passwordPrompts = 0;
        services.panels.placeRequests.clear();
        services.panels.accessRequests.clear();
        progress.emplace(engine->manager);
        log.clear();
    }
    /// Lets the user grant access to these paths, in this order.
    void grantOnly(const QStringList &paths)
    {
        services.panels.grant = [paths](const AccessRequest &) { return std::optional(paths); };
    }
    void dismissPanel()
    {
        services.panels.grant = [](const AccessRequest &) { return std::nullopt; };
    }

    QuillhavenManager &manager() { return engine->manager; }
    QList<ProtectedItem> items() { return engine->manager.protectedItems(); }
    ProgressCallback callback() { return progress->callback(); }

    /// Runs the task and waits until the flag is reset, which would otherwise affect the next run.
    void run(QCoro::Task<> task)
    {
        runTask(std::move(task));
        expectFlagIsReset();
    }
    /// Runs a task that fails with errors of items, and returns the text for the user.
    QString failureOf(QCoro::Task<> task)
    {
        QString text;
        EXPECT_EQ(engineErrorOf([&] { runTask(std::move(task)); }, &text), QuillhavenError::encryptionFailed);
        expectFlagIsReset();
        return text;
    }
    void expectFlagIsReset()
    {
        EXPECT_TRUE(spinUntil([this] { return !manager().isProcessing(); }));
    }
    void expectSucceeded()
    {
        EXPECT_EQ(engine->masterPrompts, 1) << "one check for the whole run";
        EXPECT_FALSE(engine->masterPassword.isAuthenticated());
        EXPECT_FALSE(engine->masterPassword.hasAuthenticationTimer());
    }
    void expectSessionIsLeftOpen()
    {
        EXPECT_EQ(engine->masterPrompts, 1);
        EXPECT_TRUE(engine->masterPassword.isAuthenticated());
        EXPECT_TRUE(engine->masterPassword.hasAuthenticationTimer());
    }

    TestPlatform services;
    SeamHooks hooks;
    HookedFileManager files{services.fileManager, hooks};
    LogCapture log;
    std::optional<EngineHarness> engine;
    std::optional<ProgressLog> progress;
    const QString a = desktop(QStringLiteral("a.txt"));
    const QString b = desktop(QStringLiteral("b.txt"));
    const QString c = desktop(QStringLiteral("c.txt"));
    const QStringList three{QStringLiteral("a.txt"), QStringLiteral("b.txt"), QStringLiteral("c.txt")};
};

} // namespace

TEST_F(BulkOperations, EmptyListLocksNothingReportsZeroOfZeroAndClosesTheSession)
{
    start({});
    run(manager().bulkLockItems({}, callback()));
    EXPECT_EQ(progress->lines, Lines(QStringLiteral("1 Completed 0 of 0 items")));
    expectSucceeded();
}

TEST_F(BulkOperations, EmptyListStillShowsThePanelIfAccessIsNeeded)
{
    start({});
    run(manager().bulkUnlockItems({}, callback()));
    const Lines lines{QStringLiteral("0 Requesting file access for 0 items..."),
                      QStringLiteral("1 Completed 0 of 0 items")};
    EXPECT_EQ(progress->lines, lines);
    EXPECT_EQ(services.panels.accessRequests.size(), 1);
    expectSucceeded();
}

TEST_F(BulkOperations, ProtectingReportsEachItemAndItsShare)
{
    start({});
    const QStringList paths = writeFiles(three);
    run(manager().bulkProtectItems(paths, QStringLiteral("Abcdefg1"), false, callback()));
    const Lines lines{QStringLiteral("0 Requesting file access..."), QStringLiteral("0 Protecting a.txt..."),
                      QStringLiteral("0.333333333333333 Protecting b.txt..."),
                      QStringLiteral("0.666666666666667 Protecting c.txt..."),
                      QStringLiteral("1 Completed 3 of 3 items")};
    EXPECT_EQ(progress->lines, lines);
    ASSERT_EQ(engine->count(), 3);
    for (qsizetype index = 0; index < 3; ++index) {
        const ProtectedItem &item = engine->item(index);
        EXPECT_EQ(item.originalPath, paths.at(index));
        EXPECT_EQ(TemporaryHome::read(item.originalPath), placeholderText.toUtf8());
        EXPECT_EQ(TemporaryHome::read(item.originalBackupPath), item.originalName.toUtf8());
        EXPECT_EQ(services.credentials.entries.value(item.id), "Abcdefg1");
    }
    expectSucceeded();
    EXPECT_EQ(EngineHarness(services).count(), 3) << "each item is saved";
}

TEST_F(BulkOperations, TwoGrantedPathsOfThreeAreTwoOfTwoInTheRequestedOrder)
{
    start({});
    const QStringList paths = writeFiles(three);
    grantOnly({c, desktop(QStringLiteral("never-asked")), a});
    run(manager().bulkProtectItems(paths, QStringLiteral("Abcdefg1"), false, callback()));
    const Lines lines{QStringLiteral("0 Requesting file access..."), QStringLiteral("0 Protecting a.txt..."),
                      QStringLiteral("0.5 Protecting c.txt..."), QStringLiteral("1 Completed 2 of 2 items")};
    EXPECT_EQ(progress->lines, lines);
    EXPECT_EQ(TemporaryHome::read(b), "b.txt");
    expectSucceeded();
}

TEST_F(BulkOperations, NothingGrantedIsZeroOfZero)
{
    start({});
    const QStringList paths = writeFiles(three);
    grantOnly({});
    run(manager().bulkProtectItems(paths, QStringLiteral("Abcdefg1"), false, callback()));
    EXPECT_EQ(progress->lines.last(), QStringLiteral("1 Completed 0 of 0 items"));
    EXPECT_EQ(engine->count(), 0);
    expectSucceeded();
}

TEST_F(BulkOperations, OnePanelAsksForAllItems)
{
    startUnlocked(three);
    run(manager().bulkLockItems(items(), callback()));
    EXPECT_TRUE(services.panels.accessRequests.isEmpty()) << "locking needs no panel";
    run(manager().bulkUnlockItems(items(), callback()));
    run(manager().bulkRemoveProtection(items(), callback()));
    const QStringList paths{a, b, c};
    run(manager().bulkProtectItems(paths, QStringLiteral("Abcdefg1"), false, callback()));
    ASSERT_EQ(services.panels.accessRequests.size(), 3);
    for (const AccessRequest &request : services.panels.accessRequests) {
        EXPECT_EQ(request.paths, paths);
        EXPECT_EQ(request.message, QStringLiteral("Please grant access to the selected items for bulk protection"));
        EXPECT_EQ(request.prompt, QStringLiteral("Grant Access"));
    }
    EXPECT_TRUE(services.panels.placeRequests.isEmpty());
}

TEST_F(BulkOperations, ProtectingWithTouchIDAppliesToAll)
{
    start({});
    run(manager().bulkProtectItems(writeFiles(three), {}, true, callback()));
    for (const ProtectedItem &item : items()) {
        EXPECT_TRUE(item.useTouchID);
        EXPECT_FALSE(services.credentials.entries.contains(item.id));
    }
    EXPECT_EQ(services.credentials.entries.size(), 1 + 3) << "a key for each item and the master password";
}

TEST_F(BulkOperations, UnlockingReportsEachItemAndAsksForEachPassword)
{
    start(three);
    run(manager().bulkUnlockItems(items(), callback()));
    const Lines lines{QStringLiteral("0 Requesting file access for 3 items..."),
                      QStringLiteral("0.1 Unlocking a.txt..."), QStringLiteral("0.4 Unlocking b.txt..."),
                      QStringLiteral("0.7 Unlocking c.txt..."), QStringLiteral("1 Completed 3 of 3 items")};
    EXPECT_EQ(progress->lines, lines);
    EXPECT_EQ(engine->passwordPrompts, 3);
    for (const ProtectedItem &item : items()) {
        EXPECT_TRUE(item.isMounted);
        EXPECT_EQ(TemporaryHome::read(item.originalPath), item.originalName.toUtf8());
    }
    const Lines logged{QStringLiteral("🔓 Unlocking: a.txt"), QStringLiteral("🔓 Unlocking: b.txt"),
                       QStringLiteral("🔓 Unlocking: c.txt")};
    EXPECT_EQ(log.lines().filter(QStringLiteral("🔓")), logged);
    expectSucceeded();
}

TEST_F(BulkOperations, ItemWhosePasswordDialogIsCancelledRemainsLockedAndCountsAsASuccess)
{
    start(three);
    engine->itemPassword.reset();
    run(manager().bulkUnlockItems(items(), callback()));
    EXPECT_EQ(progress->lines.last(), QStringLiteral("1 Completed 3 of 3 items"));
    EXPECT_EQ(engine->passwordPrompts, 3);
    for (const ProtectedItem &item : items()) {
        EXPECT_FALSE(item.isMounted);
        EXPECT_EQ(TemporaryHome::read(item.originalPath), placeholderText.toUtf8());
    }
    expectSucceeded();
}

TEST_F(BulkOperations, WrongPasswordAndMissingCopyAreReportedInTheOrderOfTheRun)
{
    start(three);
    services.credentials.entries.insert(engine->item(0).id, "Another1");
    ASSERT_TRUE(QFile::remove(engine->item(1).originalBackupPath));
    EXPECT_EQ(failureOf(manager().bulkUnlockItems(items(), callback())),
              QStringLiteral("Failed to create encrypted container: Some items failed to unlock:\n"
                             "a.txt: Authentication failed. Please try again.\n"
                             "b.txt: The selected file or folder could not be found."));
    EXPECT_EQ(progress->lines.last(), QStringLiteral("1 Completed 1 of 3 items"));
    EXPECT_TRUE(engine->item(2).isMounted) << "an item that fails does not stop the run";
    expectSessionIsLeftOpen();
}

TEST_F(BulkOperations, ItemsWithoutGrantedAccessAreReportedWhenUnlocking)
{
    start(three);
    grantOnly({b});
    EXPECT_EQ(failureOf(manager().bulkUnlockItems(items(), callback())),
              QStringLiteral("Failed to create encrypted container: Some items failed to unlock:\n"
                             "a.txt: File access not granted for a.txt\n"
                             "c.txt: File access not granted for c.txt"));
    const Lines lines{QStringLiteral("0 Requesting file access for 3 items..."),
                      QStringLiteral("0.1 Unlocking a.txt..."), QStringLiteral("0.4 Unlocking b.txt..."),
                      QStringLiteral("0.7 Unlocking c.txt..."), QStringLiteral("1 Completed 1 of 3 items")};
    EXPECT_EQ(progress->lines, lines);
    EXPECT_EQ(engine->passwordPrompts, 1) << "no password is asked for items that are not granted";
    EXPECT_TRUE(engine->item(1).isMounted);
}

TEST_F(BulkOperations, LockingReportsEachItemAndItsShare)
{
    startUnlocked(three);
    run(manager().bulkLockItems(items(), callback()));
    const Lines lines{QStringLiteral("0 Locking a.txt..."), QStringLiteral("0.333333333333333 Locking b.txt..."),
                      QStringLiteral("0.666666666666667 Locking c.txt..."), QStringLiteral("1 Completed 3 of 3 items")};
    EXPECT_EQ(progress->lines, lines);
    for (const ProtectedItem &item : items()) {
        EXPECT_FALSE(item.isMounted);
        EXPECT_EQ(TemporaryHome::read(item.originalBackupPath), item.originalName.toUtf8());
        EXPECT_EQ(TemporaryHome::read(item.originalPath), placeholderText.toUtf8());
    }
    expectSucceeded();
}

TEST_F(BulkOperations, FailedLockIsReportedWithBothHeadingsAndTheOthersAreLocked)
{
    startUnlocked(three);
    hooks.before = failing("moveItem", EIO, {a, c});
    const QString lineA = FileError::fromErrno(EIO, FileError::Action::Move, a).errorDescription();
    const QString lineC = FileError::fromErrno(EIO, FileError::Action::Move, c).errorDescription();
    EXPECT_EQ(failureOf(manager().bulkLockItems(items(), callback())),
              QStringLiteral("Failed to create encrypted container: Some items failed to lock:\n"
                             "a.txt: %1\nc.txt: %2")
                  .arg(lineA, lineC));
    EXPECT_EQ(progress->lines.last(), QStringLiteral("1 Completed 1 of 3 items"));
    EXPECT_TRUE(engine->item(0).isMounted);
    EXPECT_FALSE(engine->item(1).isMounted);
    EXPECT_TRUE(engine->item(2).isMounted);
    EXPECT_EQ(TemporaryHome::read(a), "a.txt");
    expectSessionIsLeftOpen();
}

TEST_F(BulkOperations, ItemThatRunsOutOfMemoryIsReportedLikeAnyOtherFailure)
{
    startUnlocked(three);
    hooks.before = withoutMemory("moveItem", b);
    EXPECT_EQ(failureOf(manager().bulkLockItems(items(), callback())),
              QStringLiteral("Failed to create encrypted container: Some items failed to lock:\n"
                             "b.txt: ") +
                  QString::fromUtf8(std::bad_alloc().what()));
    EXPECT_EQ(progress->lines.last(), QStringLiteral("1 Completed 2 of 3 items"));
    EXPECT_FALSE(engine->item(2).isMounted);
}

TEST_F(BulkOperations, PanelThatRunsOutOfMemoryFailsTheRunAndLeavesNothingBusy)
{
    start(three);
    services.panels.grant = [](const AccessRequest &) -> std::optional<QStringList> { throw std::bad_alloc(); };
    EXPECT_THROW(runTask(manager().bulkUnlockItems(items(), callback())), std::bad_alloc);
    spinOnce();
    EXPECT_FALSE(manager().isProcessing());
    EXPECT_FALSE(engine->item(0).isMounted);
}

TEST_F(BulkOperations, SessionThatAFailedRunLeftOpenIsUsedByTheNextRun)
{
    startUnlocked(three);
    hooks.before = failing("moveItem", EIO, {a});
    failureOf(manager().bulkLockItems(items(), callback()));
    hooks.before = nullptr;
    run(manager().bulkLockItems({engine->item(0)}, callback()));
    expectSucceeded();
}

TEST_F(BulkOperations, RemovingReportsEachItemAndRestoresThem)
{
    start(three);
    run(manager().bulkRemoveProtection(items(), callback()));
    const Lines lines{QStringLiteral("0 Requesting file access for 3 items..."),
                      QStringLiteral("0.1 Removing protection from a.txt..."),
                      QStringLiteral("0.4 Removing protection from b.txt..."),
                      QStringLiteral("0.7 Removing protection from c.txt..."),
                      QStringLiteral("1 Completed 3 of 3 items")};
    EXPECT_EQ(progress->lines, lines);
    EXPECT_EQ(engine->count(), 0);
    EXPECT_EQ(TemporaryHome::read(a), "a.txt");
    EXPECT_EQ(TemporaryHome::read(c), "c.txt");
    EXPECT_EQ(services.credentials.entries.keys(), QStringList(QStringLiteral("master_password")));
    expectSucceeded();
    EXPECT_EQ(EngineHarness(services).count(), 0);
}

TEST_F(BulkOperations, FailedRemovalHasItsOwnHeading)
{
    start(three);
    grantOnly({a, b});
    ASSERT_TRUE(QFile::remove(engine->item(1).originalBackupPath));
    EXPECT_EQ(failureOf(manager().bulkRemoveProtection(items(), callback())),
              QStringLiteral("Failed to create encrypted container: Some items failed to remove protection:\n"
                             "b.txt: The selected file or folder could not be found.\n"
                             "c.txt: File access not granted for c.txt"));
    EXPECT_EQ(progress->lines.last(), QStringLiteral("1 Completed 1 of 3 items"));
    EXPECT_EQ(engine->count(), 2);
    EXPECT_EQ(TemporaryHome::read(a), "a.txt");
    expectSessionIsLeftOpen();
}

TEST_F(BulkOperations, FailedProtectionHasItsOwnHeadingAndNamesTheFile)
{
    start({});
    const QStringList paths = writeFiles(three);
    ASSERT_TRUE(QFile::remove(b));
    EXPECT_EQ(failureOf(manager().bulkProtectItems(paths, QStringLiteral("Abcdefg1"), false, callback())),
              QStringLiteral("Failed to create encrypted container: Some items failed to protect:\n"
                             "b.txt: The selected file or folder could not be found."));
    EXPECT_EQ(progress->lines.last(), QStringLiteral("1 Completed 2 of 3 items"));
    EXPECT_EQ(engine->count(), 2);
    expectSessionIsLeftOpen();
}

TEST_F(BulkOperations, FoldersAndFilesCanBeMixedAndOnlyFilesNeedAPassword)
{
    start({});
    services.home.write(QStringLiteral("Desktop/folder/inner.txt"), "inner");
    const QStringList paths{desktop(QStringLiteral("folder")), writeFiles(three).first()};
    run(manager().bulkProtectItems(paths, QStringLiteral("Abcdefg1"), false, callback()));
    run(manager().bulkUnlockItems(items(), callback()));
    EXPECT_EQ(engine->passwordPrompts, 1);
    EXPECT_EQ(TemporaryHome::read(desktop(QStringLiteral("folder/inner.txt"))), "inner");
    EXPECT_EQ(TemporaryHome::read(a), "a.txt");
}

TEST_F(BulkOperations, EachItemStartsAfterThePreviousOneHasEnded)
{
    startUnlocked(three);
    HeldCall move(hooks, "moveItem", a);
    const RunningTask<void> locking(manager().bulkLockItems(items(), callback()));
    ASSERT_TRUE(move.hasStarted());
    spinOnce();
    EXPECT_EQ(progress->lines, Lines(QStringLiteral("0 Locking a.txt...")));
    EXPECT_EQ(TemporaryHome::read(b), "b.txt");
    EXPECT_TRUE(manager().isProcessing());
    move.letGo();
    locking.wait();
    EXPECT_EQ(progress->lines.last(), QStringLiteral("1 Completed 3 of 3 items"));
}

TEST_F(BulkOperations, DismissedPanelEndsTheRunWithoutAMessageAndLeavesTheSessionOpen)
{
    start({});
    dismissPanel();
    run(manager().bulkProtectItems(writeFiles(three), QStringLiteral("Abcdefg1"), false, callback()));
    EXPECT_EQ(progress->lines, Lines(QStringLiteral("0 Requesting file access...")));
    EXPECT_EQ(engine->count(), 0);
    EXPECT_EQ(TemporaryHome::read(a), "a.txt");
    expectSessionIsLeftOpen();
}

TEST_F(BulkOperations, DismissedPanelUnlocksNothing)
{
    start(three);
    dismissPanel();
    run(manager().bulkUnlockItems(items(), callback()));
    EXPECT_EQ(progress->lines, Lines(QStringLiteral("0 Requesting file access for 3 items...")));
    EXPECT_EQ(engine->passwordPrompts, 0);
    EXPECT_FALSE(engine->item(0).isMounted);
    expectSessionIsLeftOpen();
}

TEST_F(BulkOperations, DismissedPanelRemovesNothing)
{
    start(three);
    dismissPanel();
    run(manager().bulkRemoveProtection(items(), callback()));
    EXPECT_EQ(progress->lines, Lines(QStringLiteral("0 Requesting file access for 3 items...")));
    EXPECT_EQ(engine->count(), 3);
    expectSessionIsLeftOpen();
}

TEST_F(BulkOperations, CancelledMasterPromptEndsEachRunBeforeItsFirstReport)
{
    startUnlocked(three);
    run(manager().bulkLockItems({engine->item(0)}, callback()));
    settle();
    engine->masterPasswordEntry.reset();
    runTask(
        manager().bulkProtectItems(writeFiles({QStringLiteral("new")}), QStringLiteral("Abcdefg1"), false, callback()));
    run(manager().bulkUnlockItems(items(), callback()));
    run(manager().bulkLockItems(items(), callback()));
    run(manager().bulkRemoveProtection(items(), callback()));
    EXPECT_EQ(engine->masterPrompts, 4);
    EXPECT_EQ(progress->lines, Lines());
    EXPECT_TRUE(services.panels.accessRequests.isEmpty());
    EXPECT_FALSE(manager().isProcessing());
    EXPECT_EQ(engine->count(), 3);
    EXPECT_FALSE(engine->item(0).isMounted);
    EXPECT_TRUE(engine->item(1).isMounted);
}

TEST_F(BulkOperations, RunWithoutAMasterPasswordDoesNotAskForOne)
{
    services.credentials.entries.clear();
    start(three);
    run(manager().bulkUnlockItems(items(), callback()));
    EXPECT_EQ(engine->masterPrompts, 0);
    EXPECT_EQ(progress->lines.last(), QStringLiteral("1 Completed 3 of 3 items"));
}

TEST_F(BulkOperations, FlagRemainsSetUntilTheRunHasReturned)
{
    start(three);
    bool wasSetAtTheEnd = false;
    int resets = 0;
    QObject::connect(&manager(), &QuillhavenManager::isProcessingChanged, &manager(),
                     [&] { resets += manager().isProcessing() ? 0 : 1; });
    const ProgressCallback last = [&](const QString &, double) { wasSetAtTheEnd = manager().isProcessing(); };
    run(manager().bulkUnlockItems(items(), last));
    EXPECT_TRUE(wasSetAtTheEnd);
    EXPECT_EQ(resets, 1);
}
