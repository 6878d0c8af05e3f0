// SPDX-License-Identifier: GPL-3.0-or-later

#include "ShredItemsFixture.h"

using namespace quillhaven;
using namespace quillhaven::test;

namespace {

using ShredItems = ShredItemsTest;

const QString notFound = QStringLiteral("The selected file or folder could not be found.");

} // namespace

TEST_F(ShredItems, UnlockedFileIsDestroyedWithContainerCredentialAndRecordWithoutAnUnlock)
{
    const ProtectedItem item = unlockedFile();
    shred(item);
    EXPECT_EQ(lines(), QStringLiteral("Shredding original file: a.txt @ 0.3000\n"
                                      "Analyzing file: a.txt @ 0.3400\n"
                                      "Pass 1/3: a.txt @ 0.3400\n"
                                      "Pass 1/3: a.txt @ 0.4467\n"
                                      "Pass 2/3: a.txt @ 0.4467\n"
                                      "Pass 2/3: a.txt @ 0.5533\n"
                                      "Pass 3/3: a.txt @ 0.5533\n"
                                      "Pass 3/3: a.txt @ 0.6600\n"
                                      "Removing file metadata: a.txt @ 0.6800\n"
                                      "File shredded successfully: a.txt @ 0.7000\n"
                                      "Shredding completed successfully @ 0.7000\n"
                                      "Shredding container file... @ 0.9000\n"
                                      "Item securely shredded: a.txt @ 1.0000"));
    EXPECT_EQ(engine().passwordPrompts, 0);
    EXPECT_EQ(services.panels.placeRequests.size(), 0);
    expectGone(item);
    EXPECT_TRUE(services.credentials.entries.isEmpty());
}

TEST_F(ShredItems, LockedFileIsUnlockedFirstAndThenDestroyedAtItsPlace)
{
    const ProtectedItem item = lockedFile();
    QByteArray bytesAtPlace;
    onReport = [&](const QString &status) {
        if (status.startsWith(QStringLiteral("Shredding original"))) {
            bytesAtPlace = read(item.originalPath);
        }
    };
    shred(item);
    EXPECT_EQ(stages(), QStringLiteral("Unlocking item before shredding... @ 0.1000\n"
                                       "Item unlocked, proceeding with shredding... @ 0.2000\n"
                                       "Shredding original file: a.txt @ 0.3000\n"
                                       "Shredding completed successfully @ 0.7000\n"
                                       "Shredding container file... @ 0.9000\n"
                                       "Item securely shredded: a.txt @ 1.0000"));
    EXPECT_EQ(bytesAtPlace, "secret");
    EXPECT_EQ(engine().passwordPrompts, 1);
    EXPECT_EQ(services.panels.placeRequests.size(), 1);
    expectGone(item);
}

TEST_F(ShredItems, ContainerAndContentAreOverwrittenAndNotMerelyRemoved)
{
    const ProtectedItem item = unlockedFile();
    QStringList overwritten;
    hooks.after = [&](const char *call, const QString &path) {
        if (qstrcmp(call, "writeThrough") == 0) {
            overwritten.append(path);
        }
    };
    shred(item);
    EXPECT_EQ(overwritten.count(item.originalPath), 3);
    EXPECT_EQ(overwritten.count(item.containerPath), 3);
}

TEST_F(ShredItems, ItemWithoutFilesLosesCredentialAndRecordWithoutAShredStep)
{
    const ProtectedItem item = unlockedFile();
    ASSERT_TRUE(QFile::remove(item.originalPath));
    ASSERT_TRUE(QFile::remove(item.containerPath));
    shred(item);
    EXPECT_EQ(lines(), QStringLiteral("Item securely shredded: a.txt @ 1.0000"));
    expectGone(item);
}

TEST_F(ShredItems, LockedItemWithoutDataFailsAtItsUnlock)
{
    const ProtectedItem item = lockedFile();
    ASSERT_TRUE(QFile::remove(item.originalBackupPath));
    EXPECT_EQ(failureOf([&] { shred(item); }), notFound);
    EXPECT_EQ(lines(), QStringLiteral("Unlocking item before shredding... @ 0.1000\nShredding failed: ") + notFound +
                           QStringLiteral(" @ 0.0000"));
    EXPECT_TRUE(exists(item.containerPath));
    EXPECT_EQ(engine().count(), 1);
}

TEST_F(ShredItems, WrongPasswordDestroysNothing)
{
    const ProtectedItem item = lockedFile();
    engine().itemPassword = QStringLiteral("Wrong1234");
    EXPECT_EQ(failureOf([&] { shred(item); }), QStringLiteral("Authentication failed. Please try again."));
    EXPECT_EQ(report.last(), QStringLiteral("Shredding failed: Authentication failed. Please try again. @ 0.0000"));
    EXPECT_EQ(read(item.originalBackupPath), "secret");
    EXPECT_EQ(read(item.originalPath), placeholderText.toUtf8());
    EXPECT_TRUE(exists(item.containerPath));
    EXPECT_TRUE(services.credentials.entries.contains(item.id));
    EXPECT_EQ(engine().count(), 1);
    spinOnce();
    EXPECT_FALSE(engine().manager.isProcessing());
}

