// SPDX-License-Identifier: GPL-3.0-or-later

#include "credentials/PasswordInputDialogManager.h"

namespace quillhaven {

template <typename Value>
void PasswordInputDialogManager::assign(Value &field, const Value &value)
{
    if (field != value) {
        field = value;
        Q_EMIT changed();
    }
}

void PasswordInputDialogManager::setIsPresented(bool value)
{
    assign(m_isPresented, value);
}

void PasswordInputDialogManager::setTitle(const QString &value)
{
    assign(m_title, value);
}

void PasswordInputDialogManager::setMessage(const QString &value)
{
    assign(m_message, value);
}

void PasswordInputDialogManager::setRequiresConfirmation(bool value)
{
    assign(m_requiresConfirmation, value);
}

} // namespace quillhaven
