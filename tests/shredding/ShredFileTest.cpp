// SPDX-License-Identifier: GPL-3.0-or-later

#include "ShredFixture.h"
#include "support/EventLoopChecker.h"

#include <sched.h>
#include <unistd.h>

using namespace quillhaven;
using namespace quillhaven::test;

namespace {

class ShredFile : public ShredTest
{
protected:
    /// Records the contents of the file at the end of each pass.
    void lookAfterEachPass()
    {
        files.after = [this](const QString &call, const QString &path) {
            if (call == QStringLiteral("close")) {
                afterPass.append(read(path));
            }
        };
    }
    QList<QByteArray> afterPass;
};

} // namespace

TEST_F(ShredFile, ReportsEachStepWithItsProgressInOrder)
{
    shred(write(QStringLiteral("a.txt"), "secret"));
    EXPECT_EQ(lines(), QStringLiteral("Analyzing file: a.txt @ 0.1000\n"
                                      "Pass 1/3: a.txt @ 0.1000\n"
                                      "Pass 1/3: a.txt @ 0.3667\n"
                                      "Pass 2/3: a.txt @ 0.3667\n"
                                      "Pass 2/3: a.txt @ 0.6333\n"
                                      "Pass 3/3: a.txt @ 0.6333\n"
                                      "Pass 3/3: a.txt @ 0.9000\n"
                                      "Removing file metadata: a.txt @ 0.9500\n"
                                      "File shredded successfully: a.txt @ 1.0000\n"
                                      "Shredding completed successfully @ 1.0000"));
    EXPECT_EQ(remaining(), QStringList());
}

TEST_F(ShredFile, EmptyFilePassesThreeTimesWithoutAWriteAndIsDeleted)
{
    shred(write(QStringLiteral("a.txt"), {}));
    EXPECT_EQ(lines(), QStringLiteral("Analyzing file: a.txt @ 0.1000\n"
                                      "Pass 1/3: a.txt @ 0.1000\n"
                                      "Pass 2/3: a.txt @ 0.3667\n"
                                      "Pass 3/3: a.txt @ 0.6333\n"
                                      "Removing file metadata: a.txt @ 0.9500\n"
                                      "File shredded successfully: a.txt @ 1.0000\n"
                                      "Shredding completed successfully @ 1.0000"));
    const QString pass = QStringLiteral("open a.txt, seek 0, flush, close, ");
    EXPECT_EQ(files.calls.join(QStringLiteral(", ")),
              pass + pass + pass + QStringLiteral("move a.txt to (UUID), remove (UUID), sync"));
    EXPECT_EQ(remaining(), QStringList());
}

TEST_F(ShredFile, EachChunkIsFlushedBeforeTheNextAndTheRenamedFileIsDeletedBeforeTheLastFlush)
{
    shred(write(QStringLiteral("a.txt"), QByteArray(2 * 65536 + 10, 'x')));
    const QString pass = QStringLiteral("open a.txt, seek 0, write 65536, write 65536, write 10, flush, close, ");
    EXPECT_EQ(files.calls.join(QStringLiteral(", ")),
              pass + pass + pass + QStringLiteral("move a.txt to (UUID), remove (UUID), sync"));
}

TEST_F(ShredFile, FileOfExactlyOneChunkIsWrittenAtOnce)
{
    shred(write(QStringLiteral("a.txt"), QByteArray(65536, 'x')));
    EXPECT_EQ(files.calls.filter(QStringLiteral("write")), QStringList(3, QStringLiteral("write 65536")));
    EXPECT_EQ(report.filter(QStringLiteral("Pass 1/3")),
              QStringList({QStringLiteral("Pass 1/3: a.txt @ 0.1000"), QStringLiteral("Pass 1/3: a.txt @ 0.3667")}));
}

TEST_F(ShredFile, OneMoreByteNeedsASecondChunkOfOneByte)
{
    shred(write(QStringLiteral("a.txt"), QByteArray(65537, 'x')));
    const QStringList pair{QStringLiteral("write 65536"), QStringLiteral("write 1")};
    EXPECT_EQ(files.calls.filter(QStringLiteral("write")), pair + pair + pair);
    EXPECT_EQ(report.filter(QStringLiteral("Pass 2/3")).join(QLatin1Char('\n')),
              QStringLiteral("Pass 2/3: a.txt @ 0.3667\n"
                             "Pass 2/3: a.txt @ 0.5000\n"
                             "Pass 2/3: a.txt @ 0.6333"));
}

