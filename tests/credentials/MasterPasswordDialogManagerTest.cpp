// SPDX-License-Identifier: GPL-3.0-or-later

#include "credentials/MasterPasswordDialogManager.h"

#include <gtest/gtest.h>

#include <QStringList>

using namespace quillhaven;

namespace {

class MasterPasswordDialog : public ::testing::Test
{
protected:
    MasterPasswordDialog()
    {
        m_dialog.onAuthenticate = [this](const QString &entered) { m_entered.append(entered); };
        m_dialog.onCancel = [this] { ++m_cancels; };
        m_dialog.setIsPresented(true);
    }

    MasterPasswordDialogManager m_dialog;
    QStringList m_entered;
    int m_cancels = 0;
};

} // namespace

TEST(MasterPasswordDialogManager, StartsClosedWithItsTexts)
{
    const MasterPasswordDialogManager dialog;
    EXPECT_FALSE(dialog.isPresented());
    EXPECT_EQ(dialog.title(), QStringLiteral("Master Password Required"));
    EXPECT_EQ(dialog.message(), QStringLiteral("Enter your master password to continue:"));
    EXPECT_FALSE(dialog.showingError());
    EXPECT_TRUE(dialog.errorMessage().isEmpty());
    EXPECT_FALSE(dialog.isAuthenticating());
    EXPECT_FALSE(dialog.isPasswordSetting());
    EXPECT_FALSE(dialog.onAuthenticate);
    EXPECT_FALSE(dialog.onCancel);
}

TEST_F(MasterPasswordDialog, AuthenticatingPassesThePasswordOnceAndLeavesTheDialogOpen)
{
    m_dialog.authenticate(QStringLiteral("first"));
    EXPECT_TRUE(m_dialog.isAuthenticating());
    m_dialog.authenticate(QStringLiteral("second"));
    EXPECT_EQ(m_entered, QStringList{QStringLiteral("first")});
    EXPECT_TRUE(m_dialog.isPresented());
}

TEST_F(MasterPasswordDialog, TheFlagIsSetBeforeTheActionRuns)
{
    bool wasSet = false;
    m_dialog.onAuthenticate = [&](const QString &) { wasSet = m_dialog.isAuthenticating(); };
    m_dialog.authenticate(QStringLiteral("first"));
    EXPECT_TRUE(wasSet);
}

TEST_F(MasterPasswordDialog, SettingAPasswordClosesTheDialogAfterTheActionAndLeavesTheFlag)
{
    m_dialog.setIsPasswordSetting(true);
    bool wasOpen = false;
    m_dialog.onAuthenticate = [&](const QString &) { wasOpen = m_dialog.isPresented(); };
    m_dialog.authenticate(QStringLiteral("first"));
    EXPECT_TRUE(wasOpen);
    EXPECT_FALSE(m_dialog.isPresented());
    EXPECT_FALSE(m_dialog.isAuthenticating());
}

TEST_F(MasterPasswordDialog, WithoutAnActionNothingIsCalled)
{
    m_dialog.onAuthenticate = {};
    m_dialog.authenticate(QStringLiteral("first"));
    EXPECT_TRUE(m_dialog.isAuthenticating());
    EXPECT_TRUE(m_dialog.isPresented());
}

TEST_F(MasterPasswordDialog, AnErrorIsShownAndEnablesTheButtonAgain)
{
    m_dialog.authenticate(QStringLiteral("first"));
    m_dialog.showError(QStringLiteral("wrong"));
    EXPECT_TRUE(m_dialog.showingError());
    EXPECT_EQ(m_dialog.errorMessage(), QStringLiteral("wrong"));
    EXPECT_FALSE(m_dialog.isAuthenticating());
    EXPECT_TRUE(m_dialog.isPresented());
}

TEST_F(MasterPasswordDialog, ReturnOnAnEmptyFieldDoesNothing)
{
    m_dialog.showError(QStringLiteral("wrong"));
    EXPECT_FALSE(m_dialog.handleAuthenticate({}));
    EXPECT_TRUE(m_entered.isEmpty());
    EXPECT_TRUE(m_dialog.showingError()) << "the error is still shown";
}

TEST_F(MasterPasswordDialog, TheButtonClearsTheErrorThenAuthenticates)
{
    m_dialog.showError(QStringLiteral("wrong"));
    bool wasClear = false;
    m_dialog.onAuthenticate = [&](const QString &) {
        wasClear = !m_dialog.showingError() && m_dialog.errorMessage().isEmpty();
    };
    EXPECT_TRUE(m_dialog.handleAuthenticate(QStringLiteral("first")));
    EXPECT_TRUE(wasClear);
}

