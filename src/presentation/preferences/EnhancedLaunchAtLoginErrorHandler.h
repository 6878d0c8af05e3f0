// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "async/Answer.h"
#include "presentation/preferences/RecoveryAction.h"

#include <QCoroTask>
#include <QObject>

#include <functional>
#include <memory>
#include <optional>

namespace quillhaven {

class Clock;
class ConfirmationDialogManager;
class RunningTimer;
class UrlOpener;

/// Turns an error of the start at login into actions that the user can choose, and carries them out. It also holds the
/// note of a success, which disappears by itself. No dialog opens unless an action asks for one. Main thread only.
class EnhancedLaunchAtLoginErrorHandler : public QObject
{
    Q_OBJECT

public:
    /// `restart` starts the program again and ends this process. The references must outlive this object.
    EnhancedLaunchAtLoginErrorHandler(ConfirmationDialogManager &confirmation, UrlOpener &opener, Clock &clock,
                                      std::function<void()> restart, QObject *parent = nullptr);
    /// Ends the wait of a retry.
    ~EnhancedLaunchAtLoginErrorHandler() override;

    [[nodiscard]] const std::optional<LaunchAtLoginError> &currentError() const { return m_currentError; }
    [[nodiscard]] const QList<RecoveryAction> &recoveryActions() const { return m_recoveryActions; }
    [[nodiscard]] bool isExecutingRecovery() const { return m_isExecutingRecovery; }
    [[nodiscard]] const std::optional<QString> &successMessage() const { return m_successMessage; }

    void handleError(const LaunchAtLoginError &error);
    void clearError();
    /// Starts a job with the action, and calls `completion` after its end. Does nothing while another one runs.
    void executeRecoveryAction(const RecoveryAction &action, std::function<void()> completion = {});
    /// Shows a note for three seconds, in place of an earlier one.
    void showSuccessMessage(const QString &text);
    void clearSuccessMessage();

Q_SIGNALS:
    void changed();

private:
    [[nodiscard]] QCoro::Task<> execute(RecoveryAction action, std::function<void()> completion);
    [[nodiscard]] QCoro::Task<> performRecoveryAction(RecoveryAction action);
    [[nodiscard]] QCoro::Task<> retryWithDelay(double seconds);
    void showPermissionDialog();
    void showSystemRequirementsDialog();
    void showGenericErrorDialog();
    void showRestartDialog();
    void openSystemPreferences();
    void clearAll();

    ConfirmationDialogManager &m_confirmation;
    UrlOpener &m_opener;
    Clock &m_clock;
    std::function<void()> m_restart;
    std::optional<LaunchAtLoginError> m_currentError;
    QList<RecoveryAction> m_recoveryActions;
    std::optional<QString> m_successMessage;
    std::optional<Answer<bool>> m_delay; ///< of the retry that waits
    std::unique_ptr<RunningTimer> m_successMessageTimer;
    bool m_isExecutingRecovery = false;
};

} // namespace quillhaven
