// SPDX-License-Identifier: GPL-3.0-or-later

#include "credentials/MasterPasswordManager.h"
#include "async/WorkInFlight.h"
#include "credentials/GatedCredentialStore.h"
#include "credentials/KeychainError.h"
#include "credentials/MasterPasswordDialogManager.h"
#include "credentials/MasterPasswordError.h"
#include "support/LogCapture.h"
#include "support/RunTask.h"
#include "support/TestPlatform.h"

#include <gtest/gtest.h>

using namespace quillhaven;
using namespace quillhaven::test;
using namespace std::chrono_literals;

namespace {

const QString masterPassword = QStringLiteral("Abcdefg1");
const QString wrongPassword = QStringLiteral("Abcdefg2");
const QString masterAccount = QStringLiteral("master_password");
const QString wrongText = QStringLiteral("Invalid master password. Please try again.");

class MasterPassword : public ::testing::Test
{
protected:
    MasterPassword() { start(); }
    ~MasterPassword() override
    {
        m_store.isClosed = false;
        m_store.letOneThrough();
        settle();
    }

    /// Starts the program with the current contents of the store.
    void start()
    {
        beginStart();
        settle();
    }
    void beginStart()
    {
        const Platform platform = m_services.platform(m_services.fileManager, m_services.defaults, m_store);
        m_manager = std::make_unique<MasterPasswordManager>(platform, m_dialog);
    }
    void startWithMasterPassword()
    {
        m_services.credentials.entries[masterAccount] = masterPassword.toUtf8();
        start();
    }

    /// Waits until everything that is in progress has ended.
    static void settle()
    {
        spinOnce();
        EXPECT_TRUE(spinUntil([] { return WorkInFlight::count() == 0; }));
        spinOnce();
    }

    [[nodiscard]] RunningTask<bool> guard()
    {
        RunningTask<bool> task(m_manager->requireAuthenticationOrCancel());
        spinOnce();
        return task;
    }
    void enter(const QString &password)
    {
        m_dialog.authenticate(password);
        settle();
    }
    /// Enters a password, and returns while the store is still looking it up.
    void enterAndHold(const QString &password)
    {
        m_store.isClosed = true;
        const int before = m_store.lookups;
        m_dialog.authenticate(password);
        ASSERT_TRUE(spinUntil([&] { return m_store.lookups > before; }));
    }
    void letThrough()
    {
        m_store.isClosed = false;
        m_store.letOneThrough();
        settle();
    }

    static std::optional<MasterPasswordError::Case> settingErrorOf(QCoro::Task<> task)
    {
        try {
            runTask(std::move(task));
        } catch (const MasterPasswordError &error) {
            return error.errorCase();
        }
        return std::nullopt;
    }

    TestPlatform m_services;
    GatedCredentialStore m_store{m_services.credentials};
    MasterPasswordDialogManager m_dialog;
    std::unique_ptr<MasterPasswordManager> m_manager;
};

} // namespace

TEST(MasterPasswordError, HasItsTextForEachCase)
{
    const auto text = [](MasterPasswordError::Case errorCase) {
        return MasterPasswordError(errorCase).errorDescription();
    };
    EXPECT_EQ(text(MasterPasswordError::emptyPassword), QStringLiteral("Password cannot be empty"));
    EXPECT_EQ(text(MasterPasswordError::weakPassword),
              QStringLiteral("Password must be at least 8 characters with uppercase, lowercase, and numbers"));
    EXPECT_EQ(text(MasterPasswordError::noMasterPassword), QStringLiteral("No master password is set"));
    EXPECT_EQ(text(MasterPasswordError::invalidPassword), QStringLiteral("Invalid master password"));
    EXPECT_EQ(text(MasterPasswordError::authenticationCancelled), QStringLiteral("Authentication was cancelled"));
}

TEST_F(MasterPassword, WithoutAMasterPasswordAGuardPassesWithoutADialogAndOpensNoSession)
{
    EXPECT_FALSE(m_manager->hasMasterPassword());
    EXPECT_TRUE(runTask(m_manager->requireAuthenticationOrCancel()));
    EXPECT_FALSE(m_dialog.isPresented());
    EXPECT_FALSE(m_manager->isAuthenticated());
}

