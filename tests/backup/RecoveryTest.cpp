// SPDX-License-Identifier: GPL-3.0-or-later

#include "backup/CloudFolder.h"
#include "catalogue/CatalogueJson.h"
#include "credentials/KeychainError.h"
#include "formats/RecoveryBackup.h"
#include "formats/SecuredContainer.h"
#include "platform/UserDefaults.h"
#include "support/CallHooks.h"
#include "support/EngineHarness.h"

#include <QDir>
#include <QFile>

#include <sys/stat.h>

using namespace quillhaven;
using namespace quillhaven::test;

namespace {

const QString headerLine =
    QStringLiteral("⚠️ Backup file doesn't have RECOVERY header, trying to find in protected items");

QString foundLine(const QString &metadata)
{
    return QStringLiteral("🔍 Found metadata: ") + metadata;
}
QString usingLine(const QString &name)
{
    return QStringLiteral("✅ Using original filename from metadata: ") + name;
}
QString catalogueLine(const QString &name)
{
    return QStringLiteral("✅ Found original filename from protected items: ") + name;
}
QString unknownLine(const QString &id)
{
    return QStringLiteral("⚠️ Could not find original filename for backup: ") + id;
}
QString recoveredLine(const QString &name)
{
    return QStringLiteral("✅ Successfully decrypted and recovered: ") + name;
}
QString rawLine(const QString &name)
{
    return QStringLiteral("⚠️ Decryption failed for ") + name + QStringLiteral(", copying raw backup file");
}

class Recovery : public ::testing::Test
{
protected:
    Recovery()
    {
        services.credentials.entries.insert(QStringLiteral("master_password"), "Master12");
        QDir().mkpath(folder);
        services.panels.answer = [this](const OpenPanelRequest &) { return folder; };
    }

    QString inFolder(const QString &name) const { return folder + QLatin1Char('/') + name; }
    QStringList inFolder() const
    {
        return QDir(folder).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot, QDir::Name);
    }
    /// Writes a backup with this metadata.
    void writeBackup(const QString &fileId, const QString &metadata, const QByteArray &plaintext = "the bytes",
                     const QString &password = QStringLiteral("Master12"))
    {
        ProtectedItem item;
        item.id = metadata.section(QLatin1Char(':'), 0, 0);
        item.originalName = metadata.section(QLatin1Char(':'), 1);
        QDir().mkpath(cloud.backups());
        const QString source = services.home.write(QStringLiteral("tmp/plain"), plaintext);
        createRecoveryBackup(services.fileManager, services.random, services.home.directories(), source,
                             cloud.backup(fileId), password, item);
    }
    /// Stores a record with this id and name in the catalogue.
    void writeRecord(const QString &itemId, const QString &name)
    {
        ProtectedItem item;
        item.id = itemId;
        item.originalName = name;
        item.originalPath = services.home.write(QStringLiteral("Desktop/") + name);
        services.defaults.standard().setData(settings::protectedItems.key, encodeProtectedItems({item}));
    }
    /// Recovers with a new engine, and keeps only the log of the recovery.
    QStringList recover(const QString &password = QStringLiteral("Master12"))
    {
        engine.emplace(services, files);
        log.clear();
        return runTask(engine->manager.recoverFromiCloud(password));
    }
    QuillhavenError::Case errorOfRecovery(QString *text, const QString &password = QStringLiteral("Master12"))
    {
        return engineErrorOf([&] { recover(password); }, text);
    }
    /// Expects that a backup of these bytes under `id` is recovered unchanged as `name`.
    void expectRawCopy(const QByteArray &bytes, const QString &name, const QStringList &lines)
    {
        cloud.writeBackup(id, bytes);
        EXPECT_EQ(recover(), QStringList(inFolder(name)));
        EXPECT_EQ(TemporaryHome::read(inFolder(name)).toHex(), bytes.toHex());
        EXPECT_EQ(log.lines(), lines + QStringList(rawLine(name)));
        EXPECT_EQ(inFolder(), QStringList(name));
    }

    TestPlatform services;
    const CloudFolder cloud{services};
    const QString folder = services.home.path(QStringLiteral("Recovered"));
    const QString id = QStringLiteral("3F2504E0-4F89-41D3-9A0C-0305E82C3301");
    SeamHooks hooks;
    HookedFileManager files{services.fileManager, hooks};
    LogCapture log;
    std::optional<EngineHarness> engine;
};

} // namespace

