// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/linux/files/AbandonedDuplicates.h"
#include "FileFixture.h"
#include "platform/linux/files/HiddenNames.h"

#include <sys/wait.h>

namespace quillhaven::test {

namespace {

class AbandonedDuplicatesTest : public FileTest
{
protected:
    /// A name for a duplicate of `path`, created by a process that has ended.
    static QString nameOfEndedProcess(const QString &path)
    {
        std::array<int, 2> ends{};
        EXPECT_EQ(pipe(ends.data()), 0);
        const pid_t process = fork();
        if (process == 0) {
            const QByteArray name = hiddenNameForDuplicate(bytesOf(path));
            _exit(::write(ends.at(1), name.constData(), static_cast<size_t>(name.size())) == name.size() ? 0 : 1);
        }
        EXPECT_EQ(waitpid(process, nullptr, 0), process);
        close(ends.at(1));
        QByteArray name(PATH_MAX, '\0');
        const ssize_t size = ::read(ends.at(0), name.data(), static_cast<size_t>(name.size()));
        EXPECT_GT(size, 0);
        close(ends.at(0));
        return QFile::decodeName(name.left(size));
    }
};

} // namespace

TEST_F(AbandonedDuplicatesTest, AMoveToAnotherFileSystemRemovesCopiesOfAnEndedProcessFromBothFolders)
{
    const QString source = home.write(QStringLiteral("a.txt"), "mine");
    const QString left = nameOfEndedProcess(other(QStringLiteral("b.txt")));
    const QString leftAtSource = nameOfEndedProcess(source);
    write(left, "half");
    write(leftAtSource, "mine");

    files.moveItem(source, other(QStringLiteral("b.txt")));
    EXPECT_FALSE(exists(left));
    EXPECT_FALSE(exists(leftAtSource));
    EXPECT_EQ(read(other(QStringLiteral("b.txt"))), "mine");
}

TEST_F(AbandonedDuplicatesTest, FolderOfAnEndedProcessIsRemovedWithItsContents)
{
    const QString left = nameOfEndedProcess(home.path(QStringLiteral("item")));
    files.createDirectory(left + QStringLiteral("/deep"));
    write(left + QStringLiteral("/deep/inner.txt"), "mine");
    files.discardAbandonedItems(home.path());
    EXPECT_FALSE(exists(left));
}

TEST_F(AbandonedDuplicatesTest, LinkIsRemovedAndItsTargetIsKept)
{
    const QString kept = home.write(QStringLiteral("kept/a.txt"), "mine");
    const QString left = nameOfEndedProcess(home.path(QStringLiteral("item")));
    ASSERT_TRUE(QFile::link(home.path(QStringLiteral("kept")), left));
    files.discardAbandonedItems(home.path());
    EXPECT_FALSE(exists(left));
    EXPECT_EQ(read(kept), "mine");
}

TEST_F(AbandonedDuplicatesTest, CopyOfARunningProcessIsKept)
{
    const QString copy = QFile::decodeName(hiddenNameForDuplicate(bytesOf(home.path(QStringLiteral("item")))));
    write(copy, "half");
    files.discardAbandonedItems(home.path());
    EXPECT_EQ(read(copy), "half");
    ASSERT_TRUE(QFile::remove(copy));
}

TEST_F(AbandonedDuplicatesTest, CopyOfAnotherMachineOnASharedVolumeIsKept)
{
    QString foreign = nameOfEndedProcess(home.path(QStringLiteral("item")));
    const qsizetype machine = foreign.lastIndexOf(QLatin1Char('/')) + QStringLiteral("/.quillhaven-discard-").size();
    foreign[machine] = foreign.at(machine) == QLatin1Char('0') ? QLatin1Char('1') : QLatin1Char('0');
    write(foreign, "theirs");
    files.discardAbandonedItems(home.path());
    EXPECT_EQ(read(foreign), "theirs");
    ASSERT_TRUE(QFile::remove(foreign));
}

TEST_F(AbandonedDuplicatesTest, NameWithoutAProcessIsKept)
{
    const QString ended = nameOfEndedProcess(home.path(QStringLiteral("item")));
    const QString unrelated = ended.left(QStringLiteral("/.quillhaven-discard-0123456789abcdef-").size() +
                                         ended.lastIndexOf(QLatin1Char('/'))) +
                              QStringLiteral("my notes");
    write(unrelated, "mine");
    files.discardAbandonedItems(home.path());
    EXPECT_EQ(read(unrelated), "mine");
    ASSERT_TRUE(QFile::remove(unrelated));
}

TEST_F(AbandonedDuplicatesTest, OriginalWithAHiddenNameIsKeptForAnyProcess)
{
    const QString original = QFile::decodeName(hiddenNameForOriginal(bytesOf(home.path(QStringLiteral("item")))));
    write(original, "the only one");
    EXPECT_FALSE(isAbandonedDuplicate(bytesOf(original.section(QLatin1Char('/'), -1))));
    files.discardAbandonedItems(home.path());
    EXPECT_EQ(read(original), "the only one");
    ASSERT_TRUE(QFile::remove(original));
}

TEST_F(AbandonedDuplicatesTest, EachFileManagerListsAFolderOnceForManyMoves)
{
    const QString late = nameOfEndedProcess(other(QStringLiteral("x")));
    files.moveItem(home.write(QStringLiteral("a.txt")), other(QStringLiteral("a.txt")));
    write(late, "half");
    files.moveItem(home.write(QStringLiteral("b.txt")), other(QStringLiteral("b.txt")));
    EXPECT_TRUE(exists(late)) << "the folder was listed again";
    LinuxFileManager second;
    second.moveItem(home.write(QStringLiteral("c.txt")), other(QStringLiteral("c.txt")));
    EXPECT_FALSE(exists(late)) << "another manager lists it for its own moves";
}

TEST_F(AbandonedDuplicatesTest, MissingFolderIsIgnored)
{
    files.discardAbandonedItems(home.path(QStringLiteral("missing")));
    EXPECT_FALSE(exists(home.path(QStringLiteral("missing"))));
}

} // namespace quillhaven::test
