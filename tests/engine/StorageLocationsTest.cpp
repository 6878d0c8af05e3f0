// SPDX-License-Identifier: GPL-3.0-or-later

#include "catalogue/CatalogueJson.h"
#include "settings/Settings.h"
#include "support/CallHooks.h"
#include "support/EngineHarness.h"

#include <QDir>

using namespace quillhaven;
using namespace quillhaven::test;

namespace {

class StorageLocations : public ::testing::Test
{
protected:
    QString oldPlace(const QString &name = {}) const
    {
        return services.home.path(QStringLiteral("tmp/quillhaven") + (name.isEmpty() ? name : QLatin1Char('/') + name));
    }
    QString newPlace(const QString &name = {}) const
    {
        return services.home.path(QStringLiteral(".local/share/quillhaven") +
                                  (name.isEmpty() ? name : QLatin1Char('/') + name));
    }
    void storeItem(const QString &originalPath, const QString &backupPath, bool isMounted = false)
    {
        ProtectedItem item;
        item.id = QStringLiteral("A");
        item.originalName = QStringLiteral("a.txt");
        item.originalPath = originalPath;
        item.originalBackupPath = backupPath;
        item.isMounted = isMounted;
        services.defaults.standard().setData(settings::protectedItems.key, encodeProtectedItems({item}));
    }
    QList<ProtectedItem> storedItems()
    {
        return decodeProtectedItems(services.defaults.standard().dataForKey(settings::protectedItems.key).value())
            .value();
    }

    TestPlatform services;
    SeamHooks hooks;
    HookedFileManager files{services.fileManager, hooks};
    LogCapture log;
};

} // namespace

TEST_F(StorageLocations, FirstStartCreatesTheStorageFolderAndNothingElse)
{
    const EngineHarness engine(services);
    EXPECT_TRUE(QDir(newPlace()).exists());
    EXPECT_TRUE(QDir(newPlace()).isEmpty());
    EXPECT_FALSE(QDir(oldPlace()).exists());
    EXPECT_TRUE(log.lines().filter(QStringLiteral("igrat")).isEmpty());
}

TEST_F(StorageLocations, PlainArchivesThatAKilledBackupLeftAreRemovedAndNothingElse)
{
    const QString uuid = QStringLiteral("02563F0A-57A7-4B2E-9C7E-3C8C8A7B0C11");
    const QString archive =
        services.home.write(QStringLiteral("tmp/") + uuid + QStringLiteral("/archive.tar"), "plain");
    const QString other = services.home.write(QStringLiteral("tmp/notes/archive.tar"), "somebody's");
    const QString more =
        services.home.write(QStringLiteral("tmp/6F9619FF-8B86-D011-B42D-00CF4FC964FF/mine.txt"), "somebody's");
    const EngineHarness engine(services);
    EXPECT_FALSE(TemporaryHome::exists(archive));
    EXPECT_FALSE(TemporaryHome::exists(services.home.path(QStringLiteral("tmp/") + uuid)));
    EXPECT_EQ(TemporaryHome::read(other), "somebody's");
    EXPECT_EQ(TemporaryHome::read(more), "somebody's");
}

TEST_F(StorageLocations, OldEntriesAreMovedBeforeTheirRecordsAreChecked)
{
    services.home.write(QStringLiteral("tmp/quillhaven/A_original"), "mine");
    storeItem(QStringLiteral("/gone"), oldPlace(QStringLiteral("A_original")));
    const EngineHarness engine(services);
    ASSERT_EQ(engine.count(), 1);
    EXPECT_EQ(engine.item().originalBackupPath, newPlace(QStringLiteral("A_original")));
    EXPECT_EQ(TemporaryHome::read(engine.item().originalBackupPath), "mine");
    EXPECT_FALSE(QDir(oldPlace()).exists());
    EXPECT_EQ(storedItems().first().originalBackupPath, newPlace(QStringLiteral("A_original")));
    EXPECT_EQ(log.lines().join(QLatin1Char('\n')),
              QStringLiteral("📍 DEBUG: Migrated backup file: A_original from temp to persistent storage\n"
                             "Removed empty temp directory\n"
                             "DEBUG: Loading protected items from UserDefaults\n"
                             "DEBUG: Loaded 1 protected items from UserDefaults\n"
                             "📍 DEBUG: Migrated backup path for a.txt: %1\n"
                             "✅ Backup paths migration completed")
                  .arg(newPlace(QStringLiteral("A_original"))));
}

TEST_F(StorageLocations, EntryWithATakenNameIsNotMovedButItsRecordIsUpdated)
{
    services.home.write(QStringLiteral("tmp/quillhaven/A_original"), "old");
    services.home.write(QStringLiteral(".local/share/quillhaven/A_original"), "new");
    storeItem(QStringLiteral("/gone"), oldPlace(QStringLiteral("A_original")));
    {
        const EngineHarness engine(services);
        EXPECT_EQ(engine.item().originalBackupPath, newPlace(QStringLiteral("A_original")));
        EXPECT_EQ(TemporaryHome::read(oldPlace(QStringLiteral("A_original"))), "old");
        EXPECT_EQ(TemporaryHome::read(newPlace(QStringLiteral("A_original"))), "new");
    }
    log.clear();
    const EngineHarness later(services);
    EXPECT_TRUE(log.lines().filter(QStringLiteral("igrat")).isEmpty()) << "a later start logs nothing about it";
    EXPECT_TRUE(TemporaryHome::exists(oldPlace(QStringLiteral("A_original"))));
}