TEST_F(MasterPassword, AnEntryInTheStoreIsFoundAtStartAndNotKept)
{
    startWithMasterPassword();
    EXPECT_TRUE(m_manager->hasMasterPassword());
    EXPECT_FALSE(m_manager->isAuthenticated());
    EXPECT_FALSE(m_manager->hasAuthenticationTimer());
}

TEST_F(MasterPassword, AStoreThatCannotBeReadAtStartLetsEveryGuardPass)
{
    m_services.credentials.entries[masterAccount] = masterPassword.toUtf8();
    for (const CredentialStatus status : {credentialInteractionNotAllowed, credentialNotAvailable,
                                          credentialDecodeFailed, credentialNoDefaultCollection}) {
        m_services.credentials.failWith = status;
        start();
        EXPECT_FALSE(m_manager->hasMasterPassword());
        EXPECT_TRUE(runTask(m_manager->requireAuthenticationOrCancel()));
        EXPECT_FALSE(m_dialog.isPresented());
    }
}

TEST_F(MasterPassword, AStoreThatAnswersAfterARefusedStartBringsTheGuardBack)
{
    m_services.credentials.entries[masterAccount] = masterPassword.toUtf8();
    m_services.credentials.failWith = credentialNotAvailable;
    start();
    EXPECT_TRUE(runTask(m_manager->requireAuthenticationOrCancel()));

    m_services.credentials.failWith = credentialSuccess;
    Q_EMIT m_services.credentialStoreState.becameReadable();
    const auto waiting = guard();
    EXPECT_TRUE(spinUntil([this] { return m_dialog.isPresented(); }));
    EXPECT_TRUE(m_manager->hasMasterPassword());
    enter(masterPassword);
    EXPECT_TRUE(waiting.wait());
}

TEST_F(MasterPassword, AStoreThatIsStillRefusedKeepsBeingReadAgain)
{
    m_services.credentials.entries[masterAccount] = masterPassword.toUtf8();
    m_services.credentials.failWith = credentialInteractionNotAllowed;
    start();
    Q_EMIT m_services.credentialStoreState.becameReadable();
    EXPECT_TRUE(runTask(m_manager->requireAuthenticationOrCancel()));
    EXPECT_FALSE(m_manager->hasMasterPassword());

    m_services.credentials.failWith = credentialSuccess;
    Q_EMIT m_services.credentialStoreState.becameReadable();
    EXPECT_TRUE(spinUntil([this] { return m_manager->hasMasterPassword(); }));
}

TEST_F(MasterPassword, AStoreThatAnsweredAtStartIsNotReadAgain)
{
    start();
    const int lookups = m_store.lookups;
    Q_EMIT m_services.credentialStoreState.becameReadable();
    EXPECT_TRUE(runTask(m_manager->requireAuthenticationOrCancel()));
    EXPECT_EQ(m_store.lookups, lookups);
}

TEST_F(MasterPassword, AStoreThatThrowsAtStartLetsEveryGuardPass)
{
    m_store.failure = std::make_exception_ptr(std::bad_alloc());
    m_store.isClosed = true;
    beginStart();
    const auto waiting = guard();
    EXPECT_FALSE(waiting.isFinished());
    letThrough();
    EXPECT_TRUE(waiting.wait());
    EXPECT_FALSE(m_manager->hasMasterPassword());
    EXPECT_TRUE(runTask(m_manager->requireAuthenticationOrCancel()));
    EXPECT_FALSE(m_dialog.isPresented());
}

TEST_F(MasterPassword, AStoreThatThrowsDuringACheckShowsTheErrorAndEnablesTheButtonAgain)
{
    startWithMasterPassword();
    const auto task = guard();
    m_store.failure = std::make_exception_ptr(std::runtime_error("out of order"));
    enter(masterPassword);
    EXPECT_EQ(m_dialog.errorMessage(), QStringLiteral("out of order"));
    EXPECT_FALSE(m_dialog.isAuthenticating());
    EXPECT_FALSE(task.isFinished());
    m_store.failure = nullptr;
    enter(masterPassword);
    EXPECT_TRUE(task.wait());
}

