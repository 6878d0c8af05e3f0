// SPDX-License-Identifier: GPL-3.0-or-later

#include "presentation/dialogs/ProtectionMethodDialogManager.h"

#include "credentials/StoredAnswer.h"

namespace quillhaven {

void ProtectionMethodDialogManager::setTitle(const QString &value)
{
    assign(m_title, value, &ProtectionMethodDialogManager::titleChanged);
}

void ProtectionMethodDialogManager::setTouchIDNote(const QString &value)
{
    assign(m_touchIDNote, value, &ProtectionMethodDialogManager::touchIDNoteChanged);
}

Answer<ProtectionMethodDialogManager::Choice> ProtectionMethodDialogManager::ask(const QString &title)
{
    const StoredAnswer<Choice> stored(Choice::Replaced);
    setTitle(title);
    onPasswordProtection = [stored] { stored.give(Choice::Password); };
    onTouchIDProtection = [stored] { stored.give(Choice::TouchID); };
    onCancel = [stored] { stored.give(Choice::Cancelled); };
    setIsPresented(true);
    return stored.answer();
}

void ProtectionMethodDialogManager::choosePasswordProtection()
{
    closeThen(onPasswordProtection);
}

void ProtectionMethodDialogManager::chooseTouchIDProtection()
{
    closeThen(onTouchIDProtection);
}

void ProtectionMethodDialogManager::cancel()
{
    closeThen(onCancel);
}

} // namespace quillhaven
