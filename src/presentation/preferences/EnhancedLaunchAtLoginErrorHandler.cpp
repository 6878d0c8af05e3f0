// SPDX-License-Identifier: GPL-3.0-or-later

#include "presentation/preferences/EnhancedLaunchAtLoginErrorHandler.h"

#include "async/Jobs.h"
#include "platform/Clock.h"
#include "platform/UrlOpener.h"
#include "presentation/dialogs/ConfirmationDialogManager.h"
#include "support/printLogger.h"

#include <QPointer>

#include <utility>

namespace quillhaven {

namespace {

using namespace std::chrono_literals;

constexpr std::chrono::milliseconds successMessageDuration = 3s;

} // namespace

EnhancedLaunchAtLoginErrorHandler::EnhancedLaunchAtLoginErrorHandler(ConfirmationDialogManager &confirmation,
                                                                     UrlOpener &opener, Clock &clock,
                                                                     std::function<void()> restart, QObject *parent)
    : QObject(parent), m_confirmation(confirmation), m_opener(opener), m_clock(clock), m_restart(std::move(restart))
{
}

EnhancedLaunchAtLoginErrorHandler::~EnhancedLaunchAtLoginErrorHandler()
{
    if (m_delay) {
        m_delay->give(false);
    }
}

void EnhancedLaunchAtLoginErrorHandler::handleError(const LaunchAtLoginError &error)
{
    m_currentError = error;
    m_recoveryActions = recoveryActionsFor(error);
    printLogger(QStringLiteral("EnhancedLaunchAtLoginErrorHandler: ") + error.errorDescription());
    printLogger(QStringLiteral("Recovery suggestion: ") + error.recoverySuggestion());
    Q_EMIT changed();
}

void EnhancedLaunchAtLoginErrorHandler::clearError()
{
    m_successMessageTimer.reset();
    clearAll();
}

void EnhancedLaunchAtLoginErrorHandler::clearAll()
{
    m_currentError.reset();
    m_recoveryActions.clear();
    m_successMessage.reset();
    Q_EMIT changed();
}

void EnhancedLaunchAtLoginErrorHandler::executeRecoveryAction(const RecoveryAction &action,
                                                              std::function<void()> completion)
{
    if (m_isExecutingRecovery) {
        return;
    }
    m_isExecutingRecovery = true;
    Q_EMIT changed();
    startJobOf(this, [action, completion = std::move(completion)](EnhancedLaunchAtLoginErrorHandler &self) {
        return self.execute(action, completion);
    });
}

QCoro::Task<> EnhancedLaunchAtLoginErrorHandler::execute(RecoveryAction action, std::function<void()> completion)
{
    const QPointer<EnhancedLaunchAtLoginErrorHandler> self(this);
    co_await performRecoveryAction(action);
    if (!self) {
        co_return;
    }
    m_isExecutingRecovery = false;
    Q_EMIT changed();
    if (completion) {
        completion();
    }
}

QCoro::Task<> EnhancedLaunchAtLoginErrorHandler::performRecoveryAction(RecoveryAction action)
{
    switch (action.action) {
    case RecoveryAction::Case::retryWithDelay:
        co_await retryWithDelay(action.seconds);
        break;
    case RecoveryAction::Case::showPermissionDialog:
        showPermissionDialog();
        break;
    case RecoveryAction::Case::showSystemRequirementsDialog:
        showSystemRequirementsDialog();
        break;
    case RecoveryAction::Case::logAndShowGenericError:
        showGenericErrorDialog();
        break;
    case RecoveryAction::Case::openSystemPreferences:
        openSystemPreferences();
        break;
    case RecoveryAction::Case::restartApp:
        showRestartDialog();
        break;
    case RecoveryAction::Case::noAction:
        break;
    }
}

/// The failed operation is not repeated: the user does that.
QCoro::Task<> EnhancedLaunchAtLoginErrorHandler::retryWithDelay(double seconds)
{
    const Answer<bool> delay;
    m_delay = delay;
    const auto duration = std::chrono::round<std::chrono::milliseconds>(std::chrono::duration<double>(seconds));
    const auto timer = m_clock.startOneShot(duration, [delay] { delay.give(true); });
    const bool isCompleted = co_await delay;
    if (!isCompleted) {
        co_return; // this object no longer exists
    }
    m_delay.reset();
    clearAll();
    showSuccessMessage(QStringLiteral("Ready to retry"));
}

void EnhancedLaunchAtLoginErrorHandler::showPermissionDialog()
{
    m_confirmation.show({.title = QStringLiteral("Permission Required"),
                         .message = QStringLiteral("Quillhaven needs permission to manage login items.\n\n"
                                                   "To grant permission:\n"
                                                   "1. Open System Preferences\n"
                                                   "2. Go to Security & Privacy > Privacy\n"
                                                   "3. Select \"Automation\" from the list\n"
                                                   "4. Enable \"Quillhaven\" if it appears\n\n"
                                                   "If the app doesn't appear in the list, try restarting the app."),
                         .confirmTitle = QStringLiteral("Open System Preferences")},
                        [self = QPointer(this)] {
                            startJobOf(self.data(), [](EnhancedLaunchAtLoginErrorHandler &handler) -> QCoro::Task<> {
                                handler.openSystemPreferences();
                                co_return;
                            });
                        });
}

void EnhancedLaunchAtLoginErrorHandler::showSystemRequirementsDialog()
{
    m_confirmation.show(
        {.title = QStringLiteral("System Requirements"),
         .message = QStringLiteral(
             "Launch at login functionality requires macOS 10.10 or later.\n\n"
             "Your current system may not support this feature, or the system service may be temporarily "
             "unavailable.\n\n"
             "Please ensure you're running a supported version of macOS and try again."),
         .confirmTitle = QStringLiteral("OK"),
         .cancelTitle = QString()});
}

void EnhancedLaunchAtLoginErrorHandler::showGenericErrorDialog()
{
    if (!m_currentError) {
        return;
    }
    m_confirmation.show(
        {.title = QStringLiteral("Launch at Login Error"),
         .message = QStringLiteral("An unexpected error occurred while configuring launch at login:\n\n") +
                    m_currentError->errorDescription() + QStringLiteral("\n\n") + m_currentError->recoverySuggestion(),
         .confirmTitle = QStringLiteral("OK"),
         .cancelTitle = QString()});
}

void EnhancedLaunchAtLoginErrorHandler::showRestartDialog()
{
    m_confirmation.show(
        {.title = QStringLiteral("Restart Required"),
         .message = QStringLiteral("Some launch at login issues can be resolved by restarting the application.\n\n"
                                   "Would you like to restart Quillhaven now?"),
         .confirmTitle = QStringLiteral("Restart Now"),
         .cancelTitle = QStringLiteral("Later")},
        m_restart);
}

void EnhancedLaunchAtLoginErrorHandler::openSystemPreferences()
{
    const QUrl preferences(
        QStringLiteral("x-apple.systempreferences:com.apple.preference.security?Privacy_Automation"));
    const QUrl address = preferences.isValid()
                             ? preferences
                             : QUrl::fromLocalFile(QStringLiteral("/System/Applications/System Preferences.app"));
    if (!m_opener.open(address)) {
        printLogger(QStringLiteral("⚠️ No settings program was found for ") + address.toString());
    }
}

void EnhancedLaunchAtLoginErrorHandler::showSuccessMessage(const QString &text)
{
    m_successMessage = text;
    m_successMessageTimer = m_clock.startOneShot(successMessageDuration, [this] { clearSuccessMessage(); });
    Q_EMIT changed();
}

void EnhancedLaunchAtLoginErrorHandler::clearSuccessMessage()
{
    m_successMessage.reset();
    m_successMessageTimer.reset();
    Q_EMIT changed();
}

} // namespace quillhaven