TEST_F(MasterPasswordDialog, ASecondPressDuringACheckDoesNothing)
{
    EXPECT_TRUE(m_dialog.handleAuthenticate(QStringLiteral("first")));
    EXPECT_FALSE(m_dialog.handleAuthenticate(QStringLiteral("second")));
    EXPECT_EQ(m_entered, QStringList{QStringLiteral("first")});
}

TEST_F(MasterPasswordDialog, CancelClosesEverythingAndThenCallsItsAction)
{
    m_dialog.authenticate(QStringLiteral("first"));
    bool wasClosed = false;
    m_dialog.onCancel = [&] { wasClosed = !m_dialog.isPresented() && !m_dialog.isAuthenticating(); };
    m_dialog.cancel();
    EXPECT_TRUE(wasClosed);
}

TEST_F(MasterPasswordDialog, CancelWithoutAnActionOnlyCloses)
{
    m_dialog.onCancel = {};
    m_dialog.cancel();
    EXPECT_FALSE(m_dialog.isPresented());
}

TEST_F(MasterPasswordDialog, AnActionMayReplaceItself)
{
    m_dialog.onAuthenticate = [this](const QString &entered) {
        m_dialog.onAuthenticate = {};
        m_entered.append(entered);
    };
    m_dialog.authenticate(QStringLiteral("first"));
    EXPECT_EQ(m_entered, QStringList{QStringLiteral("first")});
}

TEST_F(MasterPasswordDialog, TheButtonIsLabelledWithItsAction)
{
    EXPECT_EQ(m_dialog.actionTitle(), QStringLiteral("Authenticate"));
    m_dialog.setIsAuthenticating(true);
    EXPECT_EQ(m_dialog.actionTitle(), QStringLiteral("Authenticating..."));
    m_dialog.setIsPasswordSetting(true);
    EXPECT_EQ(m_dialog.actionTitle(), QStringLiteral("Set Password"));
}

TEST_F(MasterPasswordDialog, AQuestionStartsWithoutTheStateOfTheLastOne)
{
    m_dialog.setIsPasswordSetting(true);
    m_dialog.showError(QStringLiteral("wrong"));
    m_dialog.setIsAuthenticating(true);
    m_dialog.setIsPresented(false);
    m_dialog.show({.title = QStringLiteral("title"), .message = QStringLiteral("message")}, {});
    EXPECT_TRUE(m_dialog.isPresented());
    EXPECT_EQ(m_dialog.title(), QStringLiteral("title"));
    EXPECT_EQ(m_dialog.message(), QStringLiteral("message"));
    EXPECT_EQ(m_dialog.shownError(), QString());
    EXPECT_EQ(m_dialog.errorMessage(), QString());
    EXPECT_FALSE(m_dialog.isAuthenticating());
    EXPECT_FALSE(m_dialog.isPasswordSetting());
    m_dialog.cancel();
    EXPECT_EQ(m_cancels, 0) << "the action of the last question was dropped";
}

TEST_F(MasterPasswordDialog, TextsAndActionsAreThereBeforeTheDialogIsPresented)
{
    m_dialog.setIsPresented(false);
    QStringList answers;
    const auto look = [&] {
        EXPECT_EQ(m_dialog.title(), QStringLiteral("title"));
        EXPECT_EQ(m_dialog.message(), QStringLiteral("message"));
        m_dialog.onAuthenticate(QStringLiteral("entered"));
        m_dialog.onCancel();
    };
    QObject::connect(&m_dialog, &MasterPasswordDialogManager::asked, look);
    QObject::connect(&m_dialog, &MasterPasswordDialogManager::isPresentedChanged, look);
    m_dialog.show(
        {.title = QStringLiteral("title"), .message = QStringLiteral("message")},
        [&](const QString &entered) { answers.append(entered); }, [&] { answers.append(QStringLiteral("cancel")); });
    EXPECT_EQ(answers.join(QLatin1Char(' ')), QStringLiteral("entered cancel entered cancel"));
    EXPECT_TRUE(m_entered.isEmpty() && m_cancels == 0) << "the last question's actions";
}

TEST_F(MasterPasswordDialog, AnErrorIsShownOnlyWhileTheFlagIsSet)
{
    m_dialog.showError(QStringLiteral("wrong"));
    EXPECT_EQ(m_dialog.shownError(), QStringLiteral("wrong"));
    m_dialog.setShowingError(false);
    EXPECT_EQ(m_dialog.shownError(), QString());
}

TEST_F(MasterPasswordDialog, ReportsOnlyChanges)
{
    int changes = 0;
    QObject::connect(&m_dialog, &MasterPasswordDialogManager::textChanged, [&] { ++changes; });
    m_dialog.setTitle(QStringLiteral("another"));
    m_dialog.setTitle(QStringLiteral("another"));
    EXPECT_EQ(changes, 1);
}
