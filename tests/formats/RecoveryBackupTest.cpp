// SPDX-License-Identifier: GPL-3.0-or-later

#include "formats/RecoveryBackup.h"
#include "catalogue/QuillhavenError.h"
#include "cipher/CipherError.h"
#include "cipher/SealedBox.h"
#include "formats/FormatsPage.h"
#include "formats/StandAloneReader.h"
#include "platform/linux/files/LinuxFileManager.h"
#include "support/Bytes.h"
#include "support/FileManagerDecorator.h"
#include "support/LogCapture.h"
#include "support/TemporaryHome.h"
#include "support/TestRandom.h"

#include <QDir>
#include <QFileInfo>

#include <gtest/gtest.h>

#include <algorithm>

namespace quillhaven::test {
namespace {

FileBuffer bufferOf(const QByteArray &bytes)
{
    FileBuffer buffer(static_cast<size_t>(bytes.size()));
    std::ranges::copy(bytesOf(bytes), buffer.bytes().begin());
    return buffer;
}

QByteArray copyOf(std::span<const std::byte> bytes)
{
    return {reinterpret_cast<const char *>(bytes.data()), static_cast<qsizetype>(bytes.size())};
}

QByteArray littleEndian(quint32 number)
{
    QByteArray bytes;
    for (int shift = 0; shift < 32; shift += 8) {
        bytes.append(static_cast<char>(number >> shift & 0xff));
    }
    return bytes;
}

const QString formatMessage = QStringLiteral("Failed to create encrypted container: Invalid recovery backup format");
const QString metadataMessage =
    QStringLiteral("Failed to create encrypted container: Invalid recovery backup metadata");
const QString legacyMessage = QStringLiteral("Failed to create encrypted container: Invalid legacy backup format");
const QString legacyLine = QStringLiteral("⚠️ Legacy backup format detected - cannot decrypt without original password");

/// Wraps the reader of every file in one of this type.
template <typename Wrapped>
class FilesReadBy : public FileManagerDecorator
{
public:
    using FileManagerDecorator::FileManagerDecorator;
    [[nodiscard]] std::unique_ptr<FileReader> openForReading(const QString &path) const override
    {
        return std::make_unique<Wrapped>(FileManagerDecorator::openForReading(path));
    }
};

/// Returns all the bytes, and fails after them.
class FailingReader : public FileReader
{
public:
    explicit FailingReader(std::unique_ptr<FileReader> next) : m_next(std::move(next)) {}
    [[nodiscard]] size_t size() const override { return m_next->size(); }
    [[nodiscard]] size_t read(uint64_t offset, std::span<std::byte> bytes) override
    {
        const size_t count = m_next->read(offset, bytes);
        return count > 0 ? count : throw FileError::fromErrno(EIO, FileError::Action::Read, QStringLiteral("/plain"));
    }

private:
    std::unique_ptr<FileReader> m_next;
};

/// A file that has grown when its size is read for the second time.
class GrowingFileReader : public FileReader
{
public:
    explicit GrowingFileReader(std::unique_ptr<FileReader> next) : m_next(std::move(next)) {}
    [[nodiscard]] size_t size() const override
    {
        return std::exchange(m_isFirstLook, false) ? m_next->size() / 2 : m_next->size();
    }
    [[nodiscard]] size_t read(uint64_t offset, std::span<std::byte> bytes) override
    {
        return m_next->read(offset, bytes);
    }

private:
    std::unique_ptr<FileReader> m_next;
    mutable bool m_isFirstLook = true;
};

class RecoveryBackupTest : public ::testing::Test
{
protected:
    void create(const QString &source, RandomSource &from)
    {
        createRecoveryBackup(files, from, home.directories(), source, backup, password, item);
    }
    /// Returns the bytes of a backup of a file with this plaintext.
    QByteArray backupOf(const QByteArray &plaintext)
    {
        create(home.write(QStringLiteral("plain"), plaintext), random);
        return TemporaryHome::read(backup);
    }
    /// Returns the contents of a file with these bytes.
    QByteArray opened(const QByteArray &bytes, const QString &withPassword) const
    {
        return copyOf(decryptBackup(bufferOf(bytes), withPassword).bytes);
    }
    QByteArray opened(const QByteArray &bytes) const { return opened(bytes, password); }
    /// Returns the message of the QuillhavenError for these bytes; empty if there is another error or none.
    QString messageFor(const QByteArray &bytes) const
    {
        try {
            static_cast<void>(opened(bytes));
        } catch (const QuillhavenError &error) {
            EXPECT_EQ(error.errorCase(), QuillhavenError::encryptionFailed);
            return error.errorDescription();
        } catch (const CipherError &error) {
            return {};
        }
        return {};
    }
    void expectNotAuthentic(const QByteArray &bytes, const QString &withPassword) const
    {
        try {
            static_cast<void>(opened(bytes, withPassword));
            ADD_FAILURE() << "the backup opened";
        } catch (const CipherError &error) {
            EXPECT_EQ(error.errorCase(), CipherError::authenticationFailure);
        }
    }
    void expectUnchanged(const QByteArray &bytes) const
    {
        EXPECT_EQ(opened(bytes).toHex(), bytes.toHex());
        EXPECT_EQ(log.lines(), QStringList());
    }
    void expectRoundTrip(const QByteArray &plaintext)
    {
        const QByteArray bytes = backupOf(plaintext);
        EXPECT_EQ(bytes.size(), 72 + metadata.size() + plaintext.size());
        EXPECT_EQ(opened(bytes).toHex(), plaintext.toHex());
        const ReaderRun reader = runReader({backup, QStringLiteral("-")}, password.toUtf8());
        EXPECT_EQ(reader.exitCode, 0) << reader.errors.constData();
        EXPECT_EQ(reader.output.toHex(), plaintext.toHex());
    }

