// SPDX-License-Identifier: GPL-3.0-or-later

#include "formats/FolderArchive.h"
#include "catalogue/QuillhavenError.h"
#include "platform/linux/OpenSslRandomSource.h"
#include "platform/linux/files/FileFixture.h"
#include "support/Bytes.h"
#include "support/FileManagerDecorator.h"
#include "support/InheritedSignals.h"

#include <sys/resource.h>

#include <limits>
#include <thread>

namespace quillhaven::test {
namespace {

class SilentListener : public ReadListener
{
public:
    void began(std::span<std::byte>) override {}
    void arrived(size_t) override {}
    void abandoned() override {}
};

class UnreadableArchive : public FileManagerDecorator
{
public:
    using FileManagerDecorator::FileManagerDecorator;
    [[nodiscard]] std::unique_ptr<FileReader> openForReading(const QString &path) const override
    {
        throw FileError::of(FileError::Kind::TooLargeForMemory, FileError::Action::Read, path);
    }
};

/// Rejects the first removals.
class UnremovableFolders : public FileManagerDecorator
{
public:
    explicit UnremovableFolders(FileManager &next, qsizetype times = std::numeric_limits<qsizetype>::max())
        : FileManagerDecorator(next), m_times(times)
    {
    }
    void removeItem(const QString &path) override
    {
        if (refused.size() >= m_times) {
            FileManagerDecorator::removeItem(path);
            return;
        }
        refused.append(path);
        throw FileError::of(FileError::Kind::NoPermission, FileError::Action::Remove, path);
    }

    QStringList refused;

private:
    qsizetype m_times;
};

/// Sets a limit for this process and its child processes during its lifetime.
class Limit
{
public:
    Limit(__rlimit_resource resource, rlim_t maximum) : m_resource(resource)
    {
        EXPECT_EQ(getrlimit(resource, &m_before), 0);
        const rlimit lower{maximum, m_before.rlim_max};
        EXPECT_EQ(setrlimit(resource, &lower), 0);
    }
    ~Limit() { EXPECT_EQ(setrlimit(m_resource, &m_before), 0); }
    Limit(const Limit &) = delete;
    Limit &operator=(const Limit &) = delete;

private:
    __rlimit_resource m_resource;
    rlimit m_before{};
};

class FolderArchiveTest : public ::testing::Test
{
protected:
    // The temporary directory must be empty after every test.
    ~FolderArchiveTest() override
    {
        EXPECT_EQ(QDir(home.directories().temporary).entryList(QDir::AllEntries | QDir::NoDotAndDotDot), QStringList());
    }

    QByteArray archiveOf(const QString &folder)
    {
        const FileBuffer buffer = createFolderArchive(files, random, home.directories(), folder, 0, 0, listener);
        const auto bytes = buffer.bytes();
        return {reinterpret_cast<const char *>(bytes.data()), static_cast<qsizetype>(bytes.size())};
    }
    /// Runs the system's tar with an archive as input, and returns its output.
    QByteArray tar(const QByteArray &archive, const QStringList &arguments) const
    {
        QProcess process;
        process.start(QStringLiteral("tar"), arguments);
        EXPECT_TRUE(process.waitForStarted());
        process.write(archive);
        process.closeWriteChannel();
        EXPECT_TRUE(process.waitForFinished());
        EXPECT_EQ(process.exitCode(), 0) << process.readAllStandardError().constData();
        return process.readAllStandardOutput();
    }
    QByteArray namesIn(const QByteArray &archive) const
    {
        return tar(archive, {QStringLiteral("-tf"), QStringLiteral("-")});
    }
    QString failureFor(const QString &folder)
    {
        try {
            archiveOf(folder);
        } catch (const QuillhavenError &error) {
            EXPECT_EQ(error.errorCase(), QuillhavenError::encryptionFailed);
            return error.errorDescription();
        }
        return {};
    }

