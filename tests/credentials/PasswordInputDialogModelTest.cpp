// SPDX-License-Identifier: GPL-3.0-or-later

#include "credentials/PasswordInputDialogModel.h"
#include "support/LogCapture.h"
#include "support/RunTask.h"
#include "support/TestPlatform.h"

#include <gtest/gtest.h>

using namespace quillhaven;
using namespace quillhaven::test;

namespace {

class PasswordDialog : public ::testing::Test
{
protected:
    PasswordDialog()
    {
        m_manager.onConfirm = [this](const QString &password) {
            wasOpenOnConfirm = m_manager.isPresented();
            m_confirmed.append(password);
        };
        m_manager.onCancel = [this] { ++m_cancels; };
    }

    void askForNew(const QString &password, const QString &confirmation)
    {
        present(true);
        m_dialog.setPassword(password);
        m_dialog.setConfirmPassword(confirmation);
    }
    void present(bool requiresConfirmation)
    {
        m_manager.setRequiresConfirmation(requiresConfirmation);
        m_manager.setIsPresented(true);
    }
    void enforceStrongPasswords(bool value)
    {
        m_services.defaults.standard().setBool(QStringLiteral("enforceStrongPasswords"), value);
    }
    [[nodiscard]] bool isStrong(const QString &password)
    {
        m_dialog.setPassword(password);
        return m_dialog.isStrongPassword();
    }

    TestPlatform m_services;
    LogCapture m_log;
    PasswordInputDialogManager m_manager;
    PasswordInputDialogModel m_dialog{m_manager, m_services.defaults.standard()};
    QStringList m_confirmed;
    bool wasOpenOnConfirm = false;
    int m_cancels = 0;
};

const QString strong = QStringLiteral("Abcdefg1");
const QString otherStrong = QStringLiteral("Bcdefgh2");

QCoro::Task<PasswordInputDialogManager::Reply> replyOf(Answer<PasswordInputDialogManager::Reply> answer)
{
    const PasswordInputDialogManager::Reply reply = co_await answer;
    co_return reply;
}

} // namespace

TEST(PasswordInputDialogManager, StartsClosedAndEmpty)
{
    const PasswordInputDialogManager manager;
    EXPECT_FALSE(manager.isPresented());
    EXPECT_TRUE(manager.title().isEmpty());
    EXPECT_TRUE(manager.message().isEmpty());
    EXPECT_FALSE(manager.requiresConfirmation());
    EXPECT_FALSE(manager.onConfirm);
    EXPECT_FALSE(manager.onCancel);
}

TEST(PasswordInputDialogManager, ReportsOnlyChanges)
{
    PasswordInputDialogManager manager;
    int changes = 0;
    QObject::connect(&manager, &PasswordInputDialogManager::textChanged, [&] { ++changes; });
    manager.setTitle(QStringLiteral("title"));
    manager.setTitle(QStringLiteral("title"));
    EXPECT_EQ(changes, 1);
}

TEST(PasswordInputDialogManager, AQuestionSetsItsFieldsAndTheOthersHaveTheirDefaults)
{
    PasswordInputDialogManager manager;
    manager.setRequiresConfirmation(true);
    const auto reply = manager.ask({.title = QStringLiteral("title"), .message = QStringLiteral("message")});
    EXPECT_TRUE(manager.isPresented());
    EXPECT_EQ(manager.title(), QStringLiteral("title"));
    EXPECT_EQ(manager.message(), QStringLiteral("message"));
    EXPECT_FALSE(manager.requiresConfirmation());
    EXPECT_FALSE(reply.isGiven());
    manager.cancel();
}

TEST(PasswordInputDialogManager, AQuestionIsCompleteBeforeItIsPresented)
{
    PasswordInputDialogManager manager;
    QStringList answers;
    const auto answer = [&](const QString &text) { return [&answers, text] { answers.append(text); }; };
    manager.setTitle(QStringLiteral("old"));
    manager.setMessage(QStringLiteral("old"));
    manager.setRequiresConfirmation(true);
    manager.onConfirm = [&](const QString &) { answers.append(QStringLiteral("old")); };
    manager.onCancel = answer(QStringLiteral("old"));
    const auto look = [&] {
        EXPECT_EQ(manager.title(), QStringLiteral("title"));
        EXPECT_EQ(manager.message(), QStringLiteral("message"));
        EXPECT_FALSE(manager.requiresConfirmation());
        manager.onConfirm(strong);
        manager.onCancel();
    };
    QObject::connect(&manager, &PasswordInputDialogManager::asked, look);
    QObject::connect(&manager, &PasswordInputDialogManager::isPresentedChanged, look);
    manager.show(
        {.title = QStringLiteral("title"), .message = QStringLiteral("message")},
        [&](const QString &password) { answers.append(password); }, answer(QStringLiteral("cancel")));
    EXPECT_EQ(answers, (QStringList{strong, QStringLiteral("cancel"), strong, QStringLiteral("cancel")}));
}

