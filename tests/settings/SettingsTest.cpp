// SPDX-License-Identifier: GPL-3.0-or-later

#include "settings/Settings.h"
#include "platform/linux/settings/SqliteUserDefaultsProvider.h"
#include "support/LogCapture.h"
#include "support/TemporaryHome.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>

using namespace quillhaven;
using namespace quillhaven::test;

namespace {

class SettingsTest : public ::testing::Test
{
protected:
    TemporaryHome m_home;
    SqliteUserDefaultsProvider m_provider{m_home.directories().configuration};
    UserDefaults &m_defaults = m_provider.standard();
};

/// A store whose file cannot be read.
class UnreadableDefaults : public UserDefaults
{
public:
    [[nodiscard]] QVariant objectForKey(const QString &key) const override
    {
        throw UserDefaultsError(key, QStringLiteral("disk I/O error"));
    }
    void setObject(const QString &, const QVariant &) override {}
    void removeObject(const QString &) override {}
    [[nodiscard]] bool setArray(const QString &, const QList<ArrayElement> &) override { return false; }
    [[nodiscard]] bool changeArray(const QString &, const ArrayChange &) override { return false; }
};

TEST_F(SettingsTest, TheStoredNamesDoNotChange)
{
    const std::vector<std::pair<QLatin1String, const char *>> names{
        {settings::autoLockMinutes.key, "autoLockMinutes"},
        {settings::isAutoLockEnabled.key, "isAutoLockEnabled"},
        {settings::lockOnSleep.key, "lockOnSleep"},
        {settings::lockOnSleepInViewModel.key, "lockOnSleep"},
        {settings::autoLockWithoutMasterPassword.key, "autoLockWithoutMasterPassword"},
        {settings::startHiddenAtLogin.key, "startHiddenAtLogin"},
        {settings::smartAutoLockEnabled.key, "smartAutoLockEnabled"},
        {settings::smartAutoLockRules.key, "smartAutoLockRules"},
        {settings::enableTouchID.key, "enableTouchID"},
        {settings::enforceStrongPasswords.key, "enforceStrongPasswords"},
        {settings::enableiCloudBackup.key, "enableiCloudBackup"},
        {settings::startAtLogin.key, "startAtLogin"},
        {settings::hideMenuBarIcon.key, "hideMenuBarIcon"},
        {settings::appearanceMode.key, "appearanceMode"},
        {settings::hasCompletedOnboarding.key, "hasCompletedOnboarding"},
        {settings::extensionNotificationShown.key, "ExtensionActivationNotificationShown"},
        {settings::lastUpdateCheck.key, "LastUpdateCheck"},
        {settings::protectedItems.key, "ProtectedItems"},
        {settings::pendingAction.key, "PendingAction"},
        {settings::sharedSuite, "TQ4WZ81KDR.com.quillhaven.shared"},
    };
    for (const auto &[name, expected] : names) {
        EXPECT_STREQ(name.data(), expected);
    }
}

TEST_F(SettingsTest, AMissingKeyIsReadAsItsDefault)
{
    EXPECT_EQ(settings::autoLockMinutes.read(m_defaults), 5);
    EXPECT_FALSE(settings::isAutoLockEnabled.read(m_defaults));
    EXPECT_FALSE(settings::autoLockWithoutMasterPassword.read(m_defaults));
    EXPECT_FALSE(settings::startHiddenAtLogin.read(m_defaults));
    EXPECT_FALSE(settings::smartAutoLockEnabled.read(m_defaults));
    EXPECT_EQ(settings::smartAutoLockRules.read(m_defaults), std::nullopt);
    EXPECT_TRUE(settings::enableTouchID.read(m_defaults));
    EXPECT_TRUE(settings::enforceStrongPasswords.read(m_defaults));
    EXPECT_FALSE(settings::enableiCloudBackup.read(m_defaults));
    EXPECT_FALSE(settings::startAtLogin.read(m_defaults));
    EXPECT_FALSE(settings::hideMenuBarIcon.read(m_defaults));
    EXPECT_EQ(settings::appearanceMode.read(m_defaults), QStringLiteral("system"));
    EXPECT_FALSE(settings::hasCompletedOnboarding.read(m_defaults));
    EXPECT_FALSE(settings::extensionNotificationShown.read(m_defaults));
    EXPECT_EQ(settings::lastUpdateCheck.read(m_defaults), std::nullopt);
    EXPECT_EQ(settings::protectedItems.read(m_defaults), std::nullopt);
    EXPECT_EQ(settings::pendingAction.read(m_defaults), std::nullopt);
}

TEST_F(SettingsTest, LockOnSleepHasADefaultForEachOfItsReaders)
{
    EXPECT_FALSE(settings::lockOnSleep.read(m_defaults));
    EXPECT_TRUE(settings::lockOnSleepInViewModel.read(m_defaults));
    settings::lockOnSleep.write(m_defaults, false);
    EXPECT_FALSE(settings::lockOnSleepInViewModel.read(m_defaults));
}

TEST_F(SettingsTest, AValueOfAnotherTypeIsReadAsTheDefault)
{
    m_defaults.setString(settings::autoLockMinutes.key, QStringLiteral("30"));
    m_defaults.setInteger(settings::enableTouchID.key, 0);
    m_defaults.setBool(settings::appearanceMode.key, true);
    m_defaults.setString(settings::lastUpdateCheck.key, QStringLiteral("2024-01-01"));
    EXPECT_EQ(settings::autoLockMinutes.read(m_defaults), 5);
    EXPECT_TRUE(settings::enableTouchID.read(m_defaults));
    EXPECT_EQ(settings::appearanceMode.read(m_defaults), QStringLiteral("system"));
    EXPECT_EQ(settings::lastUpdateCheck.read(m_defaults), std::nullopt);
}

TEST_F(SettingsTest, AWrittenValueIsReadByTheNextStart)
{
    const QDateTime date = QDateTime::fromMSecsSinceEpoch(1'700'000'000'123, Qt::UTC);
    const QVariantMap action{{QStringLiteral("action"), QStringLiteral("lock")}};
    settings::autoLockMinutes.write(m_defaults, 15);
    settings::enableTouchID.write(m_defaults, false);
    settings::appearanceMode.write(m_defaults, QStringLiteral("dark"));
    settings::smartAutoLockRules.write(m_defaults, "{}");
    settings::lastUpdateCheck.write(m_defaults, date);
    settings::pendingAction.write(m_defaults, action);
    SqliteUserDefaultsProvider next(m_home.directories().configuration);
    EXPECT_EQ(settings::autoLockMinutes.read(next.standard()), 15);
    EXPECT_FALSE(settings::enableTouchID.read(next.standard()));
    EXPECT_EQ(settings::appearanceMode.read(next.standard()), QStringLiteral("dark"));
    EXPECT_EQ(settings::smartAutoLockRules.read(next.standard()), "{}");
    EXPECT_EQ(settings::lastUpdateCheck.read(next.standard()), date);
    EXPECT_EQ(settings::pendingAction.read(next.standard()), action);
}

TEST_F(SettingsTest, AChangeIsReportedForItsKeyWhileTheReceiverExists)
{
    QList<bool> seen;
    auto receiver = std::make_unique<QObject>();
    settings::enableTouchID.onChange(m_defaults, receiver.get(),
                                     [&] { seen.append(settings::enableTouchID.read(m_defaults)); });
    settings::enforceStrongPasswords.write(m_defaults, false);
    settings::enableTouchID.write(m_defaults, false);
    m_defaults.removeObject(settings::enableTouchID.key);
    EXPECT_EQ(seen, QList<bool>({false, true}));
    receiver.reset();
    settings::enableTouchID.write(m_defaults, false);
    EXPECT_EQ(seen.size(), 2);
}

TEST_F(SettingsTest, AStoreThatCannotBeReadGivesTheDefaultAndALogLine)
{
    const UnreadableDefaults unreadable;
    LogCapture log;
    EXPECT_TRUE(settings::enforceStrongPasswords.read(unreadable));
    ASSERT_EQ(log.lines().size(), 1);
    EXPECT_EQ(log.lines().constFirst().trimmed(),
              QStringLiteral("❌ Could not read the setting enforceStrongPasswords: disk I/O error"));
}

} // namespace
