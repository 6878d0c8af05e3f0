// SPDX-License-Identifier: GPL-3.0-or-later

#include "ShredFixture.h"

#include <algorithm>
#include <new>

using namespace quillhaven;
using namespace quillhaven::test;

namespace {

class BulkShred : public ShredTest
{
protected:
    /// The case of the error, and its text.
    QuillhavenError::Case failedCase(const QStringList &paths)
    {
        try {
            bulkShred(paths);
        } catch (const QuillhavenError &error) {
            text = error.errorDescription();
            return error.errorCase();
        }
        ADD_FAILURE() << "no error";
        return QuillhavenError::itemNotFound;
    }
    QStringList writeFiles(const QStringList &names)
    {
        QStringList paths;
        for (const QString &name : names) {
            paths.append(write(name, "secret"));
        }
        return paths;
    }

    const QString absentLine = QStringLiteral("absent: The selected file or folder could not be found.");
    QString text;
};

} // namespace

TEST_F(BulkShred, EmptyListReportsSuccessAndClosesTheSession)
{
    setMasterPassword(QStringLiteral("Master12"));
    bulkShred({});
    EXPECT_EQ(lines(), QStringLiteral("Successfully shredded 0 items @ 1.0000"));
    EXPECT_EQ(flags, QList<bool>({true}));
    EXPECT_EQ(prompts, 1);
    EXPECT_FALSE(masterPassword.isAuthenticated());
    EXPECT_FALSE(masterPassword.hasAuthenticationTimer());
    spinOnce();
    EXPECT_FALSE(shredder.isShredding());
}

TEST_F(BulkShred, MissingFirstOfTwoIsRecordedAndTheSecondIsShredded)
{
    const QString path = write(QStringLiteral("a.txt"), {});
    EXPECT_EQ(failedCase({desktop(QStringLiteral("absent")), path}), QuillhavenError::bulkOperationFailed);
    EXPECT_EQ(text, QStringLiteral("Some items failed to shred:\n") + absentLine);
    EXPECT_EQ(lines(),
              QStringLiteral("Shredding absent... @ 0.0000\n"
                             "Shredding failed: The selected file or folder could not be found. (1/2) @ 0.0000\n"
                             "Shredding a.txt... @ 0.5000\n"
                             "Analyzing file: a.txt (1/2) @ 0.5500\n"
                             "Pass 1/3: a.txt (1/2) @ 0.5500\n"
                             "Pass 2/3: a.txt (1/2) @ 0.6833\n"
                             "Pass 3/3: a.txt (1/2) @ 0.8167\n"
                             "Removing file metadata: a.txt (1/2) @ 0.9750\n"
                             "File shredded successfully: a.txt (1/2) @ 1.0000\n"
                             "Shredding completed successfully (1/2) @ 1.0000\n"
                             "Completed 1 of 2 items. Errors:\n") +
                  absentLine + QStringLiteral(" @ 1.0000"));
    EXPECT_EQ(remaining(), QStringList());
}

TEST_F(BulkShred, ThirdOfFourCountsThreeAndRunsFromHalfToThreeQuarters)
{
    bulkShred(writeFiles({QStringLiteral("a"), QStringLiteral("b"), QStringLiteral("c"), QStringLiteral("d")}));
    EXPECT_EQ(report.filter(QRegularExpression(QStringLiteral("\\(3/4\\)|Shredding c\\."))).join(QLatin1Char('\n')),
              QStringLiteral("Shredding c... @ 0.5000\n"
                             "Analyzing file: c (3/4) @ 0.5250\n"
                             "Pass 1/3: c (3/4) @ 0.5250\n"
                             "Pass 1/3: c (3/4) @ 0.5917\n"
                             "Pass 2/3: c (3/4) @ 0.5917\n"
                             "Pass 2/3: c (3/4) @ 0.6583\n"
                             "Pass 3/3: c (3/4) @ 0.6583\n"
                             "Pass 3/3: c (3/4) @ 0.7250\n"
                             "Removing file metadata: c (3/4) @ 0.7375\n"
                             "File shredded successfully: c (3/4) @ 0.7500\n"
                             "Shredding completed successfully (3/4) @ 0.7500"));
    EXPECT_EQ(report.last(), QStringLiteral("Successfully shredded 4 items @ 1.0000"));
    EXPECT_EQ(remaining(), QStringList());
}

