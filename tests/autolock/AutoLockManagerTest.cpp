// SPDX-License-Identifier: GPL-3.0-or-later

#include "autolock/AutoLockManager.h"
#include "autolock/AutoLockFixture.h"

using namespace quillhaven;
using namespace quillhaven::test;
using namespace std::chrono_literals;

namespace {

class AutoLock : public AutoLockTest
{
protected:
    /// Starts the manager. The clock's timers are counted from here.
    AutoLockManager &start()
    {
        timersBefore = services.clock.pendingTimers();
        manager = std::make_unique<AutoLockManager>(engine.platform, engine.manager);
        return *manager;
    }
    AutoLockManager &startEnabled(qlonglong minutes = 5)
    {
        settings::isAutoLockEnabled.write(defaults(), true);
        settings::autoLockMinutes.write(defaults(), minutes);
        return start();
    }
    [[nodiscard]] bool hasTimer() const { return services.clock.pendingTimers() > timersBefore; }
    void pass(std::chrono::milliseconds time)
    {
        services.clock.advance(time);
        finishJobs();
    }
    void sleep() { post(services.notifications.workspace, notifications::willSleep); }
    void wake() { post(services.notifications.workspace, notifications::didWake); }
    void touch() { services.input.inputElsewhere(InputEvent::KeyDown); }

    const QStringList ab{QStringLiteral("a.txt"), QStringLiteral("b.txt")};
    qsizetype timersBefore = 0;
    std::unique_ptr<AutoLockManager> manager;
};

} // namespace

TEST_F(AutoLock, OnAFirstRunItIsOffWithAPeriodOfFiveMinutes)
{
    start();
    EXPECT_FALSE(manager->isAutoLockEnabled());
    EXPECT_FALSE(manager->isMonitoring());
    EXPECT_FALSE(manager->lockOnSleep());
    EXPECT_EQ(manager->getEffectiveAutoLockMinutes(), 5);
    EXPECT_FALSE(hasTimer());
    EXPECT_EQ(manager->lastActivityTime(), services.clock.now());
    EXPECT_FALSE(defaults().objectForKey(settings::autoLockMinutes.key).isValid());
}

TEST_F(AutoLock, TheStartIsLoggedInItsOrder)
{
    log.clear();
    startEnabled();
    EXPECT_EQ(log.lines(), QStringList({QStringLiteral("🔧 AutoLockManager: Setting up observers"),
                                        QStringLiteral("✅ AutoLockManager: Sleep/wake observers registered"),
                                        QStringLiteral("AutoLockManager initialized with auto-lock enabled: true")}));
    EXPECT_TRUE(manager->isMonitoring());
    EXPECT_TRUE(hasTimer());
}

TEST_F(AutoLock, AStoredPeriodOfZeroCountsAsFiveMinutesAndStaysInTheStore)
{
    startUnlocked(ab);
    startEnabled(0);
    EXPECT_EQ(manager->autoLockMinutes(), 5);
    EXPECT_EQ(defaults().integerForKey(settings::autoLockMinutes.key), 0);
    pass(5min - 1ms);
    EXPECT_EQ(lockedNames(), QStringList());
    pass(1ms);
    EXPECT_EQ(lockedNames(), ab);
}

TEST_F(AutoLock, APeriodOfAnotherTypeInTheStoreCountsAsFiveMinutes)
{
    defaults().setString(settings::autoLockMinutes.key, QStringLiteral("3"));
    EXPECT_EQ(start().autoLockMinutes(), 5);
}

TEST_F(AutoLock, AllUnlockedItemsAreLockedAfterThePeriod)
{
    startUnlocked(ab);
    startEnabled(2);
    log.clear();
    pass(2min);
    EXPECT_EQ(lockedNames(), ab);
    EXPECT_EQ(managerLines().mid(0, 3),
              QStringList({QStringLiteral("🔒 AutoLockManager: Found 2 unlocked items to lock"),
                           QStringLiteral("🔒 AutoLockManager: Locking item: a.txt"),
                           QStringLiteral("🔒 AutoLockManager: Locking item: b.txt")}));
    EXPECT_EQ(managerLines().filter(QStringLiteral("✅ AutoLockManager: Successfully locked item: ")).size(), 2);
    EXPECT_TRUE(holdsPlaceholder(services.fileManager, services.home.path(QStringLiteral("Desktop/a.txt"))));
}

TEST_F(AutoLock, InputStartsThePeriodAgain)
{
    startUnlocked(ab);
    startEnabled(1);
    pass(50s);
    touch();
    EXPECT_EQ(manager->lastActivityTime(), services.clock.now());
    pass(59s);
    EXPECT_EQ(lockedNames(), QStringList());
    pass(1s);
    EXPECT_EQ(lockedNames(), ab);
}

TEST_F(AutoLock, InputWithinTenSecondsCountsAsOneActivity)
{
    startUnlocked(ab);
    startEnabled(1);
    pass(20s);
    touch();
    const QDateTime first = manager->lastActivityTime();
    pass(9900ms);
    touch();
    EXPECT_EQ(manager->lastActivityTime(), first);
    pass(50s + 99ms);
    EXPECT_EQ(lockedNames(), QStringList());
    pass(1ms); // a minute after the first of the two
    EXPECT_EQ(lockedNames(), ab);
}

