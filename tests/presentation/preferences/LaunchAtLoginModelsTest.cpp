// SPDX-License-Identifier: GPL-3.0-or-later

#include "launch_at_login/FakeLaunchAtLoginService.h"
#include "presentation/dialogs/ConfirmationDialogManager.h"
#include "presentation/preferences/LaunchAtLoginBadgeModel.h"
#include "presentation/preferences/LaunchAtLoginToggleModel.h"
#include "presentation/tokens/Design.h"
#include "support/PrintText.h"
#include "support/RunTask.h"
#include "support/TestPlatform.h"

#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickItem>

#include <gtest/gtest.h>

using namespace quillhaven;
using namespace quillhaven::test;
using namespace std::chrono_literals;

namespace {

class LaunchAtLoginModels : public ::testing::Test
{
protected:
    void SetUp() override { spinOnce(); }
    void TearDown() override { spinOnce(); }

    [[nodiscard]] LaunchAtLoginStatusModel &status() { return *toggle.status(); }
    void setEnabled(bool enabled)
    {
        toggle.setEnabled(enabled);
        spinOnce();
    }
    void failRegister(const LaunchAtLoginError &error)
    {
        registration->failRegister = [error] { throw error; };
    }
    bool setting() { return settings::startAtLogin.read(services.defaults.standard()); }

    TestPlatform services;
    std::shared_ptr<FakeRegistration> registration = std::make_shared<FakeRegistration>();
    ConfirmationDialogManager confirmation;
    LaunchAtLoginServiceManager manager{services.platform(), std::make_unique<FakeLaunchAtLoginService>(registration)};
    LaunchAtLoginToggleModel toggle{manager, confirmation, services.platform(), [] {}};
    LaunchAtLoginBadgeModel badge{manager};
};

/// A view of the module, created with one property.
class View
{
public:
    View(const QByteArray &type, const QString &property, const QVariant &value)
    {
        installDesign(m_engine);
        QQmlComponent component(&m_engine);
        component.setData("import Quillhaven.Preferences\n" + type + " {}", QUrl());
        m_root.reset(qobject_cast<QQuickItem *>(component.createWithInitialProperties({{property, value}})));
        EXPECT_TRUE(m_root) << qUtf8Printable(component.errorString());
    }

    /// The item that shows this text, or null.
    [[nodiscard]] QQuickItem *showing(const QString &text) const { return showing(m_root.get(), text); }

private:
    static QQuickItem *showing(QQuickItem *item, const QString &text)
    {
        if (!item || item->property("text").toString() == text) {
            return item;
        }
        for (QQuickItem *child : item->childItems()) {
            if (QQuickItem *found = showing(child, text)) {
                return found;
            }
        }
        return nullptr;
    }

    QQmlEngine m_engine;
    std::unique_ptr<QQuickItem> m_root;
};

} // namespace

TEST_F(LaunchAtLoginModels, SwitchChangesTheRegistrationAndTheSetting)
{
    EXPECT_EQ(toggle.stateText(), QStringLiteral("Disabled"));
    setEnabled(true);
    EXPECT_TRUE(registration->isRegistered);
    EXPECT_TRUE(setting());
    EXPECT_TRUE(toggle.isEnabled());
    EXPECT_EQ(toggle.stateText(), QStringLiteral("Enabled"));
    EXPECT_EQ(status().successText(), QStringLiteral("Launch at login enabled"));
    setEnabled(false);
    EXPECT_FALSE(setting());
    EXPECT_EQ(status().successText(), QStringLiteral("Launch at login disabled"));
    services.clock.advance(3s);
    EXPECT_EQ(status().successText(), QString());
}

TEST_F(LaunchAtLoginModels, SwitchIsUpdatingMeanwhile)
{
    registration->gate.emplace();
    setEnabled(true);
    EXPECT_TRUE(toggle.isSyncing());
    EXPECT_EQ(toggle.stateText(), QStringLiteral("Updating..."));
    EXPECT_EQ(status().status(), (ShownStatus{QStringLiteral("Updating..."), QString(), StatusTone::Info}));
    EXPECT_TRUE(status().isBusy());
    EXPECT_EQ(badge.word(), QStringLiteral("Updating"));
    registration->gate->give(true);
    spinOnce();
    EXPECT_FALSE(toggle.isSyncing());
    EXPECT_FALSE(status().isBusy());
}

