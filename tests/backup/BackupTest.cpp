// SPDX-License-Identifier: GPL-3.0-or-later

#include "backup/CloudFolder.h"
#include "cipher/CipherError.h"
#include "credentials/KeychainError.h"
#include "engine/PlaceholderFile.h"
#include "formats/RecoveryBackup.h"
#include "support/CallHooks.h"
#include "support/EngineHarness.h"

#include <QDir>
#include <QFile>
#include <QSemaphore>
#include <QThread>

using namespace quillhaven;
using namespace quillhaven::test;

namespace {

class Backup : public ::testing::Test
{
protected:
    QString backupPath(qsizetype index = 0) const { return cloud.backup(engine->item(index).id); }
    /// Starts the engine, protects files with these names, then creates the cloud folder and enables backups.
    void start(const QStringList &names)
    {
        services.credentials.entries.insert(QStringLiteral("master_password"), "Master12");
        engine.emplace(services, files);
        engine->masterPasswordEntry = QStringLiteral("Master12");
        for (const QString &name : names) {
            engine->protect(services.home.write(QStringLiteral("Desktop/") + name, name.toUtf8()));
        }
        cloud.make();
        cloud.setEnabled(true);
        engine->masterPrompts = 0;
        log.clear();
    }
    void backUp(qsizetype index = 0) { runTask(engine->manager.backupToiCloud(engine->item(index).id)); }
    void backUpAll() { runTask(engine->manager.backupAllToiCloud()); }
    QByteArray opened(const QString &path, const QString &password = QStringLiteral("Master12")) const
    {
        const OwnedBytes plain = decryptBackupFile(services.fileManager, path, password);
        return {reinterpret_cast<const char *>(plain.bytes.data()), static_cast<qsizetype>(plain.bytes.size())};
    }
    /// Starts a backup while another operation moves the private copy away, and lets both come to their end.
    void expectOvertaken(HeldCall &move, const RunningTask<void> &other)
    {
        ASSERT_TRUE(TemporaryHome::exists(engine->item().originalBackupPath)) << "there to be backed up when asked";
        const RunningTask<void> backup(engine->manager.backupToiCloud(engine->item().id));
        spinOnce();
        move.letGo();
        other.wait();
        EXPECT_EQ(engineErrorOf([&] { backup.wait(); }), QuillhavenError::itemNotFound);
        EXPECT_EQ(cloud.backupNames(), QStringList());
        EXPECT_FALSE(log.contains(createdLine(QStringLiteral("a.txt"))));
    }
    static QString createdLine(const QString &name)
    {
        return QStringLiteral("✅ iCloud backup created for item: ") + name;
    }

    TestPlatform services;
    const CloudFolder cloud{services};
    SeamHooks hooks;
    HookedFileManager files{services.fileManager, hooks};
    LogCapture log;
    std::optional<EngineHarness> engine;
    const QString allLine = QStringLiteral("✅ All items backed up to iCloud");
    const QStringList askingLines{QStringLiteral("🌩️ DEBUG: Checking iCloud availability..."),
                                  QStringLiteral("🌩️ DEBUG: Container identifier: iCloud.com.tarnwick.quillhaven")};
};

} // namespace

TEST_F(Backup, LockedFileIsWrittenUnderItsIdAndOpensWithTheMasterPassword)
{
    start({QStringLiteral("a.txt")});
    backUp();
    EXPECT_EQ(cloud.backupNames(), QStringList(engine->item().id + QStringLiteral(".backup")));
    EXPECT_EQ(opened(backupPath()), "a.txt");
    const QByteArray metadata = (engine->item().id + QStringLiteral(":a.txt")).toUtf8();
    EXPECT_EQ(TemporaryHome::read(backupPath()).mid(44, metadata.size()), metadata);
    EXPECT_EQ(log.lines(), QStringList(createdLine(QStringLiteral("a.txt"))));
    EXPECT_EQ(engine->masterPrompts, 0) << "only the stored master password is needed";
}

