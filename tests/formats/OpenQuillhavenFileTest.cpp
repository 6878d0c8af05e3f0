// SPDX-License-Identifier: GPL-3.0-or-later

#include "formats/RecoveryBackup.h"
#include "formats/SecuredContainer.h"
#include "formats/StandAloneReader.h"
#include "platform/linux/OpenSslRandomSource.h"
#include "platform/linux/files/LinuxFileManager.h"
#include "support/TemporaryHome.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <gtest/gtest.h>

#include <sys/stat.h>

namespace quillhaven::test {
namespace {

/// Runs the reader in `docs`, as a user would, on files that the program has written.
class OpenQuillhavenFileTest : public ::testing::Test
{
protected:
    void createContainer(const QString &source, const QString &withPassword)
    {
        createEncryptedContainer(files, random, home.directories(), source, container, withPassword, {});
    }
    void createBackup(const QString &source)
    {
        const ProtectedItem item{.id = QStringLiteral("ID"),
                                 .originalName = QStringLiteral("letter\x1b[2J.txt"),
                                 .originalPath = {},
                                 .containerPath = {},
                                 .originalBackupPath = {},
                                 .mountedPath = {}};
        createRecoveryBackup(files, random, home.directories(), source, backup, QString::fromUtf8(password), item);
    }
    /// Creates a backup whose plaintext is an archive. The Python statements fill it, using `tar` and `entry`.
    void createBackupOfArchive(const QString &statements)
    {
        const QString archive = home.path(QStringLiteral("hostile.tar"));
        const QString program = QStringLiteral(R"(
import io, sys, tarfile
tar = tarfile.open(sys.argv[1], "w")
def entry(name, type=tarfile.REGTYPE, target="", mode=0o644, data=b"data"):
    info = tarfile.TarInfo(name)
    info.type, info.linkname, info.mode = type, target, mode
    info.size = len(data) if type == tarfile.REGTYPE else 0
    tar.addfile(info, io.BytesIO(data))
%1
tar.close()
)")
                                    .arg(statements);
        QProcess python;
        python.start(QStringLiteral("/usr/bin/python3"), {QStringLiteral("-c"), program, archive});
        ASSERT_TRUE(python.waitForFinished(-1));
        ASSERT_EQ(python.exitCode(), 0) << python.readAllStandardError().constData();
        createBackup(archive);
    }
    ReaderRun unpack() const { return runReader({QStringLiteral("--unpack"), backup, folder}, password); }
    QString inFolder(const QString &name) const { return folder + QLatin1Char('/') + name; }
    /// The names in the home: the reader must not add to them.
    QStringList namesInHome() const
    {
        return QDir(home.path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
    }
    void expectRejected()
    {
        const QStringList before = namesInHome();
        const ReaderRun run = unpack();
        EXPECT_EQ(run.exitCode, 1);
        EXPECT_TRUE(run.errors.contains("leads out of its folder")) << run.errors.constData();
        EXPECT_EQ(namesInHome(), before);
    }

    TemporaryHome home;
    LinuxFileManager files;
    OpenSslRandomSource random;
    const QString container = home.path(QStringLiteral("letter.txt.secured"));
    const QString backup = home.path(QStringLiteral("ID.backup"));
    const QString output = home.path(QStringLiteral("opened"));
    const QString folder = home.path(QStringLiteral("Recovered"));
    const QByteArray password = "Secret123";
};

TEST_F(OpenQuillhavenFileTest, AFilesContainerOpensIntoANewFileThatOnlyItsOwnerCanRead)
{
    createContainer(home.write(QStringLiteral("plain"), "The letter"), QString::fromUtf8(password));
    const ReaderRun run = runReader({container, output}, password);
    EXPECT_EQ(run.exitCode, 0) << run.errors.constData();
    EXPECT_EQ(run.output, "");
    EXPECT_EQ(TemporaryHome::read(output), "The letter");
    EXPECT_EQ(QFileInfo(output).permissions() & (QFile::ReadGroup | QFile::WriteGroup | QFile::ReadOther), 0);
}

TEST_F(OpenQuillhavenFileTest, AFilesBackupOpensAndItsMetadataIsPrintedWithoutControlCharacters)
{
    createBackup(home.write(QStringLiteral("plain"), "The letter"));
    const ReaderRun run = runReader({backup, QStringLiteral("-")}, password);
    EXPECT_EQ(run.exitCode, 0) << run.errors.constData();
    EXPECT_EQ(run.output, "The letter");
    EXPECT_EQ(run.errors, "The backup says that it is of 'ID:letter\\x1b[2J.txt'.\n");
}

TEST_F(OpenQuillhavenFileTest, ATouchIDContainerOpensWithTheEmptyPassword)
{
    createContainer(home.write(QStringLiteral("plain"), "The letter"), QStringLiteral(""));
    EXPECT_EQ(runReader({container, QStringLiteral("-")}, {}).output, "The letter");
}

TEST_F(OpenQuillhavenFileTest, OneLineEndInThePasswordFileIsNotPartOfThePassword)
{
    createContainer(home.write(QStringLiteral("plain"), "The letter"), QStringLiteral(" with blanks "));
    EXPECT_EQ(runReader({container, QStringLiteral("-")}, " with blanks \n").output, "The letter");
    EXPECT_EQ(runReader({container, QStringLiteral("-")}, " with blanks \n\n").exitCode, readerNotOpened);
    const QString file = home.write(QStringLiteral("password"), " with blanks ");
    const ReaderRun run =
        runReader({QStringLiteral("--password-file"), file, container, QStringLiteral("-")}, "not read");
    EXPECT_EQ(run.output, "The letter");
}

TEST_F(OpenQuillhavenFileTest, ThePasswordIsAskedForOnTheTerminalWithoutAnEcho)
{
    createBackup(home.write(QStringLiteral("plain"), "The letter"));
    QProcess terminal;
    const QString command = QStringLiteral("/usr/bin/python3 '%1' '%2' '%3'");
    terminal.start(QStringLiteral("script"),
                   {QStringLiteral("-qec"), command.arg(QStringLiteral(STAND_ALONE_READER), backup, output),
                    QStringLiteral("/dev/null")});
    QByteArray shown;
    while (!shown.contains("Password: ")) {
        ASSERT_TRUE(terminal.waitForReadyRead(-1)) << shown.constData();
        shown += terminal.readAllStandardOutput();
    }
    terminal.write(password + '\n');
    ASSERT_TRUE(terminal.waitForFinished(-1));
    shown += terminal.readAllStandardOutput();
    EXPECT_EQ(terminal.exitCode(), 0) << shown.constData();
    EXPECT_FALSE(shown.contains(password));
    EXPECT_EQ(TemporaryHome::read(output), "The letter");
}

TEST_F(OpenQuillhavenFileTest, AFoldersBackupUnpacksToTheSameFolder)
{
    home.write(QStringLiteral("Letters/inner/b c.txt"), "the bytes");
    QFile::setPermissions(home.path(QStringLiteral("Letters/inner/b c.txt")), QFile::ReadOwner | QFile::ExeOwner);
    QDir().mkpath(home.path(QStringLiteral("Letters/empty")));
    QFile::link(QStringLiteral("inner/b c.txt"), home.path(QStringLiteral("Letters/link")));
    ASSERT_EQ(::link(QFile::encodeName(home.path(QStringLiteral("Letters/inner/b c.txt"))).constData(),
                     QFile::encodeName(home.path(QStringLiteral("Letters/second"))).constData()),
              0);
    QFile::setPermissions(home.path(QStringLiteral("Letters/empty")), QFile::ReadOwner | QFile::ExeOwner);
    createBackup(home.path(QStringLiteral("Letters")));
    const ReaderRun run = unpack();
    EXPECT_EQ(run.exitCode, 0) << run.errors.constData();

    const QString copy = inFolder(QStringLiteral("Letters/"));
    EXPECT_EQ(TemporaryHome::read(copy + QStringLiteral("inner/b c.txt")), "the bytes");
    const QFileInfo original(home.path(QStringLiteral("Letters/inner/b c.txt")));
    const QFileInfo unpacked(copy + QStringLiteral("inner/b c.txt"));
    EXPECT_EQ(unpacked.permissions(), original.permissions());
    EXPECT_EQ(unpacked.lastModified().toSecsSinceEpoch(), original.lastModified().toSecsSinceEpoch());
    EXPECT_EQ(QFileInfo(copy + QStringLiteral("link")).symLinkTarget(), unpacked.filePath());
    EXPECT_EQ(TemporaryHome::read(copy + QStringLiteral("second")), "the bytes");
    EXPECT_FALSE(QFileInfo(copy + QStringLiteral("second")).isSymLink());
    EXPECT_TRUE(QFileInfo(copy + QStringLiteral("empty")).isDir());
    EXPECT_FALSE(QFileInfo(copy + QStringLiteral("empty")).permissions().testFlag(QFile::WriteOwner));
}

TEST_F(OpenQuillhavenFileTest, AWrongPasswordHasItsOwnExitStatusAndWritesNothing)
{
    createBackup(home.write(QStringLiteral("plain"), "The letter"));
    const QStringList before = namesInHome();
    const ReaderRun run = runReader({backup, output}, "Secret124");
    EXPECT_EQ(run.exitCode, readerNotOpened);
    EXPECT_TRUE(run.errors.contains("The password is wrong, or the file has been changed.")) << run.errors.constData();
    EXPECT_EQ(runReader({backup, QStringLiteral("-")}, "Secret124").output, "");
    EXPECT_EQ(runReader({QStringLiteral("--unpack"), backup, folder}, "Secret124").exitCode, readerNotOpened);
    EXPECT_EQ(namesInHome(), before);
}

TEST_F(OpenQuillhavenFileTest, NoTruncatedFileOpens)
{
    createContainer(home.write(QStringLiteral("plain"), "The letter"), QString::fromUtf8(password));
    createBackup(home.path(QStringLiteral("plain")));
    for (const QString &path : {container, backup}) {
        const QByteArray whole = TemporaryHome::read(path);
        for (const qsizetype size : {0, 8, 10, 30, 43, 45, 50, 69, 75}) {
            const ReaderRun run =
                runReader({home.write(QStringLiteral("piece"), whole.left(size)), QStringLiteral("-")}, password);
            EXPECT_TRUE(run.exitCode == readerNotOurs || run.exitCode == readerNotOpened) << size;
            EXPECT_EQ(run.output, "");
            EXPECT_FALSE(run.errors.contains("Traceback")) << run.errors.constData();
        }
        const ReaderRun run =
            runReader({home.write(QStringLiteral("piece"), whole.chopped(1)), QStringLiteral("-")}, password);
        EXPECT_EQ(run.exitCode, readerNotOpened);
        EXPECT_EQ(run.output, "");
    }
}

TEST_F(OpenQuillhavenFileTest, OtherFilesAreRecognized)
{
    const auto statusOf = [this](const QByteArray &bytes) {
        return runReader({home.write(QStringLiteral("other"), bytes), QStringLiteral("-")}, password);
    };
    EXPECT_EQ(statusOf(QByteArray(1000, '\0')).exitCode, readerNotOurs);
    const ReaderRun marker = statusOf("FOLDER:/home/ann/x_original");
    EXPECT_EQ(marker.exitCode, readerNotOurs);
    EXPECT_TRUE(marker.errors.contains("/home/ann/x_original")) << marker.errors.constData();
    EXPECT_EQ(runReader({home.path(QStringLiteral("missing")), QStringLiteral("-")}, password).exitCode, readerNotOurs);
    EXPECT_EQ(statusOf("RECOVERY" + QByteArray(32, 's') + QByteArray(4, '\xff') + QByteArray(60, 'x')).exitCode,
              readerNotOurs);
}

TEST_F(OpenQuillhavenFileTest, AnExistingFileIsNotOverwritten)
{
    createBackup(home.write(QStringLiteral("plain"), "The letter"));
    home.write(QStringLiteral("opened"), "mine");
    EXPECT_EQ(runReader({backup, output}, password).exitCode, 1);
    EXPECT_EQ(TemporaryHome::read(output), "mine");
    home.write(QStringLiteral("Recovered/mine.txt"), "mine");
    EXPECT_EQ(unpack().exitCode, 1);
    EXPECT_EQ(QDir(folder).entryList(QDir::AllEntries | QDir::NoDotAndDotDot), QStringList(QStringLiteral("mine.txt")));
}

TEST_F(OpenQuillhavenFileTest, AFileThatIsNotAnArchiveIsNotUnpacked)
{
    for (const QByteArray &plain : {QByteArray(), QByteArray("The letter"), QByteArray(3000, 'x')}) {
        createBackup(home.write(QStringLiteral("plain"), plain));
        const ReaderRun run = unpack();
        EXPECT_EQ(run.exitCode, 1);
        EXPECT_TRUE(run.errors.contains("does not contain a folder's archive")) << run.errors.constData();
        EXPECT_FALSE(TemporaryHome::exists(folder));
    }
}

TEST_F(OpenQuillhavenFileTest, APathOutOfTheFolderIsRejectedBeforeAnythingIsUnpacked)
{
    createBackupOfArchive(QStringLiteral("entry('item/good.txt'); entry('item/../../climbed.txt')"));
    expectRejected();
}

TEST_F(OpenQuillhavenFileTest, AnAbsolutePathIsRejected)
{
    createBackupOfArchive(QStringLiteral("entry('%1')").arg(home.path(QStringLiteral("absolute.txt"))));
    expectRejected();
}

TEST_F(OpenQuillhavenFileTest, AHardLinkToAFileOutsideIsRejected)
{
    createBackupOfArchive(QStringLiteral("entry('item/hard', tarfile.LNKTYPE, '../ID.backup')"));
    expectRejected();
}

TEST_F(OpenQuillhavenFileTest, NothingIsWrittenThroughALinkInTheArchive)
{
    QDir().mkpath(home.path(QStringLiteral("outside")));
    createBackupOfArchive(QStringLiteral("entry('item/way', tarfile.SYMTYPE, '../../outside'); entry('item/way/in')"));
    EXPECT_EQ(unpack().exitCode, 1);
    EXPECT_TRUE(QDir(home.path(QStringLiteral("outside"))).isEmpty());
}

TEST_F(OpenQuillhavenFileTest, LinksThatLeadOutAreSkippedAndReported)
{
    createBackupOfArchive(QStringLiteral("entry('item/data.txt')\n"
                                         "entry('item/in', tarfile.SYMTYPE, 'data.txt')\n"
                                         "entry('item/absolute', tarfile.SYMTYPE, '/etc/passwd')\n"
                                         "entry('item/climbing', tarfile.SYMTYPE, '../../plain')\n"
                                         "entry('item/self', tarfile.SYMTYPE, '.')\n"
                                         "entry('item/deep/round', tarfile.SYMTYPE, '../self/../..')"));
    const ReaderRun run = unpack();
    EXPECT_EQ(run.exitCode, 0) << run.errors.constData();
    EXPECT_EQ(QDir(inFolder(QStringLiteral("item"))).entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot),
              QStringList(
                  {QStringLiteral("data.txt"), QStringLiteral("deep"), QStringLiteral("in"), QStringLiteral("self")}));
    EXPECT_TRUE(QDir(inFolder(QStringLiteral("item/deep"))).isEmpty());
    EXPECT_EQ(run.errors.count("Left out, since it leads out of the folder"), 3) << run.errors.constData();
}

TEST_F(OpenQuillhavenFileTest, PipesAndDevicesAreSkippedAndNoBitsBesidesTheModeAreSet)
{
    createBackupOfArchive(QStringLiteral("entry('item/pipe', tarfile.FIFOTYPE)\n"
                                         "entry('item/device', tarfile.CHRTYPE)\n"
                                         "entry('item/program', mode=0o4755)"));
    const ReaderRun run = unpack();
    EXPECT_EQ(run.exitCode, 0) << run.errors.constData();
    EXPECT_EQ(QDir(inFolder(QStringLiteral("item"))).entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot),
              QStringList(QStringLiteral("program")));
    struct stat status{};
    ASSERT_EQ(::stat(QFile::encodeName(inFolder(QStringLiteral("item/program"))).constData(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777, 0755U);
}

} // namespace
} // namespace quillhaven::test