TEST_F(LaunchAtLoginModels, FailureShowsTheErrorAndItsActions)
{
    failRegister(LaunchAtLoginError::permissionDenied());
    setEnabled(true);
    EXPECT_FALSE(toggle.isEnabled());
    EXPECT_EQ(status().status(), (ShownStatus{QStringLiteral("Error occurred"),
                                              QStringLiteral("exclamationmark.triangle.fill"), StatusTone::Error}));
    EXPECT_EQ(status().errorText(), QStringLiteral("Permission denied for launch at login registration"));
    EXPECT_TRUE(status().suggestionText().startsWith(QStringLiteral("Check System Preferences")));
    EXPECT_EQ(status().actionTexts(),
              (QStringList{QStringLiteral("Check permissions"), QStringLiteral("Open System Preferences")}));
    EXPECT_EQ(status().actionIcons(), (QStringList{QStringLiteral("lock.shield"), QStringLiteral("gear")}));
    EXPECT_EQ(status().successText(), QString());
    EXPECT_EQ(badge.word(), QStringLiteral("Error"));
    EXPECT_FALSE(confirmation.isPresented());
    status().act(0);
    spinOnce();
    EXPECT_EQ(confirmation.title(), QStringLiteral("Permission Required"));
}

TEST_F(LaunchAtLoginModels, SuccessAfterAFailureClearsTheError)
{
    failRegister(LaunchAtLoginError::permissionDenied());
    setEnabled(true);
    registration->failRegister = {};
    setEnabled(true);
    EXPECT_EQ(status().errorText(), QString());
    EXPECT_EQ(status().actionTexts(), QStringList());
    EXPECT_EQ(status().successText(), QStringLiteral("Launch at login enabled"));
}

TEST_F(LaunchAtLoginModels, RetryLeavesTheRegistrationAlone)
{
    failRegister(LaunchAtLoginError::registrationFailed(QStringLiteral("why")));
    setEnabled(true);
    const QStringList calls = registration->calls;
    status().act(0);
    spinOnce();
    EXPECT_FALSE(status().canAct());
    services.clock.advance(2s);
    spinOnce();
    EXPECT_EQ(status().successText(), QStringLiteral("Ready to retry"));
    EXPECT_EQ(status().errorText(), QString());
    EXPECT_EQ(registration->calls, calls);
    EXPECT_FALSE(registration->isRegistered);
}

TEST_F(LaunchAtLoginModels, FailureAtLaunchIsShownByAViewThatComesLater)
{
    failRegister(LaunchAtLoginError::permissionDenied());
    settings::startAtLogin.write(services.defaults.standard(), true);
    spinOnce();
    LaunchAtLoginToggleModel later(manager, confirmation, services.platform(), [] {});
    EXPECT_EQ(later.status()->errorText(), QStringLiteral("Permission denied for launch at login registration"));
    later.errorHandler().clearError();
    EXPECT_EQ(later.status()->status(),
              (ShownStatus{QStringLiteral("Sync error"), QStringLiteral("xmark.circle.fill"), StatusTone::Error}));
}

TEST_F(LaunchAtLoginModels, StatusBeginsAsDisabledAndSynchronized)
{
    EXPECT_EQ(status().status(),
              (ShownStatus{QStringLiteral("Disabled"), QStringLiteral("circle"), StatusTone::Disabled}));
    EXPECT_EQ(status().syncText(), QStringLiteral("Settings synchronized"));
    EXPECT_EQ(status().syncIcon(), QStringLiteral("checkmark.circle.fill"));
    EXPECT_EQ(status().syncTone(), StatusTone::Enabled);
    EXPECT_EQ(badge.status(),
              (ShownStatus{QStringLiteral("Disabled"), QStringLiteral("circle"), StatusTone::Disabled}));
}