TEST_F(ShredItems, CancelledPasswordDialogDoesNotPreventTheShred)
{
    const ProtectedItem item = lockedFile();
    engine().itemPassword.reset();
    shred(item);
    EXPECT_EQ(stages(), QStringLiteral("Unlocking item before shredding... @ 0.1000\n"
                                       "Item unlocked, proceeding with shredding... @ 0.2000\n"
                                       "Shredding original file: a.txt @ 0.3000\n"
                                       "Shredding completed successfully @ 0.7000\n"
                                       "Shredding backup data... @ 0.7000\n"
                                       "Shredding completed successfully @ 0.9000\n"
                                       "Shredding container file... @ 0.9000\n"
                                       "Item securely shredded: a.txt @ 1.0000"));
    const QString name = QFileInfo(item.originalBackupPath).fileName();
    EXPECT_TRUE(report.contains(QStringLiteral("Analyzing file: %1 @ 0.7200").arg(name))) << qUtf8Printable(lines());
    EXPECT_TRUE(report.contains(QStringLiteral("Removing file metadata: %1 @ 0.8900").arg(name)));
    expectGone(item);
}

TEST_F(ShredItems, DeclinedFilePanelDoesNotPreventTheShred)
{
    const ProtectedItem item = lockedFile();
    services.panels.confirm = [](const PlaceRequest &) { return std::nullopt; };
    shred(item);
    EXPECT_TRUE(report.contains(QStringLiteral("Shredding backup data... @ 0.7000"))) << qUtf8Printable(lines());
    expectGone(item);
}

TEST_F(ShredItems, FolderIsShreddedFileByFileWithItsMarkerAndWithoutTheCredentialStore)
{
    const ProtectedItem item = unlockedFolder();
    ASSERT_TRUE(item.isFolder);
    services.credentials.failWith = -25308;
    shred(item);
    EXPECT_EQ(lines(), QStringLiteral("Shredding original file: folder @ 0.3000\n"
                                      "Analyzing directory: folder @ 0.3200\n"
                                      "Found 1 files to shred @ 0.3400\n"
                                      "Pass 1/3: inner @ 0.3400\n"
                                      "Pass 2/3: inner @ 0.3400\n"
                                      "Pass 3/3: inner @ 0.3400\n"
                                      "Removing directory structure @ 0.6800\n"
                                      "Directory shredded successfully: folder @ 0.7000\n"
                                      "Shredding completed successfully @ 0.7000\n"
                                      "Shredding container file... @ 0.9000\n"
                                      "Item securely shredded: folder @ 1.0000"));
    expectGone(item);
}

TEST_F(ShredItems, LockedFolderIsUnlockedWithoutAPassword)
{
    const ProtectedItem item = lockedFolder();
    shred(item);
    EXPECT_EQ(engine().passwordPrompts, 0);
    EXPECT_TRUE(report.contains(QStringLiteral("Found 1 files to shred @ 0.3400"))) << qUtf8Printable(lines());
    expectGone(item);
}

TEST_F(ShredItems, LockedFolderThatIsNotUnlockedIsDestroyedInStorage)
{
    const ProtectedItem item = lockedFolder();
    services.panels.confirm = [](const PlaceRequest &) { return std::nullopt; };
    shred(item);
    const QString name = QFileInfo(item.originalBackupPath).fileName();
    EXPECT_TRUE(report.contains(QStringLiteral("Analyzing directory: %1 @ 0.7100").arg(name)))
        << qUtf8Printable(lines());
    expectGone(item);
}

TEST_F(ShredItems, ThePassedRecordDecidesAndNotTheCatalogue)
{
    ProtectedItem item = lockedFile();
    item.isMounted = true;
    item.originalName = QStringLiteral("old name");
    shred(item);
    EXPECT_EQ(report.first(), QStringLiteral("Shredding original file: old name @ 0.3000"));
    EXPECT_EQ(engine().passwordPrompts, 0);
    expectGone(item);
}

TEST_F(ShredItems, LinkAtThePlaceIsRejectedAndItsTargetIsKept)
{
    const ProtectedItem item = unlockedFile();
    const QString outside = services.home.write(QStringLiteral("Documents/outside"), "kept");
    ASSERT_TRUE(QFile::remove(item.originalPath));
    ASSERT_TRUE(QFile::link(outside, item.originalPath));
    EXPECT_TRUE(failureOf([&] { shred(item); }).contains(QStringLiteral("because it is only a link")));
    EXPECT_EQ(read(outside), "kept");
    EXPECT_TRUE(exists(item.containerPath));
    EXPECT_EQ(engine().count(), 1);
}

