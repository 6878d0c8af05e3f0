// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/linux/volumes/LinuxVolumes.h"
#include "platform/linux/files/FileFixture.h"
#include "platform/linux/volumes/DiskImage.h"

namespace quillhaven {

/// Writes the facts that hold, so that a failure can be read.
static void PrintTo(const StorageFacts &facts, std::ostream *stream)
{
    *stream << "known: " << (facts.isSolidState ? "solid-state " : "") << (facts.isCopyOnWrite ? "copy-on-write " : "")
            << (facts.sharesBlocks ? "shared " : "") << (facts.isRemote ? "remote " : "")
            << (facts.isSynced ? "synced " : "") << (facts.hasSnapshots ? "snapshots " : "")
            << (facts.isUnencrypted ? "unencrypted" : "");
}

namespace test {
namespace {

class LinuxVolumesTest : public ::testing::Test
{
protected:
    /// A new volume at `volume()`, on a disk that turns.
    DiskImage &mountImage(const char *type)
    {
        QDir().mkpath(volume());
        return image.emplace(QString::fromLatin1(type), home.path(QStringLiteral("image")), volume());
    }
    [[nodiscard]] QString volume(const QString &relative = {}) const
    {
        return home.path(QStringLiteral("volume")) + (relative.isEmpty() ? QString() : QLatin1Char('/') + relative);
    }
    QString write(const QString &relative) const
    {
        return home.write(QStringLiteral("volume/") + relative, QByteArray(100'000, 'x'));
    }
    /// Copies as the user's `cp` does, which leaves both files with the same blocks.
    static void copySharing(const QString &path, const QString &copy)
    {
        runTool(QStringLiteral("cp"), {QStringLiteral("--reflink=always"), path, copy});
    }
    static void subvolume(const QStringList &arguments)
    {
        runTool(QStringLiteral("btrfs"), QStringList{QStringLiteral("subvolume")} + arguments);
    }
    [[nodiscard]] StorageFacts facts(const QString &relative) const { return volumes.factsAbout(volume(relative)); }

    TemporaryHome home;
    LinuxVolumes volumes{home.directories()};
    std::optional<DiskImage> image;
};

const StorageFacts copyOnWrite{.isCopyOnWrite = true, .isUnencrypted = true};

TEST_F(LinuxVolumesTest, NothingIsKnownOfAPlainFileSystemOnATurningDisk)
{
    mountImage("ext4");
    write(QStringLiteral("folder/a.txt"));
    EXPECT_EQ(facts(QStringLiteral("folder/a.txt")), StorageFacts());
    EXPECT_EQ(facts(QStringLiteral("folder")), StorageFacts());
    EXPECT_EQ(facts(QStringLiteral("missing")), StorageFacts());
    EXPECT_EQ(facts(QStringLiteral("missing/a.txt")), StorageFacts());
}

TEST_F(LinuxVolumesTest, ASolidStateDiskIsReportedForEachFileSystem)
{
    for (const char *type : {"ext4", "xfs", "btrfs"}) {
        mountImage(type).setSolidState(true);
        write(QStringLiteral("a.txt"));
        EXPECT_EQ(
            facts(QStringLiteral("a.txt")),
            (StorageFacts{.isSolidState = true, .isCopyOnWrite = strcmp(type, "btrfs") == 0, .isUnencrypted = true}))
            << type;
        image.reset();
        QFile::remove(home.path(QStringLiteral("image")));
    }
}

TEST_F(LinuxVolumesTest, APathThroughALinkIsOnTheVolumeThatItLeadsTo)
{
    mountImage("ext4").setSolidState(true);
    write(QStringLiteral("folder/a.txt"));
    ASSERT_TRUE(QFile::link(volume(QStringLiteral("folder")), home.path(QStringLiteral("link"))));
    EXPECT_TRUE(volumes.factsAbout(home.path(QStringLiteral("link/a.txt"))).isSolidState);
}

TEST_F(LinuxVolumesTest, BtrfsIsCopyOnWriteAndItsDiskIsFound)
{
    mountImage("btrfs");
    write(QStringLiteral("a.txt"));
    EXPECT_EQ(facts(QStringLiteral("a.txt")), copyOnWrite);
}

TEST_F(LinuxVolumesTest, AFileIsSharedAfterACopyThatSharesItsBlocks)
{
    for (const char *type : {"xfs", "btrfs"}) {
        mountImage(type);
        const QString path = write(QStringLiteral("a.txt"));
        write(QStringLiteral("other.txt"));
        runTool(QStringLiteral("sync"), {});
        EXPECT_FALSE(facts(QStringLiteral("a.txt")).sharesBlocks) << type;
        copySharing(path, volume(QStringLiteral("copy.txt")));
        EXPECT_TRUE(facts(QStringLiteral("a.txt")).sharesBlocks) << type;
        EXPECT_TRUE(facts(QStringLiteral("a.txt")).isUnencrypted) << type;
        EXPECT_FALSE(facts(QStringLiteral("other.txt")).sharesBlocks) << type;
        image.reset();
        QFile::remove(home.path(QStringLiteral("image")));
    }
}

TEST_F(LinuxVolumesTest, AFolderIsSharedWhenAFileSomewhereInItIs)
{
    mountImage("xfs");
    const QString path = write(QStringLiteral("folder/deep/in/it/a.txt"));
    write(QStringLiteral("folder/b.txt"));
    ASSERT_TRUE(QFile::link(volume(), volume(QStringLiteral("folder/link")))) << "it is not followed";
    EXPECT_EQ(facts(QStringLiteral("folder")), StorageFacts());
    copySharing(path, volume(QStringLiteral("copy.txt")));
    EXPECT_EQ(facts(QStringLiteral("folder")), (StorageFacts{.sharesBlocks = true, .isUnencrypted = true}));
}

TEST_F(LinuxVolumesTest, AFileWithManyExtentsIsSharedWhenItsLastOneIs)
{
    mountImage("xfs");
    const QString path = volume(QStringLiteral("a.bin"));
    constexpr int count = 400; // more than one question is answered with
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::ReadWrite));
    for (int i = 0; i < count; ++i) { // with a hole after each block
        ASSERT_TRUE(file.seek(qint64(i) * 8192) && file.write(QByteArray(4096, 'x')) == 4096);
    }
    file.close();
    runTool(QStringLiteral("sync"), {});
    EXPECT_FALSE(facts(QStringLiteral("a.bin")).sharesBlocks);
    const QString last = QStringLiteral("reflink %1 %2 0 4096").arg(path).arg(qint64(count - 1) * 8192);
    runTool(QStringLiteral("xfs_io"),
            {QStringLiteral("-f"), QStringLiteral("-c"), last, volume(QStringLiteral("b.bin"))});
    EXPECT_TRUE(facts(QStringLiteral("a.bin")).sharesBlocks);
}

TEST_F(LinuxVolumesTest, ASnapshotOfTheSubvolumeCountsForTheFilesInIt)
{
    mountImage("btrfs");
    subvolume({QStringLiteral("create"), volume(QStringLiteral("home"))});
    subvolume({QStringLiteral("create"), volume(QStringLiteral("other"))});
    write(QStringLiteral("home/papers/a.txt"));
    write(QStringLiteral("other/b.txt"));
    EXPECT_EQ(facts(QStringLiteral("home/papers/a.txt")), copyOnWrite);
    subvolume({QStringLiteral("snapshot"), QStringLiteral("-r"), volume(QStringLiteral("home")),
               volume(QStringLiteral("home-yesterday"))});
    StorageFacts expected = copyOnWrite;
    expected.hasSnapshots = true;
    expected.sharesBlocks = true;
    EXPECT_EQ(facts(QStringLiteral("home/papers/a.txt")), expected);
    EXPECT_EQ(facts(QStringLiteral("home/papers")), expected);
    EXPECT_FALSE(facts(QStringLiteral("other/b.txt")).hasSnapshots);
}

TEST_F(LinuxVolumesTest, ASnapshotInsideTheSubvolumeIsSeenByAPlainUser)
{
    mountImage("btrfs");
    write(QStringLiteral("papers/a.txt"));
    QDir().mkpath(volume(QStringLiteral("kept")));
    subvolume({QStringLiteral("snapshot"), volume(), volume(QStringLiteral("kept/yesterday"))});
    ASSERT_EQ(::chmod(QFile::encodeName(home.path()).constData(), 0755), 0);
    const AsPlainUser user;
    EXPECT_TRUE(facts(QStringLiteral("papers/a.txt")).hasSnapshots);
}

TEST_F(LinuxVolumesTest, TheFolderOfASnapshotToolCountsUnlessItIsEmpty)
{
    mountImage("ext4");
    write(QStringLiteral("papers/a.txt"));
    QDir().mkpath(volume(QStringLiteral(".snapshots")));
    EXPECT_EQ(facts(QStringLiteral("papers/a.txt")), StorageFacts());
    QDir().mkpath(volume(QStringLiteral(".snapshots/1/snapshot")));
    EXPECT_EQ(facts(QStringLiteral("papers/a.txt")), (StorageFacts{.hasSnapshots = true, .isUnencrypted = true}));
}

TEST_F(LinuxVolumesTest, AFileSystemOfAProgramIsRemote)
{
    const QString shown = home.path(QStringLiteral("shown"));
    QDir().mkpath(shown);
    home.write(QStringLiteral("volume/a.txt"));
    runTool(QStringLiteral("bindfs"), {volume(), shown});
    EXPECT_EQ(volumes.factsAbout(shown + QStringLiteral("/a.txt")), StorageFacts{.isRemote = true});
    EXPECT_EQ(::umount2(QFile::encodeName(shown).constData(), 0), 0);
}

TEST_F(LinuxVolumesTest, ASyncedFolderIsReportedWhereverItLies)
{
    mountImage("ext4");
    write(QStringLiteral("Sync/.stfolder/marker"));
    write(QStringLiteral("Sync/a.txt"));
    write(QStringLiteral("Backups/b.txt"));
    EXPECT_EQ(facts(QStringLiteral("Sync/a.txt")), StorageFacts{.isSynced = true});
    EXPECT_EQ(facts(QStringLiteral("Backups/b.txt")), StorageFacts());
    const QString links = home.directories().applicationSupport + QStringLiteral("/cloud");
    QDir().mkpath(links);
    ASSERT_TRUE(QFile::link(volume(QStringLiteral("Backups")), links + QStringLiteral("/com~example")));
    EXPECT_EQ(facts(QStringLiteral("Backups/b.txt")), StorageFacts{.isSynced = true});
}

TEST_F(LinuxVolumesTest, MemoryKeepsNothing)
{
    for (const char *type : {"tmpfs", "ramfs"}) {
        QDir().mkpath(volume());
        const Mount mount(QStringLiteral("none"), volume(), type, 0);
        ASSERT_TRUE(mount.isMounted());
        write(QStringLiteral(".stfolder/marker"));
        EXPECT_EQ(facts(QStringLiteral(".stfolder/marker")), StorageFacts()) << type;
    }
}

} // namespace
} // namespace test

} // namespace quillhaven
