// SPDX-License-Identifier: GPL-3.0-or-later

#include "backup/CloudFolder.h"
#include "formats/RecoveryBackup.h"
#include "platform/linux/files/FileFixture.h"
#include "support/EngineHarness.h"

using namespace quillhaven;
using namespace quillhaven::test;

namespace {

/// Backups and recovery on a file system without enough space.
class FullCloudDisk : public ::testing::Test
{
protected:
    FullCloudDisk()
    {
        services.credentials.entries.insert(QStringLiteral("master_password"), "Master12");
        services.panels.answer = [this](const OpenPanelRequest &) { return folder; };
        cloud.make();
        QDir().mkpath(folder);
        engine.emplace(services);
        engine->masterPasswordEntry = QStringLiteral("Master12");
    }

    QString protect(const QString &name, const QByteArray &bytes)
    {
        const QString path = services.home.write(QStringLiteral("Desktop/") + name, bytes);
        engine->protect(path);
        return path;
    }
    void mountSmallDisk(const QString &path)
    {
        disk.emplace(QStringLiteral("tmpfs"), path, "tmpfs", 0, "size=256k");
        ASSERT_TRUE(disk->isMounted());
    }
    template <typename Call>
    static void expectNoSpace(Call call)
    {
        try {
            call();
            ADD_FAILURE() << "no error";
        } catch (const FileError &error) {
            EXPECT_EQ(error.kind(), FileError::Kind::NoSpace) << qUtf8Printable(error.errorDescription());
        }
    }

    TestPlatform services;
    const CloudFolder cloud{services};
    const QString folder = services.home.path(QStringLiteral("Recovered"));
    const QByteArray big = QByteArray(1024 * 1024, 'x');
    LogCapture log;
    std::optional<EngineHarness> engine;
    std::optional<Mount> disk; // unmounted before the home is removed
};

} // namespace

TEST_F(FullCloudDisk, BackupFailsAndStopsTheRunAndTheItemIsUnchanged)
{
    protect(QStringLiteral("small.txt"), "small");
    protect(QStringLiteral("big.bin"), big);
    protect(QStringLiteral("last.txt"), "last");
    cloud.setEnabled(true);
    mountSmallDisk(cloud.path());
    expectNoSpace([this] { runTask(engine->manager.backupAllToiCloud()); });
    const OwnedBytes small =
        decryptBackupFile(services.fileManager, cloud.backup(engine->item(0).id), QStringLiteral("Master12"));
    EXPECT_EQ(small.bytes.size(), 5U);
    EXPECT_FALSE(TemporaryHome::exists(cloud.backup(engine->item(2).id)));
    EXPECT_EQ(TemporaryHome::read(engine->item(1).originalBackupPath), big);
}

TEST_F(FullCloudDisk, ItemIsProtectedAndTheFailedBackupIsLogged)
{
    cloud.setEnabled(true);
    mountSmallDisk(cloud.path());
    protect(QStringLiteral("big.bin"), big);
    ASSERT_EQ(engine->count(), 1);
    EXPECT_EQ(
        log.lines().last(),
        QStringLiteral("⚠️ Failed to backup to iCloud: There is not enough space on the disk to write \"%1.backup\".")
            .arg(engine->item().id));
    EXPECT_EQ(TemporaryHome::read(engine->item().originalBackupPath), big);
}

TEST_F(FullCloudDisk, TruncatedBackupIsRecoveredAsARawCopy)
{
    cloud.setEnabled(true);
    mountSmallDisk(cloud.path());
    protect(QStringLiteral("big.bin"), big);
    const QString piece = cloud.backup(engine->item().id);
    ASSERT_TRUE(TemporaryHome::exists(piece));
    log.clear();
    const QString output = folder + QStringLiteral("/big.bin");
    EXPECT_EQ(runTask(engine->manager.recoverFromiCloud(QStringLiteral("Master12"))), QStringList(output));
    EXPECT_EQ(TemporaryHome::read(output), TemporaryHome::read(piece));
    EXPECT_TRUE(log.contains(QStringLiteral("⚠️ Decryption failed for big.bin, copying raw backup file")));
}

TEST_F(FullCloudDisk, RecoveryStopsAndLeavesNoPartialFile)
{
    cloud.setEnabled(true);
    protect(QStringLiteral("big.bin"), big);
    mountSmallDisk(folder);
    expectNoSpace([this] { runTask(engine->manager.recoverFromiCloud(QStringLiteral("Master12"))); });
    EXPECT_EQ(QDir(folder).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot), QStringList());
    EXPECT_TRUE(log.contains(QStringLiteral("⚠️ Decryption failed for big.bin, copying raw backup file")));
}

TEST_F(FullCloudDisk, RecoveryWithoutSpaceForAFileNameStopsToo)
{
    cloud.setEnabled(true);
    protect(QStringLiteral("small.txt"), "small");
    disk.emplace(QStringLiteral("tmpfs"), folder, "tmpfs", 0, "size=256k,nr_inodes=1");
    ASSERT_TRUE(disk->isMounted());
    expectNoSpace([this] { runTask(engine->manager.recoverFromiCloud(QStringLiteral("Master12"))); });
    EXPECT_TRUE(TemporaryHome::exists(cloud.backup(engine->item().id)));
}
