// SPDX-License-Identifier: GPL-3.0-or-later

#include "ShredFixture.h"

#include <sys/stat.h>
#include <unistd.h>

#include <new>

using namespace quillhaven;
using namespace quillhaven::test;

namespace {

class FailedShred : public ShredTest
{
protected:
    /// Makes every call of this kind fail.
    void failCall(const QString &failing, int errorNumber, FileError::Action action)
    {
        files.before = [=](const QString &call, const QString &path) {
            if (call == failing) {
                throw FileError::fromErrno(errorNumber, action, path);
            }
        };
    }
};

const QString notFound = QStringLiteral("The selected file or folder could not be found.");

} // namespace

TEST_F(FailedShred, MissingPathFailsAfterTheGuardHasPassed)
{
    setMasterPassword(QStringLiteral("Master12"));
    EXPECT_EQ(failureOf([&] { shred(desktop(QStringLiteral("absent"))); }), notFound);
    EXPECT_EQ(prompts, 1);
    EXPECT_EQ(lines(), QStringLiteral("Shredding failed: ") + notFound + QStringLiteral(" @ 0.0000"));
    EXPECT_TRUE(masterPassword.isAuthenticated()) << "a failure does not change the session";
    EXPECT_TRUE(masterPassword.hasAuthenticationTimer());
}