TEST_F(StorageLocations, RecordWithTheNewPathIsUnchangedAndNotSaved)
{
    const QString backup = services.home.write(QStringLiteral(".local/share/quillhaven/A_original"));
    storeItem(QStringLiteral("/gone"), backup);
    QStringList changes;
    QObject::connect(&services.defaults.standard(), &UserDefaults::valueChanged, &services.biometrics,
                     [&changes](const QString &key) { changes.append(key); });
    const EngineHarness engine(services);
    EXPECT_EQ(engine.item().originalBackupPath, backup);
    EXPECT_TRUE(changes.isEmpty());
}

TEST_F(StorageLocations, PathIsSavedBeforeMissingFilesAreCleanedUp)
{
    storeItem(QStringLiteral("/gone"), oldPlace(QStringLiteral("A_original")));
    const EngineHarness engine(services);
    EXPECT_EQ(engine.count(), 0) << "the file was lost with the temporary directory";
    const QStringList lines = log.lines();
    const qsizetype migrated = lines.indexOf(QStringLiteral("✅ Backup paths migration completed"));
    const qsizetype cleanedUp = lines.indexOf(QStringLiteral("🧹 Cleaning up 1 missing files"));
    ASSERT_GE(migrated, 0);
    EXPECT_GT(cleanedUp, migrated);
}

TEST_F(StorageLocations, UnlockedItemGetsABackupPathInTheNewFolderWithoutAFileThere)
{
    const QString original = services.home.write(QStringLiteral("Desktop/a.txt"));
    storeItem(original, oldPlace(QStringLiteral("A_original")), true);
    const EngineHarness engine(services);
    ASSERT_EQ(engine.count(), 1);
    EXPECT_EQ(engine.item().originalBackupPath, newPlace(QStringLiteral("A_original")));
    EXPECT_FALSE(TemporaryHome::exists(engine.item().originalBackupPath));
}

TEST_F(StorageLocations, FailureToListTheOldFolderIsOneWarningAndTheStartContinues)
{
    services.home.write(QStringLiteral("tmp/quillhaven"), "a file instead of the folder");
    const EngineHarness engine(services);
    EXPECT_EQ(log.lines().filter(QStringLiteral("Migration warning: ")).size(), 1);
    EXPECT_TRUE(log.contains(QStringLiteral("DEBUG: No data found in UserDefaults, keeping empty array")));
}

TEST_F(StorageLocations, FailedMoveEndsTheMigrationWithOneWarningAndTheNextStartContinuesIt)
{
    const QStringList names{QStringLiteral("A_original"), QStringLiteral("B_original"), QStringLiteral("C_original")};
    for (const QString &name : names) {
        services.home.write(QStringLiteral("tmp/quillhaven/") + name, name.toUtf8());
    }
    {
        int moves = 0;
        hooks.before = [&moves](const char *call, const QString &path) {
            if (qstrcmp(call, "moveItem") == 0 && ++moves == 2) {
                throw FileError::fromErrno(EIO, FileError::Action::Move, path);
            }
        };
        const EngineHarness engine(services, files);
        EXPECT_EQ(log.lines().filter(QStringLiteral("📍 DEBUG: Migrated backup file: ")).size(), 1);
        EXPECT_EQ(log.lines().filter(QStringLiteral("Migration warning: ")).size(), 1);
        EXPECT_EQ(QDir(oldPlace()).entryList(QDir::Files).size(), 2);
        EXPECT_TRUE(log.contains(QStringLiteral("DEBUG: Loading protected items from UserDefaults")));
    }
    const EngineHarness later(services);
    for (const QString &name : names) {
        EXPECT_EQ(TemporaryHome::read(newPlace(name)), name.toUtf8());
    }
    EXPECT_FALSE(QDir(oldPlace()).exists());
}

TEST_F(StorageLocations, StorageFolderThatCannotBeCreatedIsOnlyReportedWhenAnItemIsProtected)
{
    hooks.before = failing("createDirectory", EROFS);
    EngineHarness engine(services, files);
    EXPECT_EQ(log.lines().join(QLatin1Char('\n')),
              QStringLiteral("DEBUG: Loading protected items from UserDefaults\n"
                             "DEBUG: No data found in UserDefaults, keeping empty array"));
    const QString path = services.home.write(QStringLiteral("Desktop/a.txt"), "mine");
    EXPECT_THROW(engine.protect(path), FileError);
    EXPECT_EQ(TemporaryHome::read(path), "mine");
}
