// SPDX-License-Identifier: GPL-3.0-or-later

#include "FileFixture.h"

namespace quillhaven::test {

namespace {

using Kind = FileError::Kind;
using MountedVolumesTest = FileTest;

TEST_F(MountedVolumesTest, AFullDiskKeepsTheSourceAndLeavesNoCopy)
{
    const QString small = home.path(QStringLiteral("small"));
    files.createDirectory(small);
    const Mount mount(QStringLiteral("tmpfs"), small, "tmpfs", 0, "size=256k");
    ASSERT_TRUE(mount.isMounted());
    const QByteArray big(1024 * 1024, 'x');
    const QString source = home.write(QStringLiteral("folder/big"), big);
    const QString inSmall = small + QStringLiteral("/b");
    const auto error = errorOf([&] { files.moveItem(source, inSmall); });
    ASSERT_TRUE(error.has_value());
    EXPECT_EQ(error->errorDescription(),
              QStringLiteral("There is not enough space on the disk to move \"big\" to \"small\"."));
    expectKind(Kind::NoSpace, [&] { files.moveItem(home.path(QStringLiteral("folder")), inSmall); });
    expectKind(Kind::NoSpace, [&] { files.copyItem(source, inSmall); });
    expectKind(Kind::NoSpace, [&] { files.copyItem(home.path(QStringLiteral("folder")), inSmall); });
    EXPECT_TRUE(read(source) == big);
    EXPECT_EQ(files.contentsOfDirectory(small), QStringList());

    write(inSmall, "old");
    expectKind(Kind::NoSpace, [&] { files.replaceItemAt(inSmall, source); });
    EXPECT_EQ(read(inSmall), "old");
    EXPECT_EQ(files.contentsOfDirectory(small), QStringList({QStringLiteral("b")}));
    const auto full = errorOf([&] { write(small + QStringLiteral("/c"), big); });
    ASSERT_TRUE(full.has_value());
    EXPECT_EQ(full->errorDescription(), QStringLiteral("There is not enough space on the disk to write \"c\"."));
}

TEST_F(MountedVolumesTest, AReadOnlyVolumeIsReportedAndNothingChanges)
{
    home.write(QStringLiteral("volume/file"), "kept");
    const QString volume = home.path(QStringLiteral("volume"));
    const Mount bound(volume, volume, nullptr, MS_BIND);
    ASSERT_TRUE(bound.isMounted());
    ASSERT_EQ(mount(nullptr, bytesOf(volume).constData(), nullptr, MS_REMOUNT | MS_BIND | MS_RDONLY, nullptr), 0);
    const QString file = volume + QStringLiteral("/file");
    expectKind(Kind::ReadOnlyVolume, [&] { files.requireReadableAndMovable(file, 0); });
    expectKind(Kind::ReadOnlyVolume, [&] { files.moveItem(file, home.path(QStringLiteral("taken"))); });
    expectKind(Kind::ReadOnlyVolume, [&] { write(file, "new"); });
    expectKind(Kind::ReadOnlyVolume, [&] { files.removeItem(file); });
    const QString outside = home.write(QStringLiteral("outside"), "outside");
    expectKind(Kind::ReadOnlyVolume, [&] { files.moveItem(outside, volume + QStringLiteral("/in")); });
    EXPECT_FALSE(files.isWritableFile(volume));
    EXPECT_EQ(read(file), "kept");
    EXPECT_EQ(read(outside), "outside");
    EXPECT_FALSE(exists(home.path(QStringLiteral("taken"))));
}

TEST_F(MountedVolumesTest, AVolumeMountedInAFolderIsNeitherEmptiedNorMoved)
{
    const QString volume = home.path(QStringLiteral("folder/volume"));
    files.createDirectory(volume);
    const Mount mount(QStringLiteral("tmpfs"), volume, "tmpfs", 0, "size=256k");
    ASSERT_TRUE(mount.isMounted());
    write(volume + QStringLiteral("/precious"), "kept");
    const QString folder = home.path(QStringLiteral("folder"));
    expectKind(Kind::Other, [&] { files.removeItem(folder); });
    expectKind(Kind::Other, [&] { files.moveItem(folder, other(QStringLiteral("folder"))); });
    expectKind(Kind::Other, [&] { files.requireReadableAndMovable(volume, 0); });
    EXPECT_EQ(read(volume + QStringLiteral("/precious")), "kept");
}

TEST_F(MountedVolumesTest, AttributesThatTheOtherVolumeDoesNotSupportStopTheMove)
{
    // ramfs does not support extended attributes, like the file systems of many USB sticks.
    const QString volume = home.path(QStringLiteral("plain"));
    files.createDirectory(volume);
    const Mount mount(QStringLiteral("ramfs"), volume, "ramfs", 0);
    ASSERT_TRUE(mount.isMounted());
    const QString source = home.write(QStringLiteral("folder/noted.txt"), "kept");
    setAttribute(source, "user.note", "mine");
    const QString target = volume + QStringLiteral("/folder");
    const auto error = errorOf([&] { files.moveItem(home.path(QStringLiteral("folder")), target); });
    ASSERT_TRUE(error.has_value());
    EXPECT_EQ(error->kind(), Kind::NotPreserved);
    EXPECT_EQ(error->errorDescription(),
              QStringLiteral("Could not move \"folder/noted.txt\" to \"plain\" because an attribute of the item would "
                             "be lost there."));
    expectKind(Kind::NotPreserved, [&] { files.copyItem(home.path(QStringLiteral("folder")), target); });
    EXPECT_EQ(read(source), "kept");
    EXPECT_EQ(files.contentsOfDirectory(volume), QStringList());
}

} // namespace

} // namespace quillhaven::test
