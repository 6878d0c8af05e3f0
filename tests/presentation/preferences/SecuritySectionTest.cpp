// SPDX-License-Identifier: GPL-3.0-or-later

#include "PreferencesHarness.h"

#include <QSignalSpy>

using namespace quillhaven;
using namespace quillhaven::test;

namespace {

const QString message =
    QStringLiteral("Enter a strong password (8+ characters with uppercase, lowercase, and numbers):");

class SecuritySection : public DashboardTest
{
protected:
    PreferencesModel &preferences()
    {
        if (!m_preferences) {
            m_preferences.emplace(started());
        }
        return m_preferences->model;
    }
    SecuritySectionModel &security() { return *preferences().security(); }
    PasswordInputDialogManager &passwordDialog() { return preferences().passwordInputDialogManager(); }
    ConfirmationDialogManager &question() { return preferences().confirmationDialogManager(); }
    OperationErrors &errors() { return preferences().errors(); }
    [[nodiscard]] UserDefaults &defaults() { return services.defaults.standard(); }
    void typeTwice(const QString &password)
    {
        PasswordInputDialogModel &state = preferences().passwordInputState();
        state.setPassword(password);
        state.setConfirmPassword(password);
        state.confirm();
        DashboardHarness::settle();
    }
    [[nodiscard]] QByteArray storedMasterPassword() const
    {
        return services.credentials.entries.value(QStringLiteral("master_password"));
    }

private:
    std::optional<PreferencesHarness> m_preferences;
};

} // namespace

TEST_F(SecuritySection, TheSwitchesAreOnAtFirstAndStoredAtOnce)
{
    EXPECT_TRUE(security().enableTouchID());
    EXPECT_TRUE(security().enforceStrongPasswords());
    security().setEnableTouchID(false);
    security().setEnforceStrongPasswords(false);
    EXPECT_EQ(defaults().boolForKey(settings::enableTouchID.key), false);
    EXPECT_EQ(defaults().boolForKey(settings::enforceStrongPasswords.key), false);
    EXPECT_FALSE(security().enableTouchID());
    EXPECT_FALSE(security().enforceStrongPasswords());
}

TEST_F(SecuritySection, AChangeByAnotherProgramIsReported)
{
    const QSignalSpy reported(&security(), &SecuritySectionModel::changed);
    defaults().setBool(settings::enableTouchID.key, false);
    EXPECT_EQ(reported.size(), 1);
}

TEST_F(SecuritySection, AFirstMasterPasswordIsSetWithoutAQuestion)
{
    security().chooseMasterPassword();
    EXPECT_EQ(log.lines().last(), QStringLiteral("Master password button clicked in RefinedPreferencesModal"));
    EXPECT_FALSE(question().isPresented());
    EXPECT_TRUE(passwordDialog().isPresented());
    EXPECT_EQ(passwordDialog().title(), QStringLiteral("Set Master Password"));
    EXPECT_EQ(passwordDialog().message(), message);
    EXPECT_TRUE(passwordDialog().requiresConfirmation());
    EXPECT_FALSE(started().passwordDialog.isPresented()) << "the dialog is the preferences' own";
    typeTwice(theMasterPassword);
    EXPECT_EQ(storedMasterPassword(), theMasterPassword.toUtf8());
    EXPECT_FALSE(errors().showingError());
    EXPECT_TRUE(security().masterPasswordDescription().startsWith(QStringLiteral("A master password is set.")));
}

TEST_F(SecuritySection, ResettingTheMasterPasswordNeverAsksForTheOldOne)
{
    storeMasterPassword();
    security().showMasterPasswordDialog();
    EXPECT_EQ(question().title(), QStringLiteral("Reset Master Password"));
    EXPECT_EQ(question().message(),
              QStringLiteral("Are you sure you want to reset your master password? This action cannot be undone."));
    EXPECT_EQ(question().confirmTitle(), QStringLiteral("Reset"));
    EXPECT_EQ(question().cancelTitle(), QStringLiteral("Cancel"));
    EXPECT_TRUE(question().isDestructive());
    EXPECT_TRUE(question().showCancelButton());
    EXPECT_FALSE(passwordDialog().isPresented());
    question().confirm();
    EXPECT_TRUE(passwordDialog().isPresented());
    EXPECT_EQ(passwordDialog().title(), QStringLiteral("Reset Master Password"));
    EXPECT_EQ(passwordDialog().message(), message);
    typeTwice(QStringLiteral("Another1Key"));
    EXPECT_EQ(storedMasterPassword(), QByteArray("Another1Key"));
    EXPECT_FALSE(started().masterPasswordDialog.isPresented());
}

TEST_F(SecuritySection, DecliningTheResetChangesNothing)
{
    storeMasterPassword();
    security().showMasterPasswordDialog();
    question().cancel();
    EXPECT_FALSE(passwordDialog().isPresented());
    EXPECT_EQ(storedMasterPassword(), theMasterPassword.toUtf8());
}

TEST_F(SecuritySection, CancellingTheNewPasswordChangesNothing)
{
    security().showMasterPasswordDialog();
    preferences().passwordInputState().cancel();
    DashboardHarness::settle();
    EXPECT_FALSE(passwordDialog().isPresented());
    EXPECT_TRUE(storedMasterPassword().isEmpty());
}

TEST_F(SecuritySection, AWeakMasterPasswordIsRefusedAlsoWhenOthersMayBeWeak)
{
    security().setEnforceStrongPasswords(false);
    security().showMasterPasswordDialog();
    typeTwice(QStringLiteral("feeble"));
    EXPECT_TRUE(errors().showingError());
    EXPECT_EQ(errors().errorMessage(),
              QStringLiteral("Password must be at least 8 characters with uppercase, lowercase, and numbers"));
    EXPECT_EQ(errors().dialog().errorTitle(), QStringLiteral("Error"));
    EXPECT_FALSE(started().dashboard.showingError());
    errors().dialog().hideError();
    EXPECT_FALSE(errors().showingError());
}

TEST_F(SecuritySection, TheCaptionSaysWhereThePasswordsAre)
{
    EXPECT_TRUE(security().storeDescription().contains(QStringLiteral("keyring")));
    EXPECT_TRUE(security().isStoreSafe());
}

TEST_F(SecuritySection, AMissingKeyringIsNamedAndNothingIsClaimedOfTheMasterPassword)
{
    security();
    const QString sentence = QStringLiteral("The passwords are in a keyring that does not answer.");
    services.credentialStoreState.setPhase(CredentialStoreState::Phase::Missing, sentence);
    EXPECT_EQ(security().storeDescription(), sentence);
    EXPECT_FALSE(security().isStoreSafe());
    EXPECT_TRUE(security().masterPasswordDescription().contains(QStringLiteral("not known")));
}