TEST_F(Recovery, BackupsOfAnotherMachineAreRecoveredAsPlainFiles)
{
    {
        EngineHarness first(services);
        first.masterPasswordEntry = QStringLiteral("Master12");
        cloud.make();
        cloud.setEnabled(true);
        first.protect(services.home.write(QStringLiteral("Desktop/a.txt"), "a"));
        first.protect(services.home.write(QStringLiteral("Desktop/b.txt"), "b"));
    }
    services.defaults.standard().removeObject(settings::protectedItems.key);
    const QStringList before = cloud.backupNames();
    QStringList paths = recover();
    paths.sort();
    EXPECT_EQ(paths, QStringList({inFolder(QStringLiteral("a.txt")), inFolder(QStringLiteral("b.txt"))}));
    EXPECT_EQ(TemporaryHome::read(paths.at(0)), "a");
    EXPECT_EQ(TemporaryHome::read(paths.at(1)), "b");
    EXPECT_EQ(cloud.backupNames(), before);
    EXPECT_EQ(engine->count(), 0) << "the catalogue is unchanged";
    EXPECT_EQ(engine->masterPrompts, 0) << "the entered password is the only check";
    EXPECT_FALSE(engine->manager.isProcessing());
}

TEST_F(Recovery, NameComesFromTheMetadata)
{
    writeBackup(id, QStringLiteral("abc:report.pdf"));
    EXPECT_EQ(recover(), QStringList(inFolder(QStringLiteral("report.pdf"))));
    EXPECT_EQ(TemporaryHome::read(inFolder(QStringLiteral("report.pdf"))), "the bytes");
    const QStringList lines{foundLine(QStringLiteral("abc:report.pdf")), usingLine(QStringLiteral("report.pdf")),
                            recoveredLine(QStringLiteral("report.pdf"))};
    EXPECT_EQ(log.lines(), lines);
}

TEST_F(Recovery, FolderIsChosenInAModalPanel)
{
    writeBackup(id, QStringLiteral("abc:report.pdf"));
    recover();
    ASSERT_EQ(services.panels.requests.size(), 1);
    const OpenPanelRequest &request = services.panels.requests.first();
    EXPECT_FALSE(request.canChooseFiles);
    EXPECT_TRUE(request.canChooseDirectories);
    EXPECT_TRUE(request.canCreateDirectories);
    EXPECT_FALSE(request.allowsMultipleSelection);
    EXPECT_EQ(request.title, QStringLiteral("Choose Recovery Location"));
    EXPECT_EQ(request.message, QStringLiteral("Select a folder where your recovered files will be saved"));
    EXPECT_EQ(request.prompt, QStringLiteral("Recover Files"));
}

TEST_F(Recovery, MissingContainerIsReportedFirst)
{
    services.credentials.entries.clear();
    QString text;
    EXPECT_EQ(errorOfRecovery(&text, QStringLiteral("wrong")), QuillhavenError::iCloudNotAvailable);
    EXPECT_EQ(text, QStringLiteral("iCloud is not available. Please sign in to iCloud and enable iCloud Drive."));
}

TEST_F(Recovery, MissingFolderIsReportedAndNotCreated)
{
    cloud.make();
    EXPECT_THROW(recover(), FileError);
    EXPECT_FALSE(TemporaryHome::exists(cloud.backups()));
}

TEST_F(Recovery, MissingBackupsAreReportedBeforeThePasswordIsChecked)
{
    QDir().mkpath(cloud.backups());
    QString text;
    EXPECT_EQ(errorOfRecovery(&text, QStringLiteral("wrong")), QuillhavenError::itemNotFound);
    EXPECT_EQ(text, QStringLiteral("The selected file or folder could not be found."));
}

TEST_F(Recovery, OtherExtensionsAreIgnored)
{
    QDir().mkpath(cloud.backups());
    for (const char *name : {"a.backup.tmp", "backup", ".backup", "a.BACKUP", "abackup", "notes.txt"}) {
        services.home.write(QDir(services.home.path()).relativeFilePath(cloud.backups()) + QLatin1Char('/') +
                            QString::fromLatin1(name));
    }
    QString text;
    EXPECT_EQ(errorOfRecovery(&text), QuillhavenError::itemNotFound);
    writeBackup(id, QStringLiteral("abc:report.pdf"));
    EXPECT_EQ(recover(), QStringList(inFolder(QStringLiteral("report.pdf"))));
}

