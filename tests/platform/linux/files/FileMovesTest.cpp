// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/linux/files/FileMoves.h"
#include "FileFixture.h"

#include <fcntl.h>

namespace quillhaven::test {

namespace {

using Kind = FileError::Kind;
using FileMovesTest = FileTest;

QStringList difficultNames()
{
    return {QStringLiteral("a b"),       QStringLiteral("\"quoted\" 'twice'"),
            QStringLiteral("line\nend"), QStringLiteral("-rf"),
            QStringLiteral("--"),        QStringLiteral(".hidden"),
            QStringLiteral("..."),       QStringLiteral("back\\slash*?"),
            QStringLiteral("🪶🔐"),      QStringLiteral("שלום عالم"),
            QString(255, u'x')};
}

TEST_F(FileMovesTest, MovesEveryNameOnOneFileSystemAndToAnother)
{
    for (const QString &name : difficultNames()) {
        const QString source = home.write(QStringLiteral("in/") + name, name.toUtf8());
        files.createDirectory(home.path(QStringLiteral("out")));
        const QString near = home.path(QStringLiteral("out/") + name);
        files.moveItem(source, near);
        EXPECT_FALSE(exists(source));
        EXPECT_EQ(read(near), name.toUtf8());
        files.moveItem(near, other(name));
        EXPECT_FALSE(exists(near));
        EXPECT_EQ(read(other(name)), name.toUtf8());
    }
}

TEST_F(FileMovesTest, MoveNeverOverwritesTheTarget)
{
    const QString source = home.write(QStringLiteral("a.txt"), "new");
    for (const QString &target : {home.path(QStringLiteral("taken")), other(QStringLiteral("taken"))}) {
        write(target, "old");
        expectKind(Kind::TargetExists, [&] { files.moveItem(source, target); });
        EXPECT_EQ(read(target), "old");
        EXPECT_EQ(read(source), "new");
        ASSERT_TRUE(QFile::remove(target));
        ASSERT_TRUE(QFile::link(QStringLiteral("nowhere"), target));
        expectKind(Kind::TargetExists, [&] { files.moveItem(source, target); });
    }
    expectKind(Kind::TargetExists, [&] { files.moveItem(source, source); });
}

TEST_F(FileMovesTest, MoveFailsWhenTargetIsAHardLinkOfTheSource)
{
    const QString source = home.write(QStringLiteral("a"));
    const QString second = home.path(QStringLiteral("b"));
    ASSERT_EQ(link(bytesOf(source).constData(), bytesOf(second).constData()), 0);
    expectKind(Kind::TargetExists, [&] { files.moveItem(source, second); });
    EXPECT_EQ(renameWithoutFlags(bytesOf(source), bytesOf(second)), EEXIST);
    EXPECT_TRUE(exists(source));
    EXPECT_TRUE(exists(second));
}

TEST_F(FileMovesTest, AMissingSourceOrFolderOrAFolderIntoItselfFails)
{
    expectKind(Kind::NoSuchFile, [&] { files.moveItem(home.path(QStringLiteral("no")), other(QStringLiteral("no"))); });
    const QString source = home.write(QStringLiteral("folder/file"));
    expectKind(Kind::NoSuchFile, [&] { files.moveItem(source, home.path(QStringLiteral("no/file"))); });
    expectKind(Kind::NoSuchFile, [&] { files.moveItem(source, other(QStringLiteral("no/file"))); });
    expectKind(Kind::Other, [&] {
        files.moveItem(home.path(QStringLiteral("folder")), home.path(QStringLiteral("folder/inside")));
    });
    EXPECT_TRUE(exists(source));
}

TEST_F(FileMovesTest, AFileThatAnotherProcessHasOpenMoves)
{
    const QString source = home.write(QStringLiteral("held"), "held");
    QProcess holder;
    holder.start(QStringLiteral("sh"), {QStringLiteral("-c"), QStringLiteral("exec 3<\"$1\"; echo ready; read line"),
                                        QStringLiteral("sh"), source});
    ASSERT_TRUE(holder.waitForReadyRead());
    files.moveItem(source, other(QStringLiteral("held")));
    EXPECT_EQ(read(other(QStringLiteral("held"))), "held");
    holder.write("\n");
    EXPECT_TRUE(holder.waitForFinished());
}

TEST_F(FileMovesTest, ATreeKeepsAllPropertiesOnAnotherFileSystem)
{
    const QString source = home.path(QStringLiteral("tree"));
    const QString tool = home.write(QStringLiteral("tree/sub/tool"), "run");
    files.createDirectory(home.path(QStringLiteral("tree/empty")));
    setAttribute(tool, "user.note", QByteArray("a\0b", 3));
    setAttribute(source, "user.folder", "yes");
    outputOf(QStringLiteral("setfacl"), {QStringLiteral("-m"), QStringLiteral("u:65534:rx"), tool});
    outputOf(QStringLiteral("setfacl"),
             {QStringLiteral("-d"), QStringLiteral("-m"), QStringLiteral("u:65534:rwx"), source});
    ASSERT_EQ(chmod(bytesOf(tool).constData(), 04751), 0);
    ASSERT_EQ(link(bytesOf(tool).constData(), bytesOf(source + QStringLiteral("/twin")).constData()), 0);
    ASSERT_EQ(symlink("sub/tool", bytesOf(source + QStringLiteral("/link")).constData()), 0);
    ASSERT_EQ(symlink("nowhere", bytesOf(source + QStringLiteral("/dangling")).constData()), 0);
    ASSERT_EQ(mkfifo(bytesOf(source + QStringLiteral("/fifo")).constData(), 0640), 0);
    const timespec times[2] = {{1'000'000'000, 1}, {1'234'567'890, 123'456'789}};
    ASSERT_EQ(utimensat(AT_FDCWD, bytesOf(tool).constData(), times, 0), 0);
    ASSERT_EQ(utimensat(AT_FDCWD, bytesOf(source).constData(), times, 0), 0);

    const QString target = other(QStringLiteral("moved"));
    files.moveItem(source, target);

    EXPECT_FALSE(exists(source));
    const QString moved = target + QStringLiteral("/sub/tool");
    EXPECT_EQ(read(moved), "run");
    EXPECT_EQ(status(moved).st_mode & 07777, 04751);
    EXPECT_EQ(attribute(moved, "user.note"), QByteArray("a\0b", 3));
    EXPECT_EQ(attribute(target, "user.folder"), "yes");
    EXPECT_TRUE(outputOf(QStringLiteral("getfacl"), {QStringLiteral("-npc"), moved}).contains("user:65534:r-x"));
    EXPECT_TRUE(
        outputOf(QStringLiteral("getfacl"), {QStringLiteral("-npc"), target}).contains("default:user:65534:rwx"));
    EXPECT_EQ(status(moved).st_ino, status(target + QStringLiteral("/twin")).st_ino);
    for (const QString &path : {moved, target}) {
        EXPECT_EQ(status(path).st_mtim.tv_sec, 1'234'567'890);
        EXPECT_EQ(status(path).st_mtim.tv_nsec, 123'456'789);
    }
    char linkText[16] = {};
    EXPECT_EQ(readlink(bytesOf(target + QStringLiteral("/link")).constData(), linkText, sizeof linkText), 8);
    EXPECT_STREQ(linkText, "sub/tool");
    EXPECT_TRUE(exists(target + QStringLiteral("/dangling")));
    EXPECT_TRUE(S_ISFIFO(status(target + QStringLiteral("/fifo")).st_mode));
    EXPECT_TRUE(files.isDirectory(target + QStringLiteral("/empty")));
}

TEST_F(FileMovesTest, AMovedSparseFileIsSparse)
{
    const QString target = other(QStringLiteral("sparse"));
    files.moveItem(sparseFile(), target);
    expectSparse(target);
}

TEST_F(FileMovesTest, ADanglingLinkMovesAsALink)
{
    const QString source = home.path(QStringLiteral("link"));
    ASSERT_EQ(symlink("nowhere", bytesOf(source).constData()), 0);
    files.moveItem(source, other(QStringLiteral("link")));
    EXPECT_TRUE(S_ISLNK(status(other(QStringLiteral("link"))).st_mode));
    EXPECT_FALSE(exists(source));
}

TEST_F(FileMovesTest, AReadOnlyFolderInAFolderOfTheUsersMovesToAnotherFileSystemAndBack)
{
    ASSERT_EQ(chmod(bytesOf(home.path()).constData(), 0777), 0);
    ASSERT_EQ(chmod(bytesOf(other({})).constData(), 0777), 0);
    const QString folder = home.path(QStringLiteral("folder"));
    const QString there = other(QStringLiteral("folder"));
    const AsPlainUser user;
    home.write(QStringLiteral("folder/module/file"), "kept");
    ASSERT_EQ(chmod(bytesOf(folder + QStringLiteral("/module")).constData(), 0555), 0);
    files.moveItem(folder, there);
    EXPECT_FALSE(exists(folder));
    EXPECT_EQ(status(there + QStringLiteral("/module")).st_mode & 07777, 0555U);
    files.moveItem(there, folder);
    EXPECT_FALSE(exists(there));
    EXPECT_EQ(status(folder + QStringLiteral("/module")).st_mode & 07777, 0555U);
    EXPECT_EQ(read(folder + QStringLiteral("/module/file")), "kept");
    expectKind(Kind::NoPermission, [&] { files.removeItem(folder); });
    EXPECT_TRUE(exists(folder + QStringLiteral("/module/file")));
    ASSERT_EQ(chmod(bytesOf(folder + QStringLiteral("/module")).constData(), 0755), 0);
}

/// All combinations of a file and a folder, on one file system and across two.
class ReplaceTest : public FileTest, public ::testing::WithParamInterface<std::tuple<bool, bool, bool>>
{
};

TEST_P(ReplaceTest, TheReplacementIsOnlyAtTheReplacedPath)
{
    const auto [isOldFolder, isNewFolder, isAcross] = GetParam();
    const QString original = home.path(QStringLiteral("b \"quoted\""));
    const QString replacement = isAcross ? other(QStringLiteral("new")) : home.path(QStringLiteral("new"));
    if (isOldFolder) {
        home.write(QStringLiteral("b \"quoted\"/old/deep"), "old");
    } else {
        write(original, "old");
    }
    if (isNewFolder) {
        files.createDirectory(replacement);
        write(replacement + QStringLiteral("/file"), "new");
    } else {
        write(replacement, "new");
    }
    files.replaceItemAt(original, replacement);
    EXPECT_FALSE(exists(replacement));
    EXPECT_EQ(read(isNewFolder ? original + QStringLiteral("/file") : original), "new");
    EXPECT_FALSE(exists(original + QStringLiteral("/old")));
}

INSTANTIATE_TEST_SUITE_P(Pairings, ReplaceTest,
                         ::testing::Combine(::testing::Bool(), ::testing::Bool(), ::testing::Bool()));

TEST_F(FileMovesTest, ReplacingAMissingItemOrByAMissingItemChangesNothing)
{
    const QString file = home.write(QStringLiteral("file"), "whole");
    expectKind(Kind::NoSuchFile, [&] { files.replaceItemAt(file, home.path(QStringLiteral("no"))); });
    expectKind(Kind::NoSuchFile, [&] { files.replaceItemAt(home.path(QStringLiteral("no")), file); });
    expectKind(Kind::Other, [&] { files.replaceItemAt(file, file); });
    EXPECT_EQ(read(file), "whole");
}

TEST_F(FileMovesTest, ReplacingByAHardLinkOfTheSameFileLeavesOneName)
{
    const QString file = home.write(QStringLiteral("file"), "whole");
    const QString second = home.path(QStringLiteral("second"));
    ASSERT_EQ(link(bytesOf(file).constData(), bytesOf(second).constData()), 0);
    files.replaceItemAt(file, second);
    EXPECT_EQ(read(file), "whole");
    EXPECT_FALSE(exists(second));
}

TEST_F(FileMovesTest, WithoutTheFlagsOfRenameFilesAndFoldersStillMove)
{
    const QByteArray file = bytesOf(home.write(QStringLiteral("file"), "file"));
    home.write(QStringLiteral("folder/inner"), "inner");
    const QByteArray folder = bytesOf(home.path(QStringLiteral("folder")));
    EXPECT_EQ(renameWithoutFlags(folder, file), EEXIST);
    EXPECT_EQ(renameWithoutFlags(file, folder), EEXIST);
    EXPECT_EQ(renameWithoutFlags(folder, folder + "-2"), 0);
    EXPECT_EQ(renameWithoutFlags(file, file + "-2"), 0);
    EXPECT_EQ(read(home.path(QStringLiteral("file-2"))), "file");
    EXPECT_EQ(read(home.path(QStringLiteral("folder-2/inner"))), "inner");
}

} // namespace

} // namespace quillhaven::test
