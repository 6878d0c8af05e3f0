// SPDX-License-Identifier: GPL-3.0-or-later

#include "presentation/preferences/EnhancedLaunchAtLoginErrorHandler.h"

#include "presentation/dialogs/ConfirmationDialogManager.h"
#include "support/FakeUrlOpener.h"
#include "support/LogCapture.h"
#include "support/ManualClock.h"
#include "support/PrintText.h"
#include "support/RunTask.h"

#include <gtest/gtest.h>

using namespace quillhaven;
using namespace quillhaven::test;
using namespace std::chrono_literals;

namespace {

using Case = RecoveryAction::Case;

class RecoveryFromErrors : public ::testing::Test
{
protected:
    void TearDown() override { spinOnce(); }

    void execute(const RecoveryAction &action)
    {
        handler->executeRecoveryAction(action, [this] { ++completions; });
        spinOnce();
    }
    [[nodiscard]] QStringList labels() const
    {
        QStringList texts;
        for (const RecoveryAction &action : handler->recoveryActions()) {
            texts.append(action.description());
        }
        return texts;
    }

    ConfirmationDialogManager confirmation;
    FakeUrlOpener opener;
    ManualClock clock;
    int restarts = 0;
    int completions = 0;
    std::optional<EnhancedLaunchAtLoginErrorHandler> handler{std::in_place, confirmation, opener, clock,
                                                             [this] { ++restarts; }};
    const LaunchAtLoginError failed = LaunchAtLoginError::registrationFailed(QStringLiteral("why"));
};

const auto settingsAddress =
    QUrl(QStringLiteral("x-apple.systempreferences:com.apple.preference.security?Privacy_Automation"));

} // namespace

TEST_F(RecoveryFromErrors, FailedChangeOffersARetryInTwoSecondsAndARestart)
{
    handler->handleError(failed);
    EXPECT_EQ(labels(), (QStringList{QStringLiteral("Retry in 2s"), QStringLiteral("Restart app")}));
    handler->handleError(LaunchAtLoginError::unregistrationFailed(QStringLiteral("why")));
    EXPECT_EQ(labels(), (QStringList{QStringLiteral("Retry in 2s"), QStringLiteral("Restart app")}));
}

TEST_F(RecoveryFromErrors, DeniedPermissionOffersTheTwoButtons)
{
    handler->handleError(LaunchAtLoginError::permissionDenied());
    EXPECT_EQ(labels(), (QStringList{QStringLiteral("Check permissions"), QStringLiteral("Open System Preferences")}));
}

TEST_F(RecoveryFromErrors, UnavailableSystemOffersTheRequirements)
{
    handler->handleError(LaunchAtLoginError::systemUnavailable());
    EXPECT_EQ(labels(), QStringList{QStringLiteral("Check system requirements")});
}

TEST_F(RecoveryFromErrors, UnknownErrorOffersARetryInOneSecondAndDetails)
{
    handler->handleError(LaunchAtLoginError::unknownError(QStringLiteral("why")));
    EXPECT_EQ(labels(), (QStringList{QStringLiteral("Retry in 1s"), QStringLiteral("View details")}));
}

TEST_F(RecoveryFromErrors, EachActionHasItsSymbol)
{
    EXPECT_EQ(RecoveryAction{Case::retryWithDelay}.iconName(), QStringLiteral("arrow.clockwise"));
    EXPECT_EQ(RecoveryAction{Case::showPermissionDialog}.iconName(), QStringLiteral("lock.shield"));
    EXPECT_EQ(RecoveryAction{Case::showSystemRequirementsDialog}.iconName(), QStringLiteral("info.circle"));
    EXPECT_EQ(RecoveryAction{Case::logAndShowGenericError}.iconName(), QStringLiteral("exclamationmark.triangle"));
    EXPECT_EQ(RecoveryAction{Case::openSystemPreferences}.iconName(), QStringLiteral("gear"));
    EXPECT_EQ(RecoveryAction{Case::restartApp}.iconName(), QStringLiteral("arrow.clockwise.circle"));
    EXPECT_EQ(RecoveryAction{Case::noAction}.iconName(), QString());
    EXPECT_EQ(RecoveryAction{Case::noAction}.description(), QString());
}