TEST_F(Recovery, WrongMasterPasswordIsRejectedBeforeThePanel)
{
    writeBackup(id, QStringLiteral("abc:report.pdf"));
    for (const char *wrong : {"Master13", "master12", "Master12 ", "Master1", ""}) {
        QString text;
        EXPECT_EQ(errorOfRecovery(&text, QString::fromLatin1(wrong)), QuillhavenError::accessDenied) << wrong;
        EXPECT_EQ(text, QStringLiteral("Invalid master password"));
    }
    EXPECT_TRUE(services.panels.requests.isEmpty());
    EXPECT_EQ(inFolder(), QStringList());
}

TEST_F(Recovery, MissingMasterPasswordThrowsTheErrorOfTheStore)
{
    writeBackup(id, QStringLiteral("abc:report.pdf"));
    services.credentials.entries.clear();
    try {
        recover();
        ADD_FAILURE() << "no error";
    } catch (const KeychainError &error) {
        EXPECT_EQ(error.errorDescription(), QStringLiteral("Failed to retrieve from keychain: -25300"));
    }
    EXPECT_TRUE(services.panels.requests.isEmpty());
}

TEST_F(Recovery, CancelledPanelIsACancelledAuthentication)
{
    writeBackup(id, QStringLiteral("abc:report.pdf"));
    services.panels.answer = [](const OpenPanelRequest &) { return std::nullopt; };
    QString text;
    EXPECT_EQ(errorOfRecovery(&text), QuillhavenError::authenticationCancelled);
    EXPECT_EQ(text, QStringLiteral("Authentication cancelled by user."));
    EXPECT_EQ(log.lines(), QStringList());
}

TEST_F(Recovery, FolderIsRecoveredAsItsArchiveUnderItsName)
{
    const QString source = services.home.path(QStringLiteral("Desktop/Letters"));
    services.home.write(QStringLiteral("Desktop/Letters/a.txt"), "The letter");
    QDir().mkpath(cloud.backups());
    ProtectedItem item;
    item.id = id;
    item.originalName = QStringLiteral("Letters");
    createRecoveryBackup(services.fileManager, services.random, services.home.directories(), source, cloud.backup(id),
                         QStringLiteral("Master12"), item);
    EXPECT_EQ(recover(), QStringList(inFolder(QStringLiteral("Letters"))));
    const QByteArray archive = TemporaryHome::read(inFolder(QStringLiteral("Letters")));
    EXPECT_TRUE(archive.startsWith("Letters/"));
    EXPECT_EQ(archive.mid(257, 5), "ustar");
}

TEST_F(Recovery, ExistingFileWithTheNameIsReplaced)
{
    writeBackup(id, QStringLiteral("abc:report.pdf"));
    services.home.write(QStringLiteral("Recovered/report.pdf"), QByteArray(5000, 'x'));
    recover();
    EXPECT_EQ(TemporaryHome::read(inFolder(QStringLiteral("report.pdf"))), "the bytes");
}

TEST_F(Recovery, LinkWithTheNameIsReplacedAndWhatItLeadsToIsKept)
{
    QDir().mkpath(services.home.path(QStringLiteral("elsewhere/folder")));
    const QString outside = services.home.write(QStringLiteral("elsewhere/mine.txt"), "mine");
    const QStringList targets{outside, services.home.path(QStringLiteral("elsewhere/none.txt")),
                              services.home.path(QStringLiteral("elsewhere/folder"))};
    const QString output = inFolder(QStringLiteral("report.pdf"));
    writeBackup(id, QStringLiteral("abc:report.pdf"));
    for (const QString &target : targets) {
        QFile::remove(output);
        ASSERT_TRUE(QFile::link(target, output));
        EXPECT_EQ(recover(), QStringList(output));
        EXPECT_FALSE(QFileInfo(output).isSymLink()) << target.toStdString();
        EXPECT_EQ(TemporaryHome::read(output), "the bytes");
    }
    EXPECT_EQ(TemporaryHome::read(outside), "mine");
    EXPECT_FALSE(TemporaryHome::exists(targets.at(1)));
    EXPECT_TRUE(TemporaryHome::exists(targets.at(2)));
}