TEST_F(Backup, FolderIsWrittenAsItsArchive)
{
    start({});
    services.home.write(QStringLiteral("Desktop/folder/inner.txt"), "inner");
    cloud.setEnabled(false);
    engine->protect(services.home.path(QStringLiteral("Desktop/folder")), {});
    cloud.setEnabled(true);
    backUp();
    const QByteArray archive = opened(backupPath());
    EXPECT_TRUE(archive.startsWith((engine->item().id + QStringLiteral("_original/")).toUtf8()));
    EXPECT_EQ(archive.mid(257, 5), "ustar");
}

TEST_F(Backup, SecondBackupReplacesTheFirst)
{
    start({QStringLiteral("a.txt")});
    backUp();
    const QByteArray first = TemporaryHome::read(backupPath());
    engine->unlock();
    services.home.write(QStringLiteral("Desktop/a.txt"), "a");
    engine->lock();
    EXPECT_EQ(TemporaryHome::read(backupPath()), first) << "locking writes no backup";
    backUp();
    EXPECT_EQ(cloud.backupNames().size(), 1);
    EXPECT_EQ(opened(backupPath()), "a");
}

TEST_F(Backup, DisabledSettingFailsWhateverTheCatalogueContains)
{
    start({QStringLiteral("a.txt")});
    cloud.setEnabled(false);
    QString text;
    EXPECT_EQ(engineErrorOf([this] { backUpAll(); }, &text), QuillhavenError::accessDenied);
    EXPECT_EQ(text, QStringLiteral("iCloud backup is not enabled"));
    EXPECT_EQ(engineErrorOf([this] { backUp(); }, &text), QuillhavenError::accessDenied);
    EXPECT_EQ(text, QStringLiteral("iCloud backup is not enabled"));
    engine->manager.removeFromProtectedItems(engine->item().id);
    EXPECT_EQ(engineErrorOf([this] { backUpAll(); }), QuillhavenError::accessDenied);
    EXPECT_EQ(log.lines(), QStringList());
    EXPECT_FALSE(TemporaryHome::exists(cloud.backups()));
}

TEST_F(Backup, SettingIsOffByDefault)
{
    engine.emplace(services);
    QString text;
    EXPECT_EQ(engineErrorOf([this] { backUpAll(); }, &text), QuillhavenError::accessDenied);
    EXPECT_EQ(text, QStringLiteral("iCloud backup is not enabled"));
}

TEST_F(Backup, UnknownIdIsNotFound)
{
    start({QStringLiteral("a.txt")});
    EXPECT_EQ(engineErrorOf([this] { runTask(engine->manager.backupToiCloud(QStringLiteral("unknown"))); }),
              QuillhavenError::itemNotFound);
}

TEST_F(Backup, MissingMasterPasswordThrowsTheErrorOfTheStore)
{
    start({QStringLiteral("a.txt")});
    services.credentials.entries.remove(QStringLiteral("master_password"));
    try {
        backUp();
        ADD_FAILURE() << "no error";
    } catch (const KeychainError &error) {
        EXPECT_EQ(error.errorDescription(), QStringLiteral("Failed to retrieve from keychain: -25300"));
    }
    EXPECT_FALSE(TemporaryHome::exists(cloud.backups()));
}

TEST_F(Backup, MissingContainerIsReportedWithAHint)
{
    start({QStringLiteral("a.txt")});
    ASSERT_TRUE(QDir().rmdir(cloud.path()));
    QString text;
    EXPECT_EQ(engineErrorOf([this] { backUp(); }, &text), QuillhavenError::accessDenied);
    EXPECT_EQ(text, QStringLiteral("iCloud is not available. Please sign in to iCloud in System Preferences."));
    EXPECT_FALSE(TemporaryHome::exists(cloud.path()));
}

TEST_F(Backup, RemovedContainerIsNotCreatedAgain)
{
    start({QStringLiteral("a.txt")});
    backUp();
    ASSERT_TRUE(QDir(cloud.path()).removeRecursively());
    EXPECT_EQ(engineErrorOf([this] { backUp(); }), QuillhavenError::accessDenied);
    EXPECT_FALSE(TemporaryHome::exists(cloud.path()));
}

