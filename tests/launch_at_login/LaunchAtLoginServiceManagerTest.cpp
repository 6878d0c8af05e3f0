// SPDX-License-Identifier: GPL-3.0-or-later

#include "launch_at_login/LaunchAtLoginServiceManager.h"

#include "FakeLaunchAtLoginService.h"
#include "support/LogCapture.h"
#include "support/RunTask.h"
#include "support/TestPlatform.h"

#include <gtest/gtest.h>

using namespace quillhaven;
using namespace quillhaven::test;

namespace {

class LaunchAtLoginFacade : public ::testing::Test
{
protected:
    void TearDown() override
    {
        spinOnce();
        m_services.reset();
    }

    LaunchAtLoginServiceManager &built()
    {
        if (!m_services) {
            m_services.emplace(services.platform(), std::make_unique<FakeLaunchAtLoginService>(registration));
        }
        return *m_services;
    }
    /// The facade after the jobs of the launch.
    LaunchAtLoginServiceManager &launched()
    {
        built();
        spinOnce();
        return *m_services;
    }
    void end() { m_services.reset(); }
    UserDefaults &defaults() { return services.defaults.standard(); }
    bool setting() { return settings::startAtLogin.read(defaults()); }
    void failRegister()
    {
        registration->failRegister = [this] { throw refused; };
    }

    TestPlatform services;
    std::shared_ptr<FakeRegistration> registration = std::make_shared<FakeRegistration>();
    const LaunchAtLoginError refused = LaunchAtLoginError::registrationFailed(QStringLiteral("refused"));

private:
    std::optional<LaunchAtLoginServiceManager> m_services;
};

} // namespace

TEST_F(LaunchAtLoginFacade, BeginsWithNothingKnown)
{
    EXPECT_FALSE(built().isEnabled());
    EXPECT_EQ(built().syncStatus(), SyncStatus::unknown);
    EXPECT_FALSE(built().lastError());
    EXPECT_FALSE(built().isSyncing());
    EXPECT_TRUE(built().isSystemSupported());
    EXPECT_TRUE(built().checkSystemSupport());
}

TEST_F(LaunchAtLoginFacade, LaunchWithoutTheWishEndsARegistration)
{
    registration->isRegistered = true;
    launched();
    EXPECT_FALSE(registration->isRegistered);
    EXPECT_FALSE(launched().isEnabled());
    EXPECT_FALSE(setting());
    EXPECT_EQ(launched().syncStatus(), SyncStatus::synchronized);
}

TEST_F(LaunchAtLoginFacade, LaunchWithTheWishAndTheRegistrationRegistersOnceMore)
{
    settings::startAtLogin.write(defaults(), true);
    registration->isRegistered = true;
    launched();
    EXPECT_GE(registration->calls.count(QStringLiteral("register")), 1);
    EXPECT_FALSE(registration->calls.contains(QStringLiteral("unregister")));
    EXPECT_TRUE(registration->isRegistered);
    EXPECT_TRUE(setting());
    EXPECT_TRUE(launched().isEnabled());
    EXPECT_EQ(launched().syncStatus(), SyncStatus::synchronized);
}

TEST_F(LaunchAtLoginFacade, LaunchWithTheWishAndNoRegistrationRegisters)
{
    settings::startAtLogin.write(defaults(), true);
    launched();
    EXPECT_TRUE(registration->isRegistered);
    EXPECT_TRUE(setting());
}

TEST_F(LaunchAtLoginFacade, RegistrationThatFailsAtLaunchKeepsTheWish)
{
    settings::startAtLogin.write(defaults(), true);
    failRegister();
    launched();
    EXPECT_TRUE(setting());
    EXPECT_EQ(launched().syncStatus(), SyncStatus::error);
    EXPECT_EQ(launched().lastError(), refused);
    EXPECT_FALSE(launched().isEnabled());
    EXPECT_FALSE(launched().isSyncing());
}

TEST_F(LaunchAtLoginFacade, NextLaunchTriesAgain)
{
    settings::startAtLogin.write(defaults(), true);
    failRegister();
    launched();
    end();
    registration->failRegister = {};
    launched();
    EXPECT_TRUE(registration->isRegistered);
    EXPECT_FALSE(launched().lastError());
}

TEST_F(LaunchAtLoginFacade, ForcedSynchronizationGivesUpWhileOneIsRunning)
{
    launched();
    registration->gate.emplace();
    const RunningTask<void> first(launched().forceSynchronization());
    spinOnce();
    EXPECT_TRUE(built().isSyncing());
    const QStringList calls = registration->calls;
    const RunningTask<void> second(built().forceSynchronization());
    EXPECT_TRUE(second.isFinished());
    EXPECT_EQ(registration->calls, calls);
    registration->gate->give(true);
    first.wait();
}

TEST_F(LaunchAtLoginFacade, ChangeWritesTheSettingByTheManagersValue)
{
    launched();
    runTask(built().setLaunchAtLogin(true));
    spinOnce();
    EXPECT_TRUE(built().isEnabled());
    EXPECT_TRUE(setting());
    runTask(built().setLaunchAtLogin(false));
    spinOnce();
    EXPECT_FALSE(setting());
    EXPECT_EQ(built().syncStatus(), SyncStatus::synchronized);
}

TEST_F(LaunchAtLoginFacade, FailedChangeReachesTheCallerAndKeepsTheSetting)
{
    launched();
    failRegister();
    EXPECT_THROW(runTask(built().setLaunchAtLogin(true)), LaunchAtLoginError);
    spinOnce();
    EXPECT_FALSE(setting());
    EXPECT_EQ(built().lastError(), refused);
}

