// SPDX-License-Identifier: GPL-3.0-or-later

// The services over the real autostart entry of a temporary home.

#include "launch_at_login/LaunchAtLoginService.h"

#include "platform/LoginItem.h"
#include "settings/Settings.h"
#include "support/PrintText.h"
#include "support/RunTask.h"
#include "support/TestPlatform.h"

#include <gtest/gtest.h>

using namespace quillhaven;
using namespace quillhaven::test;

namespace {

class LaunchAtLoginServices : public ::testing::Test
{
protected:
    [[nodiscard]] QString entryPath() const
    {
        return services.home.path(QStringLiteral(".config/autostart/com.tarnwick.quillhaven.desktop"));
    }
    [[nodiscard]] QByteArray entry() const { return TemporaryHome::read(entryPath()); }
    UserDefaults &defaults() { return services.defaults.standard(); }

    TestPlatform services;
    std::unique_ptr<LaunchAtLoginService> service = LaunchAtLoginServiceFactory::createService(services.platform());
};

template <typename Service>
std::optional<LaunchAtLoginError> errorOf(QCoro::Task<Service> task)
{
    try {
        runTask(std::move(task));
    } catch (const LaunchAtLoginError &error) {
        return error;
    }
    return std::nullopt;
}

} // namespace

TEST_F(LaunchAtLoginServices, FactoryAlwaysGivesTheModernOne)
{
    const auto *modern = dynamic_cast<ModernLaunchAtLoginService *>(service.get());
    ASSERT_NE(modern, nullptr);
    EXPECT_EQ(modern->bundleIdentifier(), QStringLiteral("com.unknown.app"));
    const auto named = LaunchAtLoginServiceFactory::createService(services.platform(), QStringLiteral("org.example"));
    EXPECT_EQ(dynamic_cast<ModernLaunchAtLoginService &>(*named).bundleIdentifier(), QStringLiteral("org.example"));
}

TEST_F(LaunchAtLoginServices, RegistrationWritesTheEntryWithoutArguments)
{
    runTask(service->registerApp());
    EXPECT_TRUE(entry().contains("\nExec=" + QCoreApplication::applicationFilePath().toUtf8() + "\n"));
    EXPECT_TRUE(runTask(service->isRegistered()));
    runTask(service->unregister());
    EXPECT_FALSE(runTask(service->isRegistered()));
    EXPECT_FALSE(TemporaryHome::exists(entryPath()));
}

TEST_F(LaunchAtLoginServices, HiddenStartAddsTheArgumentOfALoginItem)
{
    settings::startHiddenAtLogin.write(defaults(), true);
    runTask(service->registerApp());
    EXPECT_TRUE(entry().contains("\nExec=" + QCoreApplication::applicationFilePath().toUtf8() + " --login-item\n"));
}

TEST_F(LaunchAtLoginServices, RegistrationThatIsSwitchedOffAsksForApprovalAndDoesNotCount)
{
    runTask(service->registerApp());
    services.home.write(QStringLiteral(".config/autostart/com.tarnwick.quillhaven.desktop"),
                        entry() + "X-GNOME-Autostart-enabled=false\n");
    EXPECT_EQ(runTask(services.loginItem.status()), LoginItem::Status::RequiresApproval);
    EXPECT_FALSE(runTask(service->isRegistered()));
}

TEST_F(LaunchAtLoginServices, FailuresCarryTheDescriptionOfThePlatformsError)
{
    // A folder in the way of the entry's folder.
    services.home.write(QStringLiteral(".config/autostart"), "in the way");
    const auto error = errorOf(service->registerApp());
    ASSERT_TRUE(error);
    EXPECT_EQ(error->errorCase(), LaunchAtLoginError::Case::registrationFailed);
    EXPECT_TRUE(error->errorDescription().startsWith(
        QStringLiteral("Failed to register app for launch at login: Could not write "
                       "\"com.tarnwick.quillhaven.desktop\"")))
        << qPrintable(error->errorDescription());
}

TEST_F(LaunchAtLoginServices, FailedEndIsAnUnregistrationThatFailed)
{
    class FailingItem : public LoginItem
    {
        QCoro::Task<Status> status() override { co_return Status::Enabled; }
        QCoro::Task<> registerItem(QStringList) override { co_return; }
        QCoro::Task<> unregisterItem() override
        {
            throw std::runtime_error("the disk is gone");
            co_return;
        }
    };
    FailingItem item;
    ModernLaunchAtLoginService failing(QStringLiteral("org.example"), item, defaults());
    EXPECT_EQ(errorOf(failing.unregister()),
              LaunchAtLoginError::unregistrationFailed(QStringLiteral("the disk is gone")));
}

TEST_F(LaunchAtLoginServices, LegacyServiceIsNeverRegisteredAndFails)
{
    LegacyLaunchAtLoginService legacy(QStringLiteral("org.example"));
    EXPECT_EQ(legacy.bundleIdentifier(), QStringLiteral("org.example"));
    EXPECT_EQ(errorOf(legacy.registerApp()), LaunchAtLoginError::systemUnavailable());
    EXPECT_EQ(errorOf(legacy.unregister()), LaunchAtLoginError::systemUnavailable());
    EXPECT_FALSE(runTask(legacy.isRegistered()));
}
