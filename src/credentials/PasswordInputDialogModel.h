// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "credentials/PasswordInputDialogManager.h"

#include <QObject>

namespace quillhaven {

class UserDefaults;

/// The state of the password dialog while it is open, and the validation for its confirm button.
class PasswordInputDialogModel : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QString password READ password WRITE setPassword NOTIFY changed)
    Q_PROPERTY(QString confirmPassword READ confirmPassword WRITE setConfirmPassword NOTIFY changed)
    Q_PROPERTY(QString mismatchText READ mismatchText NOTIFY changed)
    Q_PROPERTY(QString strengthErrorText READ strengthErrorText NOTIFY changed)
    Q_PROPERTY(bool showPassword READ showPassword WRITE setShowPassword NOTIFY changed)
    Q_PROPERTY(bool showConfirmPassword READ showConfirmPassword WRITE setShowConfirmPassword NOTIFY changed)
    Q_PROPERTY(bool showsRequirements READ showsRequirements NOTIFY changed)
    Q_PROPERTY(bool hasMinimumLength READ hasMinimumLength NOTIFY changed)
    Q_PROPERTY(bool hasUppercase READ hasUppercase NOTIFY changed)
    Q_PROPERTY(bool hasLowercase READ hasLowercase NOTIFY changed)
    Q_PROPERTY(bool hasDigit READ hasDigit NOTIFY changed)
    Q_PROPERTY(bool canConfirm READ canConfirm NOTIFY changed)
    Q_PROPERTY(QString confirmTitle READ confirmTitle NOTIFY changed)

public:
    /// The references must outlive this object. The fields are cleared each time the dialog opens or closes.
    PasswordInputDialogModel(PasswordInputDialogManager &manager, const UserDefaults &defaults,
                             QObject *parent = nullptr);

    [[nodiscard]] QString password() const { return m_password; }
    [[nodiscard]] QString confirmPassword() const { return m_confirmPassword; }
    [[nodiscard]] bool showPasswordMismatch() const { return m_showPasswordMismatch; }
    [[nodiscard]] bool showPasswordStrengthError() const { return m_showPasswordStrengthError; }
    /// The error messages while they are shown, else empty.
    [[nodiscard]] QString mismatchText() const;
    [[nodiscard]] QString strengthErrorText() const;
    [[nodiscard]] bool showPassword() const { return m_showPassword; }
    [[nodiscard]] bool showConfirmPassword() const { return m_showConfirmPassword; }
    /// Whether the list of requirements is shown: if a new password must be strong, and is neither empty nor strong.
    [[nodiscard]] bool showsRequirements() const;
    [[nodiscard]] bool hasMinimumLength() const;
    [[nodiscard]] bool hasUppercase() const;
    [[nodiscard]] bool hasLowercase() const;
    [[nodiscard]] bool hasDigit() const;
    /// Whether the confirm button is enabled: no required field is empty.
    [[nodiscard]] bool canConfirm() const;
    /// "Protect" for a new password, "Unlock" for an existing one.
    [[nodiscard]] QString confirmTitle() const;
    /// Tests the password, and logs it with the result for each requirement.
    [[nodiscard]] bool isStrongPassword() const;

    void setPassword(const QString &value);
    void setConfirmPassword(const QString &value);
    void setShowPassword(bool value);
    void setShowConfirmPassword(bool value);

    /// The confirm button and the return key.
    Q_INVOKABLE void confirm();
    /// The cancel button and the escape key.
    Q_INVOKABLE void cancel();

Q_SIGNALS:
    void changed();

private:
    [[nodiscard]] bool enforceStrongPasswords() const;
    template <typename Value>
    void assign(Value &field, const Value &value);
    /// Tests a new password, and shows an error if it is not acceptable.
    [[nodiscard]] bool isAcceptable();
    void showErrors(bool mismatch, bool strength);
    void clear();

    PasswordInputDialogManager &m_manager;
    const UserDefaults &m_defaults;
    QString m_password;
    QString m_confirmPassword;
    bool m_showPasswordMismatch = false;
    bool m_showPassword = false;
    bool m_showConfirmPassword = false;
    bool m_showPasswordStrengthError = false;
};

} // namespace quillhaven