TEST_F(MasterPassword, AnEntryThatIsNotTextAtStartMeansNoMasterPassword)
{
    m_services.credentials.entries[masterAccount] = "\xff\xfe";
    start();
    EXPECT_FALSE(m_manager->hasMasterPassword());
}

TEST_F(MasterPassword, AGuardWaitsForTheAnswerAtStartAndThenAsks)
{
    m_services.credentials.entries[masterAccount] = masterPassword.toUtf8();
    m_store.isClosed = true;
    beginStart();
    const auto task = guard();
    ASSERT_TRUE(spinUntil([this] { return m_store.lookups > 1; }));
    spinOnce();
    EXPECT_FALSE(task.isFinished()) << "the guard passed before the store had answered";
    EXPECT_FALSE(m_dialog.isPresented());

    letThrough();
    EXPECT_FALSE(task.isFinished());
    EXPECT_TRUE(m_dialog.isPresented());
    enter(masterPassword);
    EXPECT_TRUE(task.wait());
}

TEST_F(MasterPassword, GuardsThatWaitForTheAnswerAtStartAllPassIfThereIsNoMasterPassword)
{
    m_store.isClosed = true;
    beginStart();
    const auto first = guard();
    const auto second = guard();
    EXPECT_FALSE(first.isFinished() || second.isFinished());
    letThrough();
    EXPECT_TRUE(first.wait());
    EXPECT_TRUE(second.wait());
}

TEST_F(MasterPassword, OneThatIsSetBeforeTheAnswerAtStartIsStoredAfterIt)
{
    m_store.isClosed = true;
    beginStart();
    const RunningTask<void> setting(m_manager->setMasterPassword(masterPassword));
    ASSERT_TRUE(spinUntil([this] { return m_store.lookups > 1; }));
    spinOnce();
    EXPECT_TRUE(m_services.credentials.entries.isEmpty()) << "stored before the store had answered";
    EXPECT_FALSE(setting.isFinished());
    letThrough();
    setting.wait();
    EXPECT_EQ(m_services.credentials.entries.value(masterAccount), masterPassword.toUtf8());
    EXPECT_TRUE(m_manager->hasMasterPassword()) << "what the store answered at start is no news any more";
}

TEST_F(MasterPassword, OneThatIsRemovedBeforeTheAnswerAtStartIsRemovedAfterIt)
{
    m_services.credentials.entries[masterAccount] = masterPassword.toUtf8();
    m_store.isClosed = true;
    beginStart();
    const RunningTask<void> removing(m_manager->removeMasterPassword());
    ASSERT_TRUE(spinUntil([this] { return m_store.lookups > 1; }));
    spinOnce();
    EXPECT_TRUE(m_services.credentials.entries.contains(masterAccount)) << "removed before the store had answered";
    EXPECT_FALSE(removing.isFinished());
    letThrough();
    removing.wait();
    EXPECT_TRUE(m_services.credentials.entries.isEmpty());
    EXPECT_FALSE(m_manager->hasMasterPassword());
}

TEST_F(MasterPassword, AStrongPasswordIsStoredAndOpensNoSession)
{
    EXPECT_EQ(settingErrorOf(m_manager->setMasterPassword(masterPassword)), std::nullopt);
    EXPECT_EQ(m_services.credentials.entries.value(masterAccount), masterPassword.toUtf8());
    EXPECT_TRUE(m_manager->hasMasterPassword());
    EXPECT_FALSE(m_manager->isAuthenticated());
}

