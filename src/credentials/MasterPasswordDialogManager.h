// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QObject>
#include <QString>

#include <functional>

namespace quillhaven {

/// The model of the master password dialog: one pending question at a time, whose actions the next caller replaces.
class MasterPasswordDialogManager : public QObject
{
    Q_OBJECT
    Q_PROPERTY(bool isPresented READ isPresented WRITE setIsPresented NOTIFY changed)
    Q_PROPERTY(QString title READ title WRITE setTitle NOTIFY changed)
    Q_PROPERTY(QString message READ message WRITE setMessage NOTIFY changed)
    Q_PROPERTY(bool showingError READ showingError WRITE setShowingError NOTIFY changed)
    Q_PROPERTY(QString errorMessage READ errorMessage WRITE setErrorMessage NOTIFY changed)
    Q_PROPERTY(bool isAuthenticating READ isAuthenticating WRITE setIsAuthenticating NOTIFY changed)
    Q_PROPERTY(bool isPasswordSetting READ isPasswordSetting WRITE setIsPasswordSetting NOTIFY changed)
    Q_PROPERTY(QString actionTitle READ actionTitle NOTIFY changed)

public:
    using QObject::QObject;

    /// Defined by the program alone.
    static MasterPasswordDialogManager &shared();

    [[nodiscard]] bool isPresented() const { return m_isPresented; }
    [[nodiscard]] QString title() const { return m_title; }
    [[nodiscard]] QString message() const { return m_message; }
    [[nodiscard]] bool showingError() const { return m_showingError; }
    [[nodiscard]] QString errorMessage() const { return m_errorMessage; }
    [[nodiscard]] bool isAuthenticating() const { return m_isAuthenticating; }
    [[nodiscard]] bool isPasswordSetting() const { return m_isPasswordSetting; }
    /// The label of the action button: "Set Password", "Authenticating..." or "Authenticate".
    [[nodiscard]] QString actionTitle() const;

    void setIsPresented(bool value);
    void setTitle(const QString &value);
    void setMessage(const QString &value);
    void setShowingError(bool value);
    void setErrorMessage(const QString &value);
    void setIsAuthenticating(bool value);
    void setIsPasswordSetting(bool value);

    /// Hands the entered password to `onAuthenticate`. Ignored while a check runs.
    Q_INVOKABLE void authenticate(const QString &password);
    /// The dialog's action button and return key: nothing for an empty password or while a check runs; else clears the
    /// shown error and authenticates. True when the entered text was used, so that the field is to be emptied.
    Q_INVOKABLE bool handleAuthenticate(const QString &password);
    /// The dialog's cancel button and escape key.
    Q_INVOKABLE void cancel();
    /// Shows an error in the open dialog and enables its action button again.
    void showError(const QString &message);

    std::function<void(const QString &entered)> onAuthenticate;
    std::function<void()> onCancel;

Q_SIGNALS:
    void changed();

private:
    template <typename Value>
    void assign(Value &field, const Value &value);

    bool m_isPresented = false;
    QString m_title = QStringLiteral("Master Password Required");
    QString m_message = QStringLiteral("Enter your master password to continue:");
    bool m_showingError = false;
    QString m_errorMessage;
    bool m_isAuthenticating = false;
    bool m_isPasswordSetting = false;
};

} // namespace quillhaven
