// SPDX-License-Identifier: GPL-3.0-or-later

#include "FileFixture.h"
#include "support/InheritedSignals.h"

#include <fcntl.h>
#include <sys/resource.h>

namespace quillhaven::test {

namespace {

using Kind = FileError::Kind;

/// Copies on one file system, and to another one.
class FileCopiesTest : public FileTest, public ::testing::WithParamInterface<bool>
{
protected:
    [[nodiscard]] QString target(const QString &name) const
    {
        return GetParam() ? other(name) : home.path(QStringLiteral("Documents/") + name);
    }
    [[nodiscard]] QStringList namesAtTarget() const
    {
        return files.contentsOfDirectory(GetParam() ? other({}) : home.path(QStringLiteral("Documents")));
    }
};

TEST_P(FileCopiesTest, AFileIsCopiedWithItsMetadataAndKept)
{
    const QString source = home.write(QStringLiteral("a b"), "content");
    setAttribute(source, "user.note", QByteArray("a\0b", 3));
    outputOf(QStringLiteral("setfacl"), {QStringLiteral("-m"), QStringLiteral("u:65534:rx"), source});
    ASSERT_EQ(chmod(bytesOf(source).constData(), 04751), 0);
    const timespec times[2] = {{1'000'000'000, 1}, {1'234'567'890, 123'456'789}};
    ASSERT_EQ(utimensat(AT_FDCWD, bytesOf(source).constData(), times, 0), 0);

    const QString copy = target(QStringLiteral("copy"));
    files.copyItem(source, copy);

    for (const QString &path : {source, copy}) {
        EXPECT_EQ(read(path), "content");
        EXPECT_EQ(status(path).st_mode & 07777, 04751U);
        EXPECT_EQ(attribute(path, "user.note"), QByteArray("a\0b", 3));
        EXPECT_TRUE(outputOf(QStringLiteral("getfacl"), {QStringLiteral("-npc"), path}).contains("user:65534:r-x"));
        EXPECT_EQ(status(path).st_mtim.tv_sec, 1'234'567'890);
        EXPECT_EQ(status(path).st_mtim.tv_nsec, 123'456'789);
    }
    EXPECT_EQ(status(copy).st_nlink, 1U);
    write(copy, "changed");
    EXPECT_EQ(read(source), "content") << "it is a separate file";
}

TEST_P(FileCopiesTest, ATreeIsCopiedCompletely)
{
    const QString source = home.path(QStringLiteral("tree"));
    const QString file = home.write(QStringLiteral("tree/sub/.hidden"), "run");
    files.createDirectory(home.path(QStringLiteral("tree/empty")));
    setAttribute(source, "user.folder", "yes");
    ASSERT_EQ(link(bytesOf(file).constData(), bytesOf(source + QStringLiteral("/twin")).constData()), 0);
    ASSERT_EQ(symlink("sub/.hidden", bytesOf(source + QStringLiteral("/link")).constData()), 0);
    ASSERT_EQ(symlink("nowhere", bytesOf(source + QStringLiteral("/dangling")).constData()), 0);
    ASSERT_EQ(mkfifo(bytesOf(source + QStringLiteral("/fifo")).constData(), 0640), 0);
    const QByteArray unnamable = bytesOf(source) + "/\xFF\xC3";
    ASSERT_EQ(symlink("x", unnamable.constData()), 0);

    const QString copy = target(QStringLiteral("copy"));
    files.copyItem(source, copy);

    for (const QString &path : {source, copy}) {
        EXPECT_EQ(read(path + QStringLiteral("/sub/.hidden")), "run");
        EXPECT_EQ(status(path + QStringLiteral("/sub/.hidden")).st_ino, status(path + QStringLiteral("/twin")).st_ino);
        EXPECT_EQ(attribute(path, "user.folder"), "yes");
        EXPECT_TRUE(S_ISLNK(status(path + QStringLiteral("/link")).st_mode));
        EXPECT_TRUE(S_ISLNK(status(path + QStringLiteral("/dangling")).st_mode));
        EXPECT_TRUE(S_ISFIFO(status(path + QStringLiteral("/fifo")).st_mode));
        EXPECT_TRUE(files.isDirectory(path + QStringLiteral("/empty")));
        EXPECT_EQ(access((bytesOf(path) + "/\xFF").constData(), F_OK), -1);
        struct stat found{};
        EXPECT_EQ(lstat((bytesOf(path) + "/\xFF\xC3").constData(), &found), 0);
    }
    EXPECT_NE(status(file).st_ino, status(copy + QStringLiteral("/sub/.hidden")).st_ino);
    for (const QString &path : {source, copy}) {
        files.removeItem(path); // QTemporaryDir does not remove names that are not UTF-8
    }
}

TEST_P(FileCopiesTest, ACopyOfASparseFileIsSparse)
{
    const QString copy = target(QStringLiteral("copy"));
    files.copyItem(sparseFile(), copy);
    expectSparse(copy);
}

TEST_P(FileCopiesTest, ALinkIsCopiedAsALink)
{
    ASSERT_EQ(symlink("nowhere", bytesOf(home.path(QStringLiteral("link"))).constData()), 0);
    files.copyItem(home.path(QStringLiteral("link")), target(QStringLiteral("copy")));
    EXPECT_TRUE(S_ISLNK(status(target(QStringLiteral("copy"))).st_mode));
}

TEST_P(FileCopiesTest, CopyNeverOverwritesTheTarget)
{
    const QString source = home.write(QStringLiteral("source"), "new");
    const QString file = target(QStringLiteral("file"));
    write(file, "old");
    files.createDirectory(target(QStringLiteral("folder")));
    ASSERT_EQ(symlink("nowhere", bytesOf(target(QStringLiteral("dangling"))).constData()), 0);
    for (const char *name : {"file", "folder", "dangling"}) {
        expectKind(Kind::TargetExists, [&] { files.copyItem(source, target(QLatin1String(name))); });
        expectKind(Kind::TargetExists,
                   [&] { files.copyItem(home.path(QStringLiteral("Desktop")), target(QLatin1String(name))); });
    }
    EXPECT_EQ(read(file), "old");
    EXPECT_TRUE(S_ISLNK(status(target(QStringLiteral("dangling"))).st_mode));
    EXPECT_EQ(files.contentsOfDirectory(target(QStringLiteral("folder"))), QStringList());
    EXPECT_EQ(namesAtTarget().size(), 3);
    const auto error = errorOf([&] { files.copyItem(source, file); });
    ASSERT_TRUE(error.has_value());
    EXPECT_TRUE(error->errorDescription().endsWith(QStringLiteral("because there is already an item named \"file\".")))
        << qUtf8Printable(error->errorDescription());
}

TEST_P(FileCopiesTest, AMissingSourceOrFolderFailsAndLeavesNothing)
{
    const QString source = home.write(QStringLiteral("source"));
    expectKind(Kind::NoSuchFile, [&] { files.copyItem(home.path(QStringLiteral("absent")), target({}) + u'x'); });
    expectKind(Kind::NoSuchFile, [&] { files.copyItem(source, target(QStringLiteral("absent/x"))); });
    EXPECT_EQ(namesAtTarget(), QStringList());
}

TEST_P(FileCopiesTest, AnUnreadableFileInATreeFailsAndLeavesNothing)
{
    const QString inner = home.write(QStringLiteral("folder/inner"), "inner");
    home.write(QStringLiteral("folder/a"), "a");
    ASSERT_EQ(chmod(bytesOf(inner).constData(), 0), 0);
    ASSERT_EQ(chmod(bytesOf(home.path()).constData(), 0755), 0);
    for (const QString &place : {home.path(QStringLiteral("Documents")), other({})}) {
        ASSERT_EQ(chmod(bytesOf(place).constData(), 0777), 0);
    }
    {
        const AsPlainUser user;
        expectKind(Kind::NoPermission,
                   [&] { files.copyItem(home.path(QStringLiteral("folder")), target(QStringLiteral("copy"))); });
    }
    EXPECT_EQ(namesAtTarget(), QStringList());
    ASSERT_EQ(chmod(bytesOf(inner).constData(), 0644), 0);
    EXPECT_EQ(read(inner), "inner");
}

TEST_P(FileCopiesTest, TheCopyingProgramCanBeEndedByASignalThatIsIgnoredAndBlockedHere)
{
    constexpr rlim_t limit = 4096; // more than a message of cp
    const QString source = home.write(QStringLiteral("a.txt"), QByteArray(2 * limit, 'a'));
    rlimit before{};
    ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &before), 0);
    const rlimit fewBytes{limit, before.rlim_max};
    std::optional<FileError> error;
    {
        const InheritedSignal signal(SIGXFSZ);
        ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &fewBytes), 0); // a write above sends the signal
        error = errorOf([&] { files.copyItem(source, target(QStringLiteral("b.txt"))); });
        ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &before), 0);
    }
    ASSERT_TRUE(error.has_value());
    // Without the signal, cp would say why it cannot write.
    EXPECT_TRUE(error->errorDescription().contains(QStringLiteral("Input/output error")))
        << qUtf8Printable(error->errorDescription());
    EXPECT_EQ(namesAtTarget(), QStringList());
}

INSTANTIATE_TEST_SUITE_P(Places, FileCopiesTest, ::testing::Bool(),
                         [](const auto &info) { return info.param ? "OnAnotherFileSystem" : "OnOneFileSystem"; });

using FileCopiesInPlaceTest = FileTest;

TEST_F(FileCopiesInPlaceTest, AFolderIsNotCopiedIntoItself)
{
    home.write(QStringLiteral("folder/inner"), "inner");
    const QString folder = home.path(QStringLiteral("folder"));
    EXPECT_TRUE(errorOf([&] { files.copyItem(folder, folder + QStringLiteral("/copy")); }).has_value());
    EXPECT_EQ(files.contentsOfDirectory(folder), QStringList({QStringLiteral("inner")}));
    expectKind(Kind::TargetExists, [&] { files.copyItem(folder, folder); });
}

} // namespace

} // namespace quillhaven::test
