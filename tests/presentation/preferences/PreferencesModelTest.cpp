// SPDX-License-Identifier: GPL-3.0-or-later

#include "PreferencesHarness.h"
#include "backup/CloudFolder.h"

using namespace quillhaven;
using namespace quillhaven::test;
using namespace std::chrono_literals;

namespace {

class Preferences : public DashboardTest
{
protected:
    PreferencesHarness &harness()
    {
        if (!m_preferences) {
            m_preferences.emplace(started());
        }
        return *m_preferences;
    }
    PreferencesModel &preferences() { return harness().model; }
    QStringList tabs()
    {
        QStringList names;
        for (const QVariant &each : preferences().availableSections()) {
            const auto *tab = each.value<PreferencesTab *>();
            names.append(tab->name() + QLatin1Char(' ') + tab->systemImage());
        }
        return names;
    }

    CloudFolder cloud{services};

private:
    std::optional<PreferencesHarness> m_preferences;
};

} // namespace

TEST_F(Preferences, WithoutAFolderForBackupsTheirTabIsAbsent)
{
    preferences().show();
    EXPECT_EQ(tabs(), QStringList({QStringLiteral("General gear"), QStringLiteral("Security lock.shield")}));
}

TEST_F(Preferences, WithAFolderForBackupsThereIsATabForThem)
{
    cloud.make();
    preferences().show();
    EXPECT_EQ(tabs(), QStringList({QStringLiteral("General gear"), QStringLiteral("Security lock.shield"),
                                   QStringLiteral("Backup icloud")}));
}

TEST_F(Preferences, TheKeysStopAtTheFirstAndTheLastTab)
{
    cloud.make();
    preferences().show();
    EXPECT_EQ(preferences().selectAt(-1), 0);
    EXPECT_EQ(preferences().selectAt(3), 2);
    EXPECT_EQ(preferences().selectedSection(), PreferencesSectionType::Backup);
}

TEST_F(Preferences, ASectionThatIsGoneIsLeftForTheFirstOne)
{
    cloud.make();
    preferences().show();
    EXPECT_EQ(preferences().selectedSection(), PreferencesSectionType::General);
    preferences().setSelectedSection(PreferencesSectionType::Backup);
    preferences().handleCloseAttempt();
    QDir(cloud.path()).removeRecursively();
    preferences().show();
    EXPECT_EQ(preferences().selectedSection(), PreferencesSectionType::General);
}

TEST_F(Preferences, TheNotificationOpensTheSheet)
{
    preferences();
    services.notifications.standard.post(notifications::showPreferences);
    EXPECT_TRUE(preferences().isPresented());
}

TEST_F(Preferences, TheSheetTakesTheKeyboardAndThenItsFirstControl)
{
    preferences().show();
    services.clock.advance(99ms);
    EXPECT_FALSE(preferences().isModalFocused());
    services.clock.advance(1ms);
    EXPECT_TRUE(preferences().isModalFocused());
    EXPECT_EQ(preferences().focusedField(), PreferencesModel::FocusedField::None);
    services.clock.advance(299ms);
    EXPECT_EQ(preferences().focusedField(), PreferencesModel::FocusedField::None);
    services.clock.advance(1ms);
    EXPECT_EQ(preferences().focusedField(), PreferencesModel::FocusedField::CloseButton);
}

TEST_F(Preferences, ASheetThatIsClosedAtOnceTakesNoKeyboard)
{
    preferences().show();
    services.clock.advance(100ms);
    preferences().handleCloseAttempt();
    services.clock.advance(1s);
    EXPECT_FALSE(preferences().isModalFocused());
    EXPECT_EQ(preferences().focusedField(), PreferencesModel::FocusedField::None);
}

TEST_F(Preferences, WithoutUnsavedChangesTheSheetCloses)
{
    preferences().show();
    preferences().handleCloseAttempt();
    EXPECT_FALSE(preferences().isPresented());
    EXPECT_FALSE(preferences().showingCloseConfirmation());
}

TEST_F(Preferences, UnsavedChangesAreDiscardedOnlyAfterAQuestion)
{
    preferences().show();
    preferences().setHasUnsavedChanges(true);
    preferences().handleCloseAttempt();
    EXPECT_TRUE(preferences().showingCloseConfirmation());
    preferences().keepEditing();
    EXPECT_FALSE(preferences().showingCloseConfirmation());
    EXPECT_TRUE(preferences().isPresented());
    EXPECT_TRUE(preferences().hasUnsavedChanges());
    preferences().handleCloseAttempt();
    preferences().discardChanges();
    EXPECT_FALSE(preferences().hasUnsavedChanges());
    EXPECT_FALSE(preferences().showingCloseConfirmation());
    EXPECT_FALSE(preferences().isPresented());
}

TEST_F(Preferences, AFailureOfTheLaunchAtLoginIsShownInTheErrorSheet)
{
    preferences().show();
    harness().registration->failRegister = [] {
        throw LaunchAtLoginError::unknownError(QStringLiteral("the disk is full"));
    };
    preferences().launchAtLogin()->setEnabled(true);
    DashboardHarness::settle();
    EXPECT_TRUE(preferences().errors().showingError());
    EXPECT_TRUE(preferences().errors().errorMessage().startsWith(QStringLiteral("Failed to set launch at login: ")));
    EXPECT_TRUE(preferences().errors().errorMessage().contains(QStringLiteral("the disk is full")));
}

TEST_F(Preferences, OnlyASourceWithARepairOffersIt)
{
    const WatchedSourcesModel &sources = *preferences().watchedSources();
    QStringList repairable;
    for (int row = 0; row < sources.rowCount(); ++row) {
        const QModelIndex index = sources.index(row);
        if (index.data(WatchedSourcesModel::CanRepairRole).toBool()) {
            repairable.append(index.data(WatchedSourcesModel::TitleRole).toString());
        }
        sources.repair(row);
    }
    EXPECT_EQ(repairable, QStringList(QStringLiteral("Links to Quillhaven")));
    EXPECT_EQ(harness().repairedLinks, 1);
}