TEST(PasswordInputDialogManager, AskReturnsThePasswordOrTheCancellation)
{
    PasswordInputDialogManager manager;
    const RunningTask<PasswordInputDialogManager::Reply> first(replyOf(manager.ask({})));
    manager.confirm(strong);
    const PasswordInputDialogManager::Reply confirmed = first.wait();
    EXPECT_EQ(confirmed.end, DialogEnd::Confirmed);
    EXPECT_EQ(confirmed.password, strong);
    const RunningTask<PasswordInputDialogManager::Reply> second(replyOf(manager.ask({})));
    manager.cancel();
    const PasswordInputDialogManager::Reply cancelled = second.wait();
    EXPECT_EQ(cancelled.end, DialogEnd::Cancelled);
    EXPECT_EQ(cancelled.password, QString());
}

TEST(PasswordInputDialogManager, AReplacedQuestionLeavesNothingTypedForTheNext)
{
    TestPlatform services;
    PasswordInputDialogManager manager;
    PasswordInputDialogModel dialog(manager, services.defaults.standard());
    (void)manager.ask({.title = QStringLiteral("First"), .message = {}, .requiresConfirmation = true});
    dialog.setPassword(QStringLiteral("Secret1234"));
    dialog.setConfirmPassword(QStringLiteral("Secret1234"));
    dialog.setShowPassword(true);
    (void)manager.ask({.title = QStringLiteral("Second"), .message = {}, .requiresConfirmation = true});
    EXPECT_EQ(dialog.password(), QString());
    EXPECT_EQ(dialog.confirmPassword(), QString());
    EXPECT_FALSE(dialog.showPassword());
    EXPECT_FALSE(dialog.canConfirm());
}

TEST(PasswordInputDialogManager, AReplacedQuestionEndsWithoutAnAnswer)
{
    PasswordInputDialogManager manager;
    const RunningTask<PasswordInputDialogManager::Reply> first(replyOf(manager.ask({})));
    const RunningTask<PasswordInputDialogManager::Reply> second(replyOf(manager.ask({})));
    EXPECT_EQ(first.wait().end, DialogEnd::Replaced);
    EXPECT_FALSE(second.isFinished());
    manager.confirm(strong);
    EXPECT_EQ(second.wait().password, strong);
}

TEST_F(PasswordDialog, EachOpeningStartsWithClearedFields)
{
    askForNew(strong, otherStrong);
    m_dialog.setShowPassword(true);
    m_dialog.setShowConfirmPassword(true);
    m_dialog.confirm();
    m_dialog.setConfirmPassword(QStringLiteral("weak"));
    m_dialog.setPassword(QStringLiteral("weak"));
    m_dialog.confirm();
    ASSERT_TRUE(m_dialog.showPasswordStrengthError());
    m_manager.setIsPresented(false);
    m_manager.setIsPresented(true);
    EXPECT_TRUE(m_dialog.password().isEmpty());
    EXPECT_TRUE(m_dialog.confirmPassword().isEmpty());
    EXPECT_FALSE(m_dialog.showPasswordMismatch());
    EXPECT_FALSE(m_dialog.showPassword());
    EXPECT_FALSE(m_dialog.showConfirmPassword());
    EXPECT_FALSE(m_dialog.showPasswordStrengthError());
}

TEST_F(PasswordDialog, ChangingTheTextOfTheOpenDialogKeepsTheInput)
{
    present(false);
    m_dialog.setPassword(QStringLiteral("typed"));
    m_manager.setMessage(QStringLiteral("another"));
    EXPECT_EQ(m_dialog.password(), QStringLiteral("typed"));
}

TEST_F(PasswordDialog, AnAnsweredDialogContainsNoPasswordAndReportsThat)
{
    present(false);
    m_dialog.setPassword(strong);
    QString lastSeen = strong;
    QObject::connect(&m_dialog, &PasswordInputDialogModel::changed, [&] { lastSeen = m_dialog.password(); });
    m_dialog.confirm();
    EXPECT_TRUE(lastSeen.isEmpty());
}

TEST_F(PasswordDialog, TheStrengthRuleIsThatOfTheDialog)
{
    EXPECT_TRUE(isStrong(strong));
    EXPECT_TRUE(isStrong(QStringLiteral("Ábcdefg1")));
    for (const QString &weak : {QStringLiteral("abcdefg1"), QStringLiteral("ABCDEFG1"), QStringLiteral("Abcdefgh"),
                                QStringLiteral("Abc1"), QStringLiteral("Abcdef1")}) {
        EXPECT_FALSE(isStrong(weak)) << weak.toStdString();
    }
}