TEST_F(ShredItems, FailureAtTheOriginalKeepsTheRestAndAnotherShredCompletesIt)
{
    const ProtectedItem item = unlockedFile();
    hooks.before = failing("openForOverwriting", EACCES, {item.originalPath});
    const QString text = QStringLiteral("You don't have permission to overwrite \"a.txt\".");
    EXPECT_EQ(failureOf([&] { shred(item); }), text);
    EXPECT_EQ(stages(), QStringLiteral("Shredding original file: a.txt @ 0.3000\nShredding failed: ") + text +
                            QStringLiteral(" @ 0.3000\nShredding failed: ") + text + QStringLiteral(" @ 0.0000"));
    EXPECT_EQ(read(item.originalPath), "secret");
    EXPECT_TRUE(exists(item.containerPath));
    EXPECT_TRUE(services.credentials.entries.contains(item.id));
    EXPECT_EQ(engine().count(), 1);
    EXPECT_EQ(EngineHarness(services).count(), 1);

    hooks.before = {};
    shred(item);
    expectGone(item);
}

TEST_F(ShredItems, FailureAtTheBackupLeavesTheOriginalDestroyedAndTheItemListed)
{
    const ProtectedItem item = lockedFile();
    engine().itemPassword.reset();
    hooks.before = failing("openForOverwriting", EACCES, {item.originalBackupPath});
    EXPECT_NE(failureOf([&] { shred(item); }), QStringLiteral("no error"));
    EXPECT_TRUE(report.at(report.size() - 2).endsWith(QStringLiteral("@ 0.7000"))) << qUtf8Printable(lines());
    EXPECT_TRUE(report.last().endsWith(QStringLiteral("@ 0.0000")));
    EXPECT_FALSE(exists(item.originalPath));
    EXPECT_EQ(read(item.originalBackupPath), "secret");
    EXPECT_TRUE(exists(item.containerPath));
    EXPECT_EQ(engine().count(), 1);

    hooks.before = {};
    report.clear();
    shred(item);
    EXPECT_FALSE(lines().contains(QStringLiteral("Shredding original"))) << "only what is left is shredded";
    expectGone(item);
}

TEST_F(ShredItems, FailureAtTheContainerIsReportedOnceAndKeepsCredentialAndRecord)
{
    const ProtectedItem item = unlockedFile();
    hooks.before = failing("openForOverwriting", EACCES, {item.containerPath});
    EXPECT_NE(failureOf([&] { shred(item); }), QStringLiteral("no error"));
    EXPECT_EQ(report.filter(QStringLiteral("Shredding failed")).size(), 1);
    EXPECT_EQ(report.at(report.size() - 2), QStringLiteral("Shredding container file... @ 0.9000"));
    EXPECT_FALSE(exists(item.originalPath));
    EXPECT_TRUE(exists(item.containerPath));
    EXPECT_TRUE(services.credentials.entries.contains(item.id));
    EXPECT_EQ(engine().count(), 1);

    hooks.before = {};
    report.clear();
    shred(item);
    EXPECT_EQ(lines(), QStringLiteral("Shredding container file... @ 0.9000\nItem securely shredded: a.txt @ 1.0000"));
    expectGone(item);
}

TEST_F(ShredItems, CredentialThatCannotBeRemovedKeepsTheItemListedWithoutItsData)
{
    const ProtectedItem item = unlockedFile();
    onReport = [this](const QString &status) {
        if (status == QStringLiteral("Shredding container file...")) {
            services.credentials.failWith = -25308;
        }
    };
    EXPECT_EQ(failureOf([&] { shred(item); }), QStringLiteral("Failed to delete from keychain: -25308"));
    EXPECT_EQ(report.mid(report.size() - 2).join(QLatin1Char('\n')),
              QStringLiteral("Shredding container file... @ 0.9000\n"
                             "Shredding failed: Failed to delete from keychain: -25308 @ 0.0000"));
    EXPECT_FALSE(exists(item.originalPath));
    EXPECT_FALSE(exists(item.containerPath));
    EXPECT_EQ(engine().count(), 1);

    services.credentials.failWith = credentialSuccess;
    onReport = {};
    report.clear();
    shred(item);
    EXPECT_EQ(lines(), QStringLiteral("Item securely shredded: a.txt @ 1.0000"));
    expectGone(item);
}

TEST_F(ShredItems, ItemIsOffTheListAndTheDiskAtTheLastReport)
{
    const ProtectedItem item = unlockedFile();
    int looks = 0;
    onReport = [&](const QString &status) {
        if (status == QStringLiteral("Item securely shredded: a.txt")) {
            ++looks;
            EXPECT_EQ(engine().count(), 0);
            EXPECT_TRUE(engine().storedItems().isEmpty());
        }
    };
    shred(item);
    EXPECT_EQ(looks, 1);
}

TEST_F(ShredItems, EngineIsBusyOnlyDuringTheShred)
{
    const ProtectedItem item = unlockedFile();
    becomeIdle();
    shred(item);
    EXPECT_FALSE(flags.contains(false));
    spinOnce();
    EXPECT_FALSE(engine().manager.isProcessing());
}