TEST_F(AutoLock, InputExactlyTenSecondsLaterCounts)
{
    startEnabled(1);
    pass(10s);
    touch();
    EXPECT_EQ(manager->lastActivityTime(), services.clock.now());
    pass(10s);
    touch();
    EXPECT_EQ(manager->lastActivityTime(), services.clock.now());
}

TEST_F(AutoLock, InputToTheProgramItselfCountsToo)
{
    startEnabled(1);
    pass(30s);
    services.input.inputHere(InputEvent::MouseMoved);
    EXPECT_EQ(manager->lastActivityTime(), services.clock.now());
}

TEST_F(AutoLock, BothMonitorsWatchTheSameFourKindsOfInput)
{
    start();
    ASSERT_EQ(services.input.global.size(), 1U);
    ASSERT_EQ(services.input.local.size(), 1U);
    EXPECT_EQ(int(services.input.global.front()->events), 1066);
    EXPECT_EQ(int(services.input.local.front()->events), 1066);
}

TEST_F(AutoLock, TheMonitorsEndWithTheManager)
{
    start();
    manager.reset();
    EXPECT_TRUE(services.input.global.empty());
    EXPECT_TRUE(services.input.local.empty());
}

TEST_F(AutoLock, WithoutAGlobalMonitorTheProgramGoesOnWithItsOwnInput)
{
    services.input.hasGlobalSource = false;
    startEnabled(1);
    pass(30s);
    services.input.inputHere(InputEvent::KeyDown);
    EXPECT_EQ(manager->lastActivityTime(), services.clock.now());
}

TEST_F(AutoLock, WhileItIsOffInputIsStillNotedAndNoTimerRuns)
{
    start();
    pass(10s);
    touch();
    EXPECT_EQ(manager->lastActivityTime(), services.clock.now());
    EXPECT_FALSE(hasTimer());
}

TEST_F(AutoLock, TheSwitchStoresStartsAndStops)
{
    startUnlocked(ab);
    start();
    log.clear();
    manager->setAutoLockEnabled(true);
    EXPECT_TRUE(manager->isMonitoring());
    EXPECT_EQ(defaults().boolForKey(settings::isAutoLockEnabled.key), true);
    EXPECT_TRUE(hasTimer());
    manager->setAutoLockEnabled(false);
    EXPECT_FALSE(manager->isMonitoring());
    EXPECT_EQ(defaults().boolForKey(settings::isAutoLockEnabled.key), false);
    EXPECT_FALSE(hasTimer());
    EXPECT_EQ(managerLines(), QStringList({QStringLiteral("AutoLockManager: Setting auto-lock enabled to true"),
                                           QStringLiteral("AutoLockManager: Auto-lock enabled is now true"),
                                           QStringLiteral("AutoLockManager: Setting auto-lock enabled to false"),
                                           QStringLiteral("AutoLockManager: Auto-lock enabled is now false")}));
    pass(1h);
    EXPECT_EQ(lockedNames(), QStringList());
}

TEST_F(AutoLock, ANewPeriodIsStoredAndStartsAgain)
{
    startUnlocked(ab);
    startEnabled(1);
    pass(59s);
    manager->updateAutoLockInterval(2);
    EXPECT_EQ(defaults().integerForKey(settings::autoLockMinutes.key), 2);
    EXPECT_EQ(manager->autoLockMinutes(), 2);
    pass(2min - 1ms);
    EXPECT_EQ(lockedNames(), QStringList());
    pass(1ms);
    EXPECT_EQ(lockedNames(), ab);
}

TEST_F(AutoLock, APeriodBelowOneChangesNothingAndLeavesTheTimer)
{
    startUnlocked(ab);
    startEnabled(1);
    pass(59s);
    manager->updateAutoLockInterval(0);
    manager->updateAutoLockInterval(-3);
    EXPECT_EQ(manager->autoLockMinutes(), 1);
    EXPECT_EQ(defaults().integerForKey(settings::autoLockMinutes.key), 1);
    pass(1s);
    EXPECT_EQ(lockedNames(), ab);
}

TEST_F(AutoLock, ANegativePeriodInTheStoreLeavesNoTimer)
{
    startUnlocked(ab);
    startEnabled(1);
    settings::autoLockMinutes.write(defaults(), -1);
    EXPECT_EQ(manager->autoLockMinutes(), -1);
    EXPECT_FALSE(hasTimer());
    settings::autoLockMinutes.write(defaults(), 1);
    EXPECT_TRUE(hasTimer());
}

TEST_F(AutoLock, AVeryLongPeriodIsStillATimer)
{
    startUnlocked(ab);
    startEnabled(std::numeric_limits<qlonglong>::max());
    EXPECT_TRUE(hasTimer());
    pass(24h * 366);
    EXPECT_EQ(lockedNames(), QStringList());
}

