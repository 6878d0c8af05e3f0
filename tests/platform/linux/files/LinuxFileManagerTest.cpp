// SPDX-License-Identifier: GPL-3.0-or-later

#include "FileFixture.h"

#include <fcntl.h>
#include <sys/socket.h>
#include <sys/un.h>

#include <cstring>

namespace quillhaven::test {

namespace {

using Kind = FileError::Kind;
using LinuxFileManagerTest = FileTest;

TEST_F(LinuxFileManagerTest, ALinkIsTreatedAsItsTarget)
{
    const QString file = home.write(QStringLiteral("file"));
    ASSERT_TRUE(QFile::link(file, home.path(QStringLiteral("link"))));
    ASSERT_TRUE(QFile::link(QStringLiteral("nowhere"), home.path(QStringLiteral("dangling"))));
    ASSERT_TRUE(QFile::link(home.path(), home.path(QStringLiteral("toFolder"))));
    EXPECT_TRUE(files.fileExists(home.path(QStringLiteral("link"))));
    EXPECT_FALSE(files.fileExists(home.path(QStringLiteral("dangling"))));
    EXPECT_FALSE(files.fileExists(home.path(QStringLiteral("absent"))));
    EXPECT_FALSE(files.isDirectory(home.path(QStringLiteral("link"))));
    EXPECT_TRUE(files.isDirectory(home.path(QStringLiteral("toFolder"))));
}

TEST_F(LinuxFileManagerTest, WritableIsCheckedForTheCurrentUser)
{
    const QString file = home.write(QStringLiteral("file"));
    EXPECT_TRUE(files.isWritableFile(file));
    ASSERT_EQ(chmod(bytesOf(home.path()).constData(), 0755), 0);
    ASSERT_EQ(chmod(bytesOf(file).constData(), 0444), 0);
    const AsPlainUser user;
    EXPECT_FALSE(files.isWritableFile(file));
}

TEST_F(LinuxFileManagerTest, CreatesMissingFoldersForTheOwnerOnlyAndAcceptsExistingOnes)
{
    const QString folder = home.path(QStringLiteral("a/b c/d"));
    files.createDirectory(folder);
    files.createDirectory(folder);
    EXPECT_EQ(status(folder).st_mode & 07777, 0700);
}

TEST_F(LinuxFileManagerTest, AFileAtThePlaceOfAFolderIsAnError)
{
    const QString file = home.write(QStringLiteral("file"));
    expectKind(Kind::TargetExists, [&] { files.createDirectory(file); });
    expectKind(Kind::NoSuchFile, [&] { files.createDirectory(file + QStringLiteral("/below")); });
    EXPECT_EQ(read(file), "content");
}

TEST_F(LinuxFileManagerTest, ListsEveryNameIncludingHiddenOnes)
{
    files.createDirectory(home.path(QStringLiteral("folder")));
    for (const char *name : {".hidden", "-rf", "a b", "line\nend"}) {
        home.write(QStringLiteral("folder/") + QString::fromUtf8(name));
    }
    QStringList names = files.contentsOfDirectory(home.path(QStringLiteral("folder")));
    names.sort();
    EXPECT_EQ(names, QStringList({QStringLiteral("-rf"), QStringLiteral(".hidden"), QStringLiteral("a b"),
                                  QStringLiteral("line\nend")}));
    expectKind(Kind::NoSuchFile, [&] { (void)files.contentsOfDirectory(home.path(QStringLiteral("absent"))); });
}

TEST_F(LinuxFileManagerTest, AFileThatDoesNotFitInMemoryIsNeitherReadNorMovable)
{
    const QString file = home.write(QStringLiteral("huge"));
    ASSERT_EQ(truncate(bytesOf(file).constData(), off_t{1} << 43), 0); // 8 TiB, a single hole
    expectKind(Kind::TooLargeForMemory, [&] { (void)files.readFile(file); });
    expectKind(Kind::TooLargeForMemory, [&] { files.requireReadableAndMovable(file, 0); });
    const QString small = home.write(QStringLiteral("small"));
    expectKind(Kind::TooLargeForMemory, [&] { files.requireReadableAndMovable(small, size_t{1} << 50); });
}

TEST_F(LinuxFileManagerTest, ReadingAFolderOrAMissingFileFails)
{
    expectKind(Kind::Other, [&] { (void)files.readFile(home.path()); });
    expectKind(Kind::NoSuchFile, [&] { (void)files.readFile(home.path(QStringLiteral("absent"))); });
}

TEST_F(LinuxFileManagerTest, WritesInPlaceAndTruncatesTheExistingFile)
{
    const QString file = home.write(QStringLiteral("file"), "a longer text than the new one");
    const ino_t inode = status(file).st_ino;
    write(file, "new");
    EXPECT_EQ(read(file), "new");
    EXPECT_EQ(status(file).st_ino, inode);
    write(file, "");
    EXPECT_EQ(read(file), "");
}

TEST_F(LinuxFileManagerTest, ANewFileIsForItsOwnerAloneWhateverTheUmask)
{
    const mode_t mask = umask(0);
    const QString file = home.path(QStringLiteral("new"));
    write(file, "x");
    umask(mask);
    EXPECT_EQ(status(file).st_mode & 07777, 0600);
    ASSERT_EQ(chmod(bytesOf(file).constData(), 0644), 0);
    write(file, "again");
    EXPECT_EQ(status(file).st_mode & 07777, 0600);
}

TEST_F(LinuxFileManagerTest, WritesThroughTheUsersOwnLinks)
{
    files.createDirectory(home.path(QStringLiteral("drive")));
    const QString file = home.write(QStringLiteral("drive/real"), "old");
    ASSERT_TRUE(QFile::link(QStringLiteral("drive/step"), home.path(QStringLiteral("link"))));
    ASSERT_EQ(symlink("real", bytesOf(home.path(QStringLiteral("drive/step"))).constData()), 0);
    write(home.path(QStringLiteral("link")), "new");
    EXPECT_EQ(read(file), "new");
}

TEST_F(LinuxFileManagerTest, CircularLinksAreAnError)
{
    ASSERT_EQ(symlink("b", bytesOf(home.path(QStringLiteral("a"))).constData()), 0);
    ASSERT_EQ(symlink("a", bytesOf(home.path(QStringLiteral("b"))).constData()), 0);
    expectKind(Kind::Other, [&] { write(home.path(QStringLiteral("a")), "x"); });
}

TEST_F(LinuxFileManagerTest, WritingToAFifoOrAFolderFailsImmediately)
{
    const QString fifo = home.path(QStringLiteral("fifo"));
    ASSERT_EQ(mkfifo(bytesOf(fifo).constData(), 0600), 0);
    expectKind(Kind::NotAFileOrFolder, [&] { write(fifo, "x"); });
    expectKind(Kind::Other, [&] { write(home.path(), "x"); });
    expectKind(Kind::NoSuchFile, [&] { write(home.path(QStringLiteral("absent/file")), "x"); });
}

TEST_F(LinuxFileManagerTest, RemovesAFolderWithItsContentsAndFollowsNoLink)
{
    const QString kept = home.write(QStringLiteral("kept/file"), "kept");
    home.write(QStringLiteral("folder/a b/-c"));
    ASSERT_TRUE(QFile::link(home.path(QStringLiteral("kept")), home.path(QStringLiteral("folder/link"))));
    ASSERT_EQ(mkfifo(bytesOf(home.path(QStringLiteral("folder/fifo"))).constData(), 0600), 0);
    files.removeItem(home.path(QStringLiteral("folder")));
    EXPECT_FALSE(exists(home.path(QStringLiteral("folder"))));
    EXPECT_EQ(read(kept), "kept");
}

TEST_F(LinuxFileManagerTest, RemovesALinkItselfEvenWithATrailingSlash)
{
    const QString kept = home.write(QStringLiteral("kept/file"), "kept");
    const QString link = home.path(QStringLiteral("link"));
    ASSERT_TRUE(QFile::link(home.path(QStringLiteral("kept")), link));
    files.removeItem(link + QLatin1Char('/'));
    EXPECT_FALSE(exists(link));
    EXPECT_EQ(read(kept), "kept");
    expectKind(Kind::NoSuchFile, [&] { files.removeItem(link); });
}

TEST_F(LinuxFileManagerTest, AFolderThatCannotBeEmptiedIsReportedWithTheFileInIt)
{
    const QString inner = home.write(QStringLiteral("folder/locked/file.txt"));
    const QString locked = home.path(QStringLiteral("folder/locked"));
    for (const QString &path : {home.path(), home.path(QStringLiteral("folder"))}) {
        ASSERT_EQ(chmod(bytesOf(path).constData(), 0777), 0);
    }
    ASSERT_EQ(chmod(bytesOf(locked).constData(), 0555), 0);
    {
        const AsPlainUser user;
        const auto error = errorOf([&] { files.removeItem(home.path(QStringLiteral("folder"))); });
        ASSERT_TRUE(error.has_value());
        EXPECT_EQ(error->kind(), Kind::NoPermission);
        EXPECT_EQ(error->errorDescription(), QStringLiteral("You don't have permission to remove \"file.txt\"."));
    }
    EXPECT_TRUE(exists(inner));
    ASSERT_EQ(chmod(bytesOf(locked).constData(), 0755), 0);
}

TEST_F(LinuxFileManagerTest, FilesFoldersAndAbsoluteLinksToThemAreReadableAndMovable)
{
    const QString file = home.write(QStringLiteral("file"));
    ASSERT_TRUE(QFile::link(file, home.path(QStringLiteral("link"))));
    files.createDirectory(home.path(QStringLiteral("folder")));
    EXPECT_NO_THROW(files.requireReadableAndMovable(file, 0));
    EXPECT_NO_THROW(files.requireReadableAndMovable(home.path(QStringLiteral("folder")), 0));
    EXPECT_NO_THROW(files.requireReadableAndMovable(home.path(QStringLiteral("link")), 0));
}

TEST_F(LinuxFileManagerTest, ALinkThatWouldDangleAfterAMoveIsNotMovable)
{
    home.write(QStringLiteral("file"));
    const QString link = home.path(QStringLiteral("link"));
    ASSERT_EQ(symlink("file", bytesOf(link).constData()), 0);
    expectKind(Kind::OnlyALink, [&] { files.requireReadableAndMovable(link, 0); });
}

TEST_F(LinuxFileManagerTest, FifosSocketsAndDevicesAreNotReadable)
{
    const QString fifo = home.path(QStringLiteral("fifo"));
    ASSERT_EQ(mkfifo(bytesOf(fifo).constData(), 0600), 0);
    expectKind(Kind::NotAFileOrFolder, [&] { files.requireReadableAndMovable(fifo, 0); });
    expectKind(Kind::NotAFileOrFolder, [&] { files.requireReadableAndMovable(QStringLiteral("/dev/null"), 0); });
    const QString path = home.path(QStringLiteral("socket"));
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    std::strncpy(address.sun_path, bytesOf(path).constData(), sizeof address.sun_path - 1);
    const int fd = socket(AF_UNIX, SOCK_STREAM, 0);
    ASSERT_EQ(bind(fd, reinterpret_cast<const sockaddr *>(&address), sizeof address), 0);
    expectKind(Kind::NotAFileOrFolder, [&] { files.requireReadableAndMovable(path, 0); });
    close(fd);
}

TEST_F(LinuxFileManagerTest, FilesThatTheUserCannotReadOrMoveAreRejected)
{
    const QString open = home.path(QStringLiteral("open"));
    const QString closed = home.path(QStringLiteral("closed"));
    const QString sticky = home.path(QStringLiteral("sticky"));
    for (const QString &folder : {open, closed, sticky}) {
        home.write(folder.section(QLatin1Char('/'), -1) + QStringLiteral("/file"));
    }
    const auto in = [](const QString &folder) { return folder + QStringLiteral("/file"); };
    ASSERT_EQ(chmod(bytesOf(home.path()).constData(), 0755), 0);
    ASSERT_EQ(chmod(bytesOf(open).constData(), 0777), 0);
    ASSERT_EQ(chmod(bytesOf(in(open)).constData(), 0), 0);
    ASSERT_EQ(chmod(bytesOf(closed).constData(), 0555), 0);
    ASSERT_EQ(chmod(bytesOf(sticky).constData(), 01777), 0);
    const bool isRoot = geteuid() == 0;
    {
        const AsPlainUser user;
        expectKind(Kind::NoPermission, [&] { files.requireReadableAndMovable(in(open), 0); });
        expectKind(Kind::NoPermission, [&] { files.requireReadableAndMovable(in(closed), 0); });
        if (isRoot) { // Only then the file belongs to another user.
            expectKind(Kind::NoPermission, [&] { files.requireReadableAndMovable(in(sticky), 0); });
        }
    }
    ASSERT_EQ(chmod(bytesOf(closed).constData(), 0755), 0);
    for (const QString &folder : {open, closed, sticky}) {
        EXPECT_TRUE(exists(in(folder)));
    }
}

TEST_F(LinuxFileManagerTest, NamesThatNoFileCanHaveAreInvalid)
{
    expectKind(Kind::InvalidName,
               [&] { files.requireReadableAndMovable(home.path(QStringLiteral("broken\uFFFDname")), 0); });
    const QString halfPair = QString(QChar(char16_t{0xD800}));
    expectKind(Kind::InvalidName, [&] { files.requireReadableAndMovable(home.path(halfPair), 0); });
    expectKind(Kind::InvalidName, [&] { files.requireReadableAndMovable(home.path(QString(256, u'x')), 0); });
    expectKind(Kind::InvalidName, [&] { write(home.path(QStringLiteral("a") + QChar(u'\0')), "x"); });
    EXPECT_FALSE(files.fileExists(home.path(halfPair)));
    const QString real = home.write(QStringLiteral("real\uFFFDname"));
    EXPECT_NO_THROW(files.requireReadableAndMovable(real, 0));
}

} // namespace

} // namespace quillhaven::test
