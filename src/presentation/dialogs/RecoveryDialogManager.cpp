// SPDX-License-Identifier: GPL-3.0-or-later

#include "presentation/dialogs/RecoveryDialogManager.h"

namespace quillhaven {

QString RecoveryDialogManager::recoverTitle() const
{
    return m_isRecovering ? QStringLiteral("Recovering...") : QStringLiteral("Recover All Files");
}

void RecoveryDialogManager::setIsPresented(bool value)
{
    if (m_isPresented != value) {
        m_isPresented = value;
        Q_EMIT changed();
    }
}

void RecoveryDialogManager::setIsRecovering(bool value)
{
    if (m_isRecovering != value) {
        m_isRecovering = value;
        Q_EMIT changed();
    }
}

void RecoveryDialogManager::show(std::function<void(const QString &masterPassword)> recoverAction,
                                 std::function<void()> cancelAction)
{
    onRecover = std::move(recoverAction);
    onCancel = std::move(cancelAction);
    setIsRecovering(false);
    setIsPresented(true);
}

void RecoveryDialogManager::recover(const QString &masterPassword)
{
    if (!m_isPresented || m_isRecovering || masterPassword.isEmpty()) {
        return;
    }
    setIsRecovering(true);
    if (const auto action = onRecover) {
        action(masterPassword);
    }
}

void RecoveryDialogManager::cancel()
{
    if (const auto action = onCancel) {
        action();
    }
}

} // namespace quillhaven