TEST_F(FailedShred, ReadOnlyFileFailsAtTheFirstPassAndIsUnchanged)
{
    const QString path = write(QStringLiteral("a.txt"), "secret");
    openToAll();
    ASSERT_EQ(chmod(bytesOf(path).constData(), 0444), 0);
    {
        const AsPlainUser user; // root can write to any file
        EXPECT_EQ(failureOf([&] { shred(path); }), QStringLiteral("You don't have permission to overwrite \"a.txt\"."));
    }
    EXPECT_EQ(lines(), QStringLiteral("Analyzing file: a.txt @ 0.1000\n"
                                      "Pass 1/3: a.txt @ 0.1000\n"
                                      "Shredding failed: You don't have permission to overwrite \"a.txt\". @ 0.0000"));
    EXPECT_EQ(read(path), "secret");
    EXPECT_EQ(remaining(), QStringList({QStringLiteral("a.txt")}));
    struct stat status{};
    ASSERT_EQ(stat(bytesOf(path).constData(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777, 0444U) << "the file is not made writable";
}

TEST_F(FailedShred, LinkIsRejectedAndNeitherItNorItsTargetIsTouched)
{
    const QString target = write(QStringLiteral("target"), "kept");
    ASSERT_TRUE(QFile::link(target, desktop(QStringLiteral("link"))));
    EXPECT_EQ(
        failureOf([&] { shred(desktop(QStringLiteral("link"))); }),
        QStringLiteral("Could not overwrite \"link\" because it is only a link. Choose the item it leads to instead."));
    EXPECT_EQ(read(target), "kept");
    EXPECT_EQ(remaining(), QStringList({QStringLiteral("link"), QStringLiteral("target")}));

    ASSERT_TRUE(QFile::remove(target));
    EXPECT_EQ(failureOf([&] { shred(desktop(QStringLiteral("link"))); }), notFound) << "a dangling link";
    EXPECT_EQ(remaining(), QStringList({QStringLiteral("link")}));
}

TEST_F(FailedShred, FifoIsRejectedImmediatelyAndKept)
{
    ASSERT_EQ(mkfifo(bytesOf(desktop(QStringLiteral("fifo"))).constData(), 0600), 0);
    EXPECT_EQ(failureOf([&] { shred(desktop(QStringLiteral("fifo"))); }),
              QStringLiteral("Could not overwrite \"fifo\" because it is neither a file nor a folder."));
    EXPECT_EQ(remaining(), QStringList({QStringLiteral("fifo")}));
}

TEST_F(FailedShred, UnreadableAttributesFailBeforeAnyPass)
{
    const QString path = write(QStringLiteral("a.txt"), "secret");
    failCall(QStringLiteral("size"), EACCES, FileError::Action::Read);
    EXPECT_EQ(failureOf([&] { shred(path); }), QStringLiteral("You don't have permission to read \"a.txt\"."));
    EXPECT_EQ(report.size(), 2);
    EXPECT_EQ(files.calls, QStringList());
    EXPECT_EQ(read(path), "secret");
}

TEST_F(FailedShred, FailureInALaterPassLeavesTheFilePartlyOverwrittenUnderItsOwnName)
{
    const QString path = write(QStringLiteral("a.txt"), "secret");
    int writes = 0;
    files.before = [&](const QString &call, const QString &written) {
        if (call == QStringLiteral("write") && ++writes == 2) {
            throw FileError::fromErrno(EIO, FileError::Action::Overwrite, written);
        }
    };
    setMasterPassword(QStringLiteral("Master12"));
    const QString text = QStringLiteral("Could not overwrite \"a.txt\": Input/output error.");
    EXPECT_EQ(failureOf([&] { shred(path); }), text);
    EXPECT_EQ(report.mid(3).join(QLatin1Char('\n')),
              QStringLiteral("Pass 2/3: a.txt @ 0.3667\nShredding failed: ") + text + QStringLiteral(" @ 0.0000"));
    EXPECT_EQ(read(path), QByteArray(6, '\0'));
    EXPECT_TRUE(masterPassword.isAuthenticated());
}

TEST_F(FailedShred, FailedChunkIsReportedAfterTheWrittenOnes)
{
    const QString path = write(QStringLiteral("a.txt"), QByteArray(3 * 65536, 'x'));
    int writes = 0;
    files.before = [&](const QString &call, const QString &written) {
        if (call == QStringLiteral("write") && ++writes == 3) {
            throw FileError::fromErrno(EIO, FileError::Action::Overwrite, written);
        }
    };
    EXPECT_NE(failureOf([&] { shred(path); }), QStringLiteral("no error"));
    EXPECT_EQ(report.mid(1).join(QLatin1Char('\n')),
              QStringLiteral("Pass 1/3: a.txt @ 0.1000\n"
                             "Pass 1/3: a.txt @ 0.1889\n"
                             "Pass 1/3: a.txt @ 0.2778\n"
                             "Shredding failed: Could not overwrite \"a.txt\": Input/output error. @ 0.0000"));
    EXPECT_EQ(read(path), QByteArray(2 * 65536, '\0') + QByteArray(65536, 'x'));
}

TEST_F(FailedShred, FailedRenameLeavesTheOverwrittenFileUnderItsOwnName)
{
    const QString path = write(QStringLiteral("a.txt"), "secret");
    failCall(QStringLiteral("move"), EACCES, FileError::Action::Move);
    EXPECT_EQ(failureOf([&] { shred(path); }), QStringLiteral("You don't have permission to move \"a.txt\"."));
    EXPECT_EQ(remaining(), QStringList({QStringLiteral("a.txt")}));
    const QByteArray left = read(path);
    EXPECT_EQ(left, QByteArray(6, left.front()));
    EXPECT_EQ(report.filter(QStringLiteral("metadata")),
              QStringList({QStringLiteral("Removing file metadata: a.txt @ 0.9500")}));
}

TEST_F(FailedShred, FailedRemovalLeavesTheOverwrittenFileUnderTheRandomName)
{
    const QString path = write(QStringLiteral("a.txt"), "secret");
    failCall(QStringLiteral("remove"), EACCES, FileError::Action::Remove);
    EXPECT_NE(failureOf([&] { shred(path); }), QStringLiteral("no error"));
    EXPECT_EQ(files.calls.mid(files.calls.size() - 2),
              QStringList({QStringLiteral("move a.txt to (UUID)"), QStringLiteral("remove (UUID)")}))
        << "no flush follows";
    ASSERT_EQ(remaining().size(), 1);
    EXPECT_NE(remaining().first(), QStringLiteral("a.txt"));
    const QByteArray left = read(desktop(remaining().first()));
    EXPECT_EQ(left, QByteArray(6, left.front()));
}

TEST_F(FailedShred, UnwritableFolderKeepsTheOverwrittenFile)
{
    const QString path = write(QStringLiteral("folder/a.txt"), "secret");
    const QString folder = desktop(QStringLiteral("folder"));
    openToAll();
    ASSERT_EQ(chmod(bytesOf(path).constData(), 0666), 0);
    ASSERT_EQ(chmod(bytesOf(folder).constData(), 0555), 0);
    {
        const AsPlainUser user;
        const QString text = failureOf([&] { shred(path); });
        EXPECT_TRUE(text.startsWith(QStringLiteral("You don't have permission to move \"a.txt\" to \"folder\".")))
            << qUtf8Printable(text);
    }
    ASSERT_EQ(chmod(bytesOf(folder).constData(), 0755), 0);
    const QByteArray left = read(path);
    EXPECT_EQ(left, QByteArray(6, left.front()));
    EXPECT_EQ(remaining(folder), QStringList({QStringLiteral("a.txt")}));
}

TEST_F(FailedShred, RunOutOfMemoryIsReportedAndClearsTheFlagToo)
{
    files.before = [](const QString &, const QString &) { throw std::bad_alloc(); };
    const QString text = QString::fromUtf8(std::bad_alloc().what());
    EXPECT_EQ(failureOf([&] { shred(write(QStringLiteral("a.txt"), "secret")); }), text);
    EXPECT_EQ(report.last(), QStringLiteral("Shredding failed: ") + text + QStringLiteral(" @ 0.0000"));
    spinOnce();
    EXPECT_FALSE(shredder.isShredding());
}

TEST_F(FailedShred, FailureClearsTheFlagToo)
{
    EXPECT_EQ(failureOf([&] { shred(desktop(QStringLiteral("absent"))); }), notFound);
    EXPECT_EQ(flags, QList<bool>({true}));
    spinOnce();
    EXPECT_FALSE(shredder.isShredding());
    EXPECT_EQ(shredder.currentOperation(), QString());
}
