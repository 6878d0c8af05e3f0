// SPDX-License-Identifier: GPL-3.0-or-later

#include "formats/SecuredContainer.h"
#include "cipher/CipherError.h"
#include "cipher/SealedBox.h"
#include "formats/FormatsPage.h"
#include "formats/StandAloneReader.h"
#include "platform/linux/files/LinuxFileManager.h"
#include "support/Bytes.h"
#include "support/TemporaryHome.h"
#include "support/TestRandom.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFile>

#include <gtest/gtest.h>

namespace quillhaven::test {
namespace {

/// A value of this process's memory statistics in kB, such as "VmHWM", the peak resident size.
qint64 memory(const QByteArray &name)
{
    QFile status(QStringLiteral("/proc/self/status"));
    if (!status.open(QIODevice::ReadOnly)) {
        throw std::runtime_error("/proc/self/status cannot be read");
    }
    for (const QByteArray &line : status.readAll().split('\n')) {
        if (line.startsWith(name + ':')) {
            return line.mid(name.size() + 1).simplified().split(' ').first().toLongLong();
        }
    }
    throw std::runtime_error("/proc/self/status does not contain it");
}

/// Files written by the program are read with Python's packages.
class SecuredContainerTest : public ::testing::Test
{
protected:
    void write(const QString &source, const QString &withPassword)
    {
        createEncryptedContainer(files, random, home.directories(), source, container, withPassword,
                                 QStringLiteral("not used"));
    }
    /// Decrypts the container into a new file `opened`, and returns the reader's exit status.
    int open(const QString &withPassword) const
    {
        QFile::remove(opened);
        return runReader({container, opened}, withPassword.toUtf8()).exitCode;
    }
    void expectRoundTrip(const QByteArray &plaintext, const QString &withPassword)
    {
        write(home.write(QStringLiteral("plain"), plaintext), withPassword);
        EXPECT_EQ(QFileInfo(container).size(), plaintext.size() + 70);
        EXPECT_EQ(open(withPassword), 0);
        EXPECT_EQ(TemporaryHome::read(opened).toHex(), plaintext.toHex());
    }
    QByteArray randomBytes(qsizetype count)
    {
        OpenSslRandomSource source;
        return generateRandomData(source, count);
    }