TEST_F(Backup, LinkToAFolderIsAContainerButADanglingLinkIsNot)
{
    start({QStringLiteral("a.txt")});
    ASSERT_TRUE(QDir().rmdir(cloud.path()));
    ASSERT_TRUE(QFile::link(services.home.path(QStringLiteral("Synced")), cloud.path()));
    EXPECT_EQ(engineErrorOf([this] { backUp(); }), QuillhavenError::accessDenied);
    QDir().mkpath(services.home.path(QStringLiteral("Synced")));
    backUp();
    EXPECT_TRUE(TemporaryHome::exists(services.home.path(QStringLiteral("Synced/Documents/QuillhavenBackups/") +
                                                         engine->item().id + QStringLiteral(".backup"))));
}

TEST_F(Backup, FileAtThePlaceOfTheFolderIsReported)
{
    start({QStringLiteral("a.txt")});
    services.home.write(QStringLiteral(".local/share/cloud/iCloud~com~tarnwick~quillhaven/Documents"), "mine");
    EXPECT_THROW(backUp(), FileError);
}

TEST_F(Backup, UnlockedItemIsNotFoundAndStopsTheRun)
{
    start({QStringLiteral("a.txt"), QStringLiteral("b.txt"), QStringLiteral("c.txt")});
    engine->unlock(1);
    log.clear();
    EXPECT_EQ(engineErrorOf([this] { backUpAll(); }), QuillhavenError::itemNotFound);
    EXPECT_EQ(log.lines(), QStringList(createdLine(QStringLiteral("a.txt"))));
    EXPECT_EQ(cloud.backupNames(), QStringList(engine->item(0).id + QStringLiteral(".backup")))
        << "the backups that were written remain";
}

TEST_F(Backup, AllItemsAreWrittenInTheirOrder)
{
    start({QStringLiteral("a.txt"), QStringLiteral("b.txt")});
    backUpAll();
    const QStringList lines{createdLine(QStringLiteral("a.txt")), createdLine(QStringLiteral("b.txt")), allLine};
    EXPECT_EQ(log.lines(), lines);
    EXPECT_EQ(opened(backupPath(0)), "a.txt");
    EXPECT_EQ(opened(backupPath(1)), "b.txt");
}

TEST_F(Backup, ItemRemovedWhileItIsWrittenDoesNotAffectTheOthers)
{
    start({QStringLiteral("a.txt"), QStringLiteral("b.txt"), QStringLiteral("c.txt")});
    const QStringList others{backupPath(1), backupPath(2)};
    HeldCall write(hooks, "writeFile", backupPath(0));
    const RunningTask<void> running(engine->manager.backupAllToiCloud());
    ASSERT_TRUE(write.hasStarted());
    engine->manager.removeFromProtectedItems(engine->item(0).id);
    write.letGo();
    running.wait();
    EXPECT_EQ(opened(others.at(0)), "b.txt");
    EXPECT_EQ(opened(others.at(1)), "c.txt");
    EXPECT_EQ(log.lines().last(), allLine);
}

TEST_F(Backup, BackupThatAnUnlockHasOvertakenIsNotFoundAndWritesNothing)
{
    start({QStringLiteral("a.txt")});
    HeldCall move(hooks, "moveItem");
    const RunningTask<void> unlock(engine->manager.unlockItem(engine->item()));
    ASSERT_TRUE(move.hasStarted());
    expectOvertaken(move, unlock);
    EXPECT_TRUE(engine->item().isMounted);
}

TEST_F(Backup, BackupThatARemovalHasOvertakenIsNotFoundAndWritesNothing)
{
    start({QStringLiteral("a.txt")});
    HeldCall replacement(hooks, "replaceItemAt");
    const RunningTask<void> removal(engine->manager.removeProtection(engine->item()));
    ASSERT_TRUE(replacement.hasStarted());
    expectOvertaken(replacement, removal);
    EXPECT_EQ(engine->count(), 0);
}

