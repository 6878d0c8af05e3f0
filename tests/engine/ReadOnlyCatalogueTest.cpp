// SPDX-License-Identifier: GPL-3.0-or-later

// What the engine does while its records cannot be written.

#include "engine/PlaceholderFile.h"
#include "support/EngineHarness.h"
#include "support/UnwritableSettings.h"

#include <QDir>
#include <QFile>

using namespace quillhaven;
using namespace quillhaven::test;

namespace {

/// A home in which another process has protected two files, one of which is unlocked, and whose settings then became
/// read-only.
class ReadOnlyCatalogueTest : public ::testing::Test
{
protected:
    ReadOnlyCatalogueTest()
    {
        home.write(QStringLiteral("Desktop/locked.txt"), "locked");
        home.write(QStringLiteral("Desktop/open.txt"), "open");
        home.write(QStringLiteral("Desktop/new.txt"), "new");
        FolderPlatform writable(home.directories());
        EngineHarness before(writable.platform());
        before.protect(path("locked.txt"));
        before.protect(path("open.txt"));
        before.unlock(1);
    }
    void start()
    {
        obstacle = std::make_unique<UnwritableSettings>(home.directories().configuration);
        platform = std::make_unique<FolderPlatform>(home.directories());
        engine = std::make_unique<EngineHarness>(platform->platform());
        for (const ProtectedItem &item : engine->manager.protectedItems()) {
            KeychainManager(platform->credentials, platform->random, keychainServiceName)
                .storePassword(QStringLiteral("Abcdefg1"), item.id);
        }
    }
    [[nodiscard]] QString path(const char *name) const
    {
        return home.path(QStringLiteral("Desktop/") + QLatin1String(name));
    }
    [[nodiscard]] QByteArray contentOf(const char *name) const { return TemporaryHome::read(path(name)); }
    [[nodiscard]] QString problem() const { return engine->manager.catalogue().problem().value_or(QString()); }

    TemporaryHome home;
    std::unique_ptr<UnwritableSettings> obstacle;
    std::unique_ptr<FolderPlatform> platform;
    std::unique_ptr<EngineHarness> engine;
};

TEST_F(ReadOnlyCatalogueTest, TheListIsShown)
{
    start();
    EXPECT_EQ(engine->count(), 2);
    EXPECT_FALSE(problem().isEmpty());
}

TEST_F(ReadOnlyCatalogueTest, NothingNewIsTaken)
{
    start();
    const QString file = path("new.txt");
    const auto answer = engine->manager.canProtectItem(file);
    EXPECT_FALSE(answer.canProtect);
    EXPECT_EQ(answer.errorMessage, problem());
    QString description;
    EXPECT_EQ(engineErrorOf([&] { engine->protect(file); }, &description), QuillhavenError::accessDenied);
    EXPECT_EQ(description, problem());
    EXPECT_EQ(engineErrorOf([&] {
                  runTask(engine->manager.bulkProtectItems({file}, QStringLiteral("Abcdefg1"), false,
                                                           [](const QString &, double) {}));
              }),
              QuillhavenError::encryptionFailed);
    EXPECT_EQ(contentOf("new.txt"), "new");
    EXPECT_EQ(engine->count(), 2);
}

TEST_F(ReadOnlyCatalogueTest, NoOpenCopyIsMadeForADuplicate)
{
    start();
    EXPECT_EQ(engineErrorOf([&] {
                  runTask(engine->manager.duplicateAsEncryptedCopy(engine->item(), [](const QString &, double) {}));
              }),
              QuillhavenError::accessDenied);
    EXPECT_EQ(QDir(home.path(QStringLiteral("Desktop"))).entryList(QDir::Files),
              QStringList({QStringLiteral("locked.txt"), QStringLiteral("new.txt"), QStringLiteral("open.txt")}));
}

TEST_F(ReadOnlyCatalogueTest, WithoutTheRecordsNoItemIsTakenForLost)
{
    const QString database =
        SqliteUserDefaults::databasePath(home.directories().configuration, SqliteUserDefaultsProvider::standardDomain);
    const QString kept = home.path(QStringLiteral("kept.db"));
    ASSERT_TRUE(QFile::rename(database, kept));
    ASSERT_TRUE(QDir().mkdir(database));
    start();
    EXPECT_EQ(engine->count(), 0);
    EXPECT_EQ(runTask(engine->manager.findLostItems()), RescueFindings());
    const QString storage = home.path(QStringLiteral(".local/share/quillhaven"));
    const QStringList copies = QDir(storage).entryList(QDir::Files);
    ASSERT_EQ(copies.size(), 1);
    LostItem lost;
    lost.privatePath = storage + QLatin1Char('/') + copies.constFirst();
    lost.id = copies.constFirst().section(QLatin1Char('_'), 0, 0);
    EXPECT_EQ(engineErrorOf([&] { (void)runTask(engine->manager.giveBackLostItem(lost, path("found.txt"))); }),
              QuillhavenError::accessDenied);
    EXPECT_FALSE(TemporaryHome::exists(path("found.txt")));

    ASSERT_TRUE(QDir().rmdir(database));
    ASSERT_TRUE(QFile::rename(kept, database));
    obstacle.reset();
    EXPECT_TRUE(engine->manager.retryLoading());
    EXPECT_EQ(engine->count(), 2);
    EXPECT_EQ(runTask(engine->manager.findLostItems()), RescueFindings());
}

TEST_F(ReadOnlyCatalogueTest, AnItemCanBeUnlockedAndItsDataStaysAtItsPlaceAfterARestart)
{
    start();
    engine->unlock();
    EXPECT_EQ(contentOf("locked.txt"), "locked");
    EXPECT_TRUE(engine->item().isMounted);
    engine.reset();
    start();
    EXPECT_EQ(contentOf("locked.txt"), "locked");
    EXPECT_EQ(engine->count(), 2);
}

TEST_F(ReadOnlyCatalogueTest, AnItemThatIsLockedIsFoundByTheNextLockAfterARestart)
{
    start();
    engine->lock(1);
    EXPECT_TRUE(holdsPlaceholder(platform->fileManager, path("open.txt")));
    engine.reset();
    platform.reset();
    obstacle.reset();
    FolderPlatform writable(home.directories());
    EngineHarness again(writable.platform());
    KeychainManager(writable.credentials, writable.random, keychainServiceName)
        .storePassword(QStringLiteral("Abcdefg1"), again.item(1).id);
    again.lock(1);
    again.unlock(1);
    EXPECT_EQ(contentOf("open.txt"), "open");
}

TEST_F(ReadOnlyCatalogueTest, WhatWasChangedIsSavedOnceTheSettingsCanBeWritten)
{
    start();
    engine->unlock();
    EXPECT_FALSE(engine->manager.retryLoading());
    obstacle.reset();
    EXPECT_TRUE(engine->manager.retryLoading());
    EXPECT_EQ(problem(), QString());
    engine->protect(path("new.txt"));
    const QList<ProtectedItem> listed = engine->manager.protectedItems();
    ASSERT_EQ(listed.size(), 3);
    EXPECT_TRUE(listed.constFirst().isMounted);
    engine.reset();
    platform.reset();
    FolderPlatform restarted(home.directories());
    EXPECT_EQ(EngineHarness(restarted.platform()).manager.protectedItems(), listed);
}

} // namespace
