// SPDX-License-Identifier: GPL-3.0-or-later

#include "ShredFixture.h"

#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <cstring>

using namespace quillhaven;
using namespace quillhaven::test;

namespace {

class ShredDirectory : public ShredDirectoryTest
{
protected:
    /// The error of a shred as a normal user if a folder inside has this mode. Nothing may be touched.
    QString failureOfFolderInsideWithMode(mode_t mode)
    {
        const QString first = inFolder(QStringLiteral("a"));
        const QString last = inFolder(QStringLiteral("z/inner"));
        const QByteArray closed = bytesOf(folder + QStringLiteral("/z"));
        openToAll();
        EXPECT_EQ(chmod(bytesOf(folder).constData(), 0777), 0);
        EXPECT_EQ(chmod(bytesOf(first).constData(), 0666), 0);
        EXPECT_EQ(chmod(closed.constData(), mode), 0);
        QString failure;
        {
            const AsPlainUser user;
            failure = failureOf([&] { shred(folder); });
        }
        EXPECT_EQ(chmod(closed.constData(), 0755), 0);
        EXPECT_EQ(files.calls, QStringList());
        EXPECT_EQ(read(first), "secret");
        EXPECT_EQ(read(last), "secret");
        return failure;
    }
};

} // namespace

TEST_F(ShredDirectory, EmptyFolderIsRemoved)
{
    shred(folder);
    EXPECT_EQ(lines(), QStringLiteral("Analyzing directory: folder @ 0.0500\n"
                                      "Found 0 files to shred @ 0.1000\n"
                                      "Removing directory structure @ 0.9500\n"
                                      "Directory shredded successfully: folder @ 1.0000\n"
                                      "Shredding completed successfully @ 1.0000"));
    EXPECT_EQ(operations.join(QLatin1Char('\n')), QStringLiteral("Analyzing directory: folder\n"
                                                                 "Found 0 files to shred\n"
                                                                 "Removing directory structure\n"
                                                                 "Removing directory structure\n"
                                                                 "Removing directory structure"));
    EXPECT_EQ(remaining(), QStringList());
}

TEST_F(ShredDirectory, ProgressMovesBetweenFilesByTheirSizesAlone)
{
    inFolder(QStringLiteral("a"), "1");
    inFolder(QStringLiteral("b"), "123");
    inFolder(QStringLiteral("c"), "1234");
    shred(folder);
    EXPECT_EQ(lines(), QStringLiteral("Analyzing directory: folder @ 0.0500\n"
                                      "Found 3 files to shred @ 0.1000\n"
                                      "Pass 1/3: a @ 0.1000\n"
                                      "Pass 2/3: a @ 0.1000\n"
                                      "Pass 3/3: a @ 0.1000\n"
                                      "Pass 1/3: b @ 0.2000\n"
                                      "Pass 2/3: b @ 0.2000\n"
                                      "Pass 3/3: b @ 0.2000\n"
                                      "Pass 1/3: c @ 0.5000\n"
                                      "Pass 2/3: c @ 0.5000\n"
                                      "Pass 3/3: c @ 0.5000\n"
                                      "Removing directory structure @ 0.9500\n"
                                      "Directory shredded successfully: folder @ 1.0000\n"
                                      "Shredding completed successfully @ 1.0000"));
    EXPECT_EQ(remaining(), QStringList());
}

TEST_F(ShredDirectory, FolderOfEmptyFilesReportsNaNAndIsShredded)
{
    inFolder(QStringLiteral("a"), {});
    inFolder(QStringLiteral("b"), {});
    shred(folder);
    EXPECT_EQ(report.mid(1, 4).join(QLatin1Char('\n')), QStringLiteral("Found 2 files to shred @ 0.1000\n"
                                                                       "Pass 1/3: a @ nan\n"
                                                                       "Pass 2/3: a @ nan\n"
                                                                       "Pass 3/3: a @ nan"));
    EXPECT_EQ(files.calls.filter(QStringLiteral("remove (UUID)")).size(), 2);
    EXPECT_EQ(remaining(), QStringList());
}

