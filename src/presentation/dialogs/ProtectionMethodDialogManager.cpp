// SPDX-License-Identifier: GPL-3.0-or-later

#include "presentation/dialogs/ProtectionMethodDialogManager.h"

namespace quillhaven {

void ProtectionMethodDialogManager::setIsPresented(bool value)
{
    if (m_isPresented != value) {
        m_isPresented = value;
        Q_EMIT changed();
    }
}

void ProtectionMethodDialogManager::setTitle(const QString &value)
{
    if (m_title != value) {
        m_title = value;
        Q_EMIT changed();
    }
}

void ProtectionMethodDialogManager::closeAndCall(const std::function<void()> &action)
{
    // A copy, since the action may put another question into this dialog.
    const auto called = action;
    setIsPresented(false);
    if (called) {
        called();
    }
}

void ProtectionMethodDialogManager::choosePasswordProtection()
{
    closeAndCall(onPasswordProtection);
}

void ProtectionMethodDialogManager::chooseTouchIDProtection()
{
    closeAndCall(onTouchIDProtection);
}

void ProtectionMethodDialogManager::cancel()
{
    closeAndCall(onCancel);
}

} // namespace quillhaven
