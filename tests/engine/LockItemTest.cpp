#include "engine/PlaceholderFile.h"
#include "platform/FileManagerDecorator.h"
#include "support/EngineHarness.h"

#include <QDir>
#include <QFile>
#include <QSemaphore>

using namespace quillhaven;
using namespace quillhaven::testing;
using namespace std::chrono_literals;

namespace {

class LockItem : public ::testing::Test
{
protected:
    /// Protects and unlocks a file, and returns its path.
    QString unlockedFile(EngineHarness &engine, const QByteArray &bytes = "mine")
    {
        const QString path = services.home.write(QStringLiteral("Desktop/a.txt"), bytes);
        engine.protect(path);
        engine.unlock();
        return path;
    }

    TestPlatform services;
    LogCapture log;
};

/// Fails moves or writes on demand, or holds a move until it is let go.
class SwitchedFiles : public FileManagerDecorator
{
public:
    using FileManagerDecorator::FileManagerDecorator;
    void moveItem(const QString &source, const QString &target) override
    {
        if (failsMoves) {
            throw FileError::fromErrno(EIO, FileError::Action::Move, source, target);
        }
        if (holdsMoves) {
            moveStarted.release();
            letMoveGo.acquire();
        }
        FileManagerDecorator::moveItem(source, target);
    }
    using FileManagerDecorator::writeFile;
    void writeFile(const QString &path, std::span<const std::byte> bytes, const FinalBytes &finalBytes) override
    {
        if (failsWrites) {
            throw FileError::fromErrno(ENOSPC, FileError::Action::Write, path);
        }
        FileManagerDecorator::writeFile(path, bytes, finalBytes);
    }

    bool failsMoves = false;
    bool failsWrites = false;
    bool holdsMoves = false;
    QSemaphore moveStarted;
    QSemaphore letMoveGo;
};

} // namespace

