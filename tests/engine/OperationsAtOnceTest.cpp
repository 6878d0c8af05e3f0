// SPDX-License-Identifier: GPL-3.0-or-later

// Several operations on one item at the same time: they touch its files one after the other, and no data is lost in any
// order.

#include "engine/PlaceholderFile.h"
#include "engine/ProtectedFileFixture.h"

#include <QDir>

#include <random>

using namespace quillhaven;
using namespace quillhaven::test;

namespace {

const ProgressCallback quiet = [](const QString &, double) {};

class OperationsAtOnce : public ProtectedFileTest
{
protected:
    using Run = std::unique_ptr<RunningTask<void>>;

    Run start(QCoro::Task<> task) { return std::make_unique<RunningTask<void>>(std::move(task)); }
    /// The same up to its question, which nobody answers.
    Run startUnanswered(QCoro::Task<> task)
    {
        engine.isItemPasswordAwaited = true;
        Run run = start(std::move(task));
        settle();
        engine.isItemPasswordAwaited = false;
        return run;
    }
    /// Lets everything run that does not wait for a user.
    static void settle()
    {
        spinOnce();
        EXPECT_TRUE(spinUntil([] { return WorkInFlight::count() == 0; }));
        spinOnce();
    }
    Run startLock() { return start(engine.manager.lockItem(engine.item())); }
    Run startBulkLock() { return start(engine.manager.bulkLockItems(engine.manager.protectedItems(), quiet)); }
    Run startUnlock() { return start(engine.manager.unlockItem(engine.item())); }
    Run startRemoval() { return start(engine.manager.removeProtection(engine.item())); }

    /// Returns the contents of the item's place or of its private copy; exactly one of them must be the data.
    [[nodiscard]] QByteArray data() const
    {
        const QByteArray placed = TemporaryHome::exists(path) ? TemporaryHome::read(path) : QByteArray();
        const QStringList stored =
            QDir(services.home.path(QStringLiteral(".local/share/quillhaven"))).entryList(QDir::Files);
        if (stored.isEmpty()) {
            return placed;
        }
        EXPECT_EQ(stored.size(), 1);
        EXPECT_EQ(placed, placeholderText.toUtf8());
        return TemporaryHome::read(services.home.path(QStringLiteral(".local/share/quillhaven/") + stored.first()));
    }
};

} // namespace

TEST_F(OperationsAtOnce, TwoLocksKeepTheOnlyCopy)
{
    startUnlocked();
    const Run first = startLock();
    const Run second = startLock();
    first->wait();
    second->wait();
    EXPECT_EQ(data(), "mine");
    EXPECT_FALSE(engine.item().isMounted);
    EXPECT_FALSE(engine.item().isProcessing);
    EXPECT_FALSE(engine.manager.catalogue().isLeased(engine.item().id));
    EXPECT_EQ(log.lines().count(QStringLiteral("🔄 Starting move operation for file: a.txt")), 1);
}

TEST_F(OperationsAtOnce, ALockAndABulkLockKeepTheOnlyCopy)
{
    startUnlocked();
    const Run first = startBulkLock();
    const Run second = startLock();
    first->wait();
    second->wait();
    EXPECT_EQ(data(), "mine");
    EXPECT_FALSE(engine.item().isMounted);
}

TEST_F(OperationsAtOnce, TwoUnlocksRestoreTheDataOnce)
{
    // A folder has no password, so that the two do not compete for the one dialog.
    services.home.write(QStringLiteral("Desktop/a.txt/inner.txt"), "mine");
    engine.protect(path);
    const Run first = startUnlock();
    const Run second = startUnlock();
    first->wait();
    second->wait();
    EXPECT_EQ(TemporaryHome::read(path + QStringLiteral("/inner.txt")), "mine");
    EXPECT_TRUE(engine.item().isMounted);
    EXPECT_FALSE(engine.item().isProcessing);
}

TEST_F(OperationsAtOnce, ARemovalDuringALockRestoresTheData)
{
    startUnlocked();
    const Run lock = startLock();
    const Run removal = startRemoval();
    lock->wait();
    removal->wait();
    EXPECT_EQ(engine.count(), 0);
    EXPECT_EQ(TemporaryHome::read(path), "mine");
    EXPECT_EQ(data(), "mine");
}

TEST_F(OperationsAtOnce, ALockDuringARemovalLeavesTheDataAtItsPlace)
{
    startUnlocked();
    const Run removal = startRemoval();
    const Run lock = startLock();
    removal->wait();
    lock->wait();
    EXPECT_EQ(engine.count(), 0);
    EXPECT_EQ(TemporaryHome::read(path), "mine");
}

TEST_F(OperationsAtOnce, TwoRemovalsRestoreTheDataOnce)
{
    startLocked();
    const Run first = startRemoval();
    const Run second = startRemoval();
    first->wait();
    second->wait();
    EXPECT_EQ(engine.count(), 0);
    EXPECT_EQ(TemporaryHome::read(path), "mine");
}

