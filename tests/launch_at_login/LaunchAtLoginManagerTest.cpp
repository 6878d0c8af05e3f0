// SPDX-License-Identifier: GPL-3.0-or-later

#include "launch_at_login/LaunchAtLoginManager.h"

#include "FakeLaunchAtLoginService.h"
#include "support/LogCapture.h"
#include "support/PrintText.h"
#include "support/RunTask.h"
#include "support/TestPlatform.h"

#include <gtest/gtest.h>

#include <system_error>

using namespace quillhaven;
using namespace quillhaven::test;

namespace {

class LaunchAtLoginManagers : public ::testing::Test
{
protected:
    static std::function<void()> failing(const LaunchAtLoginError &error)
    {
        return [error] { throw error; };
    }
    /// Changes the registration and returns the error, if it fails.
    std::optional<LaunchAtLoginError> set(bool enabled)
    {
        try {
            runTask(manager.setLaunchAtLogin(enabled));
        } catch (const LaunchAtLoginError &error) {
            return error;
        }
        return std::nullopt;
    }

    TestPlatform services;
    std::shared_ptr<FakeRegistration> registration = std::make_shared<FakeRegistration>();
    LaunchAtLoginManager manager{services.platform(), std::nullopt,
                                 std::make_unique<FakeLaunchAtLoginService>(registration)};
    const LaunchAtLoginError refused = LaunchAtLoginError::registrationFailed(QStringLiteral("refused"));
};

/// An error of the system with a code and the name of its domain.
class Domain : public std::error_category
{
public:
    explicit Domain(const char *name) : m_name(name) {}
    [[nodiscard]] const char *name() const noexcept override { return m_name; }
    [[nodiscard]] std::string message(int) const override { return "did not work"; }

private:
    const char *m_name;
};

LaunchAtLoginError mapped(int code, const char *domain = "any.other")
{
    const Domain category(domain);
    return LaunchAtLoginManager::mapError(std::make_exception_ptr(std::system_error(std::error_code(code, category))));
}

} // namespace

TEST_F(LaunchAtLoginManagers, BeginsNotEnabledAndUnknown)
{
    EXPECT_FALSE(manager.isEnabled());
    EXPECT_FALSE(manager.lastError());
    EXPECT_FALSE(manager.isUpdating());
    EXPECT_TRUE(manager.isSystemSupported());
    EXPECT_EQ(manager.currentState(),
              (LaunchAtLoginState{false, services.clock.now(), SystemStatus::unknown, std::nullopt}));
}

TEST_F(LaunchAtLoginManagers, IdentifierIsTheArgumentOrElseTheApplications)
{
    EXPECT_EQ(manager.bundleIdentifier(), QStringLiteral("com.unknown.app"));
    const LaunchAtLoginManager named(services.platform(), QStringLiteral("org.example.app"));
    EXPECT_EQ(named.bundleIdentifier(), QStringLiteral("org.example.app"));
}

TEST_F(LaunchAtLoginManagers, RegistrationEnables)
{
    const LogCapture log;
    services.clock.advance(std::chrono::seconds(7));
    const RunningTask<void> running(manager.setLaunchAtLogin(true));
    EXPECT_TRUE(manager.isUpdating());
    EXPECT_EQ(manager.currentState().systemStatus, SystemStatus::updating);
    EXPECT_EQ(manager.currentState().lastUpdated, services.clock.now());
    EXPECT_FALSE(manager.isEnabled());
    running.wait();
    EXPECT_TRUE(manager.isEnabled());
    EXPECT_FALSE(manager.isUpdating());
    EXPECT_EQ(manager.currentState(),
              (LaunchAtLoginState{true, services.clock.now(), SystemStatus::synchronized, std::nullopt}));
    EXPECT_EQ(registration->calls, QStringList{QStringLiteral("register")});
    EXPECT_TRUE(log.contains(QStringLiteral("LaunchAtLoginManager: Successfully enabled launch at login")));
}

TEST_F(LaunchAtLoginManagers, EndOfTheRegistrationDisables)
{
    const LogCapture log;
    ASSERT_FALSE(set(true));
    ASSERT_FALSE(set(false));
    EXPECT_FALSE(manager.isEnabled());
    EXPECT_FALSE(registration->isRegistered);
    EXPECT_TRUE(log.contains(QStringLiteral("LaunchAtLoginManager: Successfully disabled launch at login")));
}

TEST_F(LaunchAtLoginManagers, FailedRegistrationLeavesItDisabledWithTheErrorAndUpdating)
{
    const LogCapture log;
    registration->failRegister = failing(refused);
    EXPECT_EQ(set(true), refused);
    EXPECT_FALSE(manager.isEnabled());
    EXPECT_EQ(manager.lastError(), refused);
    EXPECT_FALSE(manager.isUpdating());
    EXPECT_EQ(manager.currentState().systemStatus, SystemStatus::updating);
    EXPECT_EQ(manager.currentState().errorState, refused);
    const QString description = QStringLiteral("Failed to register app for launch at login: refused");
    EXPECT_EQ(log.lines(),
              (QStringList{QStringLiteral("LaunchAtLoginManager error: ") + description,
                           QStringLiteral("Recovery suggestion: Try again in a few moments. If the problem persists, "
                                          "restart the app."),
                           QStringLiteral("LaunchAtLoginManager: Failed to enable launch at login"),
                           QStringLiteral("Error: ") + description}));
}

