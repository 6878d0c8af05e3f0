// SPDX-License-Identifier: GPL-3.0-or-later

#include "credentials/PasswordInputDialog.h"

#include "credentials/PasswordStrength.h"
#include "platform/UserDefaults.h"
#include "settings/Settings.h"
#include "support/printLogger.h"

namespace quillhaven {

PasswordInputDialog::PasswordInputDialog(PasswordInputDialogManager &manager, const UserDefaults &defaults,
                                         QObject *parent)
    : QObject(parent), m_manager(manager), m_defaults(defaults), m_wasPresented(manager.isPresented())
{
    connect(&manager, &PasswordInputDialogManager::changed, this, [this] {
        if (m_manager.isPresented() && !m_wasPresented) {
            clear();
        }
        m_wasPresented = m_manager.isPresented();
        Q_EMIT changed();
    });
    connect(&defaults, &UserDefaults::valueChanged, this, [this] { Q_EMIT changed(); });
}

void PasswordInputDialog::clear()
{
    m_password.clear();
    m_confirmPassword.clear();
    m_showPasswordMismatch = false;
    m_showPassword = false;
    m_showConfirmPassword = false;
    m_showPasswordStrengthError = false;
}

bool PasswordInputDialog::enforceStrongPasswords() const
{
    return settings::enforceStrongPasswords.read(m_defaults);
}

bool PasswordInputDialog::showsRequirements() const
{
    return m_manager.requiresConfirmation() && enforceStrongPasswords() && !m_password.isEmpty() &&
           !PasswordStrength::of(m_password).isStrong();
}

bool PasswordInputDialog::hasMinimumLength() const
{
    return PasswordStrength::of(m_password).hasMinimumLength;
}

bool PasswordInputDialog::hasUppercase() const
{
    return PasswordStrength::of(m_password).hasUppercase;
}

bool PasswordInputDialog::hasLowercase() const
{
    return PasswordStrength::of(m_password).hasLowercase;
}

bool PasswordInputDialog::hasDigit() const
{
    return PasswordStrength::of(m_password).hasDigit;
}

bool PasswordInputDialog::canConfirm() const
{
    return !m_password.isEmpty() && (!m_manager.requiresConfirmation() || !m_confirmPassword.isEmpty());
}

QString PasswordInputDialog::confirmTitle() const
{
    return m_manager.requiresConfirmation() ? QStringLiteral("Protect") : QStringLiteral("Unlock");
}

bool PasswordInputDialog::isStrongPassword() const
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

void PasswordInputDialog::setPassword(const QString &value)
{
    if (m_password != value) {
        m_password = value;
        Q_EMIT changed();
    }
}

void PasswordInputDialog::setConfirmPassword(const QString &value)
{
    if (m_confirmPassword != value) {
        m_confirmPassword = value;
        Q_EMIT changed();
    }
}

void PasswordInputDialog::setShowPassword(bool value)
{
    m_showPassword = value;
    Q_EMIT changed();
}

void PasswordInputDialog::setShowConfirmPassword(bool value)
{
    m_showConfirmPassword = value;
    Q_EMIT changed();
}

void PasswordInputDialog::confirm()
{
    if (!canConfirm()) {
        return;
    }
    printLogger(QStringLiteral("🔍 DEBUG: Protect button clicked"));
    printLogger(QStringLiteral("🔍 DEBUG: enforceStrongPasswords: ") + printed(enforceStrongPasswords()));
    printLogger(QStringLiteral("🔍 DEBUG: isStrongPassword: ") + printed(isStrongPassword()));
    printLogger(QStringLiteral("🔍 DEBUG: password: ") + m_password);
    if (m_manager.requiresConfirmation()) {
        if (m_password != m_confirmPassword) {
            m_showPasswordMismatch = true;
            Q_EMIT changed();
            return;
        }
        m_showPasswordMismatch = false;
        if (enforceStrongPasswords() && !isStrongPassword()) {
            printLogger(QStringLiteral("🔍 DEBUG: Showing password strength error"));
            m_showPasswordStrengthError = true;
            Q_EMIT changed();
            return;
        }
        printLogger(QStringLiteral("🔍 DEBUG: Password validation passed, proceeding"));
        m_showPasswordStrengthError = false;
    }
    const QString password = m_password;
    m_manager.setIsPresented(false);
    clear();
    Q_EMIT changed();
    if (const auto action = m_manager.onConfirm) {
        action(password);
    }
}

void PasswordInputDialog::cancel()
{
    m_manager.setIsPresented(false);
    clear();
    Q_EMIT changed();
    if (const auto action = m_manager.onCancel) {
        action();
    }
}

} // namespace quillhaven