TEST_F(LaunchAtLoginModels, StatusIsUnknownBeforeTheLaunchJobs)
{
    LaunchAtLoginServiceManager fresh(services.platform(), std::make_unique<FakeLaunchAtLoginService>(registration));
    const LaunchAtLoginBadgeModel ofFresh(fresh);
    EXPECT_EQ(ofFresh.word(), QStringLiteral("Unknown"));
    LaunchAtLoginToggleModel model(fresh, confirmation, services.platform(), [] {});
    EXPECT_EQ(model.status()->status(),
              (ShownStatus{QStringLiteral("Status unknown"), QStringLiteral("questionmark.circle.fill"),
                           StatusTone::Secondary}));
    EXPECT_EQ(model.status()->syncTone(), StatusTone::Secondary);
    spinOnce();
}

TEST_F(LaunchAtLoginModels, LastUpdateIsShownRelativeToNow)
{
    EXPECT_EQ(status().lastUpdatedText(), QStringLiteral("Last updated: now"));
    services.clock.advance(90s);
    EXPECT_EQ(status().lastUpdatedText(), QStringLiteral("Last updated: 1 minute ago"));
    const QDateTime now = services.clock.now();
    EXPECT_EQ(relativeDate(now.addSecs(-1), now), QStringLiteral("1 second ago"));
    EXPECT_EQ(relativeDate(now.addSecs(-7200), now), QStringLiteral("2 hours ago"));
    EXPECT_EQ(relativeDate(now.addDays(-3), now), QStringLiteral("3 days ago"));
    EXPECT_EQ(relativeDate(now.addSecs(5), now), QStringLiteral("now"));
}

TEST_F(LaunchAtLoginModels, HiddenStartIsASettingThatRegistersAgain)
{
    setEnabled(true);
    registration->calls.clear();
    toggle.setStartsHidden(true);
    spinOnce();
    EXPECT_TRUE(toggle.startsHidden());
    EXPECT_TRUE(registration->calls.contains(QStringLiteral("register")));
}

TEST_F(LaunchAtLoginModels, EveryStatusOfTheSynchronizationHasItsTextIconToneAndWord)
{
    struct Row
    {
        SyncStatus status;
        bool isEnabled;
        const char *text;
        const char *icon;
        StatusTone::Case tone;
        const char *word;
    };
    const Row rows[] = {
        {SyncStatus::synchronized, true, "Enabled", "checkmark.circle.fill", StatusTone::Enabled, "Enabled"},
        {SyncStatus::synchronized, false, "Disabled", "circle", StatusTone::Disabled, "Disabled"},
        {SyncStatus::outOfSync, true, "Out of sync", "exclamationmark.triangle.fill", StatusTone::Warning, "Syncing"},
        {SyncStatus::outOfSync, false, "Out of sync", "exclamationmark.triangle.fill", StatusTone::Warning, "Syncing"},
        {SyncStatus::syncing, true, "Synchronizing...", "arrow.triangle.2.circlepath", StatusTone::Info, "Updating"},
        {SyncStatus::syncing, false, "Synchronizing...", "arrow.triangle.2.circlepath", StatusTone::Info, "Updating"},
        {SyncStatus::error, true, "Sync error", "xmark.circle.fill", StatusTone::Error, "Error"},
        {SyncStatus::error, false, "Sync error", "xmark.circle.fill", StatusTone::Error, "Error"},
        {SyncStatus::unknown, true, "Status unknown", "questionmark.circle.fill", StatusTone::Secondary, "Unknown"},
        {SyncStatus::unknown, false, "Status unknown", "questionmark.circle.fill", StatusTone::Secondary, "Unknown"},
    };
    for (const Row &row : rows) {
        SCOPED_TRACE(testing::Message() << row.text << (row.isEnabled ? ", enabled" : ", not enabled"));
        const QString icon = QLatin1String(row.icon);
        EXPECT_EQ(shownStatus(row.status, row.isEnabled), (ShownStatus{QLatin1String(row.text), icon, row.tone}));
        EXPECT_EQ(shownBadge(row.status, row.isEnabled), (ShownStatus{QLatin1String(row.word), icon, row.tone}));
    }
}

