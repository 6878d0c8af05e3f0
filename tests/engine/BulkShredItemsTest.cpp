// SPDX-License-Identifier: GPL-3.0-or-later

#include "ShredItemsFixture.h"

using namespace quillhaven;
using namespace quillhaven::test;

namespace {

class BulkShredItems : public ShredItemsTest
{
protected:
    QuillhavenError::Case failedCase(const QList<ProtectedItem> &items)
    {
        return engineErrorOf([&] { bulkShred(items); }, &text);
    }
    QString text;
};

} // namespace

TEST_F(BulkShredItems, EmptyListReportsSuccess)
{
    becomeIdle();
    bulkShred({});
    EXPECT_EQ(lines(), QStringLiteral("Successfully shredded 0 items @ 1.0000"));
    EXPECT_EQ(flags, QList<bool>({true}));
    spinOnce();
    EXPECT_FALSE(engine().manager.isProcessing());
}

TEST_F(BulkShredItems, EveryStatusOfAnItemHasItsPositionAndItsShareOfTheProgress)
{
    const ProtectedItem first = unlockedFile(QStringLiteral("a.txt"), {});
    const ProtectedItem second = unlockedFile(QStringLiteral("b.txt"), {});
    bulkShred({first, second});
    EXPECT_EQ(lines(), QStringLiteral("Shredding a.txt... (1/2) @ 0.0000\n"
                                      "Shredding original file: a.txt (1/2) @ 0.1500\n"
                                      "Analyzing file: a.txt (1/2) @ 0.1700\n"
                                      "Pass 1/3: a.txt (1/2) @ 0.1700\n"
                                      "Pass 2/3: a.txt (1/2) @ 0.2233\n"
                                      "Pass 3/3: a.txt (1/2) @ 0.2767\n"
                                      "Removing file metadata: a.txt (1/2) @ 0.3400\n"
                                      "File shredded successfully: a.txt (1/2) @ 0.3500\n"
                                      "Shredding completed successfully (1/2) @ 0.3500\n"
                                      "Shredding container file... (1/2) @ 0.4500\n"
                                      "Item securely shredded: a.txt (1/2) @ 0.5000\n"
                                      "Shredding b.txt... (2/2) @ 0.5000\n"
                                      "Shredding original file: b.txt (2/2) @ 0.6500\n"
                                      "Analyzing file: b.txt (2/2) @ 0.6700\n"
                                      "Pass 1/3: b.txt (2/2) @ 0.6700\n"
                                      "Pass 2/3: b.txt (2/2) @ 0.7233\n"
                                      "Pass 3/3: b.txt (2/2) @ 0.7767\n"
                                      "Removing file metadata: b.txt (2/2) @ 0.8400\n"
                                      "File shredded successfully: b.txt (2/2) @ 0.8500\n"
                                      "Shredding completed successfully (2/2) @ 0.8500\n"
                                      "Shredding container file... (2/2) @ 0.9500\n"
                                      "Item securely shredded: b.txt (2/2) @ 1.0000\n"
                                      "Successfully shredded 2 items @ 1.0000"));
    expectGone(first);
    expectGone(second);
}

TEST_F(BulkShredItems, BackupOfTheSecondOfTwoIsReportedAtEightyFivePercent)
{
    const ProtectedItem first = unlockedFile(QStringLiteral("a.txt"));
    const ProtectedItem second = lockedFile(QStringLiteral("b.txt"));
    engine().itemPassword.reset();
    bulkShred({first, second});
    EXPECT_TRUE(report.contains(QStringLiteral("Unlocking item before shredding... (2/2) @ 0.5500")))
        << qUtf8Printable(lines());
    EXPECT_TRUE(report.contains(QStringLiteral("Shredding backup data... (2/2) @ 0.8500"))) << qUtf8Printable(lines());
    expectGone(first);
    expectGone(second);
}

TEST_F(BulkShredItems, FailedItemIsRecordedAndTheNextKeepsItsOwnPosition)
{
    const ProtectedItem first = lockedFile(QStringLiteral("a.txt"));
    const ProtectedItem second = unlockedFile(QStringLiteral("b.txt"));
    ASSERT_TRUE(QFile::remove(first.originalBackupPath));
    EXPECT_EQ(failedCase({first, second}), QuillhavenError::bulkOperationFailed);
    const QString line = QStringLiteral("a.txt: The selected file or folder could not be found.");
    EXPECT_EQ(text, QStringLiteral("Some items failed to shred:\n") + line);
    EXPECT_EQ(report.last(), QStringLiteral("Completed 1 of 2 items. Errors:\n") + line + QStringLiteral(" @ 1.0000"));
    EXPECT_TRUE(report.contains(
        QStringLiteral("Shredding failed: The selected file or folder could not be found. (1/2) @ 0.0000")));
    EXPECT_TRUE(report.contains(QStringLiteral("Shredding original file: b.txt (2/2) @ 0.6500")))
        << qUtf8Printable(lines());
    EXPECT_EQ(engine().count(), 1);
    EXPECT_EQ(engine().item().id, first.id);
    spinOnce();
    EXPECT_FALSE(engine().manager.isProcessing());
}