TEST_F(ShredFile, EachPassWritesOneByteValueOverTheWholeFileAndKeepsItsSize)
{
    lookAfterEachPass();
    for (const qsizetype size : {1, 4096, 65536, 65537, 200'000}) {
        afterPass.clear();
        shred(write(QStringLiteral("a.txt"), QByteArray(size, 'x')));
        ASSERT_EQ(afterPass.size(), 3);
        EXPECT_TRUE(afterPass.at(0) == QByteArray(size, '\0')) << size;
        EXPECT_TRUE(afterPass.at(1) == QByteArray(size, '\xFF')) << size;
        EXPECT_TRUE(afterPass.at(2) == QByteArray(size, afterPass.at(2).front())) << size;
    }
}

TEST_F(ShredFile, LastPassDrawsANewByteForEachFile)
{
    lookAfterEachPass();
    for (int i = 0; i < 20; ++i) {
        shred(write(QStringLiteral("a.txt"), "x"));
    }
    QSet<QByteArray> drawn;
    for (qsizetype i = 2; i < afterPass.size(); i += 3) {
        drawn.insert(afterPass.at(i));
    }
    EXPECT_GT(drawn.size(), 1);
}

TEST_F(ShredFile, FileThatAnotherProgramHasOpenIsOverwrittenInPlace)
{
    const QString path = write(QStringLiteral("a.txt"), "secret");
    QFile reader(path);
    ASSERT_TRUE(reader.open(QIODevice::ReadOnly | QIODevice::Unbuffered));
    shred(path);
    const QByteArray left = reader.readAll();
    EXPECT_EQ(left, QByteArray(6, left.front()));
    EXPECT_NE(left, "secret");
}

TEST_F(ShredFile, OtherHardLinkIsKeptWithTheOverwrittenBytes)
{
    const QString path = write(QStringLiteral("a.txt"), "secret");
    ASSERT_EQ(link(bytesOf(path).constData(), bytesOf(desktop(QStringLiteral("twin"))).constData()), 0);
    shred(path);
    EXPECT_EQ(remaining(), QStringList({QStringLiteral("twin")}));
    const QByteArray left = read(desktop(QStringLiteral("twin")));
    EXPECT_EQ(left, QByteArray(6, left.front()));
}

TEST_F(ShredFile, HolesOfASparseFileAreFilled)
{
    const QString path = write(QStringLiteral("a.txt"), "start");
    constexpr qsizetype size = 1'000'000;
    ASSERT_EQ(truncate(bytesOf(path).constData(), size), 0);
    lookAfterEachPass();
    shred(path);
    ASSERT_EQ(afterPass.size(), 3);
    EXPECT_TRUE(afterPass.at(1) == QByteArray(size, '\xFF'));
    EXPECT_EQ(remaining(), QStringList());
}

TEST_F(ShredFile, TheEventLoopRunsDuringEachCallAndNoneRunsOnTheMainThread)
{
    EventLoopChecker loop;
    files.before = [&loop](const QString &call, const QString &) {
        EXPECT_NE(QThread::currentThread(), QCoreApplication::instance()->thread()) << qUtf8Printable(call);
        EXPECT_TRUE(loop.ticksAgain()) << qUtf8Printable(call);
    };
    const RunningTask<void> shredding(shredder.shredItem(write(QStringLiteral("a.txt"), "secret"), recorder()));
    EXPECT_TRUE(shredding.hasSuspended());
    shredding.wait();
    EXPECT_EQ(files.calls.size(), 3 * 5 + 3);
}

TEST_F(ShredFile, DataAppendedMeanwhileIsNotOverwrittenAndRemovedWithTheFile)
{
    const QString path = write(QStringLiteral("a.txt"), "12345");
    files.before = [&](const QString &call, const QString &opened) {
        if (call == QStringLiteral("open") && afterPass.isEmpty()) {
            QFile file(opened);
            ASSERT_TRUE(file.open(QIODevice::Append));
            file.write("more");
        }
    };
    lookAfterEachPass();
    shred(path);
    ASSERT_EQ(afterPass.size(), 3);
    EXPECT_EQ(afterPass.at(0), QByteArray(5, '\0') + "more");
    EXPECT_EQ(afterPass.at(1), QByteArray(5, '\xFF') + "more");
    EXPECT_EQ(remaining(), QStringList());
}

TEST_F(ShredFile, NothingIsLeftInTheFolderUnderTheOldNameOrARandomOne)
{
    write(QStringLiteral("neighbour"), "kept");
    shred(write(QStringLiteral("a.txt"), "secret"));
    EXPECT_EQ(remaining(), QStringList({QStringLiteral("neighbour")}));
    EXPECT_EQ(read(desktop(QStringLiteral("neighbour"))), "kept");
}

TEST_F(ShredFile, CancelledMasterPromptReturnsNormallyAndTouchesNothing)
{
    setMasterPassword(QStringLiteral("Master12"));
    masterPasswordEntry.reset();
    const QString path = write(QStringLiteral("a.txt"), "secret");
    shred(path);
    EXPECT_EQ(prompts, 1);
    EXPECT_EQ(read(path), "secret");
    EXPECT_EQ(report, QStringList());
    EXPECT_EQ(files.calls, QStringList());
    EXPECT_FALSE(shredder.isShredding());
}

TEST_F(ShredFile, SuccessClosesTheMasterSession)
{
    setMasterPassword(QStringLiteral("Master12"));
    const QString path = write(QStringLiteral("a.txt"), "secret");
    onReport = [this](const QString &) { EXPECT_TRUE(masterPassword.isAuthenticated()); };
    shred(path);
    EXPECT_EQ(prompts, 1);
    EXPECT_FALSE(masterPassword.isAuthenticated());
    EXPECT_FALSE(masterPassword.hasAuthenticationTimer());
}

TEST_F(ShredFile, CallbackIsDestroyedAtTheEndOfTheRun)
{
    const auto held = std::make_shared<int>();
    const ProgressCallback callback = [held](const QString &, double) {};
    const long before = held.use_count();
    runTask(shredder.shredItem(write(QStringLiteral("a.txt"), "secret"), callback));
    write(QStringLiteral("folder/a.txt"), "secret");
    runTask(shredder.shredItem(desktop(QStringLiteral("folder")), callback));
    files.before = [](const QString &call, const QString &path) {
        if (call == QStringLiteral("write")) {
            throw FileError::fromErrno(EIO, FileError::Action::Overwrite, path);
        }
    };
    EXPECT_THROW(runTask(shredder.shredItem(write(QStringLiteral("a.txt"), "secret"), callback)), FileError);
    EXPECT_EQ(held.use_count(), before);
}

TEST_F(ShredFile, ShreddingDoesNotBlockTheWindow)
{
    int calls = 0;
    files.before = [&](const QString &call, const QString &) {
        EXPECT_NE(QThread::currentThread(), QCoreApplication::instance()->thread()) << qUtf8Printable(call);
        ++calls;
    };
    shred(write(QStringLiteral("a.txt"), "secret"));
    write(QStringLiteral("folder/deep/a.txt"), "secret");
    shred(desktop(QStringLiteral("folder")));
    EXPECT_GT(calls, 2);
}

TEST_F(ShredFile, FlagAndCurrentOperationFollowTheRunAndAreClearedByALaterJob)
{
    const QString path = write(QStringLiteral("a.txt"), "secret");
    QStringList shown;
    const auto note = [&] {
        const QString state =
            (shredder.isShredding() ? QStringLiteral("busy ") : QStringLiteral("idle ")) + shredder.currentOperation();
        if (shown.isEmpty() || shown.last() != state) {
            shown.append(state);
        }
    };
    QObject::connect(&shredder, &QuillhavenShredder::changed, &shredder, note);
    shred(path);
    spinOnce();
    EXPECT_EQ(shown.join(QLatin1Char('\n')), QStringLiteral("busy \n"
                                                            "busy Analyzing file: a.txt\n"
                                                            "busy Pass 1/3: a.txt\n"
                                                            "busy Pass 2/3: a.txt\n"
                                                            "busy Pass 3/3: a.txt\n"
                                                            "busy Removing file metadata: a.txt\n"
                                                            "idle "));
    EXPECT_EQ(operations.mid(operations.size() - 2), QStringList(2, QStringLiteral("Removing file metadata: a.txt")))
        << "the last two steps do not set it";
    EXPECT_FALSE(flags.contains(false));
    EXPECT_EQ(shredder.shredProgress(), 0);
}

TEST_F(ShredFile, AWorkerThatIsFasterThanTheWindowReportsInOrder)
{
    // On a single processor and in memory, a pass is often completed before the main thread starts to wait for it.
    cpu_set_t before{};
    ASSERT_EQ(sched_getaffinity(0, sizeof before, &before), 0);
    cpu_set_t one{};
    CPU_ZERO(&one);
    for (int cpu = 0; CPU_COUNT(&one) == 0; ++cpu) {
        if (CPU_ISSET(cpu, &before)) {
            CPU_SET(cpu, &one);
        }
    }
    ASSERT_EQ(sched_setaffinity(0, sizeof one, &one), 0);
    const QTemporaryDir memory(QStringLiteral("/dev/shm/quillhaven-test-XXXXXX"));
    QSet<QString> reports;
    for (int i = 0; i < 300; ++i) {
        report.clear();
        QFile file(memory.filePath(QStringLiteral("a.txt")));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write("x");
        file.close();
        shred(file.fileName());
        reports.insert(lines());
    }
    EXPECT_EQ(sched_setaffinity(0, sizeof before, &before), 0);
    EXPECT_EQ(reports.size(), 1) << qUtf8Printable(QStringList(reports.values()).join(QStringLiteral("\n\n")));
}