TEST_F(PasswordDialog, TestingTheStrengthLogsTheResultAndEachRequirement)
{
    EXPECT_FALSE(isStrong(QStringLiteral("abcdefgh")));
    EXPECT_EQ(m_log.lines(), (QStringList{
                                 QStringLiteral("🔍 DEBUG: isStrongPassword check for 'abcdefgh': false"),
                                 QStringLiteral("🔍 DEBUG: - Length >= 8: true"),
                                 QStringLiteral("🔍 DEBUG: - Has uppercase: false"),
                                 QStringLiteral("🔍 DEBUG: - Has lowercase: true"),
                                 QStringLiteral("🔍 DEBUG: - Has digits: false"),
                             }));
}

TEST_F(PasswordDialog, AStrongPasswordTypedTwiceIsPassedOnceAfterTheDialogWasClosed)
{
    askForNew(strong, strong);
    m_dialog.confirm();
    EXPECT_EQ(m_confirmed, QStringList{strong});
    EXPECT_FALSE(wasOpenOnConfirm);
    EXPECT_FALSE(m_manager.isPresented());
    EXPECT_EQ(m_log.lines().first(), QStringLiteral("🔍 DEBUG: Protect button clicked"));
    EXPECT_EQ(m_log.lines().last(), QStringLiteral("🔍 DEBUG: Password validation passed, proceeding"));
}

TEST_F(PasswordDialog, TwoDifferentPasswordsShowTheMismatchAndNoStrengthError)
{
    for (const QString &first : {strong, QStringLiteral("a")}) {
        askForNew(first, otherStrong);
        m_dialog.confirm();
        EXPECT_TRUE(m_dialog.showPasswordMismatch());
        EXPECT_EQ(m_dialog.mismatchText(), QStringLiteral("Passwords don't match"));
        EXPECT_FALSE(m_dialog.showPasswordStrengthError());
        EXPECT_EQ(m_dialog.strengthErrorText(), QString());
        EXPECT_FALSE(m_log.contains(QStringLiteral("🔍 DEBUG: Showing password strength error")));
        EXPECT_TRUE(m_manager.isPresented());
        EXPECT_TRUE(m_confirmed.isEmpty());
        m_manager.setIsPresented(false);
    }
}

TEST_F(PasswordDialog, AWeakPasswordTypedTwiceShowsTheStrengthErrorAndClearsTheMismatch)
{
    askForNew(QStringLiteral("weak"), QStringLiteral("meek"));
    m_dialog.confirm();
    ASSERT_TRUE(m_dialog.showPasswordMismatch());
    m_dialog.setConfirmPassword(QStringLiteral("weak"));
    m_dialog.confirm();
    EXPECT_FALSE(m_dialog.showPasswordMismatch());
    EXPECT_EQ(m_dialog.mismatchText(), QString());
    EXPECT_TRUE(m_dialog.showPasswordStrengthError());
    EXPECT_EQ(m_dialog.strengthErrorText(),
              QStringLiteral("Password must be at least 8 characters with uppercase, lowercase, and numbers"));
    EXPECT_EQ(m_log.lines().last(), QStringLiteral("🔍 DEBUG: Showing password strength error"));
    EXPECT_TRUE(m_manager.isPresented());
    EXPECT_TRUE(m_confirmed.isEmpty());
}

TEST_F(PasswordDialog, AWeakAttemptIsLoggedInOrder)
{
    askForNew(QStringLiteral("weak"), QStringLiteral("weak"));
    m_dialog.confirm();
    const QStringList check{
        QStringLiteral("🔍 DEBUG: isStrongPassword check for 'weak': false"),
        QStringLiteral("🔍 DEBUG: - Length >= 8: false"),
        QStringLiteral("🔍 DEBUG: - Has uppercase: false"),
        QStringLiteral("🔍 DEBUG: - Has lowercase: true"),
        QStringLiteral("🔍 DEBUG: - Has digits: false"),
    };
    EXPECT_EQ(m_log.lines(), QStringList() << QStringLiteral("🔍 DEBUG: Protect button clicked")
                                           << QStringLiteral("🔍 DEBUG: enforceStrongPasswords: true") << check
                                           << QStringLiteral("🔍 DEBUG: isStrongPassword: false")
                                           << QStringLiteral("🔍 DEBUG: password: weak") << check
                                           << QStringLiteral("🔍 DEBUG: Showing password strength error"));
}