TEST_F(MasterPassword, AnEmptyPasswordFailsAsEmptyAndAWeakOneAsWeakAndNothingIsStored)
{
    EXPECT_EQ(settingErrorOf(m_manager->setMasterPassword({})), MasterPasswordError::emptyPassword);
    for (const QString &weak :
         {QStringLiteral("abcdefg1"), QStringLiteral("ABCDEFG1"), QStringLiteral("Abcdefgh"), QStringLiteral("Abc1")}) {
        EXPECT_EQ(settingErrorOf(m_manager->setMasterPassword(weak)), MasterPasswordError::weakPassword);
    }
    EXPECT_TRUE(m_services.credentials.entries.isEmpty());
    EXPECT_FALSE(m_manager->hasMasterPassword());
}

TEST_F(MasterPassword, ItMustBeStrongEvenIfItemPasswordsNeedNotBe)
{
    m_services.defaults.standard().setBool(QStringLiteral("enforceStrongPasswords"), false);
    EXPECT_EQ(settingErrorOf(m_manager->setMasterPassword(QStringLiteral("abc"))), MasterPasswordError::weakPassword);
}

TEST_F(MasterPassword, ANewPasswordReplacesTheOldOneAndLeavesAnOpenSessionOpen)
{
    startWithMasterPassword();
    ASSERT_TRUE(runTask(m_manager->authenticate(masterPassword)));
    runTask(m_manager->setMasterPassword(wrongPassword));
    EXPECT_EQ(m_services.credentials.entries.value(masterAccount), wrongPassword.toUtf8());
    EXPECT_TRUE(m_manager->isAuthenticated());
}

TEST_F(MasterPassword, AFailureToStorePropagatesAndChangesNothing)
{
    m_services.credentials.failWith = credentialInteractionNotAllowed;
    EXPECT_THROW(runTask(m_manager->setMasterPassword(masterPassword)), KeychainError);
    EXPECT_FALSE(m_manager->hasMasterPassword());
}

TEST_F(MasterPassword, RemovingItClosesTheSessionAndItsTimer)
{
    startWithMasterPassword();
    ASSERT_TRUE(runTask(m_manager->authenticate(masterPassword)));
    runTask(m_manager->removeMasterPassword());
    EXPECT_FALSE(m_manager->hasMasterPassword());
    EXPECT_FALSE(m_manager->isAuthenticated());
    EXPECT_FALSE(m_manager->hasAuthenticationTimer());
    EXPECT_EQ(m_services.clock.pendingTimers(), 0);
    EXPECT_TRUE(m_services.credentials.entries.isEmpty());
}

TEST_F(MasterPassword, AFailureToRemovePropagatesAndChangesNothing)
{
    startWithMasterPassword();
    ASSERT_TRUE(runTask(m_manager->authenticate(masterPassword)));
    m_services.credentials.failWith = credentialInteractionNotAllowed;
    EXPECT_THROW(runTask(m_manager->removeMasterPassword()), KeychainError);
    EXPECT_TRUE(m_manager->hasMasterPassword());
    EXPECT_TRUE(m_manager->isAuthenticated());
    EXPECT_TRUE(m_manager->hasAuthenticationTimer());
}

TEST_F(MasterPassword, AuthenticatingWithoutAMasterPasswordFails)
{
    EXPECT_EQ(settingErrorOf([](MasterPasswordManager &manager) -> QCoro::Task<> {
                  (void)co_await manager.authenticate(masterPassword);
              }(*m_manager)),
              MasterPasswordError::noMasterPassword);
}

TEST_F(MasterPassword, AWrongPasswordReturnsFalseAndDoesNotChangeAnOpenSession)
{
    startWithMasterPassword();
    EXPECT_FALSE(runTask(m_manager->authenticate(wrongPassword)));
    EXPECT_FALSE(m_manager->isAuthenticated());
    EXPECT_FALSE(m_manager->hasAuthenticationTimer());
    ASSERT_TRUE(runTask(m_manager->authenticate(masterPassword)));
    EXPECT_FALSE(runTask(m_manager->authenticate(wrongPassword)));
    EXPECT_TRUE(m_manager->isAuthenticated());
    EXPECT_TRUE(m_manager->hasAuthenticationTimer());
}

