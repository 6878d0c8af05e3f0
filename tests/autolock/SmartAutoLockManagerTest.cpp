// SPDX-License-Identifier: GPL-3.0-or-later

#include "autolock/SmartAutoLockManager.h"
#include "autolock/AutoLockFixture.h"
#include "autolock/AutoLockManager.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

using namespace quillhaven;
using namespace quillhaven::test;
using namespace std::chrono_literals;

namespace {

class SmartAutoLock : public AutoLockTest
{
protected:
    SmartAutoLockManager &start()
    {
        manager = std::make_unique<SmartAutoLockManager>(engine.platform, engine.manager);
        return *manager;
    }
    SmartAutoLockManager &startEnabled(const SmartAutoLockRules &rules = {})
    {
        settings::smartAutoLockEnabled.write(defaults(), true);
        settings::smartAutoLockRules.write(defaults(), encodeSmartAutoLockRules(rules));
        return start();
    }
    void postDistributed(const QString &name) { post(services.notifications.distributed, name); }
    void postEverything()
    {
        for (NotificationCenter *center : {&services.notifications.workspace, &services.notifications.distributed}) {
            for (const QString &name :
                 {notifications::willSleep, notifications::didWake, notifications::sessionDidBecomeActive,
                  notifications::sessionDidResignActive, notifications::screenIsLocked, notifications::screenIsUnlocked,
                  notifications::screenSaverDidStart}) {
                post(*center, name);
            }
        }
    }
    [[nodiscard]] QJsonObject storedRules()
    {
        return QJsonDocument::fromJson(settings::smartAutoLockRules.read(defaults()).value_or(QByteArray())).object();
    }

    const QStringList ab{QStringLiteral("a.txt"), QStringLiteral("b.txt")};
    std::unique_ptr<SmartAutoLockManager> manager;
};

} // namespace

TEST_F(SmartAutoLock, OnAFirstRunItIsOffWithTheDefaultsAndNoEventLocksAnything)
{
    startUnlocked(ab);
    start();
    EXPECT_FALSE(manager->isEnabled());
    const SmartAutoLockRules &rules = manager->rules();
    EXPECT_TRUE(rules.lockOnSleep && rules.lockOnLogout && rules.lockOnUserSwitch && rules.lockOnSystemLock &&
                rules.enhancedIdleDetection);
    EXPECT_FALSE(rules.lockOnScreenSaver);
    EXPECT_EQ(rules.idleThresholdMinutes, 5);
    EXPECT_TRUE(rules.exceptions.isEmpty());
    postEverything();
    EXPECT_EQ(lockedNames(), QStringList());
    EXPECT_EQ(managerLines(), QStringList());
}

TEST_F(SmartAutoLock, WithTheDefaultsTheScreenLockLocksEveryItem)
{
    startUnlocked(ab);
    startEnabled();
    log.clear();
    postDistributed(notifications::screenIsLocked);
    EXPECT_EQ(lockedNames(), ab);
    EXPECT_EQ(managerLines(),
              QStringList({QStringLiteral("SmartAutoLockManager: Screen lock detected, locking items"),
                           QStringLiteral("SmartAutoLockManager: Locking 2 items due to: Screen lock")}));
}

TEST_F(SmartAutoLock, WithTheDefaultsTheScreenSaverLocksNothing)
{
    startUnlocked(ab);
    startEnabled();
    log.clear();
    postDistributed(notifications::screenSaverDidStart);
    EXPECT_EQ(lockedNames(), QStringList());
    EXPECT_EQ(managerLines(), QStringList());
}

TEST_F(SmartAutoLock, TheScreenSaverLocksWhenItsRuleIsOn)
{
    startUnlocked(ab);
    startEnabled({.lockOnScreenSaver = true});
    log.clear();
    postDistributed(notifications::screenSaverDidStart);
    EXPECT_EQ(lockedNames(), ab);
    EXPECT_EQ(managerLines(),
              QStringList({QStringLiteral("SmartAutoLockManager: Screen saver started, locking items"),
                           QStringLiteral("SmartAutoLockManager: Locking 2 items due to: Screen saver activation")}));
}

TEST_F(SmartAutoLock, TheUnlockingOfTheScreenHasNoEffect)
{
    startUnlocked(ab);
    startEnabled({.lockOnScreenSaver = true});
    log.clear();
    const qsizetype timers = services.clock.pendingTimers();
    postDistributed(notifications::screenIsUnlocked);
    EXPECT_EQ(lockedNames(), QStringList());
    EXPECT_EQ(log.lines(), QStringList());
    EXPECT_EQ(services.clock.pendingTimers(), timers);
}

TEST_F(SmartAutoLock, WhatTheSystemReportsOfSleepAndSessionsHasNoEffect)
{
    startUnlocked(ab);
    startEnabled();
    for (const QString &name :
         {notifications::willSleep, notifications::sessionDidBecomeActive, notifications::sessionDidResignActive}) {
        post(services.notifications.workspace, name);
        post(services.notifications.distributed, name);
    }
    EXPECT_EQ(lockedNames(), QStringList());
}

