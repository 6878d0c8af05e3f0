// SPDX-License-Identifier: GPL-3.0-or-later

#include "presentation/dialogs/ConfirmationDialogManager.h"

namespace quillhaven {

template <typename Value>
void ConfirmationDialogManager::assign(Value &field, const Value &value)
{
    if (field != value) {
        field = value;
        Q_EMIT changed();
    }
}

void ConfirmationDialogManager::setIsPresented(bool value)
{
    assign(m_isPresented, value);
}

void ConfirmationDialogManager::setTitle(const QString &value)
{
    assign(m_title, value);
}

void ConfirmationDialogManager::setMessage(const QString &value)
{
    assign(m_message, value);
}

void ConfirmationDialogManager::setConfirmTitle(const QString &value)
{
    assign(m_confirmTitle, value);
}

void ConfirmationDialogManager::setCancelTitle(const QString &value)
{
    assign(m_cancelTitle, value);
}

void ConfirmationDialogManager::setIsDestructive(bool value)
{
    assign(m_isDestructive, value);
}

void ConfirmationDialogManager::setShowCancelButton(bool value)
{
    assign(m_showCancelButton, value);
}

void ConfirmationDialogManager::confirm()
{
    setIsPresented(false);
    if (const auto action = onConfirm) {
        action();
    }
}

void ConfirmationDialogManager::cancel()
{
    setIsPresented(false);
    if (const auto action = onCancel) {
        action();
    }
}

} // namespace quillhaven