TEST_F(PasswordDialog, WithoutTheRuleASingleLetterTypedTwiceIsAccepted)
{
    enforceStrongPasswords(false);
    askForNew(QStringLiteral("a"), QStringLiteral("a"));
    m_dialog.confirm();
    EXPECT_EQ(m_confirmed, QStringList{QStringLiteral("a")});
    EXPECT_FALSE(m_dialog.showPasswordStrengthError());
}

TEST_F(PasswordDialog, AnExistingPasswordOfOneLetterIsPassedWithoutValidation)
{
    present(false);
    m_dialog.setPassword(QStringLiteral("a"));
    m_dialog.confirm();
    EXPECT_EQ(m_confirmed, QStringList{QStringLiteral("a")});
    EXPECT_FALSE(wasOpenOnConfirm);
    EXPECT_FALSE(m_log.contains(QStringLiteral("🔍 DEBUG: Password validation passed, proceeding")));
}

TEST_F(PasswordDialog, TheConfirmButtonNeedsEveryShownField)
{
    present(true);
    EXPECT_EQ(m_dialog.confirmTitle(), QStringLiteral("Protect"));
    EXPECT_FALSE(m_dialog.canConfirm());
    m_dialog.setPassword(strong);
    EXPECT_FALSE(m_dialog.canConfirm());
    m_dialog.setConfirmPassword(QStringLiteral("x"));
    EXPECT_TRUE(m_dialog.canConfirm());
    m_dialog.setPassword({});
    EXPECT_FALSE(m_dialog.canConfirm());
    m_manager.setRequiresConfirmation(false);
    EXPECT_EQ(m_dialog.confirmTitle(), QStringLiteral("Unlock"));
    EXPECT_FALSE(m_dialog.canConfirm());
    m_dialog.setConfirmPassword({});
    m_dialog.setPassword(QStringLiteral("a"));
    EXPECT_TRUE(m_dialog.canConfirm());
}

TEST_F(PasswordDialog, ReturnWithADisabledButtonDoesNothing)
{
    enforceStrongPasswords(false);
    present(true);
    m_dialog.confirm();
    EXPECT_TRUE(m_manager.isPresented());
    EXPECT_TRUE(m_confirmed.isEmpty());
    EXPECT_TRUE(m_log.lines().isEmpty());
}

TEST_F(PasswordDialog, TheRequirementsAreShownOnlyForANewWeakPasswordThatMustBeStrong)
{
    present(true);
    EXPECT_FALSE(m_dialog.showsRequirements()) << "nothing was typed";
    m_dialog.setPassword(QStringLiteral("abcD"));
    EXPECT_TRUE(m_dialog.showsRequirements());
    EXPECT_FALSE(m_dialog.hasMinimumLength());
    EXPECT_TRUE(m_dialog.hasUppercase());
    EXPECT_TRUE(m_dialog.hasLowercase());
    EXPECT_FALSE(m_dialog.hasDigit());
    m_dialog.setPassword(strong);
    EXPECT_FALSE(m_dialog.showsRequirements()) << "the password is strong";
    m_dialog.setPassword(QStringLiteral("abcD"));
    m_manager.setRequiresConfirmation(false);
    EXPECT_FALSE(m_dialog.showsRequirements()) << "it is an existing password";
    m_manager.setRequiresConfirmation(true);
    enforceStrongPasswords(false);
    EXPECT_FALSE(m_dialog.showsRequirements()) << "the rule is off";
}

TEST_F(PasswordDialog, CancelClosesThenCallsItsActionAndConfirmsNothing)
{
    askForNew(strong, strong);
    bool wasClosed = false;
    m_manager.onCancel = [&] { wasClosed = !m_manager.isPresented(); };
    m_dialog.cancel();
    EXPECT_TRUE(wasClosed);
    EXPECT_TRUE(m_confirmed.isEmpty());
    EXPECT_TRUE(m_dialog.password().isEmpty());
}

TEST_F(PasswordDialog, WithoutActionsTheButtonsOnlyClose)
{
    m_manager.onConfirm = {};
    m_manager.onCancel = {};
    askForNew(strong, strong);
    m_dialog.confirm();
    EXPECT_FALSE(m_manager.isPresented());
    present(true);
    m_dialog.cancel();
    EXPECT_FALSE(m_manager.isPresented());
}

TEST_F(PasswordDialog, AnActionMayOpenTheDialogAgain)
{
    m_manager.onConfirm = [this](const QString &) { m_manager.setIsPresented(true); };
    askForNew(strong, strong);
    m_dialog.confirm();
    EXPECT_TRUE(m_manager.isPresented());
    EXPECT_TRUE(m_dialog.password().isEmpty());
}