TEST_F(MasterPassword, TheSessionEndsAfter300SecondsAndTheFiredTimerIsKept)
{
    startWithMasterPassword();
    ASSERT_TRUE(runTask(m_manager->authenticate(masterPassword)));
    m_services.clock.advance(299'999ms);
    EXPECT_TRUE(m_manager->isAuthenticated());
    m_services.clock.advance(1ms);
    EXPECT_FALSE(m_manager->isAuthenticated());
    EXPECT_TRUE(m_manager->hasAuthenticationTimer());
    const auto task = guard();
    EXPECT_TRUE(m_dialog.isPresented()) << "the next guard asks";
    m_dialog.cancel();
    EXPECT_FALSE(task.wait());
}

TEST_F(MasterPassword, UsingTheSessionDoesNotExtendIt)
{
    startWithMasterPassword();
    ASSERT_TRUE(runTask(m_manager->authenticate(masterPassword)));
    m_services.clock.advance(200s);
    EXPECT_TRUE(runTask(m_manager->requireAuthenticationOrCancel()));
    m_services.clock.advance(100s);
    EXPECT_FALSE(m_manager->isAuthenticated());
}

TEST_F(MasterPassword, AuthenticatingAgainRestartsTheSingleTimer)
{
    startWithMasterPassword();
    ASSERT_TRUE(runTask(m_manager->authenticate(masterPassword)));
    m_services.clock.advance(200s);
    ASSERT_TRUE(runTask(m_manager->authenticate(masterPassword)));
    EXPECT_EQ(m_services.clock.pendingTimers(), 1);
    m_services.clock.advance(200s);
    EXPECT_TRUE(m_manager->isAuthenticated());
    m_services.clock.advance(100s);
    EXPECT_FALSE(m_manager->isAuthenticated());
}

TEST_F(MasterPassword, EndingTheSessionClearsItsTimerAndTheNextGuardAsks)
{
    startWithMasterPassword();
    const auto first = guard();
    enter(masterPassword);
    ASSERT_TRUE(first.wait());
    EXPECT_TRUE(m_manager->isAuthenticated());
    m_manager->endSession();
    EXPECT_FALSE(m_manager->isAuthenticated());
    EXPECT_FALSE(m_manager->hasAuthenticationTimer());
    EXPECT_EQ(m_services.clock.pendingTimers(), 0);
    const auto second = guard();
    EXPECT_TRUE(m_dialog.isPresented());
    m_dialog.cancel();
    EXPECT_FALSE(second.wait());
}

TEST_F(MasterPassword, TheDialogIsFilledAndOpenedInOrder)
{
    startWithMasterPassword();
    m_dialog.setTitle(QStringLiteral("old"));
    m_dialog.setMessage(QStringLiteral("old"));
    m_dialog.setShowingError(true);
    m_dialog.setErrorMessage(QStringLiteral("old"));
    m_dialog.setIsAuthenticating(true);
    m_dialog.setIsPasswordSetting(true);
    QStringList steps;
    const auto note = [&] {
        steps.append(QStringLiteral("%1|%2|%3|%4|%5|%6|%7")
                         .arg(m_dialog.title().left(14), m_dialog.message().left(5))
                         .arg(m_dialog.isPresented())
                         .arg(m_dialog.showingError())
                         .arg(m_dialog.errorMessage())
                         .arg(m_dialog.isAuthenticating())
                         .arg(m_dialog.isPasswordSetting()));
    };
    QObject::connect(&m_dialog, &MasterPasswordDialogManager::textChanged, note);
    QObject::connect(&m_dialog, &MasterPasswordDialogManager::isPresentedChanged, note);
    QObject::connect(&m_dialog, &MasterPasswordDialogManager::errorChanged, note);
    QObject::connect(&m_dialog, &MasterPasswordDialogManager::modeChanged, note);
    const auto task = guard();
    EXPECT_EQ(m_dialog.title(), QStringLiteral("Authentication Required"));
    EXPECT_EQ(m_dialog.message(), QStringLiteral("Enter your master password to continue:"));
    EXPECT_EQ(steps, (QStringList{
                         QStringLiteral("Authentication|old|0|1|old|1|1"),
                         QStringLiteral("Authentication|Enter|0|1|old|1|1"),
                         QStringLiteral("Authentication|Enter|1|1|old|1|1"),
                         QStringLiteral("Authentication|Enter|1|0|old|1|1"),
                         QStringLiteral("Authentication|Enter|1|0||1|1"),
                         QStringLiteral("Authentication|Enter|1|0||0|1"),
                         QStringLiteral("Authentication|Enter|1|0||0|0"),
                     }));
    m_dialog.disconnect();
    m_dialog.cancel();
    EXPECT_FALSE(task.wait());
}

TEST_F(MasterPassword, TheRightPasswordClosesTheDialogAndTheFlagIsKeptUntilItIsShownAgain)
{
    startWithMasterPassword();
    const auto first = guard();
    enter(masterPassword);
    EXPECT_TRUE(first.wait());
    EXPECT_FALSE(m_dialog.isPresented());
    EXPECT_TRUE(m_manager->isAuthenticated());
    EXPECT_TRUE(m_manager->hasAuthenticationTimer());
    EXPECT_TRUE(m_dialog.isAuthenticating());
    m_manager->endSession();
    const auto second = guard();
    EXPECT_FALSE(m_dialog.isAuthenticating());
    enter(masterPassword);
    EXPECT_TRUE(second.wait());
}

TEST_F(MasterPassword, AWrongPasswordShowsAnErrorAndLeavesTheDialogOpenAndEnabledEachTime)
{
    startWithMasterPassword();
    const auto task = guard();
    for (int i = 0; i < 5; ++i) {
        enter(wrongPassword);
        EXPECT_TRUE(m_dialog.isPresented());
        EXPECT_TRUE(m_dialog.showingError());
        EXPECT_EQ(m_dialog.errorMessage(), wrongText);
        EXPECT_FALSE(m_dialog.isAuthenticating());
        EXPECT_FALSE(task.isFinished());
    }
    enter(masterPassword);
    EXPECT_TRUE(task.wait());
}

TEST_F(MasterPassword, AFailureOfTheStoreIsShownAndTheOperationKeepsWaiting)
{
    startWithMasterPassword();
    const auto task = guard();
    m_services.credentials.failWith = credentialInteractionNotAllowed;
    enter(masterPassword);
    EXPECT_EQ(m_dialog.errorMessage(), QStringLiteral("Failed to retrieve from keychain: -25308"));
    EXPECT_TRUE(m_dialog.isPresented());
    EXPECT_FALSE(m_dialog.isAuthenticating());
    EXPECT_FALSE(task.isFinished());
    m_services.credentials.failWith = credentialSuccess;
    enter(masterPassword);
    EXPECT_TRUE(task.wait());
}

TEST_F(MasterPassword, IfItIsRemovedWhileTheDialogIsOpenTheDialogShowsThatNoneIsSet)
{
    startWithMasterPassword();
    const auto task = guard();
    runTask(m_manager->removeMasterPassword());
    enter(masterPassword);
    EXPECT_EQ(m_dialog.errorMessage(), QStringLiteral("No master password is set"));
    EXPECT_FALSE(task.isFinished());
    m_dialog.cancel();
    EXPECT_FALSE(task.wait());
}

TEST_F(MasterPassword, CancellingClosesTheDialogAndTheSessionAndTheGuardReturnsFalse)
{
    startWithMasterPassword();
    const auto task = guard();
    m_dialog.cancel();
    EXPECT_FALSE(m_dialog.isPresented());
    EXPECT_FALSE(task.wait());
    EXPECT_FALSE(m_manager->isAuthenticated());
    EXPECT_FALSE(m_manager->hasAuthenticationTimer());
    EXPECT_FALSE(m_dialog.showingError());
}

TEST_F(MasterPassword, CancellingClosesASessionThatWasOpenedMeanwhile)
{
    startWithMasterPassword();
    const auto task = guard();
    ASSERT_TRUE(runTask(m_manager->authenticate(masterPassword)));
    m_dialog.cancel();
    EXPECT_FALSE(task.wait());
    EXPECT_FALSE(m_manager->isAuthenticated());
    EXPECT_FALSE(m_manager->hasAuthenticationTimer());
    EXPECT_EQ(m_services.clock.pendingTimers(), 0);
}

TEST_F(MasterPassword, ASecondCompletionIsIgnored)
{
    startWithMasterPassword();
    const auto task = guard();
    enter(masterPassword);
    m_dialog.onCancel();
    EXPECT_TRUE(task.wait());
    EXPECT_TRUE(m_manager->isAuthenticated());
}

TEST_F(MasterPassword, ASecondOperationTakesOverTheDialogAndTheFirstRemainsSuspended)
{
    startWithMasterPassword();
    const auto first = guard();
    const auto endFirst = m_dialog.onCancel;
    enter(wrongPassword);
    const auto second = guard();
    EXPECT_FALSE(m_dialog.showingError()) << "the second question starts without an error";
    enter(masterPassword);
    EXPECT_TRUE(second.wait());
    EXPECT_FALSE(first.isFinished());
    endFirst();
    EXPECT_FALSE(first.wait());
}

TEST_F(MasterPassword, ADoubleSubmitAsksTheStoreOnce)
{
    startWithMasterPassword();
    const auto task = guard();
    const int before = m_store.lookups;
    enterAndHold(masterPassword);
    m_dialog.authenticate(masterPassword);
    letThrough();
    EXPECT_TRUE(task.wait());
    EXPECT_EQ(m_store.lookups, before + 1);
}

TEST_F(MasterPassword, IfCancelledDuringTheCheckTheRightPasswordOpensNoSession)
{
    startWithMasterPassword();
    const auto task = guard();
    enterAndHold(masterPassword);
    m_dialog.cancel();
    EXPECT_FALSE(task.wait());
    letThrough();
    EXPECT_FALSE(m_manager->isAuthenticated());
    EXPECT_FALSE(m_manager->hasAuthenticationTimer());
}

TEST_F(MasterPassword, ALateAnswerToACancelledDialogDoesNotCloseTheNextOne)
{
    startWithMasterPassword();
    const auto first = guard();
    enterAndHold(masterPassword);
    m_dialog.cancel();
    EXPECT_FALSE(first.wait());
    const auto second = guard();
    letThrough();
    EXPECT_TRUE(m_dialog.isPresented());
    EXPECT_FALSE(second.isFinished());
    EXPECT_FALSE(m_manager->isAuthenticated());
    enter(masterPassword);
    EXPECT_TRUE(second.wait());
}

TEST_F(MasterPassword, TheRightPasswordOpensTheSessionForAnOperationThatStartedDuringTheCheck)
{
    startWithMasterPassword();
    const auto first = guard();
    enterAndHold(masterPassword);
    const auto second = guard();
    letThrough();
    EXPECT_TRUE(first.wait());
    EXPECT_TRUE(second.wait());
    EXPECT_FALSE(m_dialog.isPresented());
    EXPECT_TRUE(m_manager->isAuthenticated());
}

TEST_F(MasterPassword, ALateErrorIsNotShownToTheOperationThatTookOverTheDialog)
{
    startWithMasterPassword();
    const auto first = guard();
    const auto endFirst = m_dialog.onCancel;
    enterAndHold(wrongPassword);
    const auto second = guard();
    letThrough();
    EXPECT_TRUE(m_dialog.isPresented());
    EXPECT_FALSE(m_dialog.showingError());
    EXPECT_FALSE(first.isFinished() || second.isFinished());
    enter(masterPassword);
    EXPECT_TRUE(second.wait());
    endFirst();
    EXPECT_FALSE(first.wait());
}

TEST_F(MasterPassword, AManagerDestroyedBeforeTheStoreAnswersChangesNothing)
{
    startWithMasterPassword();
    const auto task = guard();
    enterAndHold(masterPassword);
    m_manager.reset();
    letThrough();
    EXPECT_FALSE(task.isFinished());
    EXPECT_EQ(m_services.clock.pendingTimers(), 0);
    m_dialog.authenticate(masterPassword);
    m_dialog.cancel();
    EXPECT_FALSE(task.wait());
}
