// SPDX-License-Identifier: GPL-3.0-or-later

#include "FileFixture.h"

#include <fcntl.h>

namespace quillhaven::test {

namespace {

using Kind = FileError::Kind;

class RegularFilesTest : public FileTest
{
protected:
    QString inFolder(const QString &name, const QByteArray &bytes = "content")
    {
        return home.write(QStringLiteral("folder/") + name, bytes);
    }
    /// "path below the folder: size" for each listed file.
    [[nodiscard]] QStringList listed() const
    {
        QStringList lines;
        for (const FileEntry &entry : files.regularFilesBelow(folder)) {
            EXPECT_TRUE(entry.path.startsWith(folder + QLatin1Char('/')));
            lines.append(QStringLiteral("%1: %2").arg(entry.path.mid(folder.size() + 1)).arg(entry.size));
        }
        return lines;
    }

    const QString folder = home.path(QStringLiteral("folder"));
};

TEST_F(RegularFilesTest, ListsEveryFileAtAnyDepthInTheOrderOfTheNames)
{
    for (const char *name : {"b", "a/z", "a/.hidden/x", "c/deep/er", ".first", "B", "a-"}) {
        inFolder(QLatin1String(name), QByteArray(name));
    }
    inFolder(QStringLiteral("empty.txt"), {});
    files.createDirectory(folder + QStringLiteral("/nothing"));
    EXPECT_EQ(listed().join(QLatin1Char('\n')), QStringLiteral(".first: 6\n"
                                                               "B: 1\n"
                                                               "a/.hidden/x: 11\n"
                                                               "a/z: 3\n"
                                                               "a-: 2\n"
                                                               "b: 1\n"
                                                               "c/deep/er: 9\n"
                                                               "empty.txt: 0"));
}

TEST_F(RegularFilesTest, ATrailingSlashMakesNoDifference)
{
    inFolder(QStringLiteral("a"));
    EXPECT_EQ(files.regularFilesBelow(folder + QStringLiteral("//")), files.regularFilesBelow(folder));
}

TEST_F(RegularFilesTest, LinksFifosAndSocketsAreNeitherListedNorFollowed)
{
    home.write(QStringLiteral("outside/file"));
    inFolder(QStringLiteral("a"));
    ASSERT_TRUE(QFile::link(home.path(QStringLiteral("outside")), folder + QStringLiteral("/toFolder")));
    ASSERT_TRUE(QFile::link(home.path(QStringLiteral("outside/file")), folder + QStringLiteral("/toFile")));
    ASSERT_EQ(symlink("..", bytesOf(folder + QStringLiteral("/up")).constData()), 0);
    ASSERT_EQ(symlink("nowhere", bytesOf(folder + QStringLiteral("/dangling")).constData()), 0);
    ASSERT_EQ(mkfifo(bytesOf(folder + QStringLiteral("/fifo")).constData(), 0600), 0);
    EXPECT_EQ(listed(), QStringList({QStringLiteral("a: 7")}));
}

TEST_F(RegularFilesTest, SizesBeyondFourGibibytesAreCorrect)
{
    const QString big = inFolder(QStringLiteral("big"), {});
    constexpr off_t size = (off_t{5} << 30) + 1;
    ASSERT_EQ(truncate(bytesOf(big).constData(), size), 0);
    EXPECT_EQ(listed(), QStringList({QStringLiteral("big: 5368709121")}));
    EXPECT_EQ(files.sizeOfItem(big), size);
}

TEST_F(RegularFilesTest, AListedNameThatIsNotUtf8CanBeOpened)
{
    files.createDirectory(folder);
    const QByteArray inner = bytesOf(folder) + "/sub\xC3";
    ASSERT_EQ(mkdir(inner.constData(), 0755), 0);
    const int fd = open((inner + "/\xFF\xED\xA0\x80.txt").constData(), O_CREAT | O_WRONLY | O_CLOEXEC, 0600);
    ASSERT_GE(fd, 0);
    ASSERT_EQ(::write(fd, "1234", 4), 4);
    close(fd);
    const QList<FileEntry> entries = files.regularFilesBelow(folder);
    ASSERT_EQ(entries.size(), 1);
    const QString path = entries.first().path;
    EXPECT_EQ(files.sizeOfItem(path), 4);
    {
        const auto handle = files.openForOverwriting(path);
        handle->writeThrough(std::as_bytes(std::span("5678", 4)));
    }
    const QString moved = folder + QStringLiteral("/moved");
    files.moveItem(path, moved);
    EXPECT_EQ(read(moved), "5678");
    files.removeItem(folder); // QTemporaryDir does not remove names that are not UTF-8
}

TEST_F(RegularFilesTest, AMissingFolderALinkToOneAndAFileAreErrors)
{
    const QString file = inFolder(QStringLiteral("a"));
    ASSERT_TRUE(QFile::link(folder, home.path(QStringLiteral("link"))));
    expectKind(Kind::NoSuchFile, [&] { (void)files.regularFilesBelow(home.path(QStringLiteral("absent"))); });
    expectKind(Kind::NoSuchFile, [&] { (void)files.regularFilesBelow(file); });
    for (const QString &link : {QStringLiteral("link"), QStringLiteral("link/")}) {
        expectKind(Kind::OnlyALink, [&] { (void)files.regularFilesBelow(home.path(link)); });
    }
}

TEST_F(RegularFilesTest, AFolderInsideThatCannotBeListedIsAnErrorAndTheFolderItselfIsEmpty)
{
    inFolder(QStringLiteral("a"));
    inFolder(QStringLiteral("closed/inner"));
    const QByteArray closed = bytesOf(folder + QStringLiteral("/closed"));
    ASSERT_EQ(chmod(bytesOf(home.path()).constData(), 0755), 0);
    ASSERT_EQ(chmod(closed.constData(), 0), 0);
    {
        const AsPlainUser user;
        const auto error = errorOf([&] { (void)files.regularFilesBelow(folder); });
        ASSERT_TRUE(error.has_value());
        EXPECT_EQ(error->errorDescription(),
                  QStringLiteral("You don't have permission to open the folder \"closed\"."));
        EXPECT_EQ(files.regularFilesBelow(folder + QStringLiteral("/closed")), QList<FileEntry>());
    }
    ASSERT_EQ(chmod(closed.constData(), 0755), 0);
}

TEST_F(RegularFilesTest, ATreeDeeperThanAnyPathIsAnErrorAndNotPartlyListed)
{
    files.createDirectory(folder);
    const QByteArray name(250, 'd');
    int at = open(bytesOf(folder).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    for (int depth = 0; depth < 20; ++depth) {
        ASSERT_EQ(mkdirat(at, name.constData(), 0755), 0);
        const int next = openat(at, name.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
        ASSERT_GE(next, 0);
        close(at);
        at = next;
    }
    const int fd = openat(at, "deepest", O_CREAT | O_WRONLY | O_CLOEXEC, 0600);
    ASSERT_GE(fd, 0);
    close(fd);
    close(at);
    expectKind(Kind::InvalidName, [&] { (void)files.regularFilesBelow(folder); });
    files.removeItem(folder);
}

TEST_F(RegularFilesTest, TheSizeOfALinkIsItsOwnAndAMissingFileHasNone)
{
    const QString file = inFolder(QStringLiteral("a"), "1234567");
    ASSERT_EQ(symlink("a", bytesOf(folder + QStringLiteral("/link")).constData()), 0);
    EXPECT_EQ(files.sizeOfItem(file), 7);
    EXPECT_EQ(files.sizeOfItem(folder + QStringLiteral("/link")), 1);
    EXPECT_EQ(files.sizeOfItem(folder + QStringLiteral("/link/")), 1);
    expectKind(Kind::NoSuchFile, [&] { (void)files.sizeOfItem(folder + QStringLiteral("/absent")); });
    expectKind(Kind::NoSuchFile, [&] { (void)files.sizeOfItem(file + QStringLiteral("/below")); });
    expectKind(Kind::InvalidName, [&] { (void)files.sizeOfItem(folder + u'/' + QChar(char16_t{0xD800})); });
}

} // namespace

} // namespace quillhaven::test