TEST_F(RecoveryFromErrors, ErrorIsLoggedAndOpensNoDialog)
{
    const LogCapture log;
    handler->handleError(failed);
    EXPECT_EQ(handler->currentError(), failed);
    EXPECT_FALSE(confirmation.isPresented());
    EXPECT_EQ(log.lines(),
              (QStringList{QStringLiteral("EnhancedLaunchAtLoginErrorHandler: Failed to register app for launch at "
                                          "login: why"),
                           QStringLiteral("Recovery suggestion: Try again in a few moments. If the problem persists, "
                                          "restart the app.")}));
}

TEST_F(RecoveryFromErrors, ClearingEndsTheErrorTheActionsAndTheNote)
{
    handler->handleError(failed);
    handler->showSuccessMessage(QStringLiteral("done"));
    handler->clearError();
    EXPECT_FALSE(handler->currentError());
    EXPECT_TRUE(handler->recoveryActions().isEmpty());
    EXPECT_FALSE(handler->successMessage());
    EXPECT_EQ(clock.pendingTimers(), 0);
}

TEST_F(RecoveryFromErrors, RetryWaitsAndThenSaysThatItIsReadyForThreeSeconds)
{
    handler->handleError(failed);
    execute({Case::retryWithDelay, 2.0});
    clock.advance(1999ms);
    spinOnce();
    EXPECT_TRUE(handler->isExecutingRecovery());
    EXPECT_TRUE(handler->currentError());
    clock.advance(1ms);
    spinOnce();
    EXPECT_FALSE(handler->currentError());
    EXPECT_TRUE(handler->recoveryActions().isEmpty());
    EXPECT_EQ(handler->successMessage(), QStringLiteral("Ready to retry"));
    EXPECT_FALSE(handler->isExecutingRecovery());
    EXPECT_EQ(completions, 1);
    clock.advance(2999ms);
    EXPECT_TRUE(handler->successMessage());
    clock.advance(1ms);
    EXPECT_FALSE(handler->successMessage());
}

TEST_F(RecoveryFromErrors, LaterNoteReplacesAnEarlierOneAndItsTimeRunsFromThen)
{
    handler->showSuccessMessage(QStringLiteral("one"));
    clock.advance(2s);
    handler->showSuccessMessage(QStringLiteral("two"));
    EXPECT_EQ(handler->successMessage(), QStringLiteral("two"));
    clock.advance(2999ms);
    EXPECT_EQ(handler->successMessage(), QStringLiteral("two"));
    clock.advance(1ms);
    EXPECT_FALSE(handler->successMessage());
}

TEST_F(RecoveryFromErrors, NoteCanBeDismissed)
{
    handler->showSuccessMessage(QStringLiteral("one"));
    handler->clearSuccessMessage();
    EXPECT_FALSE(handler->successMessage());
    EXPECT_EQ(clock.pendingTimers(), 0);
}

TEST_F(RecoveryFromErrors, SecondPressDoesNothingWhileTheFirstRuns)
{
    handler->handleError(failed);
    execute({Case::retryWithDelay, 2.0});
    execute({Case::restartApp});
    EXPECT_FALSE(confirmation.isPresented());
    EXPECT_EQ(clock.pendingTimers(), 1);
    clock.advance(2s);
    spinOnce();
    EXPECT_EQ(completions, 1);
}

TEST_F(RecoveryFromErrors, RetryThatIsCancelledEndsWithoutANote)
{
    handler->handleError(failed);
    execute({Case::retryWithDelay, 2.0});
    handler.reset();
    spinOnce();
    EXPECT_EQ(clock.pendingTimers(), 0);
    EXPECT_EQ(completions, 0);
}