TEST_F(Recovery, RawCopyDoesNotGoThroughALink)
{
    writeBackup(id, QStringLiteral("abc:report.pdf"), "the bytes", QStringLiteral("Earlier1"));
    const QString outside = services.home.path(QStringLiteral("outside.txt"));
    ASSERT_TRUE(QFile::link(outside, inFolder(QStringLiteral("report.pdf"))));
    EXPECT_THROW(recover(), FileError);
    EXPECT_FALSE(TemporaryHome::exists(outside));
}

TEST_F(Recovery, TwoBackupsWithOneNameCountTwiceAndTheLaterReplacesTheEarlier)
{
    writeBackup(QStringLiteral("first"), QStringLiteral("first:report.pdf"), "first");
    writeBackup(QStringLiteral("second"), QStringLiteral("second:report.pdf"), "second");
    const QString last = services.fileManager.contentsOfDirectory(cloud.backups()).last();
    const QString path = inFolder(QStringLiteral("report.pdf"));
    EXPECT_EQ(recover(), QStringList({path, path}));
    EXPECT_EQ(TemporaryHome::read(path), last.chopped(7).toUtf8());
}

TEST_F(Recovery, NameIsTruncatedAtAColon)
{
    writeBackup(id, QStringLiteral("abc:minutes 10:30:00.txt"));
    EXPECT_EQ(recover(), QStringList(inFolder(QStringLiteral("minutes 10"))));
    EXPECT_TRUE(log.contains(foundLine(QStringLiteral("abc:minutes 10:30:00.txt"))));
    EXPECT_TRUE(log.contains(usingLine(QStringLiteral("minutes 10"))));
}

TEST_F(Recovery, NameIsUsedEvenIfTheIdIsEmpty)
{
    writeBackup(id, QStringLiteral(":report.pdf"));
    EXPECT_EQ(recover(), QStringList(inFolder(QStringLiteral("report.pdf"))));
}

TEST_F(Recovery, MetadataWithoutAColonGivesNoName)
{
    QByteArray bytes = "RECOVERY" + QByteArray(32, '\0') + QByteArray("\x03\0\0\0", 4) + "abc" + QByteArray(60, 'x');
    expectRawCopy(bytes, id, {foundLine(QStringLiteral("abc")), unknownLine(id)});
}

TEST_F(Recovery, NameThatIsTheIdIsLookedUpInTheCatalogue)
{
    writeRecord(id, QStringLiteral("mine.txt"));
    writeBackup(id, QStringLiteral("abc:") + id);
    EXPECT_EQ(recover(), QStringList(inFolder(QStringLiteral("mine.txt"))));
    const QStringList lines{foundLine(QStringLiteral("abc:") + id), usingLine(id),
                            catalogueLine(QStringLiteral("mine.txt")), recoveredLine(QStringLiteral("mine.txt"))};
    EXPECT_EQ(log.lines(), lines);
}

TEST_F(Recovery, InvalidFileNamesAreReplacedByTheId)
{
    const QStringList names{QStringLiteral(".."),
                            QStringLiteral("."),
                            QStringLiteral("a/b"),
                            QString(),
                            QStringLiteral("../../.profile"),
                            QStringLiteral("/etc/passwd"),
                            QStringLiteral("a") + QChar(u'\0') + QLatin1Char('b')};
    for (const QString &name : names) {
        writeBackup(id, QStringLiteral("abc:") + name);
        EXPECT_EQ(recover(), QStringList(inFolder(id)));
        EXPECT_EQ(inFolder(), QStringList(id));
        EXPECT_EQ(TemporaryHome::read(inFolder(id)), "the bytes");
        const QStringList lines{foundLine(QStringLiteral("abc:") + name),
                                QStringLiteral("⚠️ The metadata does not contain a valid filename: ") + name,
                                unknownLine(id), recoveredLine(id)};
        EXPECT_EQ(log.lines(), lines);
        ASSERT_TRUE(QFile::remove(inFolder(id)));
    }
}

