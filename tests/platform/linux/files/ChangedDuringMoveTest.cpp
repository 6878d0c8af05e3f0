// SPDX-License-Identifier: GPL-3.0-or-later

// An item that is changed while it is moved to another file system, after its copy has been compared.

#include "FileFixture.h"

#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <functional>
#include <utility>

namespace {

/// Called once, before a folder is flushed: the copy has its name then, and the source still exists.
std::function<void()> beforeFolderFlush;

} // namespace

extern "C" int fsync(int fd)
{
    struct stat status{};
    if (beforeFolderFlush && ::fstat(fd, &status) == 0 && S_ISDIR(status.st_mode)) {
        std::exchange(beforeFolderFlush, nullptr)();
    }
    return static_cast<int>(::syscall(SYS_fsync, fd));
}

namespace quillhaven::test {

namespace {

class ChangedDuringMove : public FileTest
{
protected:
    ~ChangedDuringMove() override { beforeFolderFlush = nullptr; }

    /// Everything in a folder but the item itself, hidden files included.
    static QStringList strays(const QString &folder, const QString &item)
    {
        QStringList names = QDir(folder).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
        names.removeAll(item);
        return names;
    }
};

TEST_F(ChangedDuringMove, FileThatArrivesInAFolderIsNotLost)
{
    const QString inner = home.write(QStringLiteral("in/item/inner.txt"), "mine");
    const QString item = home.path(QStringLiteral("in/item"));
    beforeFolderFlush = [&] { write(item + QStringLiteral("/late.txt"), "arrived"); };
    expectKind(FileError::Kind::Other, [&] { files.moveItem(item, other(QStringLiteral("item"))); });
    EXPECT_EQ(read(inner), "mine");
    EXPECT_EQ(read(item + QStringLiteral("/late.txt")), "arrived");
    EXPECT_FALSE(exists(other(QStringLiteral("item"))));
    EXPECT_EQ(strays(home.path(QStringLiteral("in")), QStringLiteral("item")), QStringList());
}

TEST_F(ChangedDuringMove, WriteToAFileIsNotLost)
{
    const QString item = home.write(QStringLiteral("in/a.txt"), "mine");
    beforeFolderFlush = [&] { write(item, "newer and longer"); };
    expectKind(FileError::Kind::Other, [&] { files.moveItem(item, other(QStringLiteral("a.txt"))); });
    EXPECT_EQ(read(item), "newer and longer");
    EXPECT_FALSE(exists(other(QStringLiteral("a.txt"))));
}

TEST_F(ChangedDuringMove, ReplacementThatIsChangedStaysBesideItsCopy)
{
    const QString original = home.write(QStringLiteral("in/a.txt"), "old");
    const QString replacement = other(QStringLiteral("new.txt"));
    write(replacement, "new");
    beforeFolderFlush = [&] { write(replacement, "newer and longer"); };
    expectKind(FileError::Kind::Other, [&] { files.replaceItemAt(original, replacement); });
    EXPECT_EQ(read(original), "new");
    EXPECT_EQ(read(replacement), "newer and longer");
}

TEST_F(ChangedDuringMove, UnchangedItemIsMoved)
{
    const QString item = home.write(QStringLiteral("in/a.txt"), "mine");
    bool isFlushed = false;
    beforeFolderFlush = [&] { isFlushed = true; };
    files.moveItem(item, other(QStringLiteral("a.txt")));
    EXPECT_TRUE(isFlushed);
    EXPECT_EQ(read(other(QStringLiteral("a.txt"))), "mine");
    EXPECT_FALSE(exists(item));
}

} // namespace

} // namespace quillhaven::test