TEST_F(Backup, UnlockWaitsUntilTheBackupIsWhole)
{
    start({QStringLiteral("a.txt")});
    const QString path = engine->item().originalPath;
    HeldCall read(hooks, "readFile", engine->item().originalBackupPath);
    const RunningTask<void> backup(engine->manager.backupToiCloud(engine->item().id));
    ASSERT_TRUE(read.hasStarted());
    EXPECT_TRUE(engine->manager.catalogue().isLeased(engine->item().id));
    services.panels.placeRequests.clear();
    const RunningTask<void> unlock(engine->manager.unlockItem(engine->item()));
    ASSERT_TRUE(spinUntil([this] { return !services.panels.placeRequests.isEmpty(); }));
    spinOnce();
    EXPECT_FALSE(unlock.isFinished());
    EXPECT_EQ(TemporaryHome::read(path), placeholderText.toUtf8());
    read.letGo();
    backup.wait();
    unlock.wait();
    EXPECT_EQ(opened(backupPath()), "a.txt");
    EXPECT_EQ(TemporaryHome::read(path), "a.txt");
}

TEST_F(Backup, BackupDoesNotBlockTheWindow)
{
    start({QStringLiteral("a.txt")});
    QSemaphore calls;
    hooks.before = [&](const char *call, const QString &path) {
        if (path.endsWith(QStringLiteral(".backup")) || path.endsWith(QStringLiteral("_original"))) {
            EXPECT_NE(QThread::currentThread(), QCoreApplication::instance()->thread()) << call;
            calls.release();
        }
    };
    backUp();
    EXPECT_EQ(calls.available(), 2) << "a read and a write";
}

TEST_F(Backup, EmptyCatalogueSucceedsAndIsLogged)
{
    start({});
    backUpAll();
    EXPECT_EQ(log.lines(), QStringList(allLine));
}

TEST_F(Backup, ProtectingWritesABackupIfTheSettingIsEnabled)
{
    start({});
    engine->protect(services.home.write(QStringLiteral("Desktop/new.txt"), "new"));
    EXPECT_EQ(opened(backupPath()), "new");
    const QStringList lines = log.lines();
    EXPECT_EQ(lines.mid(lines.size() - 5),
              askingLines + QStringList({QStringLiteral("🌩️ DEBUG: iCloud container URL found: ") + cloud.path(),
                                         QStringLiteral("🌩️ DEBUG: iCloud is available ✅"),
                                         createdLine(QStringLiteral("new.txt"))}));
}

TEST_F(Backup, BulkProtectionWritesOneForEachItem)
{
    start({});
    const QStringList paths{services.home.write(QStringLiteral("Desktop/a.txt"), "a"),
                            services.home.write(QStringLiteral("Desktop/b.txt"), "b")};
    runTask(engine->manager.bulkProtectItems(paths, QStringLiteral("Abcdefg1"), false, [](const QString &, double) {}));
    EXPECT_EQ(opened(backupPath(0)), "a");
    EXPECT_EQ(opened(backupPath(1)), "b");
}

TEST_F(Backup, ProtectingWithTheSettingDisabledDoesNotLookForTheCloud)
{
    start({});
    cloud.setEnabled(false);
    engine->protect(services.home.write(QStringLiteral("Desktop/new.txt"), "new"));
    EXPECT_FALSE(TemporaryHome::exists(cloud.backups()));
    EXPECT_EQ(log.lines().filter(QStringLiteral("iCloud")), QStringList());
}

TEST_F(Backup, ProtectingWithoutAContainerWritesNoBackupAndLogsTheReason)
{
    start({});
    ASSERT_TRUE(QDir().rmdir(cloud.path()));
    engine->protect(services.home.write(QStringLiteral("Desktop/new.txt"), "new"));
    EXPECT_EQ(engine->count(), 1);
    const QStringList lines = log.lines();
    EXPECT_EQ(lines.mid(lines.size() - 8),
              askingLines + QStringList({QStringLiteral("🌩️ DEBUG: iCloud container URL is nil - iCloud not available"),
                                         QStringLiteral("🌩️ DEBUG: This could mean:"),
                                         QStringLiteral("🌩️ DEBUG: 1. iCloud is not signed in"),
                                         QStringLiteral("🌩️ DEBUG: 2. iCloud Drive is disabled"),
                                         QStringLiteral("🌩️ DEBUG: 3. App doesn't have iCloud entitlements"),
                                         QStringLiteral("🌩️ DEBUG: 4. Container identifier is incorrect")}));
}