TEST_F(BulkShred, CounterIsBelowThePositionAfterAFailure)
{
    QStringList paths = writeFiles({QStringLiteral("a"), QStringLiteral("c")});
    paths.insert(1, desktop(QStringLiteral("absent")));
    EXPECT_EQ(failedCase(paths), QuillhavenError::bulkOperationFailed);
    EXPECT_TRUE(report.contains(QStringLiteral("Analyzing file: a (1/3) @ 0.0333"))) << qUtf8Printable(lines());
    EXPECT_TRUE(report.contains(QStringLiteral("Analyzing file: c (2/3) @ 0.7000"))) << qUtf8Printable(lines());
}

TEST_F(BulkShred, IfAllItemsFailNoneIsCountedAndEachIsListed)
{
    setMasterPassword(QStringLiteral("Master12"));
    EXPECT_EQ(failedCase({desktop(QStringLiteral("absent")), desktop(QStringLiteral("gone"))}),
              QuillhavenError::bulkOperationFailed);
    const QString both = absentLine + QStringLiteral("\ngone: The selected file or folder could not be found.");
    EXPECT_EQ(text, QStringLiteral("Some items failed to shred:\n") + both);
    EXPECT_EQ(report.last(), QStringLiteral("Completed 0 of 2 items. Errors:\n") + both + QStringLiteral(" @ 1.0000"));
    EXPECT_EQ(prompts, 1);
    EXPECT_TRUE(masterPassword.isAuthenticated()) << "the session is unchanged";
    spinOnce();
    EXPECT_FALSE(shredder.isShredding());
}

TEST_F(BulkShred, ItemThatRunsOutOfMemoryIsReportedLikeAnyOtherFailure)
{
    const QStringList paths = writeFiles({QStringLiteral("a"), QStringLiteral("b")});
    files.before = [&](const QString &call, const QString &path) {
        if (call == QStringLiteral("open") && path == paths.at(0)) {
            throw std::bad_alloc();
        }
    };
    EXPECT_EQ(failedCase(paths), QuillhavenError::bulkOperationFailed);
    EXPECT_EQ(text, QStringLiteral("Some items failed to shred:\na: ") + QString::fromUtf8(std::bad_alloc().what()));
    EXPECT_EQ(remaining(), QStringList({QStringLiteral("a")}));
}

TEST_F(BulkShred, FilesAndFoldersCanBeMixed)
{
    write(QStringLiteral("folder/inner"), "secret");
    bulkShred({desktop(QStringLiteral("folder")), write(QStringLiteral("a"), "secret")});
    EXPECT_TRUE(report.contains(QStringLiteral("Found 1 files to shred (1/2) @ 0.0500"))) << qUtf8Printable(lines());
    EXPECT_EQ(report.last(), QStringLiteral("Successfully shredded 2 items @ 1.0000"));
    EXPECT_EQ(remaining(), QStringList());
}

TEST_F(BulkShred, CancelledPromptForTheRunTouchesNothing)
{
    setMasterPassword(QStringLiteral("Master12"));
    masterPasswordEntry.reset();
    const QStringList paths = writeFiles({QStringLiteral("a"), QStringLiteral("b")});
    bulkShred(paths);
    EXPECT_EQ(prompts, 1);
    EXPECT_EQ(report, QStringList());
    EXPECT_EQ(read(paths.at(0)), "secret");
    EXPECT_FALSE(shredder.isShredding());
}

TEST_F(BulkShred, AsksOnceForTheRunAndOnceForEachItemAfterTheFirst)
{
    setMasterPassword(QStringLiteral("Master12"));
    bulkShred(writeFiles({QStringLiteral("a"), QStringLiteral("b"), QStringLiteral("c")}));
    EXPECT_EQ(prompts, 3);
    EXPECT_FALSE(masterPassword.isAuthenticated());
    EXPECT_EQ(remaining(), QStringList());
}