TEST_F(SmartAutoLock, SleepOnTheProgramsOwnCentreLocks)
{
    startUnlocked(ab);
    startEnabled();
    log.clear();
    post(services.notifications.standard, notifications::willSleep);
    EXPECT_EQ(lockedNames(), ab);
    EXPECT_EQ(managerLines(),
              QStringList({QStringLiteral("SmartAutoLockManager: System sleep detected, locking items"),
                           QStringLiteral("SmartAutoLockManager: Locking 2 items due to: System sleep")}));
}

TEST_F(SmartAutoLock, AChangeOfTheSessionOnTheProgramsOwnCentreLocks)
{
    startUnlocked(ab);
    startEnabled();
    for (const QString &name : {notifications::sessionDidBecomeActive, notifications::sessionDidResignActive}) {
        log.clear();
        post(services.notifications.standard, name);
        EXPECT_EQ(lockedNames(), ab);
        EXPECT_EQ(managerLines(),
                  QStringList({QStringLiteral("SmartAutoLockManager: User session change detected, locking items"),
                               QStringLiteral("SmartAutoLockManager: Locking 2 items due to: User session change")}));
        engine.unlock(0);
        engine.unlock(1);
    }
}

TEST_F(SmartAutoLock, EachRuleGovernsItsOwnEvent)
{
    startUnlocked(ab);
    SmartAutoLockRules rules;
    rules.lockOnSleep = false;
    rules.lockOnUserSwitch = false;
    rules.lockOnSystemLock = false;
    startEnabled(rules);
    for (const QString &name :
         {notifications::willSleep, notifications::sessionDidBecomeActive, notifications::sessionDidResignActive}) {
        post(services.notifications.standard, name);
    }
    postDistributed(notifications::screenIsLocked);
    postDistributed(notifications::screenSaverDidStart);
    EXPECT_EQ(lockedNames(), QStringList());
}

TEST_F(SmartAutoLock, WithoutUnlockedItemsOnlyTheEventIsLogged)
{
    startEnabled();
    log.clear();
    postDistributed(notifications::screenIsLocked);
    EXPECT_EQ(log.lines(), QStringList({QStringLiteral("SmartAutoLockManager: Screen lock detected, locking items")}));
}

TEST_F(SmartAutoLock, AFailedLockIsLoggedAndTheOthersAreLocked)
{
    startUnlocked(ab);
    startEnabled();
    hooks.before = failing("moveItem", EACCES, {services.home.path(QStringLiteral("Desktop/a.txt"))});
    postDistributed(notifications::screenIsLocked);
    EXPECT_EQ(lockedNames(), QStringList({QStringLiteral("b.txt")}));
    const QStringList failures = managerLines().filter(QStringLiteral("Error"));
    ASSERT_EQ(failures.size(), 1);
    EXPECT_TRUE(failures.first().startsWith(QStringLiteral("SmartAutoLockManager: Error locking item a.txt: ")));
}

TEST_F(SmartAutoLock, BothManagersMayLockTheSameItemAtOnce)
{
    startUnlocked(ab);
    startEnabled();
    settings::lockOnSleep.write(defaults(), true);
    const AutoLockManager other(engine.platform, engine.manager);
    services.notifications.workspace.post(notifications::willSleep);
    services.notifications.distributed.post(notifications::screenIsLocked);
    finishJobs();
    EXPECT_EQ(lockedNames(), ab);
    EXPECT_EQ(managerLines().filter(QStringLiteral("Error")), QStringList());
    EXPECT_EQ(TemporaryHome::read(engine.item().originalBackupPath), "a.txt");
}

TEST_F(SmartAutoLock, TheIdleThresholdOfTheRulesDoesNotChangeWhenAnythingLocks)
{
    startUnlocked(ab);
    startEnabled({.idleThresholdMinutes = 1});
    settings::isAutoLockEnabled.write(defaults(), true);
    const AutoLockManager other(engine.platform, engine.manager);
    services.clock.advance(5min - 1ms);
    finishJobs();
    EXPECT_EQ(lockedNames(), QStringList());
    services.clock.advance(1ms);
    finishJobs();
    EXPECT_EQ(lockedNames(), ab);
}

TEST_F(SmartAutoLock, ExceptionsExemptNothing)
{
    startUnlocked(ab);
    startEnabled({.exceptions = {QStringLiteral("a.txt"), services.home.path(QStringLiteral("Desktop/a.txt"))}});
    postDistributed(notifications::screenIsLocked);
    EXPECT_EQ(lockedNames(), ab);
}