TEST_F(LaunchAtLoginManagers, FailedEndOfTheRegistrationLeavesItEnabled)
{
    const LogCapture log;
    ASSERT_FALSE(set(true));
    registration->failUnregister = failing(LaunchAtLoginError::permissionDenied());
    EXPECT_EQ(set(false), LaunchAtLoginError::permissionDenied());
    EXPECT_TRUE(manager.isEnabled());
    EXPECT_TRUE(log.contains(QStringLiteral("LaunchAtLoginManager: Failed to disable launch at login")));
}

TEST_F(LaunchAtLoginManagers, SuccessAfterAFailureClearsTheErrorButTheStateKeepsIt)
{
    registration->failRegister = failing(refused);
    set(true);
    registration->failRegister = {};
    EXPECT_FALSE(set(true));
    EXPECT_FALSE(manager.lastError());
    EXPECT_EQ(manager.currentState().errorState, refused);
    EXPECT_EQ(manager.currentState().systemStatus, SystemStatus::synchronized);
}

TEST_F(LaunchAtLoginManagers, ClearedErrorStaysInTheState)
{
    registration->failRegister = failing(refused);
    set(true);
    manager.clearError();
    EXPECT_FALSE(manager.lastError());
    EXPECT_EQ(manager.currentState().errorState, refused);
}

TEST_F(LaunchAtLoginManagers, CheckTakesOverWhatTheSystemSays)
{
    registration->isRegistered = true;
    EXPECT_TRUE(runTask(manager.checkCurrentStatus()));
    EXPECT_TRUE(manager.isEnabled());
    EXPECT_EQ(manager.currentState().systemStatus, SystemStatus::synchronized);
    registration->isRegistered = false;
    runTask(manager.refreshStatus());
    EXPECT_FALSE(manager.isEnabled());
    EXPECT_EQ(manager.currentState().systemStatus, SystemStatus::synchronized);
}

TEST_F(LaunchAtLoginManagers, CheckWithoutAChangeKeepsTheStatusAndMovesTheDate)
{
    services.clock.advance(std::chrono::seconds(3));
    EXPECT_FALSE(runTask(manager.checkCurrentStatus()));
    EXPECT_EQ(manager.currentState().systemStatus, SystemStatus::unknown);
    EXPECT_EQ(manager.currentState().lastUpdated, services.clock.now());
}

TEST_F(LaunchAtLoginManagers, TestRegistersAsksAndUnregistersWhateverItWasBefore)
{
    registration->isRegistered = true;
    EXPECT_TRUE(runTask(manager.testLaunchAtLogin()));
    EXPECT_EQ(registration->calls,
              (QStringList{QStringLiteral("register"), QStringLiteral("status"), QStringLiteral("unregister")}));
    EXPECT_FALSE(registration->isRegistered);
}

TEST_F(LaunchAtLoginManagers, TestThatFailsIsLoggedAndFalse)
{
    const LogCapture log;
    registration->failUnregister = failing(LaunchAtLoginError::permissionDenied());
    EXPECT_FALSE(runTask(manager.testLaunchAtLogin()));
    EXPECT_EQ(log.lines(), QStringList{QStringLiteral("LaunchAtLoginManager test failed: Permission denied for launch "
                                                      "at login registration")});
}

TEST_F(LaunchAtLoginManagers, EndIsLogged)
{
    const LogCapture log;
    {
        const LaunchAtLoginManager shortLived(services.platform());
    }
    EXPECT_TRUE(log.contains(QStringLiteral("LaunchAtLoginManager: Cleaned up resources")));
}

TEST(LaunchAtLoginMapping, OwnErrorStaysAsItIs)
{
    const auto own = LaunchAtLoginError::unregistrationFailed(QStringLiteral("a"));
    EXPECT_EQ(LaunchAtLoginManager::mapError(std::make_exception_ptr(own)), own);
}

TEST(LaunchAtLoginMapping, TwoCodesArePermissionDenied)
{
    EXPECT_EQ(mapped(-1), LaunchAtLoginError::permissionDenied());
    EXPECT_EQ(mapped(1000), LaunchAtLoginError::permissionDenied());
    EXPECT_EQ(mapped(1000, "com.apple.ServiceManagement"), LaunchAtLoginError::permissionDenied());
    EXPECT_EQ(mapped(-2), LaunchAtLoginError::systemUnavailable());
}

TEST(LaunchAtLoginMapping, CodesOfTheServiceCountInAnyDomain)
{
    const QString text = QStringLiteral("Service management error: did not work");
    EXPECT_EQ(mapped(1001), LaunchAtLoginError::registrationFailed(text));
    EXPECT_EQ(mapped(1002), LaunchAtLoginError::unregistrationFailed(text));
    EXPECT_EQ(mapped(7, "com.apple.ServiceManagement"), LaunchAtLoginError::registrationFailed(text));
}

TEST(LaunchAtLoginMapping, AnythingElseIsUnknown)
{
    EXPECT_EQ(mapped(7), LaunchAtLoginError::unknownError(QStringLiteral("did not work")));
    EXPECT_EQ(LaunchAtLoginManager::mapError(std::make_exception_ptr(std::runtime_error("broken"))),
              LaunchAtLoginError::unknownError(QStringLiteral("broken")));
}