TEST_F(Backup, FailedBackupIsOnlyLoggedAndTheItemIsProtected)
{
    start({});
    hooks.before = [](const char *call, const QString &path) {
        if (qstrcmp(call, "writeFile") == 0 && path.endsWith(QStringLiteral(".backup"))) {
            throw FileError::fromErrno(EACCES, FileError::Action::Write, path);
        }
    };
    const QString path = services.home.write(QStringLiteral("Desktop/new.txt"), "new");
    engine->protect(path);
    ASSERT_EQ(engine->count(), 1);
    EXPECT_EQ(TemporaryHome::read(path), placeholderText.toUtf8());
    EXPECT_FALSE(engine->masterPassword.isAuthenticated()) << "the protection succeeded";
    const QString failure = FileError::fromErrno(EACCES, FileError::Action::Write, backupPath()).errorDescription();
    EXPECT_EQ(log.lines().last(), QStringLiteral("⚠️ Failed to backup to iCloud: ") + failure);
    EXPECT_FALSE(log.contains(createdLine(QStringLiteral("new.txt"))));
    EXPECT_EQ(EngineHarness(services).count(), 1);
}

TEST_F(Backup, ProtectingWithoutAMasterPasswordLogsTheErrorOfTheStore)
{
    start({});
    services.credentials.entries.clear();
    engine.emplace(services);
    engine->protect(services.home.write(QStringLiteral("Desktop/new.txt"), "new"));
    EXPECT_EQ(engine->count(), 1);
    EXPECT_EQ(log.lines().last(),
              QStringLiteral("⚠️ Failed to backup to iCloud: Failed to retrieve from keychain: -25300"));
}

TEST_F(Backup, LockUnlockAndRemovalDoNotChangeTheBackup)
{
    start({QStringLiteral("a.txt")});
    backUp();
    const QString path = backupPath();
    const QByteArray bytes = TemporaryHome::read(path);
    engine->unlock();
    engine->lock();
    engine->remove();
    EXPECT_EQ(TemporaryHome::read(path), bytes);
    EXPECT_EQ(cloud.backupNames().size(), 1);
}

TEST_F(Backup, ShreddingTheItemKeepsItsBackup)
{
    start({QStringLiteral("a.txt")});
    backUp();
    const QString path = backupPath();
    runTask(engine->manager.shredProtectedItem(engine->item(), [](const QString &, double) {}));
    ASSERT_EQ(engine->count(), 0);
    EXPECT_EQ(opened(path), "a.txt");
}

TEST_F(Backup, NewMasterPasswordIsUsedFromTheNextBackup)
{
    start({QStringLiteral("a.txt")});
    backUp();
    const QByteArray old = TemporaryHome::read(backupPath());
    runTask(engine->masterPassword.setMasterPassword(QStringLiteral("Changed34")));
    EXPECT_EQ(TemporaryHome::read(backupPath()), old);
    EXPECT_THROW(opened(backupPath(), QStringLiteral("Changed34")), CipherError);
    backUp();
    EXPECT_EQ(opened(backupPath(), QStringLiteral("Changed34")), "a.txt");
}

TEST_F(Backup, AvailabilityFollowsTheFolder)
{
    start({});
    EXPECT_TRUE(engine->manager.isiCloudAvailable());
    ASSERT_TRUE(QDir().rmdir(cloud.path()));
    EXPECT_FALSE(engine->manager.isiCloudAvailable());
    QFile file(cloud.path());
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    EXPECT_FALSE(engine->manager.isiCloudAvailable()) << "a file is not a folder";
}
