// SPDX-License-Identifier: GPL-3.0-or-later

#include "ShredFixture.h"

#include <sys/mount.h>

using namespace quillhaven;
using namespace quillhaven::test;

namespace {

using ShredVolumes = ShredTest;

const QString busyText = QStringLiteral("Could not open the folder \"%1\": Device or resource busy.");

} // namespace

TEST_F(ShredVolumes, VolumeMountedInsideFailsBeforeAnythingIsOverwritten)
{
    const QString file = write(QStringLiteral("folder/a"), "secret");
    write(QStringLiteral("folder/volume/below"), "below");
    const QString volume = desktop(QStringLiteral("folder/volume"));
    const Mount mount(QStringLiteral("tmpfs"), volume, "tmpfs", 0, "size=256k");
    ASSERT_TRUE(mount.isMounted());
    write(QStringLiteral("folder/volume/precious"), "kept");
    EXPECT_EQ(failureOf([&] { shred(desktop(QStringLiteral("folder"))); }), busyText.arg(QStringLiteral("volume")));
    EXPECT_EQ(files.calls, QStringList());
    EXPECT_EQ(read(file), "secret");
    EXPECT_EQ(read(volume + QStringLiteral("/precious")), "kept");
}

TEST_F(ShredVolumes, FolderOfTheSameVolumeMountedInsideFailsBeforeAnythingIsOverwritten)
{
    const QString file = write(QStringLiteral("folder/a"), "secret");
    const QString outside = write(QStringLiteral("outside/precious"), "kept");
    write(QStringLiteral("folder/bound/below"), "below");
    const Mount mount(desktop(QStringLiteral("outside")), desktop(QStringLiteral("folder/bound")), nullptr, MS_BIND);
    ASSERT_TRUE(mount.isMounted());
    EXPECT_EQ(failureOf([&] { shred(desktop(QStringLiteral("folder"))); }), busyText.arg(QStringLiteral("bound")));
    EXPECT_EQ(read(file), "secret");
    EXPECT_EQ(read(outside), "kept");
}

TEST_F(ShredVolumes, FileMountedOverAnotherFailsBeforeAnythingIsOverwritten)
{
    const QString file = write(QStringLiteral("folder/a"), "secret");
    const QString outside = write(QStringLiteral("outside"), "kept");
    const QString covered = write(QStringLiteral("folder/covered"), "below");
    const Mount mount(outside, covered, nullptr, MS_BIND);
    ASSERT_TRUE(mount.isMounted());
    EXPECT_EQ(failureOf([&] { shred(desktop(QStringLiteral("folder"))); }),
              QStringLiteral("Could not read \"covered\": Device or resource busy."));
    EXPECT_EQ(read(file), "secret");
    EXPECT_EQ(read(outside), "kept");
}

TEST_F(ShredVolumes, FolderThatIsAMountPointIsEmptiedAndKept)
{
    const QString volume = desktop(QStringLiteral("volume"));
    QDir().mkpath(volume);
    const Mount mount(QStringLiteral("tmpfs"), volume, "tmpfs", 0, "size=256k");
    ASSERT_TRUE(mount.isMounted());
    write(QStringLiteral("volume/deep/a"), "secret");
    EXPECT_EQ(failureOf([&] { shred(volume); }),
              QStringLiteral("Could not remove \"volume\": Device or resource busy."));
    EXPECT_EQ(remaining(volume), QStringList());
}

TEST_F(ShredVolumes, ReadOnlyVolumeFailsAtTheFirstPass)
{
    const QString path = write(QStringLiteral("volume/a.txt"), "secret");
    const QString volume = desktop(QStringLiteral("volume"));
    const Mount mount(volume, volume, nullptr, MS_BIND);
    ASSERT_TRUE(mount.isMounted());
    ASSERT_EQ(::mount(nullptr, bytesOf(volume).constData(), nullptr, MS_REMOUNT | MS_BIND | MS_RDONLY, nullptr), 0);
    EXPECT_EQ(failureOf([&] { shred(path); }),
              QStringLiteral("Could not overwrite \"a.txt\" because the volume is read-only."));
    EXPECT_EQ(read(path), "secret");
}

TEST_F(ShredVolumes, FullVolumeStopsIfThereIsNoSpaceForTheHolesOfASparseFile)
{
    const QString volume = desktop(QStringLiteral("volume"));
    QDir().mkpath(volume);
    const Mount mount(QStringLiteral("tmpfs"), volume, "tmpfs", 0, "size=256k");
    ASSERT_TRUE(mount.isMounted());
    const QString path = write(QStringLiteral("volume/a.txt"), "secret");
    ASSERT_EQ(truncate(bytesOf(path).constData(), 1'000'000), 0);
    EXPECT_EQ(failureOf([&] { shred(path); }),
              QStringLiteral("There is not enough space on the disk to overwrite \"a.txt\"."));
    EXPECT_TRUE(read(path).startsWith(QByteArray(6, '\0')));
    EXPECT_EQ(remaining(volume), QStringList({QStringLiteral("a.txt")}));
}