TEST_F(BulkShredItems, IfAllItemsFailNoneIsCountedAndEachIsListed)
{
    setMasterPassword();
    const ProtectedItem first = unlockedFile(QStringLiteral("a.txt"));
    const ProtectedItem second = unlockedFile(QStringLiteral("b.txt"));
    hooks.before = [](const char *call, const QString &path) {
        if (qstrcmp(call, "openForOverwriting") == 0) {
            throw FileError::fromErrno(EACCES, FileError::Action::Overwrite, path);
        }
    };
    EXPECT_EQ(failedCase({first, second}), QuillhavenError::bulkOperationFailed);
    EXPECT_EQ(text, QStringLiteral("Some items failed to shred:\n"
                                   "a.txt: You don't have permission to overwrite \"a.txt\".\n"
                                   "b.txt: You don't have permission to overwrite \"b.txt\"."));
    EXPECT_TRUE(report.last().startsWith(QStringLiteral("Completed 0 of 2 items. Errors:\na.txt: ")));
    EXPECT_TRUE(engine().masterPassword.isAuthenticated()) << "the session is unchanged";
    EXPECT_EQ(engine().count(), 2);
}

TEST_F(BulkShredItems, ItemThatRunsOutOfMemoryIsReportedLikeAnyOtherFailure)
{
    const ProtectedItem first = unlockedFile(QStringLiteral("a.txt"));
    const ProtectedItem second = unlockedFile(QStringLiteral("b.txt"));
    hooks.before = withoutMemory("openForOverwriting", first.originalPath);
    EXPECT_EQ(failedCase({first, second}), QuillhavenError::bulkOperationFailed);
    EXPECT_EQ(text,
              QStringLiteral("Some items failed to shred:\na.txt: ") + QString::fromUtf8(std::bad_alloc().what()));
    expectGone(second);
    spinOnce();
    EXPECT_FALSE(engine().manager.isProcessing());
}

TEST_F(BulkShredItems, EngineIsBusyDuringEachItem)
{
    const ProtectedItem first = unlockedFile(QStringLiteral("a.txt"));
    const ProtectedItem second = unlockedFile(QStringLiteral("b.txt"));
    becomeIdle();
    bulkShred({first, second});
    for (qsizetype i = 0; i < report.size(); ++i) {
        if (!report.at(i).contains(QStringLiteral("..."))) { // the flag is reset between two items
            EXPECT_TRUE(flags.at(i) || i == report.size() - 1) << qUtf8Printable(report.at(i));
        }
    }
    spinOnce();
    EXPECT_FALSE(engine().manager.isProcessing());
}

TEST_F(BulkShredItems, PathsAreShreddedAndTheCatalogueIsUnchanged)
{
    const ProtectedItem item = unlockedFile();
    const QString plain = services.home.write(QStringLiteral("Desktop/plain"), {});
    becomeIdle();
    shredPaths({plain});
    EXPECT_FALSE(flags.contains(false)) << "the engine is busy";
    EXPECT_EQ(report.first(), QStringLiteral("Shredding plain... @ 0.0000"));
    EXPECT_TRUE(report.contains(QStringLiteral("Pass 2/3: plain (1/1) @ 0.3667")));
    EXPECT_EQ(report.last(), QStringLiteral("Successfully shredded 1 items @ 1.0000"));
    EXPECT_FALSE(exists(plain));
    EXPECT_EQ(engine().count(), 1);
    EXPECT_EQ(read(item.originalPath), "secret");
    EXPECT_TRUE(services.credentials.entries.contains(item.id));
    spinOnce();
    EXPECT_FALSE(engine().manager.isProcessing());
}

TEST_F(BulkShredItems, PathsThatFailAreReportedTogether)
{
    const QString plain = services.home.write(QStringLiteral("Desktop/plain"), "mine");
    QString failure;
    EXPECT_EQ(engineErrorOf([&] { shredPaths({services.home.path(QStringLiteral("absent")), plain}); }, &failure),
              QuillhavenError::bulkOperationFailed);
    EXPECT_EQ(failure, QStringLiteral("Some items failed to shred:\n"
                                      "absent: The selected file or folder could not be found."));
    EXPECT_FALSE(exists(plain));
}