    TemporaryHome home;
    LogCapture log;
    LinuxFileManager files;
    OpenSslRandomSource random;
    const QString backup = home.path(QStringLiteral("item.backup"));
    const QString password = QStringLiteral("Secret123");
    ProtectedItem item{.id = QStringLiteral("3F2504E0-4F89-41D3-9A0C-0305E82C3301"),
                       .originalName = QStringLiteral("letter.txt"),
                       .originalPath = {},
                       .containerPath = {},
                       .originalBackupPath = {},
                       .mountedPath = {}};
    const QByteArray metadata = "3F2504E0-4F89-41D3-9A0C-0305E82C3301:letter.txt";
};

TEST_F(RecoveryBackupTest, EveryFieldIsAtItsOffset)
{
    CountingRandom counting;
    const QByteArray plaintext = "Dear Ann,\n";
    create(home.write(QStringLiteral("plain"), plaintext), counting);
    QByteArray bytes = TemporaryHome::read(backup);

    ASSERT_EQ(bytes.size(), 72 + 47 + 10);
    EXPECT_EQ(bytes.left(8), "RECOVERY");
    EXPECT_EQ(bytes.mid(8, 32).toHex(), "000102030405060708090a0b0c0d0e0f101112131415161718191a1b1c1d1e1f");
    EXPECT_EQ(bytes.mid(40, 4), QByteArray("\x2f\0\0\0", 4));
    EXPECT_EQ(bytes.mid(44, 47), metadata);
    EXPECT_EQ(bytes.mid(44 + 47, 12).toHex(), "202122232425262728292a2b");
    EXPECT_NE(bytes.mid(56 + 47, 10), plaintext);
    const SymmetricKey key = deriveRecoveryKey(password, bytesOf(bytes).subspan(8, 32));
    EXPECT_EQ(hexOf(sealed_box::openInPlace(key, writable(bytes).subspan(44 + 47))), plaintext.toHex());
}

TEST_F(RecoveryBackupTest, TheExampleInTheDocumentationMatches)
{
    CountingRandom counting;
    create(home.write(QStringLiteral("plain"), "Dear Ann,\n"), counting);
    EXPECT_EQ(exampleInPage(QStringLiteral(FORMATS_PAGE), QStringLiteral("The backup")).toHex(),
              TemporaryHome::read(backup).toHex());
}

TEST_F(RecoveryBackupTest, AFileOpensHereAndInTheStandAloneReader)
{
    expectRoundTrip("The letter");
}

TEST_F(RecoveryBackupTest, AnEmptyFileGives72BytesAndTheMetadata)
{
    expectRoundTrip({});
}

TEST_F(RecoveryBackupTest, SeveralMebibytesOpen)
{
    expectRoundTrip(generateRandomData(random, 5 * 1024 * 1024 + 3));
}

TEST_F(RecoveryBackupTest, TheLengthOfTheMetadataCountsItsUtf8Bytes)
{
    item.originalName = QStringLiteral("Öde an 😀.txt");
    const QByteArray bytes = backupOf("x");
    const QByteArray text = (item.id + QLatin1Char(':') + item.originalName).toUtf8();
    EXPECT_EQ(bytes.mid(40, 4), littleEndian(static_cast<quint32>(text.size())));
    EXPECT_EQ(bytes.mid(44, text.size()), text);
    EXPECT_EQ(recovery_backup::metadata(bytesOf(bytes)), QString::fromUtf8(text));
    EXPECT_EQ(opened(bytes), "x");
}

TEST_F(RecoveryBackupTest, SaltAndNonceAreNewForEachBackup)
{
    const QByteArray first = backupOf("The letter");
    const QByteArray second = backupOf("The letter");
    EXPECT_NE(first.mid(8, 32), second.mid(8, 32));
    EXPECT_NE(first.mid(44 + 47, 12), second.mid(44 + 47, 12));
    EXPECT_NE(first.mid(56 + 47, 10), second.mid(56 + 47, 10));
}

TEST_F(RecoveryBackupTest, IfTheGeneratorFailsForTheSaltItIsZeroWithoutAnError)
{
    FailingOnceRandom failingForTheSalt;
    create(home.write(QStringLiteral("plain"), "The letter"), failingForTheSalt);
    const QByteArray bytes = TemporaryHome::read(backup);
    EXPECT_EQ(bytes.mid(8, 32), QByteArray(32, '\0'));
    EXPECT_NE(bytes.mid(44 + 47, 12), QByteArray(12, '\0'));
    EXPECT_EQ(opened(bytes), "The letter");
}

TEST_F(RecoveryBackupTest, NothingIsSealedIfTheGeneratorFailsForTheNonce)
{
    FailingRandom failing;
    EXPECT_THROW(create(home.write(QStringLiteral("plain"), "The letter"), failing), CipherError);
    EXPECT_FALSE(TemporaryHome::exists(backup));
}

TEST_F(RecoveryBackupTest, AFolderIsBackedUpAsATarArchiveWithItsName)
{
    home.write(QStringLiteral("Letters/a.txt"), "The letter");
    create(home.path(QStringLiteral("Letters")), random);
    const QByteArray archive = opened(TemporaryHome::read(backup));
    EXPECT_EQ(archive.left(10), QByteArray("Letters/\0\0", 10));
    EXPECT_EQ(archive.mid(257, 5), "ustar");
    EXPECT_TRUE(archive.contains("The letter"));
    EXPECT_EQ(archive.size() % 512, 0) << "the last block is complete";
    EXPECT_EQ(QDir(home.directories().temporary).entryList(QDir::AllEntries | QDir::NoDotAndDotDot), QStringList());
}

TEST_F(RecoveryBackupTest, AFolderNameWithALeadingHyphenIsReadAsATarOptionAndReported)
{
    home.write(QStringLiteral("-name/a.txt"));
    qputenv("LC_ALL", "C");
    QString message;
    try {
        create(home.path(QStringLiteral("-name")), random);
    } catch (const QuillhavenError &error) {
        message = error.errorDescription();
    }
    qunsetenv("LC_ALL");
    EXPECT_TRUE(message.startsWith(QStringLiteral("Failed to create encrypted container: Failed to create folder "
                                                  "archive: ")))
        << qUtf8Printable(message);
    EXPECT_TRUE(message.contains(QStringLiteral("invalid option -- 'e'"))) << qUtf8Printable(message);
    EXPECT_FALSE(TemporaryHome::exists(backup));
}

TEST_F(RecoveryBackupTest, ASecondBackupReplacesALongerOne)
{
    backupOf(QByteArray(5000, 'x'));
    EXPECT_EQ(opened(backupOf("short")), "short");
}

TEST_F(RecoveryBackupTest, ASourceThatCannotBeReadThrowsAndKeepsTheFormerBackup)
{
    home.write(QStringLiteral("item.backup"), "former");
    EXPECT_THROW(create(home.path(QStringLiteral("missing")), random), FileError);
    EXPECT_EQ(TemporaryHome::read(backup), "former");
}

TEST_F(RecoveryBackupTest, SealingEndsBeforeTheMemoryOfAFailedReadIsFreed)
{
    FilesReadBy<FailingReader> failing(files);
    const QString plain = home.write(QStringLiteral("plain"), QByteArray(64 << 20, 'x'));
    EXPECT_THROW(createRecoveryBackup(failing, random, home.directories(), plain, backup, password, item), FileError);
    EXPECT_FALSE(TemporaryHome::exists(backup));
}

TEST_F(RecoveryBackupTest, AFileThatGrowsWhileItIsReadIsSealedCompletely)
{
    FilesReadBy<GrowingFileReader> growing(files);
    // The result must not depend on whether reading or sealing is faster.
    for (const qsizetype size : {0, 10, 10, 10, 10, 10, 10, 10, 10, 10, 65536, 20'000'000}) {
        const QByteArray plaintext(size, 'x');
        createRecoveryBackup(growing, random, home.directories(), home.write(QStringLiteral("plain"), plaintext),
                             backup, password, item);
        EXPECT_TRUE(opened(TemporaryHome::read(backup)) == plaintext) << size;
    }
}

TEST_F(RecoveryBackupTest, ABackupThatCannotBeWrittenThrows)
{
    const QString plain = home.write(QStringLiteral("plain"));
    EXPECT_THROW(createRecoveryBackup(files, random, home.directories(), plain,
                                      home.path(QStringLiteral("no/such/x.backup")), password, item),
                 FileError);
}

TEST_F(RecoveryBackupTest, AWrongPasswordIsACipherError)
{
    expectNotAuthentic(backupOf("The letter"), QStringLiteral("Secret124"));
}

TEST_F(RecoveryBackupTest, AnOldBackupOpensOnlyWithThePasswordOfItsTime)
{
    const QByteArray old = backupOf("The letter");
    const QString newPassword = QStringLiteral("Changed456");
    createRecoveryBackup(files, random, home.directories(), home.path(QStringLiteral("plain")), backup, newPassword,
                         item);
    EXPECT_EQ(opened(TemporaryHome::read(backup), newPassword), "The letter");
    expectNotAuthentic(old, newPassword);
    EXPECT_EQ(opened(old), "The letter");
}

TEST_F(RecoveryBackupTest, AChangedByteOfSaltNonceCiphertextOrTagDoesNotOpen)
{
    const QByteArray bytes = backupOf("The letter");
    for (qsizetype position = 8; position < bytes.size(); ++position) {
        if (position >= 40 && position < 44 + 47) {
            continue; // length and metadata
        }
        QByteArray changed = bytes;
        changed[position] = static_cast<char>(changed.at(position) ^ 1);
        expectNotAuthentic(changed, password);
    }
}

TEST_F(RecoveryBackupTest, ChangedMetadataOpensSinceTheTagDoesNotCoverIt)
{
    QByteArray bytes = backupOf("The letter");
    bytes.replace("letter.txt", "notice.txt");
    EXPECT_EQ(opened(bytes), "The letter");
}

TEST_F(RecoveryBackupTest, NoTruncatedBackupOpens)
{
    const QByteArray bytes = backupOf("The letter");
    for (qsizetype size = 9; size < bytes.size(); ++size) {
        const QByteArray piece = bytes.left(size);
        if (size < 45) {
            EXPECT_EQ(messageFor(piece), formatMessage) << size;
        } else if (size <= 44 + 47) {
            EXPECT_EQ(messageFor(piece), metadataMessage) << size;
        } else {
            expectNotAuthentic(piece, password);
        }
    }
}

TEST_F(RecoveryBackupTest, FortyFourBytesAreNotABackup)
{
    EXPECT_EQ(messageFor("RECOVERY" + QByteArray(36, '\0')), formatMessage);
}

TEST_F(RecoveryBackupTest, FortyFiveBytesThatEndWithMetadataAreRejected)
{
    EXPECT_EQ(messageFor("RECOVERY" + QByteArray(32, '\0') + littleEndian(1) + 'x'), metadataMessage);
}

TEST_F(RecoveryBackupTest, OneByteAfterTheMetadataIsNotABox)
{
    expectNotAuthentic("RECOVERY" + QByteArray(32, '\0') + littleEndian(0) + 'x', password);
    expectNotAuthentic("RECOVERY" + QByteArray(32, '\0') + littleEndian(1) + "xy", password);
}

TEST_F(RecoveryBackupTest, TheLargestLengthIsRejectedWithoutAnOverflow)
{
    EXPECT_EQ(messageFor("RECOVERY" + QByteArray(32, '\0') + littleEndian(0xFFFFFFFF) + QByteArray(100, 'x')),
              metadataMessage);
}

TEST_F(RecoveryBackupTest, AFileOfOnlyTheMagicIsReturnedUnchanged)
{
    expectUnchanged("RECOVERY");
    EXPECT_EQ(messageFor("RECOVERYx"), formatMessage);
}

TEST_F(RecoveryBackupTest, AContainerIsReturnedUnchangedWithALogLine)
{
    const QByteArray container = "QUILLHAVEN" + QByteArray(33, '\x81');
    ASSERT_EQ(container.size(), 43);
    EXPECT_EQ(opened(container).toHex(), container.toHex());
    EXPECT_EQ(log.lines(), QStringList(legacyLine));
}

TEST_F(RecoveryBackupTest, FortyTwoBytesOfAContainerAreRejected)
{
    EXPECT_EQ(messageFor("QUILLHAVEN" + QByteArray(32, '\x81')), legacyMessage);
    EXPECT_EQ(messageFor("QUILLHAVENx"), legacyMessage);
    EXPECT_EQ(log.lines(), QStringList());
}

TEST_F(RecoveryBackupTest, AFileOfOnlyTheContainersMagicIsReturnedUnchanged)
{
    expectUnchanged("QUILLHAVEN");
}

TEST_F(RecoveryBackupTest, OtherBytesAreReturnedUnchanged)
{
    expectUnchanged({});
    expectUnchanged("x");
    expectUnchanged("FOLDER:/home/ann/.local/share/quillhaven/x_original");
    expectUnchanged("recovery" + QByteArray(100, 'x'));
    expectUnchanged(QByteArray(1000, '\0'));
    expectUnchanged(QByteArray(100, '\xff'));
}

TEST_F(RecoveryBackupTest, AFileIsReadFromItsPath)
{
    backupOf("The letter");
    EXPECT_EQ(copyOf(decryptBackupFile(files, backup, password).bytes), "The letter");
    EXPECT_THROW(static_cast<void>(decryptBackupFile(files, home.path(QStringLiteral("missing")), password)),
                 FileError);
    EXPECT_THROW(static_cast<void>(decryptBackupFile(files, home.path(), password)), FileError);
}

TEST_F(RecoveryBackupTest, MetadataPastTheEndOrOfBadUtf8IsNone)
{
    const QByteArray head = "RECOVERY" + QByteArray(32, '\0');
    const auto metadataIn = [](const QByteArray &bytes) { return recovery_backup::metadata(bytesOf(bytes)); };
    EXPECT_EQ(metadataIn(head + littleEndian(3) + "a:b"), QStringLiteral("a:b"));
    EXPECT_EQ(metadataIn(head + littleEndian(4) + "a:b"), std::nullopt);
    EXPECT_EQ(metadataIn(head + littleEndian(0xFFFFFFFF) + "a:b"), std::nullopt);
    EXPECT_EQ(metadataIn(head + littleEndian(2) + "\xc3\x28"), std::nullopt);
    EXPECT_EQ(metadataIn(head + littleEndian(1) + "\xc3\xa4"), std::nullopt) << "truncated within a character";
    EXPECT_EQ(metadataIn(head + littleEndian(0) + "x"), QString());
    EXPECT_EQ(metadataIn(head + littleEndian(6) +
                         "\xef\xbb\xbf"
                         "a:b"),
              QStringLiteral("\uFEFFa:b"));
}

} // namespace
} // namespace quillhaven::test