TEST_F(Recovery, InvalidFileNameIsLookedUpInTheCatalogue)
{
    writeRecord(id, QStringLiteral("mine.txt"));
    writeBackup(id, QStringLiteral("abc:.."));
    EXPECT_EQ(recover(), QStringList(inFolder(QStringLiteral("mine.txt"))));
    EXPECT_TRUE(log.contains(catalogueLine(QStringLiteral("mine.txt"))));
}

TEST_F(Recovery, ContainerWithAnIdInTheCatalogueIsRecoveredUnderItsNameStillEncrypted)
{
    writeRecord(id, QStringLiteral("mine.txt"));
    QDir().mkpath(cloud.backups());
    createEncryptedContainer(services.fileManager, services.random, services.home.directories(),
                             services.home.write(QStringLiteral("plain"), "the bytes"), cloud.backup(id),
                             QStringLiteral("Secret123"), id);
    EXPECT_EQ(recover(), QStringList(inFolder(QStringLiteral("mine.txt"))));
    EXPECT_EQ(TemporaryHome::read(inFolder(QStringLiteral("mine.txt"))).toHex(),
              TemporaryHome::read(cloud.backup(id)).toHex());
    const QStringList lines{
        headerLine, catalogueLine(QStringLiteral("mine.txt")),
        QStringLiteral("⚠️ Legacy backup format detected - cannot decrypt without original password"),
        recoveredLine(QStringLiteral("mine.txt"))};
    EXPECT_EQ(log.lines(), lines);
}

TEST_F(Recovery, FileWithoutHeaderOrRecordIsRecoveredUnderItsId)
{
    cloud.writeBackup(id, QByteArray(100, 'x'));
    EXPECT_EQ(recover(), QStringList(inFolder(id)));
    EXPECT_EQ(TemporaryHome::read(inFolder(id)), QByteArray(100, 'x'));
    EXPECT_EQ(log.lines(), QStringList({headerLine, unknownLine(id), recoveredLine(id)}));
}

TEST_F(Recovery, IdOfTwentyCharactersIsNotLookedUpButOneOfTwentyOneIs)
{
    const QString twenty(20, QLatin1Char('i'));
    writeRecord(twenty, QStringLiteral("mine.txt"));
    cloud.writeBackup(twenty, QByteArray(100, 'x'));
    EXPECT_EQ(recover(), QStringList(inFolder(twenty)));
    EXPECT_EQ(log.lines(), QStringList({headerLine, recoveredLine(twenty)}));

    ASSERT_TRUE(QFile::remove(cloud.backup(twenty)));
    const QString twentyOne(21, QLatin1Char('i'));
    writeRecord(twentyOne, QStringLiteral("mine.txt"));
    cloud.writeBackup(twentyOne, QByteArray(100, 'x'));
    EXPECT_EQ(recover(), QStringList(inFolder(QStringLiteral("mine.txt"))));
}

TEST_F(Recovery, LengthOfAnIdIsCountedInCharacters)
{
    const QString twenty = QStringLiteral("😀").repeated(10) + QStringLiteral("e\u0301").repeated(10);
    writeRecord(twenty, QStringLiteral("mine.txt"));
    cloud.writeBackup(twenty, QByteArray(100, 'x'));
    EXPECT_EQ(recover(), QStringList(inFolder(twenty)));
}

