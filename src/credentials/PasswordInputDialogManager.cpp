// SPDX-License-Identifier: GPL-3.0-or-later

#include "credentials/PasswordInputDialogManager.h"

#include "credentials/StoredAnswer.h"

namespace quillhaven {

void PasswordInputDialogManager::setRequiresConfirmation(bool value)
{
    assign(m_requiresConfirmation, value, &PasswordInputDialogManager::requiresConfirmationChanged);
}

void PasswordInputDialogManager::show(const Question &question,
                                      std::function<void(const QString &password)> confirmAction,
                                      std::function<void()> cancelAction)
{
    setTitle(question.title);
    setMessage(question.message);
    setRequiresConfirmation(question.requiresConfirmation);
    onConfirm = std::move(confirmAction);
    onCancel = std::move(cancelAction);
    setIsPresented(true);
}

Answer<PasswordInputDialogManager::Reply> PasswordInputDialogManager::ask(const Question &question)
{
    const StoredAnswer<Reply> stored({.end = DialogEnd::Replaced});
    show(
        question,
        [stored](const QString &password) { stored.give({.end = DialogEnd::Confirmed, .password = password}); },
        [stored] { stored.give({.end = DialogEnd::Cancelled}); });
    return stored.answer();
}

} // namespace quillhaven
