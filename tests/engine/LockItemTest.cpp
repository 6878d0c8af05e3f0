// SPDX-License-Identifier: GPL-3.0-or-later

#include "engine/ProtectedFileFixture.h"

#include <QFile>

using namespace quillhaven;
using namespace quillhaven::test;
using namespace std::chrono_literals;

namespace {

class LockItem : public ProtectedFileTest
{
protected:
    /// The error of a lock whose move takes this long, and then fails if `failure` does.
    QuillhavenError::Case errorOfLockOver(std::chrono::milliseconds duration, const SeamHooks::Hook &failure = {})
    {
        HeldCall move(hooks, "moveItem");
        hooks.before = [held = hooks.before, failure](const char *call, const QString &at) {
            held(call, at);
            if (failure) {
                failure(call, at);
            }
        };
        const RunningTask<void> locking(engine.manager.lockItem(engine.item()));
        EXPECT_TRUE(move.hasStarted());
        services.clock.advance(duration);
        move.letGo();
        return engineErrorOf([&] { locking.wait(); });
    }
    /// What every lock logs before the move has ended.
    [[nodiscard]] QString beginningOfALock() const
    {
        return QStringLiteral("Locking item: a.txt, isFolder: false\n"
                              "Original path exists: %1\n"
                              "Target backup path: %2\n"
                              "🔄 Starting move operation for file: a.txt\n")
            .arg(path, engine.item().originalBackupPath);
    }

    const QString errorOfLockItem =
        QStringLiteral("❌ Error in lockItem (timeout or other), setting isProcessing = false for item");
};

} // namespace

TEST_F(LockItem, DataIsMovedToItsNameInPrivateStorageAndThePlaceholderIsWritten)
{
    startUnlocked();
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("edited");
    file.close();
    const QByteArray container = TemporaryHome::read(engine.item().containerPath);
    log.clear();
    engine.lock();

    const ProtectedItem &item = engine.item();
    EXPECT_FALSE(item.isMounted);
    EXPECT_FALSE(item.mountedPath.has_value());
    EXPECT_FALSE(item.isProcessing);
    EXPECT_EQ(engine.storedItems(), QList<ProtectedItem>{item});
    EXPECT_EQ(TemporaryHome::read(item.originalBackupPath), "edited");
    EXPECT_EQ(TemporaryHome::read(path), placeholderText.toUtf8());
    EXPECT_EQ(TemporaryHome::read(item.containerPath), container) << "the container is unchanged";
    EXPECT_EQ(log.lines().join(QLatin1Char('\n')),
              QStringLiteral("Locking item: a.txt, isFolder: false\n"
                             "Original path exists: %1\n"
                             "Target backup path: %2\n"
                             "🔄 Starting move operation for file: a.txt\n"
                             "✅ Successfully moved file to secure storage in 0.00s\n"
                             "🔄 Updating UI state for file: a.txt\n"
                             "✅ Updated protected items list\n"
                             "✅ Set isProcessing = false for item")
                  .arg(path, item.originalBackupPath));
}

TEST_F(LockItem, FolderIsLockedInTheSameWayAndLoggedAsAFolder)
{
    services.home.write(QStringLiteral("Desktop/folder/deep/inner.txt"), "inner");
    engine.protect(services.home.path(QStringLiteral("Desktop/folder")));
    engine.unlock();
    log.clear();
    engine.lock();
    EXPECT_TRUE(log.contains(QStringLiteral("🔄 Starting move operation for folder: folder")));
    EXPECT_EQ(TemporaryHome::read(engine.item().originalBackupPath + QStringLiteral("/deep/inner.txt")), "inner");
    EXPECT_EQ(engine.passwordPrompts, 0) << "a folder has no password of its own";
}

TEST_F(LockItem, DeletedOriginalStillLocksAndWritesThePlaceholder)
{
    startUnlocked();
    ASSERT_TRUE(QFile::remove(path));
    engine.lock();
    EXPECT_FALSE(engine.item().isMounted);
    EXPECT_EQ(TemporaryHome::read(path), placeholderText.toUtf8());
    EXPECT_FALSE(TemporaryHome::exists(engine.item().originalBackupPath));
    EXPECT_EQ(engineErrorOf([&] { engine.unlock(); }), QuillhavenError::itemNotFound);
}

TEST_F(LockItem, ExistingCopyAtTheTargetIsReplaced)
{
    startUnlocked("new");
    QFile stale(engine.item().originalBackupPath);
    ASSERT_TRUE(stale.open(QIODevice::WriteOnly));
    stale.write("stale");
    stale.close();
    engine.lock();
    EXPECT_TRUE(log.contains(QStringLiteral("Removed existing backup")));
    EXPECT_EQ(TemporaryHome::read(engine.item().originalBackupPath), "new");
}