TEST_F(Recovery, FileOfZerosIsRecoveredUnchanged)
{
    cloud.writeBackup(id, QByteArray(100'000, '\0'));
    EXPECT_EQ(recover(), QStringList(inFolder(id)));
    EXPECT_EQ(TemporaryHome::read(inFolder(id)), QByteArray(100'000, '\0'));
    EXPECT_EQ(log.lines(), QStringList({headerLine, unknownLine(id), recoveredLine(id)}));
}

TEST_F(Recovery, EmptyFileIsRecoveredWithoutALineAboutItsHeader)
{
    cloud.writeBackup(id, {});
    EXPECT_EQ(recover(), QStringList(inFolder(id)));
    EXPECT_EQ(TemporaryHome::read(inFolder(id)), "");
    EXPECT_EQ(log.lines(), QStringList({unknownLine(id), recoveredLine(id)}));
}

TEST_F(Recovery, FortyFourBytesAreRecoveredWithoutALineAboutTheirHeader)
{
    expectRawCopy("RECOVERY" + QByteArray(36, '\0'), id, {unknownLine(id)});
}

TEST_F(Recovery, FortyFiveBytesAreCheckedForAHeaderAndForMetadata)
{
    expectRawCopy("RECOVERY" + QByteArray(32, 's') + QByteArray("\x01\0\0\0", 4) + "x", id,
                  {foundLine(QStringLiteral("x")), unknownLine(id)});
    ASSERT_TRUE(QFile::remove(inFolder(id)));
    cloud.writeBackup(id, QByteArray(45, 'x'));
    EXPECT_EQ(recover(), QStringList(inFolder(id)));
    EXPECT_EQ(log.lines(), QStringList({headerLine, unknownLine(id), recoveredLine(id)}));
}

TEST_F(Recovery, MetadataPastTheEndGivesNoNameAndARawCopy)
{
    expectRawCopy("RECOVERY" + QByteArray(32, 's') + QByteArray(4, '\xff') + "abc:a.txt" + QByteArray(60, 'x'), id,
                  {unknownLine(id)});
}

TEST_F(Recovery, MetadataThatIsNotTextGivesNoName)
{
    expectRawCopy("RECOVERY" + QByteArray(32, 's') + QByteArray("\x05\0\0\0", 4) + "\xff\xfe:ab" + QByteArray(60, 'x'),
                  id, {unknownLine(id)});
}

TEST_F(Recovery, TruncatedBackupIsCopiedUnchangedUnderItsName)
{
    writeBackup(id, QStringLiteral("abc:report.pdf"), QByteArray(1000, 'x'));
    expectRawCopy(TemporaryHome::read(cloud.backup(id)).left(500), QStringLiteral("report.pdf"),
                  {foundLine(QStringLiteral("abc:report.pdf")), usingLine(QStringLiteral("report.pdf"))});
}

TEST_F(Recovery, BackupWithAnEarlierMasterPasswordIsCopiedUnchangedAndTheRunContinues)
{
    writeBackup(QStringLiteral("old"), QStringLiteral("old:old.txt"), "old", QStringLiteral("Earlier1"));
    writeBackup(QStringLiteral("new"), QStringLiteral("new:new.txt"), "new");
    QStringList inOrder;
    for (const QString &name : services.fileManager.contentsOfDirectory(cloud.backups())) {
        inOrder.append(inFolder(name.section(QLatin1Char('.'), 0, 0) + QStringLiteral(".txt")));
    }
    EXPECT_EQ(recover(), inOrder);
    EXPECT_EQ(TemporaryHome::read(inFolder(QStringLiteral("new.txt"))), "new");
    EXPECT_EQ(TemporaryHome::read(inFolder(QStringLiteral("old.txt"))),
              TemporaryHome::read(cloud.backup(QStringLiteral("old"))));
    EXPECT_TRUE(log.contains(rawLine(QStringLiteral("old.txt"))));
}

TEST_F(Recovery, UnreadableBackupIsReportedAndCopiedUnderTheNameInTheCatalogue)
{
    writeRecord(id, QStringLiteral("mine.txt"));
    writeBackup(id, QStringLiteral("abc:report.pdf"));
    const QString path = cloud.backup(id);
    hooks.before = failing("readFile", EIO, {path});
    EXPECT_EQ(recover(), QStringList(inFolder(QStringLiteral("mine.txt"))));
    const QStringList lines{QStringLiteral("⚠️ Could not read backup file metadata: ") +
                                FileError::fromErrno(EIO, FileError::Action::Read, path).errorDescription(),
                            catalogueLine(QStringLiteral("mine.txt")), rawLine(QStringLiteral("mine.txt"))};
    EXPECT_EQ(log.lines(), lines);
    EXPECT_EQ(TemporaryHome::read(inFolder(QStringLiteral("mine.txt"))), TemporaryHome::read(path));
}

TEST_F(Recovery, FolderNamedLikeABackupIsCopiedUnchanged)
{
    QDir().mkpath(cloud.backup(QStringLiteral("x")));
    services.home.write(QDir(services.home.path()).relativeFilePath(cloud.backup(QStringLiteral("x"))) +
                            QStringLiteral("/inner.txt"),
                        "inner");
    EXPECT_EQ(recover(), QStringList(inFolder(QStringLiteral("x"))));
    EXPECT_EQ(TemporaryHome::read(inFolder(QStringLiteral("x/inner.txt"))), "inner");
    EXPECT_EQ(log.lines().size(), 2);
    EXPECT_TRUE(log.lines().first().startsWith(QStringLiteral("⚠️ Could not read backup file metadata: ")));
    EXPECT_EQ(log.lines().last(), rawLine(QStringLiteral("x")));
}

TEST_F(Recovery, PipeNamedLikeABackupIsCopiedWithoutBeingOpened)
{
    QDir().mkpath(cloud.backups());
    ASSERT_EQ(::mkfifo(QFile::encodeName(cloud.backup(QStringLiteral("x"))).constData(), 0600), 0);
    EXPECT_EQ(recover(), QStringList(inFolder(QStringLiteral("x"))));
    EXPECT_EQ(log.lines().last(), rawLine(QStringLiteral("x")));
    struct stat status{};
    ASSERT_EQ(::lstat(QFile::encodeName(inFolder(QStringLiteral("x"))).constData(), &status), 0);
    EXPECT_TRUE(S_ISFIFO(status.st_mode));
}

TEST_F(Recovery, RawCopyOverAnExistingFileStopsTheRecoveryAndKeepsTheWrittenFiles)
{
    writeBackup(QStringLiteral("good"), QStringLiteral("good:good.txt"), "good");
    writeBackup(QStringLiteral("bad"), QStringLiteral("bad:taken.txt"), "bad", QStringLiteral("Earlier1"));
    services.home.write(QStringLiteral("Recovered/taken.txt"), "mine");
    const bool isGoodFirst =
        services.fileManager.contentsOfDirectory(cloud.backups()).first().startsWith(QStringLiteral("good"));
    try {
        recover();
        ADD_FAILURE() << "no error";
    } catch (const FileError &error) {
        EXPECT_EQ(error.kind(), FileError::Kind::TargetExists);
    }
    EXPECT_EQ(TemporaryHome::read(inFolder(QStringLiteral("taken.txt"))), "mine");
    EXPECT_EQ(TemporaryHome::exists(inFolder(QStringLiteral("good.txt"))), isGoodFirst);
}

TEST_F(Recovery, TwoRawCopiesWithOneNameStopAtTheSecond)
{
    writeBackup(QStringLiteral("one"), QStringLiteral("one:same.txt"), "one", QStringLiteral("Earlier1"));
    writeBackup(QStringLiteral("two"), QStringLiteral("two:same.txt"), "two", QStringLiteral("Earlier1"));
    const QString first = services.fileManager.contentsOfDirectory(cloud.backups()).first();
    EXPECT_THROW(recover(), FileError);
    EXPECT_EQ(TemporaryHome::read(inFolder(QStringLiteral("same.txt"))),
              TemporaryHome::read(cloud.backups() + QLatin1Char('/') + first));
}

TEST_F(Recovery, FolderAtThePlaceOfAFileStopsTheRecoveryAndIsKept)
{
    writeBackup(id, QStringLiteral("abc:report.pdf"));
    services.home.write(QStringLiteral("Recovered/report.pdf/mine.txt"), "mine");
    EXPECT_THROW(recover(), FileError);
    EXPECT_TRUE(log.contains(rawLine(QStringLiteral("report.pdf"))));
    EXPECT_EQ(TemporaryHome::read(inFolder(QStringLiteral("report.pdf/mine.txt"))), "mine");
}

TEST_F(Recovery, LongAndUnusualNamesAreRecovered)
{
    const QStringList names{QString(255, QLatin1Char('n')), QStringLiteral(" blank "),    QStringLiteral("-rf"),
                            QStringLiteral("line\nbreak"),  QStringLiteral("😀 é ü"),     QStringLiteral(".hidden"),
                            QStringLiteral("..."),          QStringLiteral("back\\slash")};
    for (const QString &name : names) {
        writeBackup(id, QStringLiteral("abc:") + name);
        EXPECT_EQ(recover(), QStringList(inFolder(name)));
        EXPECT_EQ(TemporaryHome::read(inFolder(name)), "the bytes");
    }
}

TEST_F(Recovery, NameTooLongForAFileStopsTheRecovery)
{
    writeBackup(id, QStringLiteral("abc:") + QString(256, QLatin1Char('n')));
    EXPECT_THROW(recover(), FileError);
    EXPECT_EQ(inFolder(), QStringList());
}