TEST_F(RecoveryFromErrors, PermissionDialogLeadsToTheSettings)
{
    execute({Case::showPermissionDialog});
    EXPECT_EQ(confirmation.title(), QStringLiteral("Permission Required"));
    EXPECT_EQ(confirmation.message(),
              QStringLiteral("Quillhaven needs permission to manage login items.\n\nTo grant permission:\n1. Open "
                             "System Preferences\n2. Go to Security & Privacy > Privacy\n3. Select \"Automation\" from "
                             "the list\n4. Enable \"Quillhaven\" if it appears\n\nIf the app doesn't appear in the "
                             "list, try restarting the app."));
    EXPECT_EQ(confirmation.confirmTitle(), QStringLiteral("Open System Preferences"));
    EXPECT_EQ(confirmation.cancelTitle(), QStringLiteral("Cancel"));
    EXPECT_FALSE(confirmation.isDestructive());
    EXPECT_TRUE(confirmation.showCancelButton());
    confirmation.confirm();
    spinOnce();
    EXPECT_EQ(opener.opened, QList<QUrl>{settingsAddress});
}

TEST_F(RecoveryFromErrors, SettingsAreOpenedAndTheirAbsenceIsLogged)
{
    const LogCapture log;
    opener.canOpen = false;
    execute({Case::openSystemPreferences});
    EXPECT_EQ(opener.opened, QList<QUrl>{settingsAddress});
    EXPECT_EQ(log.lines().size(), 1);
}

TEST_F(RecoveryFromErrors, RequirementsAreAMessage)
{
    execute({Case::showSystemRequirementsDialog});
    EXPECT_EQ(confirmation.title(), QStringLiteral("System Requirements"));
    EXPECT_EQ(confirmation.message(),
              QStringLiteral("Launch at login functionality requires macOS 10.10 or later.\n\nYour current system may "
                             "not support this feature, or the system service may be temporarily unavailable.\n\n"
                             "Please ensure you're running a supported version of macOS and try again."));
    EXPECT_EQ(confirmation.confirmTitle(), QStringLiteral("OK"));
    EXPECT_EQ(confirmation.cancelTitle(), QString());
    EXPECT_TRUE(confirmation.showCancelButton());
}

TEST_F(RecoveryFromErrors, DetailsNameTheErrorAndTheSuggestion)
{
    execute({Case::logAndShowGenericError});
    EXPECT_FALSE(confirmation.isPresented());
    handler->handleError(LaunchAtLoginError::unknownError(QStringLiteral("why")));
    execute({Case::logAndShowGenericError});
    EXPECT_EQ(confirmation.title(), QStringLiteral("Launch at Login Error"));
    EXPECT_EQ(confirmation.message(),
              QStringLiteral("An unexpected error occurred while configuring launch at login:\n\nUnknown error "
                             "occurred: why\n\nPlease try again. If the problem persists, contact support."));
}

TEST_F(RecoveryFromErrors, RestartHappensAfterAConfirmationOnly)
{
    execute({Case::restartApp});
    EXPECT_EQ(confirmation.title(), QStringLiteral("Restart Required"));
    EXPECT_EQ(confirmation.message(),
              QStringLiteral("Some launch at login issues can be resolved by restarting the application.\n\nWould you "
                             "like to restart Quillhaven now?"));
    EXPECT_EQ(confirmation.confirmTitle(), QStringLiteral("Restart Now"));
    EXPECT_EQ(confirmation.cancelTitle(), QStringLiteral("Later"));
    confirmation.cancel();
    EXPECT_EQ(restarts, 0);
    execute({Case::restartApp});
    confirmation.confirm();
    EXPECT_EQ(restarts, 1);
}

TEST_F(RecoveryFromErrors, NoActionDoesNothing)
{
    handler->handleError(failed);
    execute({Case::noAction});
    EXPECT_EQ(completions, 1);
    EXPECT_EQ(handler->currentError(), failed);
}
