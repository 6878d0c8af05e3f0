// SPDX-License-Identifier: GPL-3.0-or-later

// Files that belong to another user. The runner allows a normal user to change the owner of files.

#include "FileFixture.h"
#include "platform/linux/files/XdgDirectories.h"

namespace quillhaven::test {

namespace {

using Kind = FileError::Kind;

class OtherUsersTest : public FileTest
{
protected:
    void SetUp() override
    {
        FileTest::SetUp();
        ASSERT_EQ(geteuid(), 0U) << "run this test with tests/support/with-mounts.sh";
    }
};

TEST_F(OtherUsersTest, DoesNotFollowALinkOfAnotherUser)
{
    const QString file = home.write(QStringLiteral("precious"), "old");
    const QString link = home.path(QStringLiteral("planted"));
    ASSERT_TRUE(QFile::link(file, link));
    ASSERT_EQ(lchown(bytesOf(link).constData(), 65534, 65534), 0);
    expectKind(Kind::NoPermission, [&] { write(link, "new"); });
    EXPECT_EQ(read(file), "old");
}

TEST_F(OtherUsersTest, APropertyThatWouldBeLostOnTheOtherFileSystemStopsTheMove)
{
    const QString source = home.write(QStringLiteral("folder/theirs.txt"), "theirs");
    ASSERT_EQ(chmod(bytesOf(home.path()).constData(), 0777), 0);
    ASSERT_EQ(chmod(bytesOf(home.path(QStringLiteral("folder"))).constData(), 0777), 0);
    ASSERT_EQ(chmod(bytesOf(other({})).constData(), 0777), 0);
    {
        // A normal user cannot give the copy the owner of the source, and cp does not report that.
        const AsPlainUser user;
        const auto error = errorOf([&] { files.moveItem(source, other(QStringLiteral("theirs.txt"))); });
        ASSERT_TRUE(error.has_value());
        EXPECT_EQ(error->kind(), Kind::NotPreserved);
        EXPECT_TRUE(
            error->errorDescription().startsWith(QStringLiteral("Could not move \"theirs.txt\" to \"quillhaven-test-")))
            << qUtf8Printable(error->errorDescription());
        EXPECT_TRUE(
            error->errorDescription().endsWith(QStringLiteral("because the owner of the item would be lost there.")));
    }
    EXPECT_EQ(read(source), "theirs");
    EXPECT_FALSE(exists(other(QStringLiteral("theirs.txt"))));
}

TEST_F(OtherUsersTest, AFolderOfAnotherUserThatCannotBeEmptiedIsNotCopied)
{
    const QString inner = home.write(QStringLiteral("folder/locked/file"));
    ASSERT_EQ(chmod(bytesOf(home.path()).constData(), 0777), 0);
    ASSERT_EQ(chmod(bytesOf(home.path(QStringLiteral("folder"))).constData(), 0777), 0);
    ASSERT_EQ(chmod(bytesOf(home.path(QStringLiteral("folder/locked"))).constData(), 0555), 0);
    ASSERT_EQ(chmod(bytesOf(other({})).constData(), 0777), 0);
    {
        const AsPlainUser user;
        expectKind(Kind::NoPermission,
                   [&] { files.moveItem(home.path(QStringLiteral("folder")), other(QStringLiteral("folder"))); });
    }
    EXPECT_TRUE(exists(inner));
    EXPECT_FALSE(exists(other(QStringLiteral("folder"))));
    ASSERT_EQ(chmod(bytesOf(home.path(QStringLiteral("folder/locked"))).constData(), 0755), 0);
}

TEST_F(OtherUsersTest, AFolderOfAnotherUserThatCannotBeEmptiedIsNotReplaced)
{
    const QString inner = home.write(QStringLiteral("old/locked/file"));
    const QString fresh = home.write(QStringLiteral("new"), "new");
    ASSERT_EQ(chmod(bytesOf(home.path()).constData(), 0777), 0);
    ASSERT_EQ(chmod(bytesOf(home.path(QStringLiteral("old"))).constData(), 0777), 0);
    ASSERT_EQ(chmod(bytesOf(home.path(QStringLiteral("old/locked"))).constData(), 0555), 0);
    {
        const AsPlainUser user;
        expectKind(Kind::NoPermission, [&] { files.replaceItemAt(home.path(QStringLiteral("old")), fresh); });
    }
    EXPECT_TRUE(exists(inner));
    EXPECT_EQ(read(fresh), "new");
    ASSERT_EQ(chmod(bytesOf(home.path(QStringLiteral("old/locked"))).constData(), 0755), 0);
}

TEST_F(OtherUsersTest, ATemporaryDirectoryOfAnotherUserIsRejected)
{
    const QByteArray theirs = bytesOf(home.path(QStringLiteral("quillhaven-0")));
    ASSERT_EQ(mkdir(theirs.constData(), 0700), 0);
    ASSERT_EQ(chown(theirs.constData(), 65534, 65534), 0);
    const QByteArray temporary = qgetenv("TMPDIR");
    qputenv("TMPDIR", bytesOf(home.path()));
    qputenv("HOME", bytesOf(home.path()));
    EXPECT_THROW((void)xdgDirectories(), FileError);
    temporary.isNull() ? qunsetenv("TMPDIR") : qputenv("TMPDIR", temporary);
}

} // namespace

} // namespace quillhaven::test