TEST_F(AutoLock, WhileTheUserStaysAwayItFiresAfterEachFurtherPeriod)
{
    startUnlocked({QStringLiteral("a.txt")});
    startEnabled(1);
    pass(1min);
    engine.unlock();
    log.clear();
    pass(1min);
    EXPECT_EQ(lockedNames(), QStringList({QStringLiteral("a.txt")}));
    log.clear();
    pass(1min);
    EXPECT_EQ(managerLines(),
              QStringList({QStringLiteral("🔒 AutoLockManager: Found 0 unlocked items to lock"),
                           QStringLiteral("🔒 AutoLockManager: No unlocked items found, nothing to lock")}));
    EXPECT_TRUE(hasTimer());
}

TEST_F(AutoLock, AFiringWithAnEmptyCatalogueWritesTwoLinesAndArmsTheTimerAgain)
{
    startEnabled(1);
    log.clear();
    pass(1min);
    EXPECT_EQ(log.lines(),
              QStringList({QStringLiteral("🔒 AutoLockManager: Found 0 unlocked items to lock"),
                           QStringLiteral("🔒 AutoLockManager: No unlocked items found, nothing to lock")}));
    EXPECT_TRUE(hasTimer());
}

TEST_F(AutoLock, SleepLocksThoughIdleLockingIsOff)
{
    startUnlocked(ab);
    settings::lockOnSleep.write(defaults(), true);
    start();
    log.clear();
    sleep();
    EXPECT_EQ(lockedNames(), ab);
    EXPECT_EQ(managerLines().mid(0, 3),
              QStringList({QStringLiteral("🛌 AutoLockManager: System sleep detected"),
                           QStringLiteral("🛌 AutoLockManager: lockOnSleep setting: true"),
                           QStringLiteral("🛌 AutoLockManager: Lock on sleep is enabled, locking all items")}));
    engine.unlock();
    pass(24h);
    EXPECT_EQ(lockedNames(), QStringList({QStringLiteral("b.txt")}));
}

TEST_F(AutoLock, SleepLocksNothingUnlessAskedToAndWakingStartsAFullPeriod)
{
    startUnlocked(ab);
    startEnabled(1);
    pass(30s);
    const QDateTime before = manager->lastActivityTime();
    log.clear();
    sleep();
    EXPECT_EQ(managerLines(),
              QStringList({QStringLiteral("🛌 AutoLockManager: System sleep detected"),
                           QStringLiteral("🛌 AutoLockManager: lockOnSleep setting: false"),
                           QStringLiteral("🛌 AutoLockManager: Lock on sleep is disabled, skipping auto-lock")}));
    EXPECT_EQ(lockedNames(), QStringList());
    wake();
    EXPECT_EQ(manager->lastActivityTime(), before);
    pass(1min - 1ms);
    EXPECT_EQ(lockedNames(), QStringList());
    pass(1ms);
    EXPECT_EQ(lockedNames(), ab);
}

TEST_F(AutoLock, TheTimeAsleepCounts)
{
    startUnlocked(ab);
    startEnabled(30);
    services.clock.sleep(31min);
    finishJobs();
    EXPECT_EQ(lockedNames(), ab);
}

TEST_F(AutoLock, TheSwitchForSleepIsFollowedInTheStore)
{
    start();
    settings::lockOnSleep.write(defaults(), true);
    EXPECT_TRUE(manager->lockOnSleep());
    defaults().removeObject(settings::lockOnSleep.key);
    EXPECT_FALSE(manager->lockOnSleep());
}

TEST_F(AutoLock, SleepReturnsBeforeTheLocksHaveEnded)
{
    startUnlocked(ab);
    settings::lockOnSleep.write(defaults(), true);
    start();
    services.notifications.workspace.post(notifications::willSleep);
    EXPECT_EQ(lockedNames(), QStringList());
    finishJobs();
    EXPECT_EQ(lockedNames(), ab);
}

TEST_F(AutoLock, AFailedLockIsLoggedTheOthersAreLockedAndTheNextFiringTriesAgain)
{
    startUnlocked(ab);
    startEnabled(1);
    hooks.before = failing("moveItem", EACCES, {services.home.path(QStringLiteral("Desktop/a.txt"))});
    log.clear();
    pass(1min);
    EXPECT_EQ(lockedNames(), QStringList({QStringLiteral("b.txt")}));
    const QStringList failures = managerLines().filter(QStringLiteral("❌"));
    ASSERT_EQ(failures.size(), 1);
    EXPECT_TRUE(failures.first().startsWith(QStringLiteral("❌ AutoLockManager: Error auto-locking item a.txt: ")));
    hooks.before = {};
    pass(1min);
    EXPECT_EQ(lockedNames(), ab);
}

TEST_F(AutoLock, AnItemThatIsLockedMeanwhileIsNotTriedAgain)
{
    startUnlocked(ab);
    startEnabled(1);
    engine.lock(0);
    log.clear();
    pass(1min);
    EXPECT_TRUE(log.contains(QStringLiteral("🔒 AutoLockManager: Found 1 unlocked items to lock")));
    EXPECT_FALSE(log.contains(QStringLiteral("🔒 AutoLockManager: Locking item: a.txt")));
}