TEST_F(LockItem, DataGoesBackToTheSameNameInPrivateStorageAndThePlaceholderStands)
{
    EngineHarness engine(services);
    const QString path = unlockedFile(engine);
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
    EXPECT_EQ(TemporaryHome::read(item.containerPath), container) << "the container stays as it was";
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

TEST_F(LockItem, FolderTakesTheSamePathAndTheLogSaysFolder)
{
    services.home.write(QStringLiteral("Desktop/folder/deep/inner.txt"), "inner");
    EngineHarness engine(services);
    engine.protect(services.home.path(QStringLiteral("Desktop/folder")));
    engine.unlock();
    log.clear();
    engine.lock();
    EXPECT_TRUE(log.contains(QStringLiteral("🔄 Starting move operation for folder: folder")));
    EXPECT_EQ(TemporaryHome::read(engine.item().originalBackupPath + QStringLiteral("/deep/inner.txt")), "inner");
    EXPECT_EQ(engine.passwordPrompts, 0) << "a folder has no secret of its own";
}

TEST_F(LockItem, DeletedOriginalStillLocksAndWritesThePlaceholder)
{
    EngineHarness engine(services);
    const QString path = unlockedFile(engine);
    ASSERT_TRUE(QFile::remove(path));
    engine.lock();
    EXPECT_FALSE(engine.item().isMounted);
    EXPECT_EQ(TemporaryHome::read(path), placeholderText.toUtf8());
    EXPECT_FALSE(TemporaryHome::exists(engine.item().originalBackupPath));
    EXPECT_EQ(engineErrorOf([&] { engine.unlock(); }), QuillhavenError::itemNotFound);
}

TEST_F(LockItem, ExistingCopyAtTheTargetGivesWay)
{
    EngineHarness engine(services);
    const QString path = unlockedFile(engine, "new");
    QFile stale(engine.item().originalBackupPath);
    ASSERT_TRUE(stale.open(QIODevice::WriteOnly));
    stale.write("stale");
    stale.close();
    engine.lock();
    EXPECT_TRUE(log.contains(QStringLiteral("Removed existing backup")));
    EXPECT_EQ(TemporaryHome::read(engine.item().originalBackupPath), "new");
}

TEST_F(LockItem, APlaceholderIsNotTakenForTheItemWhileThePrivateCopyExists)
{
    // So it stands when the program ended between the placeholder and the record.
    EngineHarness engine(services);
    const QString path = services.home.write(QStringLiteral("Desktop/a.txt"), "mine");
    engine.protect(path);
    engine.lock();
    EXPECT_EQ(TemporaryHome::read(engine.item().originalBackupPath), "mine");
    EXPECT_EQ(TemporaryHome::read(path), placeholderText.toUtf8());

    services.home.write(QStringLiteral("Desktop/a.txt"), placeholderText.left(7).toUtf8());
    engine.lock();
    EXPECT_EQ(TemporaryHome::read(engine.item().originalBackupPath), "mine");
    EXPECT_EQ(TemporaryHome::read(path), placeholderText.toUtf8());
}

TEST_F(LockItem, FailedMoveLeavesTheItemUnlockedInItsPlace)
{
    SwitchedFiles files(services.fileManager);
    EngineHarness engine(services, files);
    const QString path = unlockedFile(engine);
    files.failsMoves = true;
    QString text;
    EXPECT_EQ(engineErrorOf([&] { engine.lock(); }, &text), QuillhavenError::accessDenied);
    EXPECT_TRUE(text.startsWith(QStringLiteral("Could not move file to secure storage: "))) << text.toStdString();
    EXPECT_TRUE(text.contains(QStringLiteral("a.txt"))) << text.toStdString();
    EXPECT_EQ(TemporaryHome::read(path), "mine");
    EXPECT_TRUE(engine.item().isMounted);
    EXPECT_FALSE(engine.item().isProcessing);
    EXPECT_TRUE(log.contains(QStringLiteral("❌ Error in lock operation, setting isProcessing = false for item")));
    EXPECT_TRUE(
        log.contains(QStringLiteral("❌ Error in lockItem (timeout or other), setting isProcessing = false for item")));
}

TEST_F(LockItem, UnwrittenPlaceholderLeavesTheDataInStorageAndALaterLockMakesItGood)
{
    SwitchedFiles files(services.fileManager);
    EngineHarness engine(services, files);
    const QString path = unlockedFile(engine);
    files.failsWrites = true;
    EXPECT_THROW(engine.lock(), FileError);
    EXPECT_FALSE(TemporaryHome::exists(path));
    EXPECT_EQ(TemporaryHome::read(engine.item().originalBackupPath), "mine");
    EXPECT_TRUE(engine.item().isMounted);

    files.failsWrites = false;
    engine.lock();
    EXPECT_FALSE(engine.item().isMounted);
    EXPECT_EQ(TemporaryHome::read(path), placeholderText.toUtf8());
    engine.unlock();
    EXPECT_EQ(TemporaryHome::read(path), "mine");
}

TEST_F(LockItem, MoveOverThirtySecondsLocksAndSavesAndStillReportsTheTimeout)
{
    SwitchedFiles files(services.fileManager);
    EngineHarness engine(services, files);
    const QString path = unlockedFile(engine);
    files.holdsMoves = true;
    const RunningTask<void> locking(engine.manager.lockItem(engine.item()));
    ASSERT_TRUE(spinUntil([&] { return files.moveStarted.tryAcquire(); }));
    EXPECT_TRUE(engine.item().isProcessing);
    services.clock.advance(30s);
    spinOnce();
    EXPECT_FALSE(locking.isFinished()) << "the caller waits for the file work";
    files.letMoveGo.release();

    QString text;
    EXPECT_EQ(engineErrorOf([&] { locking.wait(); }, &text), QuillhavenError::operationTimeout);
    EXPECT_EQ(text, QStringLiteral("Lock operation timed out after 30 seconds"));
    EXPECT_FALSE(engine.item().isMounted);
    EXPECT_FALSE(engine.item().isProcessing);
    EXPECT_EQ(engine.storedItems(), engine.manager.protectedItems()) << "saved as well";
    EXPECT_EQ(TemporaryHome::read(engine.item().originalBackupPath), "mine");
    EXPECT_EQ(TemporaryHome::read(path), placeholderText.toUtf8());
}

TEST_F(LockItem, LockThatEndsInTimeLeavesNoTimerBehind)
{
    SwitchedFiles files(services.fileManager);
    EngineHarness engine(services, files);
    unlockedFile(engine);
    files.holdsMoves = true;
    const RunningTask<void> locking(engine.manager.lockItem(engine.item()));
    ASSERT_TRUE(spinUntil([&] { return files.moveStarted.tryAcquire(); }));
    services.clock.advance(29'999ms);
    files.letMoveGo.release();
    EXPECT_NO_THROW(locking.wait());
    EXPECT_EQ(services.clock.pendingTimers(), 0);
}

TEST_F(LockItem, CancelledMasterPromptChangesNothing)
{
    services.credentials.entries.insert(QStringLiteral("master_password"), "Master12");
    EngineHarness engine(services);
    engine.masterPasswordEntry = QStringLiteral("Master12");
    const QString path = unlockedFile(engine);
    engine.masterPasswordEntry.reset();
    engine.lock();
    EXPECT_TRUE(engine.item().isMounted);
    EXPECT_FALSE(engine.item().isProcessing);
    EXPECT_EQ(TemporaryHome::read(path), "mine");
}

TEST_F(LockItem, SuccessEndsTheMasterSession)
{
    services.credentials.entries.insert(QStringLiteral("master_password"), "Master12");
    EngineHarness engine(services);
    engine.masterPasswordEntry = QStringLiteral("Master12");
    unlockedFile(engine);
    EXPECT_EQ(engine.masterPrompts, 2);
    engine.lock();
    EXPECT_EQ(engine.masterPrompts, 3) << "each operation asks anew";
    EXPECT_FALSE(engine.masterPassword.isAuthenticated());
}

TEST_F(LockItem, RecordThatIsGoneIsLockedOnDiskAllTheSame)
{
    EngineHarness engine(services);
    const QString path = unlockedFile(engine);
    const ProtectedItem snapshot = engine.item();
    engine.manager.removeFromProtectedItems(snapshot.id);
    log.clear();
    runTask(engine.manager.lockItem(snapshot));
    EXPECT_EQ(TemporaryHome::read(snapshot.originalBackupPath), "mine");
    EXPECT_FALSE(log.contains(QStringLiteral("✅ Updated protected items list")));
    EXPECT_TRUE(log.contains(QStringLiteral("✅ Set isProcessing = false for item")));
}

TEST_F(LockItem, TargetIsTheCurrentStorageWhateverDirectoryTheRecordNames)
{
    EngineHarness engine(services);
    unlockedFile(engine);
    ProtectedItem snapshot = engine.item();
    const QString name = QFileInfo(snapshot.originalBackupPath).fileName();
    snapshot.originalBackupPath = QStringLiteral("/elsewhere/") + name;
    runTask(engine.manager.lockItem(snapshot));
    EXPECT_EQ(TemporaryHome::read(services.home.path(QStringLiteral(".local/share/quillhaven/") + name)), "mine");
}

TEST_F(LockItem, FailureLeavesTheMasterSessionOpen)
{
    SwitchedFiles files(services.fileManager);
    EngineHarness engine(services, files);
    unlockedFile(engine);
    engine.openMasterSession();
    files.failsMoves = true;
    EXPECT_THROW(engine.lock(), QuillhavenError);
    EXPECT_TRUE(engine.masterPassword.isAuthenticated());
    EXPECT_TRUE(engine.masterPassword.hasAuthenticationTimer());
}

TEST_F(LockItem, BulkCorePassesAMoveErrorOnAsReportedAndMarksNothing)
{
    SwitchedFiles files(services.fileManager);
    EngineHarness engine(services, files);
    const QString path = unlockedFile(engine);
    files.failsMoves = true;
    EXPECT_THROW(runTask(engine.manager.lockItemWithoutFileAccess(engine.item())), FileError);
    EXPECT_TRUE(engine.item().isMounted);
    EXPECT_EQ(TemporaryHome::read(path), "mine");
}

TEST_F(LockItem, BulkCoreLeavesTheBusyMarkAsItIs)
{
    QList<ProtectedItem> items;
    {
        EngineHarness first(services);
        unlockedFile(first);
        items = first.storedItems();
    }
    items.first().isProcessing = true;
    services.defaults.standard().setData(defaults_keys::protectedItems, encodeProtectedItems(items));
    EngineHarness engine(services);
    runTask(engine.manager.lockItemWithoutFileAccess(engine.item()));
    EXPECT_FALSE(engine.item().isMounted);
    EXPECT_TRUE(engine.item().isProcessing);
}

TEST_F(LockItem, BulkCoreLocksWithoutGateSessionOrLog)
{
    EngineHarness engine(services);
    const QString path = unlockedFile(engine);
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