TEST_F(OperationsAtOnce, AShredAfterARemovalDoesNotTouchTheRestoredData)
{
    startUnlocked();
    const Run removal = startRemoval();
    QStringList statuses;
    const Run shred = start(engine.manager.shredProtectedItem(
        engine.item(), [&statuses](const QString &status, double) { statuses.append(status); }));
    removal->wait();
    EXPECT_EQ(engineErrorOf([&] { shred->wait(); }), QuillhavenError::itemNotFound);
    EXPECT_EQ(engine.count(), 0);
    EXPECT_EQ(TemporaryHome::read(path), "mine");
    EXPECT_EQ(statuses.last(), QStringLiteral("Shredding failed: The selected file or folder could not be found."));
}

TEST_F(OperationsAtOnce, AShredDuringALockDestroysTheDataWhereverItIs)
{
    startUnlocked();
    const Run lock = startLock();
    const Run shred = start(engine.manager.shredProtectedItem(engine.item(), quiet));
    lock->wait();
    shred->wait();
    EXPECT_EQ(engine.count(), 0);
    EXPECT_FALSE(TemporaryHome::exists(path));
    EXPECT_TRUE(QDir(services.home.path(QStringLiteral(".local/share/quillhaven"))).isEmpty());
}

TEST_F(OperationsAtOnce, ADuplicateDuringAnUnlockIsMadeOfTheWholeData)
{
    startLocked();
    const Run duplicate = start(engine.manager.duplicateAsEncryptedCopy(engine.item(), quiet));
    const Run unlock = startUnlock();
    duplicate->wait();
    unlock->wait();
    ASSERT_EQ(engine.count(), 2);
    EXPECT_EQ(TemporaryHome::read(path), "mine");
    EXPECT_EQ(TemporaryHome::read(engine.item(1).originalBackupPath), "mine");
}

TEST_F(OperationsAtOnce, AnAbandonedQuestionDoesNotBlockOtherOperationsOnTheItem)
{
    startLocked();
    engine.itemPassword.reset(); // the question is not answered
    const bool blocked = engine.passwordDialog.blockSignals(true);
    const Run abandoned = startUnlock();
    spinOnce();
    engine.passwordDialog.blockSignals(blocked);
    engine.remove();
    EXPECT_EQ(engine.count(), 0);
    EXPECT_EQ(TemporaryHome::read(path), "mine");
    engine.passwordDialog.onCancel();
    abandoned->wait();
}

TEST_F(OperationsAtOnce, AShredThatNobodyAnswersKeepsNoOtherOperationFromTheItem)
{
    startUnlocked();
    engine.openMasterSession();
    const bool blocked = engine.masterPasswordDialog.blockSignals(true); // nobody answers
    const Run abandoned = start(engine.manager.shredProtectedItem(engine.item(), quiet));
    ASSERT_TRUE(spinUntil([&] { return engine.masterPasswordDialog.isPresented(); }));
    EXPECT_FALSE(engine.manager.catalogue().isLeased(engine.item().id));
    engine.masterPasswordDialog.blockSignals(blocked);
    engine.masterPasswordDialog.cancel();
    abandoned->wait();
    EXPECT_EQ(engine.count(), 0);
}

/// What the operation gave back while the shred asked is the user's again.
TEST_F(OperationsAtOnce, AShredThatAsksStopsWhenTheItemIsGivenBackMeanwhile)
{
    startLocked();
    engine.itemPassword.reset(); // the shred goes on with the item locked
    engine.openMasterSession();
    const bool blocked = engine.masterPasswordDialog.blockSignals(true);
    const Run shred = start(engine.manager.shredProtectedItem(engine.item(), quiet));
    ASSERT_TRUE(spinUntil([&] { return engine.masterPasswordDialog.isPresented(); })); // before the private copy
    runTask(engine.manager.removeProtectionWithAccessibleURL(engine.item(), path));
    engine.masterPasswordDialog.blockSignals(blocked);
    engine.masterPasswordDialog.authenticate(QStringLiteral("Master12"));
    EXPECT_EQ(engineErrorOf([&] { shred->wait(); }), QuillhavenError::itemNotFound);
    EXPECT_EQ(TemporaryHome::read(path), "mine");
}

TEST_F(OperationsAtOnce, AnUnlockWhoseQuestionAnotherItemsUnlockReplacesStaysSuspendedAndItsRecordBusy)
{
    startLocked();
    const QString otherPath = services.home.write(QStringLiteral("Desktop/b.txt"), "other");
    engine.protect(otherPath);
    const Run replaced = startUnanswered(engine.manager.unlockItem(engine.item(0)));
    ASSERT_EQ(engine.passwordDialog.message(), QStringLiteral("Enter the password for 'a.txt':"));
    replaced->abandon();

    engine.unlock(1);
    settle();
    EXPECT_TRUE(engine.item(1).isMounted);
    EXPECT_EQ(TemporaryHome::read(otherPath), "other");

    EXPECT_FALSE(replaced->isFinished());
    EXPECT_TRUE(engine.item(0).isProcessing);
    EXPECT_FALSE(engine.item(0).isMounted);
    EXPECT_EQ(TemporaryHome::read(path), placeholderText.toUtf8());
    EXPECT_EQ(TemporaryHome::read(engine.item(0).originalBackupPath), "mine");
    EXPECT_FALSE(engine.manager.catalogue().isLeased(engine.item(0).id));
}