TEST_F(ShredDirectory, EachFileGoesThroughAllStepsBeforeTheNext)
{
    inFolder(QStringLiteral("a"), QByteArray(65537, 'x'));
    inFolder(QStringLiteral("b"), {});
    shred(folder);
    const QString a = QStringLiteral("open a, seek 0, write 65536, write 1, flush, close, ");
    const QString b = QStringLiteral("open b, seek 0, flush, close, ");
    const QString end = QStringLiteral("remove (UUID), sync, ");
    EXPECT_EQ(files.calls.join(QStringLiteral(", ")), a + a + a + QStringLiteral("move a to (UUID), ") + end + b + b +
                                                          b + QStringLiteral("move b to (UUID), ") + end +
                                                          QStringLiteral("remove folder"));
}

TEST_F(ShredDirectory, EachPassWritesItsByteOverEveryFile)
{
    inFolder(QStringLiteral("a"), QByteArray(70'000, 'x'));
    inFolder(QStringLiteral("deep/b"), QByteArray(10, 'x'));
    QList<QByteArray> afterPass;
    files.after = [&](const QString &call, const QString &path) {
        if (call == QStringLiteral("close")) {
            afterPass.append(read(path));
        }
    };
    shred(folder);
    ASSERT_EQ(afterPass.size(), 6);
    for (const qsizetype first : {0, 3}) {
        const qsizetype size = first == 0 ? 70'000 : 10;
        EXPECT_TRUE(afterPass.at(first) == QByteArray(size, '\0'));
        EXPECT_TRUE(afterPass.at(first + 1) == QByteArray(size, '\xFF'));
        EXPECT_TRUE(afterPass.at(first + 2) == QByteArray(size, afterPass.at(first + 2).front()));
    }
}

TEST_F(ShredDirectory, HiddenFileInANestedFolderIsOverwrittenLikeAnyOther)
{
    const QString seen = witness(inFolder(QStringLiteral(".hidden/deep/.file")));
    shred(folder);
    expectOverwritten(seen, 6);
    EXPECT_EQ(files.calls.filter(QStringLiteral("open .file")).size(), 3);
    EXPECT_FALSE(TemporaryHome::exists(folder));
}

TEST_F(ShredDirectory, LinksInsideAreRemovedAndTheirTargetsAreKept)
{
    const QString file = write(QStringLiteral("outside/file"), "kept");
    inFolder(QStringLiteral("a"));
    ASSERT_TRUE(QFile::link(file, folder + QStringLiteral("/link")));
    ASSERT_TRUE(QFile::link(desktop(QStringLiteral("outside")), folder + QStringLiteral("/toFolder")));
    ASSERT_EQ(symlink("nowhere", bytesOf(folder + QStringLiteral("/dangling")).constData()), 0);
    shred(folder);
    EXPECT_EQ(report.at(1), QStringLiteral("Found 1 files to shred @ 0.1000"));
    EXPECT_EQ(read(file), "kept");
    EXPECT_EQ(remaining(), QStringList({QStringLiteral("outside")}));
}

TEST_F(ShredDirectory, LinkToAFolderIsRejectedAndNothingIsTouched)
{
    const QString file = inFolder(QStringLiteral("a"));
    const QString link = desktop(QStringLiteral("link"));
    ASSERT_TRUE(QFile::link(folder, link));
    const QString text =
        QStringLiteral("Could not open the folder \"link\" because it is only a link. Choose the folder it leads to "
                       "instead.");
    EXPECT_EQ(failureOf([&] { shred(link); }), text);
    EXPECT_EQ(lines(), QStringLiteral("Analyzing directory: link @ 0.0500\nShredding failed: ") + text +
                           QStringLiteral(" @ 0.0000"));
    EXPECT_NE(failureOf([&] { shred(link + QLatin1Char('/')); }), QStringLiteral("no error"));
    EXPECT_EQ(files.calls, QStringList());
    EXPECT_EQ(read(file), "secret");
    EXPECT_EQ(remaining(), QStringList({QStringLiteral("folder"), QStringLiteral("link")}));
}

TEST_F(ShredDirectory, FifosAndSocketsAreRemovedWithoutBeingOpened)
{
    ASSERT_EQ(mkfifo(bytesOf(folder + QStringLiteral("/fifo")).constData(), 0600), 0);
    const QByteArray path = bytesOf(folder + QStringLiteral("/socket"));
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    ASSERT_LT(static_cast<size_t>(path.size()), sizeof address.sun_path);
    std::memcpy(address.sun_path, path.constData(), static_cast<size_t>(path.size()));
    const int fd = socket(AF_UNIX, SOCK_STREAM, 0);
    ASSERT_EQ(bind(fd, reinterpret_cast<const sockaddr *>(&address), sizeof address), 0);
    shred(folder);
    close(fd);
    EXPECT_EQ(report.at(1), QStringLiteral("Found 0 files to shred @ 0.1000"));
    EXPECT_EQ(files.calls, QStringList({QStringLiteral("remove folder")}));
    EXPECT_EQ(remaining(), QStringList());
}

TEST_F(ShredDirectory, FolderInsideThatCannotBeListedFailsBeforeAnythingIsOverwritten)
{
    EXPECT_EQ(failureOfFolderInsideWithMode(0), QStringLiteral("You don't have permission to open the folder \"z\"."));
    EXPECT_EQ(report.size(), 2);
}

TEST_F(ShredDirectory, EntryWhoseStateCannotBeReadFailsBeforeAnythingIsOverwritten)
{
    // A folder that can be listed but not searched gives only names.
    EXPECT_EQ(failureOfFolderInsideWithMode(0444), QStringLiteral("You don't have permission to read \"inner\"."));
}

TEST_F(ShredDirectory, UnreadableFolderIsTreatedAsEmptyAndFailsAtItsRemoval)
{
    const QString file = inFolder(QStringLiteral("a"));
    openToAll();
    ASSERT_EQ(chmod(bytesOf(folder).constData(), 0), 0);
    {
        const AsPlainUser user;
        EXPECT_EQ(failureOf([&] { shred(folder); }), QStringLiteral("You don't have permission to remove \"folder\"."));
    }
    ASSERT_EQ(chmod(bytesOf(folder).constData(), 0755), 0);
    EXPECT_EQ(report.at(1), QStringLiteral("Found 0 files to shred @ 0.1000"));
    EXPECT_EQ(read(file), "secret");
}

TEST_F(ShredDirectory, UnwritableFileStopsTheRunBetweenDestroyedAndIntactFiles)
{
    const QString a = inFolder(QStringLiteral("a"));
    const QString b = inFolder(QStringLiteral("b"));
    const QString c = inFolder(QStringLiteral("c"));
    const QString seen = witness(a);
    openToAll();
    ASSERT_EQ(chmod(bytesOf(folder).constData(), 0777), 0);
    ASSERT_EQ(chmod(bytesOf(a).constData(), 0666), 0);
    ASSERT_EQ(chmod(bytesOf(b).constData(), 0444), 0);
    ASSERT_EQ(chmod(bytesOf(c).constData(), 0666), 0);
    setMasterPassword(QStringLiteral("Master12"));
    const QString text = QStringLiteral("You don't have permission to overwrite \"b\".");
    {
        const AsPlainUser user;
        EXPECT_EQ(failureOf([&] { shred(folder); }), text);
    }
    EXPECT_EQ(report.mid(5).join(QLatin1Char('\n')),
              QStringLiteral("Pass 1/3: b @ 0.3667\nShredding failed: ") + text + QStringLiteral(" @ 0.0000"));
    expectOverwritten(seen, 6);
    EXPECT_EQ(read(b), "secret");
    EXPECT_EQ(read(c), "secret");
    EXPECT_EQ(remaining(folder), QStringList({QStringLiteral("b"), QStringLiteral("c")}));
    EXPECT_TRUE(masterPassword.isAuthenticated());
}

TEST_F(ShredDirectory, FolderThatCannotBeRemovedIsLeftEmpty)
{
    const QString a = inFolder(QStringLiteral("a"));
    openToAll();
    ASSERT_EQ(chmod(bytesOf(folder).constData(), 0777), 0);
    ASSERT_EQ(chmod(bytesOf(a).constData(), 0666), 0);
    ASSERT_EQ(chmod(bytesOf(desktop()).constData(), 0555), 0);
    {
        const AsPlainUser user;
        EXPECT_EQ(failureOf([&] { shred(folder); }), QStringLiteral("You don't have permission to remove \"folder\"."));
    }
    ASSERT_EQ(chmod(bytesOf(desktop()).constData(), 0755), 0);
    EXPECT_EQ(remaining(folder), QStringList());
    EXPECT_EQ(report.mid(5, 1), QStringList({QStringLiteral("Removing directory structure @ 0.9500")}));
}

TEST_F(ShredDirectory, FileThatCannotBeRenamedStopsTheRun)
{
    const QString a = inFolder(QStringLiteral("a"));
    const QString b = inFolder(QStringLiteral("b"));
    files.before = [](const QString &call, const QString &path) {
        if (call == QStringLiteral("move")) {
            throw FileError::fromErrno(EACCES, FileError::Action::Move, path);
        }
    };
    EXPECT_EQ(failureOf([&] { shred(folder); }), QStringLiteral("You don't have permission to move \"a\"."));
    expectOverwritten(a, 6);
    EXPECT_EQ(read(b), "secret");
    EXPECT_EQ(remaining(folder), QStringList({QStringLiteral("a"), QStringLiteral("b")}));
}

TEST_F(ShredDirectory, FileThatCannotBeDeletedStopsTheRunUnderItsRandomName)
{
    inFolder(QStringLiteral("a"));
    const QString b = inFolder(QStringLiteral("b"));
    files.before = [](const QString &call, const QString &path) {
        if (call == QStringLiteral("remove")) {
            throw FileError::fromErrno(EACCES, FileError::Action::Remove, path);
        }
    };
    EXPECT_NE(failureOf([&] { shred(folder); }), QStringLiteral("no error"));
    QStringList left = remaining(folder);
    EXPECT_FALSE(left.contains(QStringLiteral("a")));
    ASSERT_TRUE(left.removeOne(QStringLiteral("b")));
    ASSERT_EQ(left.size(), 1);
    expectOverwritten(folder + QLatin1Char('/') + left.first(), 6);
    EXPECT_EQ(read(b), "secret");
}

TEST_F(ShredDirectory, NamesThatAreNotUtf8AreOverwrittenAndRemoved)
{
    const QByteArray inner = bytesOf(folder) + "/sub\xC3";
    ASSERT_EQ(mkdir(inner.constData(), 0755), 0);
    QStringList seen;
    for (const QByteArray &name : {inner + "/\xFF\xFE.txt", bytesOf(folder) + "/a\xED\xA0\x80" + "b"}) {
        const int fd = open(name.constData(), O_CREAT | O_WRONLY, 0600);
        ASSERT_GE(fd, 0);
        ASSERT_EQ(::write(fd, "secret", 6), 6);
        close(fd);
        seen.append(witness(name));
    }
    shred(folder);
    EXPECT_EQ(report.at(1), QStringLiteral("Found 2 files to shred @ 0.1000"));
    for (const QString &path : std::as_const(seen)) {
        EXPECT_NE(read(path), "secret");
        expectOverwritten(path, 6);
    }
    EXPECT_FALSE(TemporaryHome::exists(folder));
}

TEST_F(ShredDirectory, BothHardLinksOfOneFileAreShredded)
{
    const QString a = inFolder(QStringLiteral("a"));
    ASSERT_EQ(link(bytesOf(a).constData(), bytesOf(folder + QStringLiteral("/b")).constData()), 0);
    const QString seen = witness(a);
    shred(folder);
    EXPECT_EQ(report.at(1), QStringLiteral("Found 2 files to shred @ 0.1000"));
    EXPECT_EQ(report.at(5), QStringLiteral("Pass 1/3: b @ 0.5000"));
    expectOverwritten(seen, 6);
    EXPECT_FALSE(TemporaryHome::exists(folder));
}

TEST_F(ShredDirectory, HolesOfASparseFileAreFilled)
{
    const QString a = inFolder(QStringLiteral("a"), {});
    ASSERT_EQ(truncate(bytesOf(a).constData(), 500'000), 0);
    const QString seen = witness(a);
    shred(folder);
    expectOverwritten(seen, 500'000);
    struct stat status{};
    ASSERT_EQ(stat(bytesOf(seen).constData(), &status), 0);
    EXPECT_GE(status.st_blocks * 512, 500'000);
}

TEST_F(ShredDirectory, SuccessClosesTheMasterSession)
{
    inFolder(QStringLiteral("a"));
    setMasterPassword(QStringLiteral("Master12"));
    shred(folder);
    EXPECT_EQ(prompts, 1);
    EXPECT_FALSE(masterPassword.isAuthenticated());
    spinOnce();
    EXPECT_FALSE(shredder.isShredding());
}
