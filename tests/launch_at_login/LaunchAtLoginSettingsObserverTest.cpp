// SPDX-License-Identifier: GPL-3.0-or-later

#include "launch_at_login/LaunchAtLoginSettingsObserver.h"

#include "FakeLaunchAtLoginService.h"
#include "support/RunTask.h"
#include "support/TestPlatform.h"

#include <gtest/gtest.h>

using namespace quillhaven;
using namespace quillhaven::test;

namespace {

class LaunchAtLoginObservers : public ::testing::Test
{
protected:
    void TearDown() override { spinOnce(); }

    LaunchAtLoginSettingsObserver &observer()
    {
        if (!m_observer) {
            m_observer.emplace(manager, defaults(), services.clock);
            spinOnce();
            registration->calls.clear();
        }
        return *m_observer;
    }
    UserDefaults &defaults() { return services.defaults.standard(); }
    bool setting() { return settings::startAtLogin.read(defaults()); }
    void setSetting(bool value)
    {
        settings::startAtLogin.write(defaults(), value);
        spinOnce();
    }
    void failRegister()
    {
        registration->failRegister = [this] { throw refused; };
    }

    TestPlatform services;
    std::shared_ptr<FakeRegistration> registration = std::make_shared<FakeRegistration>();
    LaunchAtLoginManager manager{services.platform(), std::nullopt,
                                 std::make_unique<FakeLaunchAtLoginService>(registration)};
    const LaunchAtLoginError refused = LaunchAtLoginError::registrationFailed(QStringLiteral("refused"));
    const QStringList registered{QStringLiteral("register")};
    const QStringList unregistered{QStringLiteral("unregister")};

private:
    std::optional<LaunchAtLoginSettingsObserver> m_observer;
};

} // namespace

TEST_F(LaunchAtLoginObservers, SettingThatIsSetWhenTheObservationBeginsIsApplied)
{
    settings::startAtLogin.write(defaults(), true);
    EXPECT_EQ(observer().syncStatus(), SyncStatus::synchronized);
    EXPECT_TRUE(registration->isRegistered);
    EXPECT_TRUE(setting());
    EXPECT_TRUE(observer().lastKnownSettingsState());
    EXPECT_TRUE(observer().lastKnownSystemState());
}

TEST_F(LaunchAtLoginObservers, SettingThatChangesIsAppliedWithoutADelay)
{
    observer();
    EXPECT_EQ(services.clock.pendingTimers(), 0);
    setSetting(true);
    EXPECT_EQ(registration->calls, registered);
    EXPECT_EQ(observer().syncStatus(), SyncStatus::synchronized);
    setSetting(false);
    EXPECT_EQ(registration->calls, registered + unregistered);
    EXPECT_FALSE(registration->isRegistered);
}

TEST_F(LaunchAtLoginObservers, SettingWithTheSameValueIsNotApplied)
{
    observer();
    setSetting(true);
    registration->calls.clear();
    setSetting(true);
    EXPECT_EQ(registration->calls, QStringList());
}

TEST_F(LaunchAtLoginObservers, SettingIsOutOfSyncAndSyncingWhileItIsApplied)
{
    observer();
    registration->gate.emplace();
    setSetting(true);
    EXPECT_EQ(observer().syncStatus(), SyncStatus::outOfSync);
    EXPECT_TRUE(observer().isSyncing());
    registration->gate->give(true);
    spinOnce();
    EXPECT_EQ(observer().syncStatus(), SyncStatus::synchronized);
    EXPECT_FALSE(observer().isSyncing());
}

TEST_F(LaunchAtLoginObservers, SettingThatCannotBeAppliedKeepsItsValue)
{
    observer();
    failRegister();
    setSetting(true);
    EXPECT_EQ(observer().syncStatus(), SyncStatus::error);
    EXPECT_EQ(observer().lastSyncError(), refused);
    EXPECT_FALSE(observer().isSyncing());
    EXPECT_TRUE(setting());
    EXPECT_FALSE(manager.isEnabled());
}

TEST_F(LaunchAtLoginObservers, ChangeOutsideThatTheManagerSeesOverwritesTheSetting)
{
    observer();
    registration->isRegistered = true;
    runTask(manager.refreshStatus());
    spinOnce();
    EXPECT_TRUE(setting());
    EXPECT_EQ(observer().syncStatus(), SyncStatus::synchronized);
    // The subscription on the setting finds it equal to the manager's value.
    EXPECT_EQ(registration->calls, QStringList{QStringLiteral("status")});
    EXPECT_TRUE(observer().lastKnownSettingsState());
}