TEST_F(BulkShred, ItemWhosePromptIsCancelledIsKeptAndCountsAsDone)
{
    setMasterPassword(QStringLiteral("Master12"));
    onReport = [this](const QString &status) {
        if (status == QStringLiteral("Shredding b...")) {
            masterPasswordEntry.reset();
        } else if (status == QStringLiteral("Shredding c...")) {
            masterPasswordEntry = QStringLiteral("Master12");
        }
    };
    const QStringList paths = writeFiles({QStringLiteral("a"), QStringLiteral("b"), QStringLiteral("c")});
    bulkShred(paths);
    EXPECT_EQ(read(paths.at(1)), "secret");
    EXPECT_EQ(remaining(), QStringList({QStringLiteral("b")}));
    EXPECT_TRUE(report.contains(QStringLiteral("Analyzing file: c (3/3) @ 0.7000"))) << qUtf8Printable(lines());
    EXPECT_EQ(report.filter(QStringLiteral("(2/3)")), QStringList());
    EXPECT_EQ(report.last(), QStringLiteral("Successfully shredded 3 items @ 1.0000"));
}

TEST_F(BulkShred, FlagIsSetAgainForEachItemAndClearedAtTheEnd)
{
    bulkShred(writeFiles({QStringLiteral("a"), QStringLiteral("b")}));
    for (qsizetype i = 0; i < report.size(); ++i) {
        if (report.at(i).contains(QLatin1Char('('))) {
            EXPECT_TRUE(flags.at(i)) << qUtf8Printable(report.at(i));
        }
        if (report.at(i).startsWith(QStringLiteral("Pass"))) {
            EXPECT_TRUE(report.at(i).startsWith(operations.at(i))) << qUtf8Printable(report.at(i));
            EXPECT_FALSE(operations.at(i).isEmpty());
        }
    }
    spinOnce();
    EXPECT_FALSE(shredder.isShredding());
    EXPECT_EQ(shredder.currentOperation(), QString());
}

TEST_F(BulkShred, EndOfAnEarlierRunDoesNotClearTheFlagOfThisOne)
{
    shred(write(QStringLiteral("a"), {})); // the job that clears the flag has not run yet
    QList<bool> shown;
    QObject::connect(&shredder, &QuillhavenShredder::changed, &shredder, [&] { shown.append(shredder.isShredding()); });
    bulkShred({write(QStringLiteral("b"), {})});
    ASSERT_GE(shown.size(), 3);
    EXPECT_EQ(shown.first(3), QList<bool>({false, true, true}))
        << "the end of the earlier run, this run, its first item";
}

TEST_F(BulkShred, TwoConcurrentRunsReportSeparatelyAndBothEnd)
{
    QStringList folderStatuses;
    QList<double> fileProgress;
    for (int i = 0; i < 30; ++i) {
        write(QStringLiteral("folder/inner%1").arg(i), "secret");
    }
    const QString file = write(QStringLiteral("file"), QByteArray(30 * 65536, 'x'));
    const RunningTask<void> first(shredder.bulkShredItems(
        {desktop(QStringLiteral("folder"))}, [&](const QString &status, double) { folderStatuses.append(status); }));
    const RunningTask<void> second(
        shredder.bulkShredItems({file}, [&](const QString &, double progress) { fileProgress.append(progress); }));
    first.wait();
    second.wait();
    const QRegularExpression pass(QStringLiteral("^Pass [123]/3: inner"));
    EXPECT_EQ(folderStatuses.filter(pass).size(), 3 * 30);
    // Two reports start each item and each pass, each chunk is one, and four end the runs.
    EXPECT_EQ(fileProgress.size(), 2 + 3 + 3 * 30 + 4);
    EXPECT_TRUE(std::ranges::is_sorted(fileProgress));
    EXPECT_EQ(remaining(), QStringList());
}
