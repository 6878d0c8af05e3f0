// SPDX-License-Identifier: GPL-3.0-or-later

// What both managers report when the locks that they started have ended.

#include "autolock/AutoLockFixture.h"
#include "autolock/AutoLockManager.h"
#include "autolock/SmartAutoLockManager.h"

using namespace quillhaven;
using namespace quillhaven::test;
using namespace std::chrono_literals;

namespace {

class LockRuns : public AutoLockTest
{
protected:
    void start()
    {
        startUnlocked({QStringLiteral("a.txt"), QStringLiteral("b.txt")});
        settings::isAutoLockEnabled.write(defaults(), true);
        settings::autoLockMinutes.write(defaults(), 1);
        settings::lockOnSleep.write(defaults(), true);
        settings::smartAutoLockEnabled.write(defaults(), true);
        settings::smartAutoLockRules.write(defaults(), encodeSmartAutoLockRules({.lockOnScreenSaver = true}));
        autoLock = std::make_unique<AutoLockManager>(engine.platform, engine.manager);
        smartAutoLock = std::make_unique<SmartAutoLockManager>(engine.platform, engine.manager);
        const auto keep = [this](const QString &report) { reports.append(report); };
        QObject::connect(autoLock.get(), &AutoLockManager::itemsLocked, keep);
        QObject::connect(smartAutoLock.get(), &SmartAutoLockManager::itemsLocked, keep);
    }
    void passAPeriod()
    {
        services.clock.advance(1min);
        finishJobs();
    }
    void failForA()
    {
        hooks.before = failing("moveItem", EACCES, {services.home.path(QStringLiteral("Desktop/a.txt"))});
    }

    std::unique_ptr<AutoLockManager> autoLock;
    std::unique_ptr<SmartAutoLockManager> smartAutoLock;
    QStringList reports;
};

} // namespace

TEST_F(LockRuns, ARunIsReportedOnceWhenItsLastLockHasEnded)
{
    start();
    int lockedAtReport = 0;
    QObject::connect(autoLock.get(), &AutoLockManager::itemsLocked,
                     [&] { lockedAtReport = static_cast<int>(lockedNames().size()); });
    passAPeriod();
    EXPECT_EQ(reports, QStringList(QStringLiteral("2 items were locked after inactivity.")));
    EXPECT_EQ(lockedAtReport, 2);
    passAPeriod();
    EXPECT_EQ(reports.size(), 1) << "the next run found nothing to lock";
}

TEST_F(LockRuns, EachEventGivesItsCause)
{
    const std::pair<NotificationCenter &, QString> events[] = {
        {services.notifications.workspace, notifications::willSleep},
        {services.notifications.distributed, notifications::screenIsLocked},
        {services.notifications.distributed, notifications::screenSaverDidStart},
        {services.notifications.standard, notifications::sessionDidResignActive}};
    start();
    engine.lock(1);
    for (const auto &[center, name] : events) {
        post(center, name);
        engine.unlock(0);
    }
    EXPECT_EQ(reports, QStringList({QStringLiteral("1 item was locked before the computer went to sleep."),
                                    QStringLiteral("1 item was locked because the screen was locked."),
                                    QStringLiteral("1 item was locked because the screen saver started."),
                                    QStringLiteral("1 item was locked because the session was switched.")}));
}

TEST_F(LockRuns, AFailureIsReportedWithItsReason)
{
    start();
    failForA();
    post(services.notifications.distributed, notifications::screenIsLocked);
    const QString line =
        log.lines().filter(QStringLiteral("SmartAutoLockManager: Error locking item a.txt: ")).value(0);
    ASSERT_FALSE(line.isEmpty());
    EXPECT_EQ(reports, QStringList(QStringLiteral("1 item was locked because the screen was locked.\n"
                                                  "1 item could not be locked: ") +
                                   line.section(QStringLiteral("a.txt: "), 1)));
}

TEST_F(LockRuns, AQuestionThatWasCancelledIsNoLock)
{
    start();
    runTask(engine.masterPassword.setMasterPassword(QStringLiteral("Master12")));
    engine.masterPassword.endSession();
    passAPeriod();
    EXPECT_GT(engine.masterPrompts, 0);
    EXPECT_EQ(lockedNames(), QStringList());
    EXPECT_EQ(reports, QStringList());
}

TEST_F(LockRuns, TheEndOfTheManagerEndsItsReports)
{
    start();
    HeldCall move(hooks, "moveItem", services.home.path(QStringLiteral("Desktop/a.txt")));
    services.clock.advance(1min);
    ASSERT_TRUE(move.hasStarted());
    autoLock.reset();
    move.letGo();
    finishJobs();
    EXPECT_EQ(lockedNames().size(), 2);
    EXPECT_EQ(reports, QStringList());
}
