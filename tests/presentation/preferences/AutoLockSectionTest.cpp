// SPDX-License-Identifier: GPL-3.0-or-later

#include "PreferencesHarness.h"
#include "settings/Settings.h"

using namespace quillhaven;
using namespace quillhaven::test;

namespace {

class AutoLockSection : public DashboardTest
{
protected:
    AutoLockSectionModel &section()
    {
        if (!m_preferences) {
            m_preferences.emplace(started());
            QObject::connect(m_preferences->model.autoLock(), &AutoLockSectionModel::changed, [this] { ++changes; });
        }
        return *m_preferences->model.autoLock();
    }
    [[nodiscard]] PreferencesHarness &preferences() { return *m_preferences; }
    [[nodiscard]] UserDefaults &defaults() { return services.defaults.standard(); }

    int changes = 0;

private:
    std::optional<PreferencesHarness> m_preferences;
};

} // namespace

TEST_F(AutoLockSection, TheSwitchActsAtOnceAndIsStored)
{
    EXPECT_FALSE(section().isEnabled());
    section().setIsEnabled(true);
    EXPECT_TRUE(section().isEnabled());
    EXPECT_TRUE(preferences().autoLock.isMonitoring());
    EXPECT_EQ(defaults().boolForKey(settings::isAutoLockEnabled.key), true);
    EXPECT_GE(changes, 1);
}

TEST_F(AutoLockSection, TheLabelOfOneMinuteHasNoPlural)
{
    EXPECT_EQ(section().minutesText(), QStringLiteral("Lock after 5 minutes of inactivity"));
    section().setMinutes(2);
    EXPECT_EQ(section().minutesText(), QStringLiteral("Lock after 2 minutes of inactivity"));
    section().setMinutes(1);
    EXPECT_EQ(section().minutesText(), QStringLiteral("Lock after 1 minute of inactivity"));
    EXPECT_EQ(defaults().integerForKey(settings::autoLockMinutes.key), 1);
}

TEST_F(AutoLockSection, ThePeriodStopsAtOneAndAtTwoHours)
{
    section().setMinutes(0);
    EXPECT_EQ(section().minutes(), 1);
    section().setMinutes(121);
    EXPECT_EQ(section().minutes(), 120);
}

TEST_F(AutoLockSection, APeriodBeyondTheRangeIsShownAsItIs)
{
    settings::autoLockMinutes.write(defaults(), 500);
    EXPECT_EQ(section().minutesText(), QStringLiteral("Lock after 500 minutes of inactivity"));
    section().setMinutes(section().minutes() - 1);
    EXPECT_EQ(preferences().autoLock.autoLockMinutes(), 119);
}

TEST_F(AutoLockSection, EachRuleIsChangedAlone)
{
    SmartAutoLockRules expected;
    EXPECT_TRUE(section().locksOnScreenLock());
    section().setLocksOnScreenLock(false);
    expected.lockOnSystemLock = false;
    EXPECT_EQ(preferences().smartAutoLock.rules(), expected);
    section().setLocksOnScreenSaver(true);
    expected.lockOnScreenSaver = true;
    EXPECT_EQ(preferences().smartAutoLock.rules(), expected);
    section().setLocksOnUserSwitch(false);
    expected.lockOnUserSwitch = false;
    EXPECT_EQ(preferences().smartAutoLock.rules(), expected);
    EXPECT_TRUE(preferences().smartAutoLock.rules().lockOnLogout);
}

TEST_F(AutoLockSection, TheSmartRulesHaveASwitchOfTheirOwn)
{
    section().setIsSmartEnabled(true);
    EXPECT_TRUE(section().isSmartEnabled());
    EXPECT_EQ(defaults().boolForKey(settings::smartAutoLockEnabled.key), true);
    EXPECT_FALSE(section().isEnabled());
}

TEST_F(AutoLockSection, LockingOnSleepIsStoredAndFollowed)
{
    section().setLocksOnSleep(true);
    EXPECT_TRUE(section().locksOnSleep());
    EXPECT_TRUE(preferences().autoLock.lockOnSleep());
}

TEST_F(AutoLockSection, WithoutAMasterPasswordThereIsNothingToSayAboutIt)
{
    EXPECT_FALSE(section().hasMasterPassword());
    EXPECT_EQ(section().masterPasswordCaption(), QString());
}

TEST_F(AutoLockSection, WithAMasterPasswordTheCaptionSaysThatLockingWaits)
{
    storeMasterPassword();
    EXPECT_TRUE(section().hasMasterPassword());
    EXPECT_FALSE(section().locksWithoutMasterPassword());
    EXPECT_TRUE(section().masterPasswordCaption().contains(QStringLiteral("One entry locks one item")));
    section().setLocksWithoutMasterPassword(true);
    EXPECT_EQ(defaults().boolForKey(settings::autoLockWithoutMasterPassword.key), true);
    EXPECT_TRUE(section().locksWithoutMasterPassword());
    EXPECT_FALSE(section().masterPasswordCaption().contains(QStringLiteral("asks for it")));
}

TEST_F(AutoLockSection, APeriodThatNeverEndsSaysSo)
{
    settings::autoLockMinutes.write(defaults(), -1);
    EXPECT_EQ(section().minutesText(), QStringLiteral("Never locks: no period is set"));
}

TEST_F(AutoLockSection, ADesktopThatDoesNotReportInputIsNamedBesideTheSwitch)
{
    const QString ordinary = section().inputCaption();
    services.watched.setState(WatchedSources::Source::Input, {.isAvailable = true, .sentence = {}});
    EXPECT_EQ(section().inputCaption(), ordinary);
    changes = 0;
    services.watched.setState(
        WatchedSources::Source::Input,
        {.isAvailable = false, .sentence = QStringLiteral("This desktop does not report input.")});
    EXPECT_GT(changes, 0);
    EXPECT_TRUE(section().inputCaption().contains(QStringLiteral("own windows")));
    EXPECT_TRUE(section().inputCaption().endsWith(QStringLiteral("This desktop does not report input.")));
}
