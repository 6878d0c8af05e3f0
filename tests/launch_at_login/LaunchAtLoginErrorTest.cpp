// SPDX-License-Identifier: GPL-3.0-or-later

#include "launch_at_login/LaunchAtLoginError.h"
#include "launch_at_login/LaunchAtLoginConfiguration.h"
#include "launch_at_login/SyncStatus.h"
#include "support/PrintText.h"

#include <QCoreApplication>

#include <gtest/gtest.h>

using namespace quillhaven;

TEST(LaunchAtLoginErrors, EachCaseHasItsDescriptionAndSuggestion)
{
    const QString text = QStringLiteral("the reason");
    const auto again = QStringLiteral("Try again in a few moments. If the problem persists, restart the app.");
    EXPECT_EQ(LaunchAtLoginError::registrationFailed(text).errorDescription(),
              QStringLiteral("Failed to register app for launch at login: the reason"));
    EXPECT_EQ(LaunchAtLoginError::registrationFailed(text).recoverySuggestion(), again);
    EXPECT_EQ(LaunchAtLoginError::unregistrationFailed(text).errorDescription(),
              QStringLiteral("Failed to unregister app from launch at login: the reason"));
    EXPECT_EQ(LaunchAtLoginError::unregistrationFailed(text).recoverySuggestion(), again);
    EXPECT_EQ(LaunchAtLoginError::unknownError(text).errorDescription(),
              QStringLiteral("Unknown error occurred: the reason"));
    EXPECT_EQ(LaunchAtLoginError::unknownError(text).recoverySuggestion(),
              QStringLiteral("Please try again. If the problem persists, contact support."));
    EXPECT_EQ(LaunchAtLoginError::permissionDenied().errorDescription(),
              QStringLiteral("Permission denied for launch at login registration"));
    EXPECT_EQ(LaunchAtLoginError::permissionDenied().recoverySuggestion(),
              QStringLiteral("Check System Preferences > Security & Privacy > Privacy > Automation to ensure the app "
                             "has necessary permissions."));
    EXPECT_EQ(LaunchAtLoginError::systemUnavailable().errorDescription(),
              QStringLiteral("Launch at login system is unavailable"));
    EXPECT_EQ(LaunchAtLoginError::systemUnavailable().recoverySuggestion(),
              QStringLiteral("This feature requires macOS 10.10 or later. Please update your system if possible."));
}

TEST(LaunchAtLoginErrors, AreEqualIfTheCaseAndTheTextAre)
{
    const auto error = LaunchAtLoginError::registrationFailed(QStringLiteral("a"));
    EXPECT_TRUE(error == LaunchAtLoginError::registrationFailed(QStringLiteral("a")));
    EXPECT_FALSE(error == LaunchAtLoginError::registrationFailed(QStringLiteral("b")));
    EXPECT_FALSE(error == LaunchAtLoginError::unregistrationFailed(QStringLiteral("a")));
    EXPECT_TRUE(LaunchAtLoginError::permissionDenied() == LaunchAtLoginError::permissionDenied());
    EXPECT_FALSE(LaunchAtLoginError::permissionDenied() == LaunchAtLoginError::systemUnavailable());
}

TEST(LaunchAtLoginConfigurations, CurrentDescribesThisProcess)
{
    const auto domain = QCoreApplication::organizationDomain();
    const auto name = QCoreApplication::applicationName();
    QCoreApplication::setOrganizationDomain(QString());
    EXPECT_EQ(LaunchAtLoginConfiguration::current().bundleIdentifier, QStringLiteral("com.unknown.app"));
    QCoreApplication::setOrganizationDomain(QStringLiteral("tarnwick.com"));
    QCoreApplication::setApplicationName(QStringLiteral("quillhaven"));
    const LaunchAtLoginConfiguration configuration = LaunchAtLoginConfiguration::current();
    EXPECT_EQ(configuration.bundleIdentifier, QStringLiteral("com.tarnwick.quillhaven"));
    EXPECT_EQ(configuration.executablePath, QCoreApplication::applicationFilePath());
    EXPECT_EQ(configuration.launchArguments, QStringList{QStringLiteral("--login-item")});
    EXPECT_TRUE(configuration.environmentVariables.isEmpty());
    QCoreApplication::setOrganizationDomain(domain);
    QCoreApplication::setApplicationName(name);
}

TEST(SyncStatuses, EachHasASymbolAColourAndWords)
{
    struct Row
    {
        SyncStatus status;
        const char *icon;
        const char *color;
        const char *words;
    };
    const Row rows[] = {
        {SyncStatus::synchronized, "checkmark.circle.fill", "green", "Settings synchronized"},
        {SyncStatus::outOfSync, "exclamationmark.triangle.fill", "orange", "Settings out of sync"},
        {SyncStatus::syncing, "arrow.triangle.2.circlepath", "blue", "Synchronizing..."},
        {SyncStatus::error, "xmark.circle.fill", "red", "Synchronization error"},
        {SyncStatus::unknown, "questionmark.circle.fill", "gray", "Status unknown"},
    };
    for (const Row &row : rows) {
        EXPECT_EQ(iconName(row.status), QLatin1String(row.icon));
        EXPECT_EQ(statusColor(row.status), QLatin1String(row.color));
        EXPECT_EQ(description(row.status), QLatin1String(row.words));
    }
}
