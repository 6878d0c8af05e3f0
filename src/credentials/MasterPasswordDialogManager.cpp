// SPDX-License-Identifier: GPL-3.0-or-later

#include "credentials/MasterPasswordDialogManager.h"

namespace quillhaven {

template <typename Value>
void MasterPasswordDialogManager::assign(Value &field, const Value &value)
{
    if (field != value) {
        field = value;
        Q_EMIT changed();
    }
}

QString MasterPasswordDialogManager::actionTitle() const
{
    if (m_isPasswordSetting) {
        return QStringLiteral("Set Password");
    }
    return m_isAuthenticating ? QStringLiteral("Authenticating...") : QStringLiteral("Authenticate");
}

void MasterPasswordDialogManager::setIsPresented(bool value)
{
    assign(m_isPresented, value);
}

void MasterPasswordDialogManager::setTitle(const QString &value)
{
    assign(m_title, value);
}

void MasterPasswordDialogManager::setMessage(const QString &value)
{
    assign(m_message, value);
}

void MasterPasswordDialogManager::setShowingError(bool value)
{
    assign(m_showingError, value);
}

void MasterPasswordDialogManager::setErrorMessage(const QString &value)
{
    assign(m_errorMessage, value);
}

void MasterPasswordDialogManager::setIsAuthenticating(bool value)
{
    assign(m_isAuthenticating, value);
}

void MasterPasswordDialogManager::setIsPasswordSetting(bool value)
{
    assign(m_isPasswordSetting, value);
}

void MasterPasswordDialogManager::authenticate(const QString &password)
{
    if (m_isAuthenticating) {
        return;
    }
    if (!m_isPasswordSetting) {
        setIsAuthenticating(true);
    }
    if (const auto action = onAuthenticate) {
        action(password);
    }
    if (m_isPasswordSetting) {
        setIsPresented(false);
    }
}

bool MasterPasswordDialogManager::handleAuthenticate(const QString &password)
{
    if (password.isEmpty() || m_isAuthenticating) {
        return false;
    }
    setShowingError(false);
    setErrorMessage({});
    authenticate(password);
    return true;
}

void MasterPasswordDialogManager::cancel()
{
    setIsAuthenticating(false);
    setIsPresented(false);
    if (const auto action = onCancel) {
        action();
    }
}

void MasterPasswordDialogManager::showError(const QString &message)
{
    setErrorMessage(message);
    setShowingError(true);
    setIsAuthenticating(false);
}

} // namespace quillhaven