TEST_F(OperationsAtOnce, AShredWhoseQuestionAnotherItemsUnlockReplacesDestroysNothing)
{
    startLocked();
    engine.protect(services.home.write(QStringLiteral("Desktop/b.txt"), "other"));
    const ProtectedItem item = engine.item(0);
    const QByteArray container = TemporaryHome::read(item.containerPath);
    QStringList statuses;
    const Run replaced = startUnanswered(engine.manager.shredProtectedItem(
        item, [&statuses](const QString &status, double) { statuses.append(status); }));
    ASSERT_EQ(engine.passwordDialog.message(), QStringLiteral("Enter the password for 'a.txt':"));
    replaced->abandon();

    engine.unlock(1);
    settle();
    ASSERT_EQ(engine.count(), 2);
    EXPECT_TRUE(engine.item(1).isMounted);

    EXPECT_FALSE(replaced->isFinished());
    EXPECT_EQ(statuses, QStringList{QStringLiteral("Unlocking item before shredding...")});
    EXPECT_EQ(TemporaryHome::read(path), placeholderText.toUtf8());
    EXPECT_EQ(TemporaryHome::read(item.originalBackupPath), "mine");
    EXPECT_FALSE(container.isEmpty());
    EXPECT_EQ(TemporaryHome::read(item.containerPath), container);
    EXPECT_TRUE(services.credentials.entries.contains(item.id));
    EXPECT_EQ(engine.item(0).id, item.id);
    EXPECT_EQ(engine.storedItems().size(), 2);
}

/// Random operations, started in random groups. QUILLHAVEN_INTERLEAVINGS sets the number of groups, QUILLHAVEN_SEED the
/// seed.
TEST_F(OperationsAtOnce, NothingIsLostInManyInterleavings)
{
    const int rounds = qEnvironmentVariableIntValue("QUILLHAVEN_INTERLEAVINGS") > 0
                           ? qEnvironmentVariableIntValue("QUILLHAVEN_INTERLEAVINGS")
                           : 1'500;
    const unsigned seed = qEnvironmentVariableIsSet("QUILLHAVEN_SEED")
                              ? static_cast<unsigned>(qEnvironmentVariableIntValue("QUILLHAVEN_SEED"))
                              : std::random_device()();
    std::fprintf(stderr, "%d interleavings of seed %u\n", rounds, seed);
    std::mt19937 random(seed);
    engine.passwordDialog.blockSignals(false);
    for (int round = 0; round < rounds; ++round) {
        if (engine.count() == 0) {
            services.home.write(QStringLiteral("Desktop/folder/inner.txt"), "mine");
            QDir().rename(services.home.path(QStringLiteral("Desktop/folder")), path);
            engine.protect(path);
        }
        std::vector<Run> runs;
        const int operations = 2 + static_cast<int>(random() % 4);
        for (int i = 0; i < operations; ++i) {
            switch (random() % 12) {
            case 0:
                runs.push_back(startRemoval());
                break;
            case 1:
                runs.push_back(startBulkLock());
                break;
            case 2:
                runs.push_back(start(engine.manager.bulkUnlockItems(engine.manager.protectedItems(), quiet)));
                break;
            case 3:
            case 4:
            case 5:
            case 6:
                runs.push_back(startLock());
                break;
            default:
                runs.push_back(startUnlock());
                break;
            }
            if (engine.count() == 0) {
                break;
            }
            if (random() % 3 == 0) {
                spinOnce(); // so that some of them are partly done
            }
            if (engine.count() == 0) {
                break;
            }
        }
        for (const Run &run : runs) {
            try {
                run->wait();
            } catch (const LocalizedError &) {
                // ignored: an operation that comes too late may fail
            }
        }
        const bool isPlaced = TemporaryHome::exists(path + QStringLiteral("/inner.txt"));
        const bool isListed = engine.count() == 1;
        const QString stored = isListed ? engine.item().originalBackupPath + QStringLiteral("/inner.txt") : QString();
        const bool isStored = isListed && TemporaryHome::exists(stored);
        ASSERT_NE(isPlaced, isStored) << "round " << round << ", seed " << seed << "\n"
                                      << log.lines().join(QLatin1Char('\n')).toStdString();
        ASSERT_EQ(TemporaryHome::read(isPlaced ? path + QStringLiteral("/inner.txt") : stored), "mine");
        ASSERT_TRUE(isListed || isPlaced);
        if (isListed) {
            ASSERT_EQ(engine.item().isMounted, isPlaced) << "round " << round << ", seed " << seed;
            ASSERT_FALSE(engine.manager.catalogue().isLeased(engine.item().id));
        }
        log.clear();
    }
}
