// SPDX-License-Identifier: GPL-3.0-or-later

#include "credentials/PasswordInputDialogModel.h"

#include "catalogue/QuillhavenError.h"
#include "credentials/PasswordStrength.h"
#include "platform/UserDefaults.h"
#include "settings/Settings.h"
#include "support/printLogger.h"

namespace quillhaven {

PasswordInputDialogModel::PasswordInputDialogModel(PasswordInputDialogManager &manager, const UserDefaults &defaults,
                                                   QObject *parent)
    : QObject(parent), m_manager(manager), m_defaults(defaults)
{
    connect(&manager, &PasswordInputDialogManager::isPresentedChanged, this, &PasswordInputDialogModel::clear);
    // What was typed for one question is no answer to the next, which may replace it in the open dialog.
    connect(&manager, &PasswordInputDialogManager::asked, this, &PasswordInputDialogModel::clear);
    connect(&manager, &PasswordInputDialogManager::requiresConfirmationChanged, this,
            &PasswordInputDialogModel::changed);
    connect(&defaults, &UserDefaults::valueChanged, this, &PasswordInputDialogModel::changed);
}

template <typename Value>
void PasswordInputDialogModel::assign(Value &field, const Value &value)
{
    if (field != value) {
        field = value;
        Q_EMIT changed();
    }
}

void PasswordInputDialogModel::clear()
{
    m_password.clear();
    m_confirmPassword.clear();
    m_showPasswordMismatch = false;
    m_showPassword = false;
    m_showConfirmPassword = false;
    m_showPasswordStrengthError = false;
    Q_EMIT changed();
}

void PasswordInputDialogModel::showErrors(bool mismatch, bool strength)
{
    m_showPasswordMismatch = mismatch;
    m_showPasswordStrengthError = strength;
    Q_EMIT changed();
}

QString PasswordInputDialogModel::mismatchText() const
{
    return m_showPasswordMismatch ? QStringLiteral("Passwords don't match") : QString();
}

QString PasswordInputDialogModel::strengthErrorText() const
{
    return m_showPasswordStrengthError ? QuillhavenError(QuillhavenError::weakPassword).errorDescription() : QString();
}

bool PasswordInputDialogModel::enforceStrongPasswords() const
{
    return settings::enforceStrongPasswords.read(m_defaults);
}

bool PasswordInputDialogModel::showsRequirements() const
{
    return m_manager.requiresConfirmation() && enforceStrongPasswords() && !m_password.isEmpty() &&
           !PasswordStrength::of(m_password).isStrong();
}

bool PasswordInputDialogModel::hasMinimumLength() const
{
    return PasswordStrength::of(m_password).hasMinimumLength;
}

bool PasswordInputDialogModel::hasUppercase() const
{
    return PasswordStrength::of(m_password).hasUppercase;
}

bool PasswordInputDialogModel::hasLowercase() const
{
    return PasswordStrength::of(m_password).hasLowercase;
}

bool PasswordInputDialogModel::hasDigit() const
{
    return PasswordStrength::of(m_password).hasDigit;
}

bool PasswordInputDialogModel::canConfirm() const
{
    return !m_password.isEmpty() && (!m_manager.requiresConfirmation() || !m_confirmPassword.isEmpty());
}

QString PasswordInputDialogModel::confirmTitle() const
{
    return m_manager.requiresConfirmation() ? QStringLiteral("Protect") : QStringLiteral("Unlock");
}

bool PasswordInputDialogModel::isStrongPassword() const
{
    const PasswordStrength strength = PasswordStrength::of(m_password);
    printLogger(QStringLiteral("🔍 DEBUG: isStrongPassword check for '") + m_password + QStringLiteral("': ") +
                printed(strength.isStrong()));
    printLogger(QStringLiteral("🔍 DEBUG: - Length >= 8: ") + printed(strength.hasMinimumLength));
    printLogger(QStringLiteral("🔍 DEBUG: - Has uppercase: ") + printed(strength.hasUppercase));
    printLogger(QStringLiteral("🔍 DEBUG: - Has lowercase: ") + printed(strength.hasLowercase));
    printLogger(QStringLiteral("🔍 DEBUG: - Has digits: ") + printed(strength.hasDigit));
    return strength.isStrong();
}

void PasswordInputDialogModel::setPassword(const QString &value)
{
    assign(m_password, value);
}

void PasswordInputDialogModel::setConfirmPassword(const QString &value)
{
    assign(m_confirmPassword, value);
}

void PasswordInputDialogModel::setShowPassword(bool value)
{
    assign(m_showPassword, value);
}

void PasswordInputDialogModel::setShowConfirmPassword(bool value)
{
    assign(m_showConfirmPassword, value);
}

void PasswordInputDialogModel::confirm()
{
    if (!canConfirm()) {
        return;
    }
    printLogger(QStringLiteral("🔍 DEBUG: Protect button clicked"));
    printLogger(QStringLiteral("🔍 DEBUG: enforceStrongPasswords: ") + printed(enforceStrongPasswords()));
    printLogger(QStringLiteral("🔍 DEBUG: isStrongPassword: ") + printed(isStrongPassword()));
    printLogger(QStringLiteral("🔍 DEBUG: password: ") + m_password);
    if (m_manager.requiresConfirmation() && !isAcceptable()) {
        return;
    }
    const QString password = m_password; // closing the dialog clears the field
    m_manager.confirm(password);
}

bool PasswordInputDialogModel::isAcceptable()
{
    if (m_password != m_confirmPassword) {
        showErrors(true, m_showPasswordStrengthError);
        return false;
    }
    const bool isTooWeak = enforceStrongPasswords() && !isStrongPassword();
    printLogger(isTooWeak ? QStringLiteral("🔍 DEBUG: Showing password strength error")
                          : QStringLiteral("🔍 DEBUG: Password validation passed, proceeding"));
    showErrors(false, isTooWeak);
    return !isTooWeak;
}

void PasswordInputDialogModel::cancel()
{
    m_manager.cancel();
}

} // namespace quillhaven