TEST_F(LockItem, APlaceholderIsNotMistakenForTheItemWhileThePrivateCopyExists)
{
    // The state if the program ended after it wrote the placeholder and before it saved the record.
    startLocked();
    engine.lock();
    EXPECT_EQ(TemporaryHome::read(engine.item().originalBackupPath), "mine");
    EXPECT_EQ(TemporaryHome::read(path), placeholderText.toUtf8());

    services.home.write(QStringLiteral("Desktop/a.txt"), placeholderText.left(7).toUtf8());
    engine.lock();
    EXPECT_EQ(TemporaryHome::read(engine.item().originalBackupPath), "mine");
    EXPECT_EQ(TemporaryHome::read(path), placeholderText.toUtf8());
}

TEST_F(LockItem, FailedMoveLeavesTheItemUnlockedAtItsPlace)
{
    startUnlocked();
    hooks.before = failing("moveItem", EIO);
    QString text;
    EXPECT_EQ(engineErrorOf([&] { engine.lock(); }, &text), QuillhavenError::accessDenied);
    EXPECT_TRUE(text.startsWith(QStringLiteral("Could not move file to secure storage: "))) << text.toStdString();
    EXPECT_TRUE(text.contains(QStringLiteral("a.txt"))) << text.toStdString();
    EXPECT_EQ(TemporaryHome::read(path), "mine");
    EXPECT_TRUE(engine.item().isMounted);
    EXPECT_FALSE(engine.item().isProcessing);
}

TEST_F(LockItem, LinesOfAFailedLockStandInTheirOrder)
{
    startUnlocked();
    hooks.before = failing("moveItem", EIO);
    log.clear();
    EXPECT_EQ(engineErrorOf([&] { engine.lock(); }), QuillhavenError::accessDenied);
    const QString reason = FileError::fromErrno(EIO, FileError::Action::Move, path).errorDescription();
    EXPECT_EQ(log.lines().join(QLatin1Char('\n')),
              beginningOfALock() + QStringLiteral("❌ Error moving file: ") + reason + QLatin1Char('\n') +
                  QStringLiteral("❌ Error in lock operation, setting isProcessing = false for item\n") +
                  errorOfLockItem);
}

TEST_F(LockItem, LinesOfALockThatTimesOutStandInTheirOrder)
{
    startUnlocked();
    log.clear();
    EXPECT_EQ(errorOfLockOver(30s), QuillhavenError::operationTimeout);
    EXPECT_EQ(log.lines().join(QLatin1Char('\n')),
              beginningOfALock() +
                  QStringLiteral("✅ Successfully moved file to secure storage in 30.00s\n"
                                 "🔄 Updating UI state for file: a.txt\n"
                                 "✅ Updated protected items list\n"
                                 "✅ Set isProcessing = false for item\n") +
                  errorOfLockItem);
}

TEST_F(LockItem, LockThatFailsAfterItsTimeIsUpReportsTheTimeout)
{
    startUnlocked();
    log.clear();
    EXPECT_EQ(errorOfLockOver(30s, failing("moveItem", EIO)), QuillhavenError::operationTimeout);
    EXPECT_TRUE(engine.item().isMounted);
    EXPECT_EQ(TemporaryHome::read(path), "mine");
    EXPECT_FALSE(engine.item().isProcessing);
    const QStringList lines = log.lines();
    EXPECT_EQ(lines.mid(lines.size() - 2),
              QStringList({QStringLiteral("❌ Error in lock operation, setting isProcessing = false for item"),
                           errorOfLockItem}));
}

TEST_F(LockItem, FailedPlaceholderLeavesTheDataInStorageAndALaterLockWritesIt)
{
    startUnlocked();
    hooks.before = failing("writeFile", ENOSPC);
    EXPECT_THROW(engine.lock(), FileError);
    EXPECT_FALSE(TemporaryHome::exists(path));
    EXPECT_EQ(TemporaryHome::read(engine.item().originalBackupPath), "mine");
    EXPECT_TRUE(engine.item().isMounted);

    hooks.before = nullptr;
    engine.lock();
    EXPECT_FALSE(engine.item().isMounted);
    EXPECT_EQ(TemporaryHome::read(path), placeholderText.toUtf8());
    engine.unlock();
    EXPECT_EQ(TemporaryHome::read(path), "mine");
}

TEST_F(LockItem, MoveThatTakesOverThirtySecondsLocksAndSavesButReportsTheTimeout)
{
    startUnlocked();
    HeldCall move(hooks, "moveItem");
    const RunningTask<void> locking(engine.manager.lockItem(engine.item()));
    ASSERT_TRUE(move.hasStarted());
    EXPECT_TRUE(engine.item().isProcessing);
    services.clock.advance(30s);
    spinOnce();
    EXPECT_FALSE(locking.isFinished()) << "the caller waits for the file work";
    move.letGo();

    QString text;
    EXPECT_EQ(engineErrorOf([&] { locking.wait(); }, &text), QuillhavenError::operationTimeout);
    EXPECT_EQ(text, QStringLiteral("Lock operation timed out after 30 seconds"));
    EXPECT_FALSE(engine.item().isMounted);
    EXPECT_FALSE(engine.item().isProcessing);
    EXPECT_EQ(engine.storedItems(), engine.manager.protectedItems()) << "the stored list is up to date too";
    EXPECT_EQ(TemporaryHome::read(engine.item().originalBackupPath), "mine");
    EXPECT_EQ(TemporaryHome::read(path), placeholderText.toUtf8());
}