TEST_F(LaunchAtLoginObservers, SynchronizationThatIsNotForcedDoesNothingIfBothAgree)
{
    runTask(observer().performSynchronization(false));
    EXPECT_EQ(registration->calls, QStringList{QStringLiteral("status")});
    EXPECT_EQ(observer().syncStatus(), SyncStatus::synchronized);
    EXPECT_FALSE(observer().isSyncing());
}

TEST_F(LaunchAtLoginObservers, ForcedSynchronizationRepeatsTheCallIfBothAgree)
{
    runTask(observer().forceSynchronization());
    EXPECT_EQ(registration->calls, (QStringList{QStringLiteral("status"), QStringLiteral("unregister")}));
    EXPECT_EQ(observer().syncStatus(), SyncStatus::synchronized);
}

TEST_F(LaunchAtLoginObservers, ForcedSynchronizationGivesUpWhileOneIsRunning)
{
    observer();
    registration->gate.emplace();
    const RunningTask<void> first(observer().performSynchronization(true));
    spinOnce();
    const QStringList calls = registration->calls;
    const RunningTask<void> second(observer().forceSynchronization());
    EXPECT_TRUE(second.isFinished());
    EXPECT_EQ(registration->calls, calls);
    EXPECT_TRUE(observer().isSyncing());
    registration->gate->give(true);
    first.wait();
    EXPECT_FALSE(observer().isSyncing());
}

TEST_F(LaunchAtLoginObservers, FailedSynchronizationIsReportedAndDoesNotFail)
{
    settings::startAtLogin.write(defaults(), true);
    failRegister();
    observer();
    runTask(observer().performSynchronization(true));
    EXPECT_EQ(observer().syncStatus(), SyncStatus::error);
    EXPECT_EQ(observer().lastSyncError(), refused);
    observer().clearSyncError();
    EXPECT_FALSE(observer().lastSyncError());
}

TEST_F(LaunchAtLoginObservers, SuccessClearsTheErrorOfAnEarlierFailure)
{
    observer();
    failRegister();
    setSetting(true);
    registration->failRegister = {};
    runTask(observer().forceSynchronization());
    EXPECT_FALSE(observer().lastSyncError());
    EXPECT_EQ(observer().syncStatus(), SyncStatus::synchronized);
}

TEST_F(LaunchAtLoginObservers, StatusThatCannotBeReadIsAnErrorAndEndsTheSynchronization)
{
    observer();
    registration->failStatus = [] { throw std::runtime_error("no answer"); };
    runTask(observer().performSynchronization(false));
    EXPECT_EQ(observer().lastSyncError(), LaunchAtLoginError::unknownError(QStringLiteral("no answer")));
    EXPECT_EQ(observer().syncStatus(), SyncStatus::error);
    EXPECT_FALSE(observer().isSyncing());
}

TEST_F(LaunchAtLoginObservers, ErrorOfTheManagerIsTakenOverAndItsEndIsNot)
{
    observer();
    failRegister();
    EXPECT_THROW(runTask(manager.setLaunchAtLogin(true)), LaunchAtLoginError);
    EXPECT_EQ(observer().lastSyncError(), refused);
    manager.clearError();
    EXPECT_EQ(observer().lastSyncError(), refused);
}

TEST_F(LaunchAtLoginObservers, NothingIsObservedAfterTheEndAndEverythingAgainAfterAStart)
{
    observer().stopObserving();
    setSetting(true);
    EXPECT_EQ(registration->calls, QStringList());
    observer().startObserving();
    spinOnce();
    EXPECT_EQ(registration->calls, registered);
    EXPECT_TRUE(setting());
}

TEST_F(LaunchAtLoginObservers, InitialSynchronizationRunsInAJob)
{
    observer();
    observer().startInitialSync();
    EXPECT_EQ(registration->calls, QStringList());
    spinOnce();
    EXPECT_EQ(registration->calls, QStringList{QStringLiteral("status")});
}

TEST_F(LaunchAtLoginObservers, ChangeByAnotherProcessIsApplied)
{
    observer();
    SqliteUserDefaultsProvider other(services.directories.configuration);
    settings::startAtLogin.write(other.standard(), true);
    EXPECT_TRUE(spinUntil([this] { return registration->isRegistered; }));
    spinOnce();
}