    TemporaryHome home;
    LinuxFileManager files;
    OpenSslRandomSource ownRandom;
    RandomSource &random = ownRandom;
    const QString container = home.path(QStringLiteral("Documents/letter.txt.secured"));
    const QString opened = home.path(QStringLiteral("opened"));
    const QString password = QStringLiteral("Secret123");
};

TEST_F(SecuredContainerTest, AnEmptyFileGives70BytesThatOpenToNothing)
{
    expectRoundTrip({}, password);
    EXPECT_EQ(QFileInfo(container).size(), 70);
}

TEST_F(SecuredContainerTest, OneByteOpens)
{
    expectRoundTrip("x", password);
}

TEST_F(SecuredContainerTest, SixtyFourKibibytesOpen)
{
    expectRoundTrip(randomBytes(64 * 1024), password);
}

TEST_F(SecuredContainerTest, ANonAsciiPasswordOpens)
{
    expectRoundTrip("The letter", QStringLiteral("Geheimnis \u00e4\u00f6\u00fc \u5bc6\u7801 \U0001F511"));
}

TEST_F(SecuredContainerTest, TheEmptyPasswordOfATouchIDFileOpensWithTheSaltInTheFile)
{
    expectRoundTrip("The letter", QStringLiteral(""));
}

TEST_F(SecuredContainerTest, AHundredMebibytesNeedLittleMoreMemoryThanTheirSize)
{
    constexpr qint64 size = 100 * 1024 * 1024;
    const QByteArray block = randomBytes(1024 * 1024);
    QCryptographicHash hash(QCryptographicHash::Sha256);
    QFile file(home.path(QStringLiteral("large")));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    for (qint64 written = 0; written < size; written += block.size()) {
        ASSERT_EQ(file.write(block), block.size());
        hash.addData(block);
    }
    file.close();

    QFile clearRefs(QStringLiteral("/proc/self/clear_refs"));
    ASSERT_TRUE(clearRefs.open(QIODevice::WriteOnly));
    ASSERT_EQ(clearRefs.write("5"), 1); // resets the peak
    clearRefs.close();
    const qint64 before = memory("VmRSS");
    write(file.fileName(), password);
    const qint64 growth = (memory("VmHWM") - before) * 1024;
    EXPECT_GE(growth, size / 2);     // otherwise the measurement is wrong
#if !__has_feature(thread_sanitizer) // its shadow memory is included
    EXPECT_LE(growth, size + size / 5);
#endif

    EXPECT_EQ(QFileInfo(container).size(), size + 70);
    EXPECT_EQ(open(password), 0);
    QFile result(opened);
    ASSERT_TRUE(result.open(QIODevice::ReadOnly));
    QCryptographicHash openedHash(QCryptographicHash::Sha256);
    EXPECT_TRUE(openedHash.addData(&result));
    EXPECT_EQ(openedHash.result().toHex(), hash.result().toHex());
}

TEST_F(SecuredContainerTest, AnotherPasswordDoesNotOpen)
{
    write(home.write(QStringLiteral("plain")), password);
    EXPECT_EQ(open(QStringLiteral("Secret124")), readerNotOpened);
    EXPECT_EQ(open({}), readerNotOpened);
}

TEST_F(SecuredContainerTest, ADifferentUnicodeFormOfThePasswordDoesNotOpen)
{
    const QString composed = QStringLiteral("Caf\u00e91234");
    const QString decomposed = composed.normalized(QString::NormalizationForm_D);
    const QString plain = home.write(QStringLiteral("plain"));
    write(plain, composed);
    EXPECT_EQ(open(composed), 0);
    EXPECT_EQ(open(decomposed), readerNotOpened);
    write(plain, decomposed);
    EXPECT_EQ(open(composed), readerNotOpened);
    EXPECT_EQ(open(decomposed), 0);
}

TEST_F(SecuredContainerTest, TheSameContentTwiceDiffersInSaltNonceCiphertextAndTag)
{
    const QString plain = home.write(QStringLiteral("plain"), QByteArray(1000, 'a'));
    write(plain, password);
    const QByteArray first = TemporaryHome::read(container);
    write(plain, password);
    const QByteArray second = TemporaryHome::read(container);
    EXPECT_EQ(first.left(10), second.left(10));
    EXPECT_NE(first.mid(10, 32), second.mid(10, 32));
    EXPECT_NE(first.mid(42, 12), second.mid(42, 12));
    EXPECT_NE(first.mid(54, 1000), second.mid(54, 1000));
    EXPECT_NE(first.mid(1054), second.mid(1054));
}

TEST_F(SecuredContainerTest, TheProgramsCipherOpensFromByte42ToTheEnd)
{
    write(home.write(QStringLiteral("plain"), "The letter"), password);
    QByteArray bytes = TemporaryHome::read(container);
    EXPECT_TRUE(bytes.startsWith("QUILLHAVEN"));
    const SymmetricKey key = deriveRecoveryKey(password, bytesOf(bytes).subspan(10, 32));
    EXPECT_EQ(hexOf(sealed_box::openInPlace(key, writable(bytes).subspan(42))), QByteArray("The letter").toHex());
}

TEST_F(SecuredContainerTest, IfTheGeneratorFailsForTheSaltItIsZeroWithoutAnError)
{
    FailingRandom failing;
    EXPECT_EQ(generateRandomData(failing, 32), QByteArray(32, '\0'));
    FailingOnceRandom failingForTheSalt;
    const QString plain = home.write(QStringLiteral("plain"), "The letter");
    createEncryptedContainer(files, failingForTheSalt, home.directories(), plain, container, password, {});
    EXPECT_EQ(TemporaryHome::read(container).mid(10, 32), QByteArray(32, '\0'));
    EXPECT_NE(TemporaryHome::read(container).mid(42, 12), QByteArray(12, '\0'));
    EXPECT_EQ(open(password), 0);
    EXPECT_EQ(TemporaryHome::read(opened), "The letter");
}

TEST_F(SecuredContainerTest, NothingIsSealedIfTheGeneratorFailsForTheNonce)
{
    FailingRandom failing;
    const QString plain = home.write(QStringLiteral("plain"), "The letter");
    EXPECT_THROW(createEncryptedContainer(files, failing, home.directories(), plain, container, password, {}),
                 CipherError);
    EXPECT_FALSE(TemporaryHome::exists(container));
}

TEST_F(SecuredContainerTest, RandomDataHasTheRequestedLength)
{
    EXPECT_EQ(generateRandomData(random, 0), QByteArray());
    const QByteArray data = generateRandomData(random, 32);
    EXPECT_EQ(data.size(), 32);
    EXPECT_NE(data, QByteArray(32, '\0'));
    EXPECT_NE(data, generateRandomData(random, 32));
}

TEST_F(SecuredContainerTest, AnExistingLongerContainerIsOverwritten)
{
    home.write(QStringLiteral("Documents/letter.txt.secured"), QByteArray(5000, 'x'));
    expectRoundTrip("The letter", password);
}

TEST_F(SecuredContainerTest, ASourceThatCannotBeReadThrowsAndKeepsTheFormerContainer)
{
    home.write(QStringLiteral("Documents/letter.txt.secured"), "former");
    EXPECT_THROW(write(home.path(QStringLiteral("missing")), password), FileError);
    EXPECT_EQ(TemporaryHome::read(container), "former");
}

TEST_F(SecuredContainerTest, AContainerThatCannotBeWrittenThrows)
{
    const QString plain = home.write(QStringLiteral("plain"));
    EXPECT_THROW(createEncryptedContainer(files, random, home.directories(), plain,
                                          home.path(QStringLiteral("no/such/folder/x.secured")), password, {}),
                 FileError);
}

TEST_F(SecuredContainerTest, AFolderIsSealedAsItsArchive)
{
    home.write(QStringLiteral("Letters/a.txt"), "The letter");
    write(home.path(QStringLiteral("Letters")), password);
    EXPECT_EQ(open(password), 0);
    const QByteArray bytes = TemporaryHome::read(opened);
    EXPECT_EQ(bytes.left(10), QByteArray("Letters/\0\0", 10));
    EXPECT_TRUE(bytes.contains("The letter"));
    EXPECT_EQ(QDir(home.directories().temporary).entryList(QDir::AllEntries | QDir::NoDotAndDotDot), QStringList());
}

TEST_F(SecuredContainerTest, AFoldersMarkerIsThePathOfItsDataWithoutALineEnd)
{
    EXPECT_EQ(secured_container::folderMarker(QStringLiteral("/home/ann/.local/share/quillhaven/\u00e4_original")),
              "FOLDER:/home/ann/.local/share/quillhaven/\xc3\xa4_original");
}

TEST_F(SecuredContainerTest, TheExampleInTheDocumentationMatches)
{
    CountingRandom counting;
    const QString plain = home.write(QStringLiteral("plain"), "Dear Ann,\n");
    createEncryptedContainer(files, counting, home.directories(), plain, container, password, {});
    EXPECT_EQ(exampleInPage(QStringLiteral(FORMATS_PAGE), QStringLiteral("The container")).toHex(),
              TemporaryHome::read(container).toHex());
    EXPECT_EQ(open(password), 0);
    EXPECT_EQ(TemporaryHome::read(opened), "Dear Ann,\n");
}

} // namespace
} // namespace quillhaven::test
