// SPDX-License-Identifier: GPL-3.0-or-later

#include "autolock/AutoLockFixture.h"
#include "autolock/AutoLockManager.h"
#include "autolock/SmartAutoLockManager.h"

using namespace quillhaven;
using namespace quillhaven::test;
using namespace std::chrono_literals;

namespace {

/// Auto-lock with a master password set and no session open.
class LockUnattended : public AutoLockTest
{
protected:
    void start(bool isAllowed)
    {
        startUnlocked({QStringLiteral("a.txt"), QStringLiteral("b.txt")});
        runTask(engine.masterPassword.setMasterPassword(QStringLiteral("Master12")));
        engine.masterPassword.endSession();
        settings::autoLockWithoutMasterPassword.write(defaults(), isAllowed);
        settings::lockOnSleep.write(defaults(), true);
        settings::smartAutoLockEnabled.write(defaults(), true);
        autoLock = std::make_unique<AutoLockManager>(engine.platform, engine.manager);
        smartAutoLock = std::make_unique<SmartAutoLockManager>(engine.platform, engine.manager);
        log.clear();
    }

    std::unique_ptr<AutoLockManager> autoLock;
    std::unique_ptr<SmartAutoLockManager> smartAutoLock;
};

} // namespace

TEST_F(LockUnattended, UnlessAllowedEachLockAsksAndTheLaterQuestionReplacesTheEarlier)
{
    start(false);
    QObject::disconnect(&engine.masterPasswordDialog, nullptr, &engine.manager, nullptr); // The user takes time.
    post(services.notifications.workspace, notifications::willSleep);
    EXPECT_EQ(lockedNames(), QStringList());
    engine.masterPasswordDialog.authenticate(QStringLiteral("Master12"));
    spinUntil([this] { return !lockedNames().isEmpty(); });
    finishJobs();
    EXPECT_EQ(lockedNames(), QStringList({QStringLiteral("b.txt")}));
}

TEST_F(LockUnattended, UnlessAllowedACancelledQuestionLocksNothing)
{
    start(false);
    post(services.notifications.workspace, notifications::willSleep);
    EXPECT_GT(engine.masterPrompts, 0);
    EXPECT_EQ(lockedNames(), QStringList());
}

TEST_F(LockUnattended, WhenAllowedTheIdleManagerLocksWithoutTheQuestion)
{
    start(true);
    post(services.notifications.workspace, notifications::willSleep);
    EXPECT_EQ(engine.masterPrompts, 0);
    EXPECT_EQ(lockedNames().size(), 2);
    EXPECT_TRUE(log.contains(QStringLiteral("✅ AutoLockManager: Successfully locked item: a.txt")));
}

TEST_F(LockUnattended, WhenAllowedTheRulesLockWithoutTheQuestion)
{
    start(true);
    post(services.notifications.distributed, notifications::screenIsLocked);
    EXPECT_EQ(engine.masterPrompts, 0);
    EXPECT_EQ(lockedNames().size(), 2);
}

TEST_F(LockUnattended, ALockByTheUserStillAsks)
{
    start(true);
    engine.lock();
    EXPECT_EQ(engine.masterPrompts, 1);
    EXPECT_EQ(lockedNames(), QStringList());
}

TEST_F(LockUnattended, ItDoesOtherwiseWhatALockDoes)
{
    start(true);
    const QString path = engine.item().originalPath;
    runTask(engine.manager.lockItemUnattended(engine.item()));
    EXPECT_FALSE(engine.item().isMounted);
    EXPECT_FALSE(engine.item().isProcessing);
    EXPECT_TRUE(holdsPlaceholder(services.fileManager, path));
    EXPECT_EQ(TemporaryHome::read(engine.item().originalBackupPath), "a.txt");
    EXPECT_FALSE(engine.storedItems().first().isMounted);
    EXPECT_TRUE(log.contains(QStringLiteral("✅ Set isProcessing = false for item")));
}

TEST_F(LockUnattended, AnOpenSessionEndsWithIt)
{
    start(true);
    ASSERT_TRUE(runTask(engine.masterPassword.authenticate(QStringLiteral("Master12"))));
    runTask(engine.manager.lockItemUnattended(engine.item()));
    EXPECT_FALSE(engine.masterPassword.isAuthenticated());
}

TEST_F(LockUnattended, AFailureIsReportedToTheCaller)
{
    start(true);
    hooks.before = failing("moveItem", EACCES);
    EXPECT_EQ(engineErrorOf([&] { runTask(engine.manager.lockItemUnattended(engine.item())); }),
              QuillhavenError::accessDenied);
    EXPECT_FALSE(engine.item().isProcessing);
}