TEST_F(LockItem, LockThatEndsInTimeLeavesNoTimer)
{
    startUnlocked();
    HeldCall move(hooks, "moveItem");
    const RunningTask<void> locking(engine.manager.lockItem(engine.item()));
    ASSERT_TRUE(move.hasStarted());
    services.clock.advance(29'999ms);
    move.letGo();
    EXPECT_NO_THROW(locking.wait());
    EXPECT_EQ(services.clock.pendingTimers(), 0);
}

TEST_F(LockItem, CancelledMasterPromptChangesNothing)
{
    setMasterPassword();
    startUnlocked();
    engine.masterPasswordEntry.reset();
    engine.lock();
    EXPECT_TRUE(engine.item().isMounted);
    EXPECT_FALSE(engine.item().isProcessing);
    EXPECT_EQ(TemporaryHome::read(path), "mine");
}

TEST_F(LockItem, SuccessEndsTheMasterSession)
{
    setMasterPassword();
    startUnlocked();
    EXPECT_EQ(engine.masterPrompts, 2);
    engine.lock();
    EXPECT_EQ(engine.masterPrompts, 3) << "each operation asks again";
    EXPECT_FALSE(engine.masterPassword.isAuthenticated());
}

TEST_F(LockItem, ItemWithoutARecordIsStillLockedOnDisk)
{
    startUnlocked();
    const ProtectedItem snapshot = engine.item();
    engine.manager.removeFromProtectedItems(snapshot.id);
    log.clear();
    runTask(engine.manager.lockItem(snapshot));
    EXPECT_EQ(TemporaryHome::read(snapshot.originalBackupPath), "mine");
    EXPECT_FALSE(log.contains(QStringLiteral("✅ Updated protected items list")));
    EXPECT_TRUE(log.contains(QStringLiteral("✅ Set isProcessing = false for item")));
}

TEST_F(LockItem, TargetIsTheCurrentStorageEvenIfTheRecordNamesAnotherFolder)
{
    startUnlocked();
    ProtectedItem snapshot = engine.item();
    const QString name = QFileInfo(snapshot.originalBackupPath).fileName();
    snapshot.originalBackupPath = QStringLiteral("/elsewhere/") + name;
    runTask(engine.manager.lockItem(snapshot));
    EXPECT_EQ(TemporaryHome::read(services.home.path(QStringLiteral(".local/share/quillhaven/") + name)), "mine");
}

TEST_F(LockItem, FailureLeavesTheMasterSessionOpen)
{
    startUnlocked();
    engine.openMasterSession();
    hooks.before = failing("moveItem", EIO);
    EXPECT_THROW(engine.lock(), QuillhavenError);
    EXPECT_TRUE(engine.masterPassword.isAuthenticated());
    EXPECT_TRUE(engine.masterPassword.hasAuthenticationTimer());
}

TEST_F(LockItem, BulkCoreRethrowsAMoveErrorAndDoesNotMarkTheItem)
{
    startUnlocked();
    hooks.before = failing("moveItem", EIO);
    EXPECT_THROW(runTask(engine.manager.lockItemWithoutFileAccess(engine.item())), FileError);
    EXPECT_TRUE(engine.item().isMounted);
    EXPECT_EQ(TemporaryHome::read(path), "mine");
}

TEST_F(LockItem, BulkCoreDoesNotChangeTheBusyFlag)
{
    startUnlocked();
    QList<ProtectedItem> items = engine.storedItems();
    items.first().isProcessing = true;
    services.defaults.standard().setData(settings::protectedItems.key, encodeProtectedItems(items));
    EngineHarness restarted(services);
    runTask(restarted.manager.lockItemWithoutFileAccess(restarted.item()));
    EXPECT_FALSE(restarted.item().isMounted);
    EXPECT_TRUE(restarted.item().isProcessing);
}

TEST_F(LockItem, BulkCoreLocksWithoutGateSessionOrLog)
{
    startUnlocked();
    engine.openMasterSession();
    log.clear();
    runTask(engine.manager.lockItemWithoutFileAccess(engine.item()));
    EXPECT_TRUE(engine.masterPassword.isAuthenticated());
    EXPECT_FALSE(engine.item().isMounted);
    EXPECT_FALSE(engine.item().mountedPath.has_value());
    EXPECT_EQ(engine.storedItems(), engine.manager.protectedItems());
    EXPECT_EQ(TemporaryHome::read(path), placeholderText.toUtf8());
    EXPECT_EQ(log.lines().size(), 0);
}