TEST_F(LaunchAtLoginModels, WhatRunsIsShownBeforeTheStatusAndAnErrorBeforeBoth)
{
    const auto words = [this] { return QStringList{status().statusText(), badge.word()}; };
    const RunningTask<void> looking(manager.observer().forceSynchronization());
    EXPECT_EQ(words(), (QStringList{QStringLiteral("Synchronizing..."), QStringLiteral("Updating")}));
    EXPECT_EQ(status().status(), (ShownStatus{QStringLiteral("Synchronizing..."), QString(), StatusTone::Info}));
    EXPECT_TRUE(status().isBusy());
    spinOnce();

    setEnabled(true);
    EXPECT_EQ(words(), (QStringList{QStringLiteral("Enabled"), QStringLiteral("Enabled")}));

    registration->failUnregister = [] { throw LaunchAtLoginError::permissionDenied(); };
    registration->gate.emplace();
    setEnabled(false);
    EXPECT_EQ(words(), (QStringList{QStringLiteral("Updating..."), QStringLiteral("Updating")}));

    registration->gate->give(true);
    spinOnce();
    EXPECT_EQ(words(), (QStringList{QStringLiteral("Error occurred"), QStringLiteral("Error")}));
    const LaunchAtLoginError error = *manager.lastError();
    registration->gate.emplace();
    setEnabled(false);
    toggle.errorHandler().handleError(error);
    EXPECT_TRUE(status().isBusy());
    EXPECT_EQ(status().statusText(), QStringLiteral("Error occurred"));
    registration->gate->give(true);
    spinOnce();
}

TEST_F(LaunchAtLoginModels, ChangeInTheSystemIsOutOfSyncUntilTheSettingHasFollowed)
{
    QStringList shown;
    QObject::connect(&manager.observer(), &LaunchAtLoginSettingsObserver::syncStatusChanged, &status(),
                     [this, &shown] { shown.append(status().statusText()); });
    registration->isRegistered = true;
    const RunningTask<void> looking(manager.refreshStatus());
    spinOnce();
    EXPECT_EQ(shown, (QStringList{QStringLiteral("Out of sync"), QStringLiteral("Enabled")}));
    EXPECT_TRUE(setting());
}

TEST_F(LaunchAtLoginModels, ButtonsCannotBePressedWhileARecoveryRuns)
{
    failRegister(LaunchAtLoginError::registrationFailed(QStringLiteral("why")));
    setEnabled(true);
    int changes = 0;
    QObject::connect(&status(), &LaunchAtLoginStatusModel::changed, &status(), [&changes] { ++changes; });
    EXPECT_TRUE(status().canAct());
    status().act(0);
    EXPECT_FALSE(status().canAct());
    EXPECT_EQ(changes, 1);
    spinOnce();
    status().act(1);
    spinOnce();
    EXPECT_FALSE(confirmation.isPresented());
    services.clock.advance(2s);
    spinOnce();
    EXPECT_TRUE(status().canAct());
}

TEST_F(LaunchAtLoginModels, ButtonsOfTheActionsAreDisabledWhileOneRuns)
{
    failRegister(LaunchAtLoginError::permissionDenied());
    setEnabled(true);
    const View view("LaunchAtLoginStatusView", QStringLiteral("status"), QVariant::fromValue(&status()));
    for (const QString &text : status().actionTexts()) {
        const QQuickItem *button = view.showing(text);
        ASSERT_TRUE(button) << qPrintable(text);
        EXPECT_TRUE(button->isEnabled());
        status().act(0);
        EXPECT_FALSE(button->isEnabled());
        spinOnce();
        EXPECT_TRUE(button->isEnabled());
    }
}

TEST_F(LaunchAtLoginModels, BadgeShowsItsWord)
{
    const View view("LaunchAtLoginCompactBadge", QStringLiteral("serviceManager"), QVariant::fromValue(toggle.badge()));
    EXPECT_TRUE(view.showing(QStringLiteral("Disabled")));
    failRegister(LaunchAtLoginError::permissionDenied());
    setEnabled(true);
    EXPECT_TRUE(view.showing(QStringLiteral("Error")));
    EXPECT_FALSE(view.showing(QStringLiteral("Disabled")));
}

TEST_F(LaunchAtLoginModels, BadgeOfTheSectionFollowsTheSwitch)
{
    int changes = 0;
    QObject::connect(toggle.badge(), &LaunchAtLoginBadgeModel::changed, toggle.badge(), [&changes] { ++changes; });
    EXPECT_EQ(toggle.badge()->word(), QStringLiteral("Disabled"));
    setEnabled(true);
    EXPECT_GT(changes, 0);
    EXPECT_EQ(toggle.badge()->word(), QStringLiteral("Enabled"));
}
