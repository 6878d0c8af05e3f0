// SPDX-License-Identifier: GPL-3.0-or-later

#include "presentation/dialogs/RecoveryDialogManager.h"

namespace quillhaven {

QString RecoveryDialogManager::recoverTitle() const
{
    return m_isRecovering ? QStringLiteral("Recovering...") : QStringLiteral("Recover All Files");
}

void RecoveryDialogManager::setIsRecovering(bool value)
{
    assign(m_isRecovering, value, &RecoveryDialogManager::isRecoveringChanged);
}

void RecoveryDialogManager::show(std::function<void(const QString &masterPassword)> recoverAction,
                                 std::function<void()> cancelAction)
{
    onRecover = std::move(recoverAction);
    onCancel = std::move(cancelAction);
    setIsPresented(true);
    setIsRecovering(false);
}

void RecoveryDialogManager::recover(const QString &masterPassword)
{
    if (!isPresented() || m_isRecovering || masterPassword.isEmpty()) {
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