TEST_F(LaunchAtLoginFacade, ErrorsOfBothPartsAreCleared)
{
    launched();
    failRegister();
    EXPECT_THROW(runTask(built().setLaunchAtLogin(true)), LaunchAtLoginError);
    ASSERT_TRUE(built().observer().lastSyncError());
    built().clearError();
    EXPECT_FALSE(built().lastError());
    EXPECT_FALSE(built().manager().lastError());
    EXPECT_FALSE(built().observer().lastSyncError());
}

TEST_F(LaunchAtLoginFacade, ErrorOfTheObserverComesBeforeTheManagers)
{
    settings::startAtLogin.write(defaults(), true);
    registration->failStatus = [] { throw std::runtime_error("no answer"); };
    registration->isRegistered = false;
    launched();
    runTask(built().forceSynchronization());
    registration->failStatus = {};
    const auto ofObserver = LaunchAtLoginError::unknownError(QStringLiteral("no answer"));
    ASSERT_EQ(built().lastError(), ofObserver);
    built().observer().stopObserving();
    failRegister();
    EXPECT_THROW(runTask(built().manager().setLaunchAtLogin(true)), LaunchAtLoginError);
    EXPECT_EQ(built().lastError(), ofObserver);
    built().observer().clearSyncError();
    EXPECT_EQ(built().lastError(), refused);
}

TEST_F(LaunchAtLoginFacade, IsSyncingWhileEitherPartIsBusy)
{
    launched();
    registration->gate.emplace();
    const RunningTask<void> change(built().manager().setLaunchAtLogin(true));
    EXPECT_TRUE(built().isSyncing());
    EXPECT_FALSE(built().observer().isSyncing());
    registration->gate->give(true);
    change.wait();
    EXPECT_FALSE(built().isSyncing());
}

TEST_F(LaunchAtLoginFacade, ChangeOutsideIsTakenOverByARefresh)
{
    launched();
    registration->isRegistered = true;
    registration->calls.clear();
    runTask(built().refreshStatus());
    spinOnce();
    EXPECT_TRUE(setting());
    EXPECT_TRUE(built().isEnabled());
    EXPECT_EQ(registration->calls, QStringList{QStringLiteral("status")});
}

TEST_F(LaunchAtLoginFacade, TestIsPassedOnToTheManager)
{
    launched();
    EXPECT_TRUE(runTask(built().testLaunchAtLogin()));
    EXPECT_FALSE(registration->isRegistered);
}

TEST_F(LaunchAtLoginFacade, ChangeOfTheHiddenStartRegistersAgainIfRegistered)
{
    launched();
    registration->calls.clear();
    settings::startHiddenAtLogin.write(defaults(), true);
    spinOnce();
    EXPECT_FALSE(registration->calls.contains(QStringLiteral("register")));
    runTask(built().setLaunchAtLogin(true));
    spinOnce();
    registration->calls.clear();
    settings::startHiddenAtLogin.write(defaults(), false);
    spinOnce();
    EXPECT_EQ(registration->calls, (QStringList{QStringLiteral("status"), QStringLiteral("register")}));
    EXPECT_TRUE(built().isEnabled());
}

TEST_F(LaunchAtLoginFacade, FailureToRegisterAgainIsReported)
{
    launched();
    runTask(built().setLaunchAtLogin(true));
    spinOnce();
    failRegister();
    settings::startHiddenAtLogin.write(defaults(), true);
    spinOnce();
    EXPECT_EQ(built().lastError(), refused);
    EXPECT_TRUE(built().isEnabled());
}

TEST_F(LaunchAtLoginFacade, EndStopsTheObservationAndIsLogged)
{
    launched();
    const LogCapture log;
    end();
    EXPECT_EQ(log.lines(), (QStringList{QStringLiteral("LaunchAtLoginServiceManager: Cleaned up resources"),
                                        QStringLiteral("LaunchAtLoginManager: Cleaned up resources")}));
    settings::startAtLogin.write(defaults(), true);
    spinOnce();
    EXPECT_FALSE(registration->isRegistered);
}

TEST_F(LaunchAtLoginFacade, RealEntryFollowsTheSettingAndTheHiddenStart)
{
    const QString path = services.home.path(QStringLiteral(".config/autostart/com.tarnwick.quillhaven.desktop"));
    LaunchAtLoginServiceManager real(services.platform());
    const auto isQuiet = [&real] { return !real.isSyncing() && real.syncStatus() == SyncStatus::synchronized; };
    ASSERT_TRUE(spinUntil(isQuiet));
    settings::startAtLogin.write(defaults(), true);
    ASSERT_TRUE(spinUntil([&] { return TemporaryHome::exists(path) && real.isEnabled() && isQuiet(); }));
    settings::startHiddenAtLogin.write(defaults(), true);
    ASSERT_TRUE(spinUntil([&] { return TemporaryHome::read(path).contains(" --login-item\n") && isQuiet(); }));
    settings::startHiddenAtLogin.write(defaults(), false);
    ASSERT_TRUE(spinUntil([&] { return !TemporaryHome::read(path).contains("--login-item") && isQuiet(); }));
    settings::startAtLogin.write(defaults(), false);
    ASSERT_TRUE(spinUntil([&] { return !TemporaryHome::exists(path) && !real.isEnabled() && isQuiet(); }));
    spinOnce();
}