    TemporaryHome home;
    LinuxFileManager files;
    SilentListener listener;
    OpenSslRandomSource random;
};

TEST_F(FolderArchiveTest, TheNameOfTheFolderIsTheOnlyTopLevelEntry)
{
    home.write(QStringLiteral("Documents/Letters/a.txt"));
    const QByteArray archive = archiveOf(home.path(QStringLiteral("Documents/Letters")));
    EXPECT_EQ(namesIn(archive), "Letters/\nLetters/a.txt\n");
}

TEST_F(FolderArchiveTest, BeginsWithAPlainTarHeaderForTheFolder)
{
    home.write(QStringLiteral("Documents/Letters/a.txt"));
    const QByteArray archive = archiveOf(home.path(QStringLiteral("Documents/Letters")));
    EXPECT_EQ(archive.left(10), QByteArray("Letters/\0\0", 10));
    EXPECT_EQ(archive.mid(257, 5), "ustar");
    EXPECT_EQ(archive.size() % 512, 0);
}

TEST_F(FolderArchiveTest, UnpacksToTheSameFolder)
{
    home.write(QStringLiteral("Documents/F\u00f6lder/inner/b c.txt"), "the bytes");
    home.write(QStringLiteral("Documents/F\u00f6lder/.hidden"), {});
    QDir().mkpath(home.path(QStringLiteral("Documents/F\u00f6lder/empty")));
    QFile::link(QStringLiteral("inner/b c.txt"), home.path(QStringLiteral("Documents/F\u00f6lder/link")));

    const QByteArray archive = archiveOf(home.path(QStringLiteral("Documents/F\u00f6lder")));
    tar(archive,
        {QStringLiteral("-xf"), QStringLiteral("-"), QStringLiteral("-C"), home.path(QStringLiteral("Desktop"))});
    const QString copy = home.path(QStringLiteral("Desktop/F\u00f6lder/"));
    EXPECT_EQ(TemporaryHome::read(copy + QStringLiteral("inner/b c.txt")), "the bytes");
    EXPECT_EQ(TemporaryHome::read(copy + QStringLiteral(".hidden")), QByteArray());
    EXPECT_TRUE(QDir(copy + QStringLiteral("empty")).exists());
    EXPECT_EQ(TemporaryHome::read(copy + QStringLiteral("link")), "the bytes");
    EXPECT_TRUE(QFileInfo(copy + QStringLiteral("link")).isSymLink());
}

TEST_F(FolderArchiveTest, AnEmptyFolderHasOneEntry)
{
    QDir().mkpath(home.path(QStringLiteral("Documents/Nothing")));
    EXPECT_EQ(namesIn(archiveOf(home.path(QStringLiteral("Documents/Nothing")))), "Nothing/\n");
}

TEST_F(FolderArchiveTest, ATrailingSlashDoesNotChangeTheName)
{
    home.write(QStringLiteral("Documents/Letters/a.txt"));
    EXPECT_EQ(namesIn(archiveOf(home.path(QStringLiteral("Documents/Letters/")))), "Letters/\nLetters/a.txt\n");
}

TEST_F(FolderArchiveTest, TheArchiveIsBetweenHeadroomAndTailroom)
{
    home.write(QStringLiteral("Documents/Letters/a.txt"));
    const QString folder = home.path(QStringLiteral("Documents/Letters"));
    const QByteArray archive = archiveOf(folder);
    const FileBuffer roomy = createFolderArchive(files, random, home.directories(), folder, 54, 16, listener);
    const auto bytes = roomy.bytes();
    ASSERT_EQ(bytes.size(), static_cast<size_t>(archive.size()) + 70);
    EXPECT_EQ(hexOf(bytes.first(54)), QByteArray(54, '\0').toHex());
    EXPECT_TRUE(std::ranges::equal(bytes.subspan(54, bytes.size() - 70), bytesOf(archive)));
    EXPECT_EQ(hexOf(bytes.last(16)), QByteArray(16, '\0').toHex());
}

TEST_F(FolderArchiveTest, RunsOnAThreadWithoutAnEventLoop)
{
    home.write(QStringLiteral("Documents/Letters/a.txt"));
    QByteArray archive;
    std::thread worker([&] { archive = archiveOf(home.path(QStringLiteral("Documents/Letters"))); });
    worker.join();
    EXPECT_EQ(namesIn(archive), "Letters/\nLetters/a.txt\n");
}

TEST_F(FolderArchiveTest, TheMessageContainsTheOutputOfTar)
{
    qputenv("LC_ALL", "C");
    const QString message = failureFor(home.path(QStringLiteral("Documents/Missing")));
    qunsetenv("LC_ALL");
    EXPECT_TRUE(
        message.startsWith(QStringLiteral("Failed to create encrypted container: Failed to create folder archive: ")))
        << qUtf8Printable(message);
    EXPECT_TRUE(message.contains(QStringLiteral("tar: Missing: Cannot stat: No such file or directory")))
        << qUtf8Printable(message);
}

TEST_F(FolderArchiveTest, TarThatFailsWithoutOutputIsAnUnknownError)
{
    home.write(QStringLiteral("Documents/Letters/a.txt"));
    const Limit noBytes(RLIMIT_FSIZE, 0); // its first write kills it
    EXPECT_EQ(failureFor(home.path(QStringLiteral("Documents/Letters"))),
              QStringLiteral("Failed to create encrypted container: Failed to create folder archive: Unknown error"));
}

TEST_F(FolderArchiveTest, TarCanBeEndedByASignalThatIsIgnoredAndBlockedHere)
{
    home.write(QStringLiteral("Documents/Letters/a.txt"));
    const Limit noBytes(RLIMIT_FSIZE, 0); // its first write sends the signal
    const InheritedSignal signal(SIGXFSZ);
    EXPECT_EQ(failureFor(home.path(QStringLiteral("Documents/Letters"))),
              QStringLiteral("Failed to create encrypted container: Failed to create folder archive: Unknown error"));
}

TEST_F(FolderArchiveTest, TarThatCannotBeStartedIsReported)
{
    home.write(QStringLiteral("Documents/Letters/a.txt"));
    ASSERT_EQ(chmod(QFile::encodeName(home.path()).constData(), 0755), 0);
    ASSERT_EQ(chmod(QFile::encodeName(home.directories().temporary).constData(), 0777), 0);
    QString text;
    try {
        const AsPlainUser user; // the limit does not apply to root
        const Limit noProcess(RLIMIT_NPROC, 0);
        archiveOf(home.path(QStringLiteral("Documents/Letters")));
    } catch (const FileError &error) {
        text = error.errorDescription();
    }
    EXPECT_TRUE(text.startsWith(QStringLiteral("Could not start \"tar\": "))) << qUtf8Printable(text);
}

TEST_F(FolderArchiveTest, AWorkDirectoryThatCannotBeRemovedIsIgnored)
{
    home.write(QStringLiteral("Documents/Letters/a.txt"));
    UnremovableFolders unremovable(files);
    const FileBuffer archive = createFolderArchive(unremovable, random, home.directories(),
                                                   home.path(QStringLiteral("Documents/Letters")), 0, 0, listener);
    EXPECT_GT(archive.size(), 0U);
    ASSERT_FALSE(unremovable.refused.isEmpty());
    files.removeItem(unremovable.refused.first());
}

TEST_F(FolderArchiveTest, RemovingTheWorkDirectoryIsTriedTwice)
{
    home.write(QStringLiteral("Documents/Letters/a.txt"));
    UnremovableFolders slow(files, 1);
    const FileBuffer archive = createFolderArchive(slow, random, home.directories(),
                                                   home.path(QStringLiteral("Documents/Letters")), 0, 0, listener);
    EXPECT_EQ(slow.refused.size(), 1);
}

TEST_F(FolderArchiveTest, ANameThatBeginsWithAHyphenIsTarsLastArgumentAndReadAsAnOption)
{
    qputenv("LC_ALL", "C");
    home.write(QStringLiteral("Documents/-name/a.txt"));
    const QString message = failureFor(home.path(QStringLiteral("Documents/-name")));
    qunsetenv("LC_ALL");
    EXPECT_TRUE(message.contains(QStringLiteral("tar: invalid option -- 'e'"))) << qUtf8Printable(message);
}

TEST_F(FolderArchiveTest, TheTarOptionsOfTheUserAreIgnored)
{
    home.write(QStringLiteral("Documents/Letters/a.txt"));
    qputenv("TAR_OPTIONS", "--exclude=a.txt");
    const QByteArray archive = archiveOf(home.path(QStringLiteral("Documents/Letters")));
    qunsetenv("TAR_OPTIONS");
    EXPECT_EQ(namesIn(archive), "Letters/\nLetters/a.txt\n");
}

TEST_F(FolderArchiveTest, AnArchiveThatCannotBeReadLeavesNoWorkDirectory)
{
    home.write(QStringLiteral("Documents/Letters/a.txt"));
    UnreadableArchive unreadable(files);
    EXPECT_THROW(static_cast<void>(createFolderArchive(unreadable, random, home.directories(),
                                                       home.path(QStringLiteral("Documents/Letters")), 0, 0, listener)),
                 FileError);
}

TEST_F(FolderArchiveTest, AWorkDirectoryThatCannotBeCreatedIsReported)
{
    home.write(QStringLiteral("Documents/Letters/a.txt"));
    UserDirectories directories = home.directories();
    directories.temporary = home.write(QStringLiteral("Documents/in-the-way"));
    EXPECT_THROW(static_cast<void>(createFolderArchive(files, random, directories,
                                                       home.path(QStringLiteral("Documents/Letters")), 0, 0, listener)),
                 FileError);
}

} // namespace
} // namespace quillhaven::test
