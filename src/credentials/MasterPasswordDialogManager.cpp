// SPDX-License-Identifier: GPL-3.0-or-later

#include "credentials/MasterPasswordDialogManager.h"

namespace quillhaven {

MasterPasswordDialogManager::MasterPasswordDialogManager(QObject *parent) : TitledDialogModel(parent)
{
    setTitle(QStringLiteral("Master Password Required"));
    setMessage(QStringLiteral("Enter your master password to continue:"));
}

QString MasterPasswordDialogManager::actionTitle() const
{
    if (m_isPasswordSetting) {
        return QStringLiteral("Set Password");
    }
    return m_isAuthenticating ? QStringLiteral("Authenticating...") : QStringLiteral("Authenticate");
}

void MasterPasswordDialogManager::setShowingError(bool value)
{
    assign(m_showingError, value, &MasterPasswordDialogManager::errorChanged);
}

void MasterPasswordDialogManager::setErrorMessage(const QString &value)
{
    assign(m_errorMessage, value, &MasterPasswordDialogManager::errorChanged);
}

void MasterPasswordDialogManager::setIsAuthenticating(bool value)
{
    assign(m_isAuthenticating, value, &MasterPasswordDialogManager::modeChanged);
}

void MasterPasswordDialogManager::setIsPasswordSetting(bool value)
{
    assign(m_isPasswordSetting, value, &MasterPasswordDialogManager::modeChanged);
}

void MasterPasswordDialogManager::show(const Question &question,
                                       std::function<void(const QString &entered)> authenticateAction,
                                       std::function<void()> cancelAction)
{
    setTitle(question.title);
    setMessage(question.message);
    onAuthenticate = std::move(authenticateAction);
    onCancel = std::move(cancelAction);
    setIsPresented(true);
    setShowingError(false);
    setErrorMessage({});
    setIsAuthenticating(false);
    setIsPasswordSetting(question.isPasswordSetting);
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
    closeThen(onCancel);
}

void MasterPasswordDialogManager::showError(const QString &message)
{
    setErrorMessage(message);
    setShowingError(true);
    setIsAuthenticating(false);
}

} // namespace quillhaven