TEST_F(SmartAutoLock, TheSwitchStoresAndLogs)
{
    start();
    log.clear();
    manager->setEnabled(true);
    EXPECT_EQ(defaults().boolForKey(settings::smartAutoLockEnabled.key), true);
    manager->setEnabled(false);
    EXPECT_EQ(defaults().boolForKey(settings::smartAutoLockEnabled.key), false);
    EXPECT_EQ(log.lines(), QStringList({QStringLiteral("SmartAutoLockManager: Starting smart auto-lock monitoring"),
                                        QStringLiteral("SmartAutoLockManager: Stopping smart auto-lock monitoring")}));
}

TEST_F(SmartAutoLock, AStartWithTheSwitchOnIsLogged)
{
    log.clear();
    startEnabled();
    EXPECT_EQ(log.lines(), QStringList({QStringLiteral("SmartAutoLockManager: Starting smart auto-lock monitoring")}));
}

TEST_F(SmartAutoLock, NewRulesWithTheSwitchOnWriteStoppingAndThenStarting)
{
    startEnabled();
    log.clear();
    manager->updateRules({.lockOnScreenSaver = true});
    EXPECT_EQ(log.lines(), QStringList({QStringLiteral("SmartAutoLockManager: Stopping smart auto-lock monitoring"),
                                        QStringLiteral("SmartAutoLockManager: Starting smart auto-lock monitoring")}));
    EXPECT_TRUE(storedRules().value(QStringLiteral("lockOnScreenSaver")).toBool());
}

TEST_F(SmartAutoLock, NewRulesAreStoredWithTheSwitchOffToo)
{
    start();
    log.clear();
    manager->updateRules({.lockOnSystemLock = false});
    EXPECT_EQ(log.lines(), QStringList());
    EXPECT_EQ(storedRules().value(QStringLiteral("lockOnSystemLock")), QJsonValue(false));
    EXPECT_FALSE(start().rules().lockOnSystemLock);
}

TEST_F(SmartAutoLock, AllEightKeysAreStoredAndComeBack)
{
    const SmartAutoLockRules rules{.lockOnSleep = false,
                                   .lockOnLogout = false,
                                   .lockOnUserSwitch = false,
                                   .lockOnScreenSaver = true,
                                   .lockOnSystemLock = false,
                                   .enhancedIdleDetection = false,
                                   .idleThresholdMinutes = 9007199254740993,
                                   .exceptions = {QStringLiteral("a"), QStringLiteral("ü\n")}};
    start().updateRules(rules);
    EXPECT_EQ(storedRules().keys(),
              QStringList({QStringLiteral("enhancedIdleDetection"), QStringLiteral("exceptions"),
                           QStringLiteral("idleThresholdMinutes"), QStringLiteral("lockOnLogout"),
                           QStringLiteral("lockOnScreenSaver"), QStringLiteral("lockOnSleep"),
                           QStringLiteral("lockOnSystemLock"), QStringLiteral("lockOnUserSwitch")}));
    EXPECT_EQ(start().rules(), rules);
}

TEST_F(SmartAutoLock, RulesWithoutOneOfTheKeysAreThrownAwayWholeAndStayInTheStore)
{
    const QJsonObject whole =
        QJsonDocument::fromJson(encodeSmartAutoLockRules({.lockOnScreenSaver = true, .lockOnSystemLock = false}))
            .object();
    for (const QString &key : whole.keys()) {
        QJsonObject partial = whole;
        partial.remove(key);
        const QByteArray json = QJsonDocument(partial).toJson();
        settings::smartAutoLockRules.write(defaults(), json);
        log.clear();
        EXPECT_EQ(start().rules(), SmartAutoLockRules()) << key.toStdString();
        EXPECT_EQ(settings::smartAutoLockRules.read(defaults()), json);
        EXPECT_EQ(log.lines(), QStringList());
    }
}

TEST_F(SmartAutoLock, AValueOfAnotherTypeThrowsTheRulesAway)
{
    const QJsonObject whole = QJsonDocument::fromJson(encodeSmartAutoLockRules({.lockOnScreenSaver = true})).object();
    const auto replaced = [&whole](const char *key, const QJsonValue &value) {
        QJsonObject object = whole;
        object.insert(QLatin1String(key), value);
        return decodeSmartAutoLockRules(QJsonDocument(object).toJson());
    };
    EXPECT_TRUE(replaced("further", 1).has_value());
    EXPECT_TRUE(replaced("idleThresholdMinutes", 7.0).has_value());
    EXPECT_FALSE(replaced("lockOnSleep", 1).has_value());
    EXPECT_FALSE(replaced("lockOnSleep", QJsonValue::Null).has_value());
    EXPECT_FALSE(replaced("idleThresholdMinutes", 1.5).has_value());
    EXPECT_FALSE(replaced("idleThresholdMinutes", QStringLiteral("5")).has_value());
    EXPECT_FALSE(replaced("exceptions", QStringLiteral("a")).has_value());
    EXPECT_FALSE(replaced("exceptions", QJsonArray{1}).has_value());
    EXPECT_FALSE(decodeSmartAutoLockRules("[]").has_value());
    EXPECT_FALSE(decodeSmartAutoLockRules("").has_value());
}
