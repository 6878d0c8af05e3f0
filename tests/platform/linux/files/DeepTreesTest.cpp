// SPDX-License-Identifier: GPL-3.0-or-later

#include "FileFixture.h"
#include "platform/linux/files/ScopedFd.h"
#include "platform/linux/files/TreeComparison.h"

#include <fcntl.h>
#include <sys/resource.h>

namespace quillhaven::test {

namespace {

/// Trees much deeper than the number of files that this process can open. Mostly in memory, since a disk is slow.
class DeepTreesTest : public FileTest
{
protected:
    static constexpr int levels = 2000;

    void SetUp() override
    {
        FileTest::SetUp();
        ASSERT_EQ(getrlimit(RLIMIT_NOFILE, &m_before), 0);
        const rlimit few{256, m_before.rlim_max};
        ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &few), 0);
    }
    void TearDown() override
    {
        ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &m_before), 0);
        FileTest::TearDown();
    }

    /// Creates a chain of folders with a file in the last one.
    static void makeTree(const QString &path, const QByteArray &content = "deep", int depth = levels)
    {
        ASSERT_EQ(mkdir(bytesOf(path).constData(), 0700), 0);
        ScopedFd folder(open(bytesOf(path).constData(), O_PATH | O_DIRECTORY | O_CLOEXEC));
        for (int level = 0; level < depth; ++level) {
            ASSERT_EQ(mkdirat(folder.get(), "d", 0700), 0);
            folder = ScopedFd(openat(folder.get(), "d", O_PATH | O_DIRECTORY | O_CLOEXEC));
            ASSERT_TRUE(folder.isOpen());
        }
        const ScopedFd file(openat(folder.get(), "f", O_WRONLY | O_CREAT | O_CLOEXEC, 0600));
        ASSERT_EQ(::write(file.get(), content.constData(), static_cast<size_t>(content.size())), content.size());
    }
    static QString deepestFile(const QString &path)
    {
        return path + QStringLiteral("/d").repeated(levels) + QStringLiteral("/f");
    }

private:
    rlimit m_before{};
};

TEST_F(DeepTreesTest, ATreeMovesToAnotherFileSystem)
{
    const QString source = home.path(QStringLiteral("t"));
    makeTree(source);
    files.moveItem(source, other(QStringLiteral("t")));
    EXPECT_FALSE(exists(source));
    EXPECT_EQ(read(deepestFile(other(QStringLiteral("t")))), "deep");
    files.removeItem(other(QStringLiteral("t"))); // QTemporaryDir cannot remove such a deep tree
}

TEST_F(DeepTreesTest, ADifferenceAtTheDeepestLevelIsFound)
{
    const QString tree = other(QStringLiteral("t"));
    const QString copy = other(QStringLiteral("c"));
    makeTree(tree, "one");
    makeTree(copy, "two");
    const auto error = errorOf([&] { requireSameTree(bytesOf(tree), bytesOf(copy), copy); });
    ASSERT_TRUE(error.has_value());
    EXPECT_EQ(error->kind(), FileError::Kind::NotPreserved);
    files.removeItem(tree);
    files.removeItem(copy);
}

TEST_F(DeepTreesTest, AChangeAtTheDeepestLevelChangesTheStateOfTheTree)
{
    const QString tree = other(QStringLiteral("t"));
    makeTree(tree);
    const QByteArray before = treeState(bytesOf(tree));
    EXPECT_EQ(treeState(bytesOf(tree)), before);
    ASSERT_EQ(chmod(bytesOf(deepestFile(tree)).constData(), 0640), 0);
    EXPECT_NE(treeState(bytesOf(tree)), before);
    files.removeItem(tree);
}

TEST_F(DeepTreesTest, TheFilesOfATreeAreListedToBeOverwritten)
{
    const QString tree = other(QStringLiteral("t"));
    makeTree(tree);
    const QList<FileEntry> entries = files.regularFilesBelow(tree);
    ASSERT_EQ(entries.size(), 1);
    EXPECT_EQ(entries.first().path, deepestFile(tree));
    EXPECT_NO_THROW(files.openForOverwriting(entries.first().path)->closeFile());
    files.removeItem(tree);
}

TEST_F(DeepTreesTest, ATreeDeeperThanAnyPathIsRemoved)
{
    const QString tree = other(QStringLiteral("t"));
    makeTree(tree, "deep", 10'000);
    files.removeItem(tree);
    EXPECT_FALSE(exists(tree));
}

} // namespace

} // namespace quillhaven::test
