// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "credentials/TitledDialogModel.h"

namespace quillhaven {

/// The model of the master password dialog, which asks for the password or for a new one.
class MasterPasswordDialogManager : public quillhaven::TitledDialogModel
{
    Q_OBJECT
    Q_PROPERTY(bool showingError READ showingError WRITE setShowingError NOTIFY errorChanged)
    Q_PROPERTY(QString errorMessage READ errorMessage WRITE setErrorMessage NOTIFY errorChanged)
    Q_PROPERTY(QString shownError READ shownError NOTIFY errorChanged)
    Q_PROPERTY(bool isAuthenticating READ isAuthenticating WRITE setIsAuthenticating NOTIFY modeChanged)
    Q_PROPERTY(bool isPasswordSetting READ isPasswordSetting WRITE setIsPasswordSetting NOTIFY modeChanged)
    Q_PROPERTY(QString actionTitle READ actionTitle NOTIFY modeChanged)

public:
    explicit MasterPasswordDialogManager(QObject *parent = nullptr);

    /// Defined in the program only.
    static MasterPasswordDialogManager &shared();

    [[nodiscard]] bool showingError() const { return m_showingError; }
    [[nodiscard]] QString errorMessage() const { return m_errorMessage; }
    /// The error message while it is shown, else empty.
    [[nodiscard]] QString shownError() const { return m_showingError ? m_errorMessage : QString(); }
    [[nodiscard]] bool isAuthenticating() const { return m_isAuthenticating; }
    [[nodiscard]] bool isPasswordSetting() const { return m_isPasswordSetting; }
    /// The label of the action button: "Set Password", "Authenticating..." or "Authenticate".
    [[nodiscard]] QString actionTitle() const;

    void setShowingError(bool value);
    void setErrorMessage(const QString &value);
    void setIsAuthenticating(bool value);
    void setIsPasswordSetting(bool value);

    struct Question
    {
        QString title;
        QString message;
        bool isPasswordSetting = false; ///< a new password is being chosen
    };
    /// Sets every field from the question, resets the error and `isAuthenticating`, and presents the dialog. The
    /// actions may be called any number of times; in password-setting mode the dialog closes after the first.
    void show(const Question &question, std::function<void(const QString &entered)> authenticateAction,
              std::function<void()> cancelAction = {});

    /// Passes the entered password to `onAuthenticate`. Ignored while a check is running.
    Q_INVOKABLE void authenticate(const QString &password);
    /// The dialog's action button and return key. Does nothing for an empty password or while a check is running;
    /// otherwise clears the shown error and authenticates. Returns true if it used the password: the field is then to
    /// be cleared.
    Q_INVOKABLE bool handleAuthenticate(const QString &password);
    /// The dialog's cancel button and escape key.
    Q_INVOKABLE void cancel();
    /// Shows an error in the open dialog and enables its action button again.
    void showError(const QString &message);

    std::function<void(const QString &entered)> onAuthenticate;
    std::function<void()> onCancel;

Q_SIGNALS:
    void errorChanged();
    /// `isPasswordSetting` or `isAuthenticating` changed.
    void modeChanged();

private:
    bool m_showingError = false;
    QString m_errorMessage;
    bool m_isAuthenticating = false;
    bool m_isPasswordSetting = false;
};

} // namespace quillhaven
