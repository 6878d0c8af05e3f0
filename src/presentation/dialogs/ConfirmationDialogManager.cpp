// SPDX-License-Identifier: GPL-3.0-or-later

#include "presentation/dialogs/ConfirmationDialogManager.h"

#include "credentials/StoredAnswer.h"

namespace quillhaven {

void ConfirmationDialogManager::setConfirmTitle(const QString &value)
{
    assign(m_confirmTitle, value, &ConfirmationDialogManager::buttonsChanged);
}

void ConfirmationDialogManager::setCancelTitle(const QString &value)
{
    assign(m_cancelTitle, value, &ConfirmationDialogManager::buttonsChanged);
}

void ConfirmationDialogManager::setIsDestructive(bool value)
{
    assign(m_isDestructive, value, &ConfirmationDialogManager::buttonsChanged);
}

void ConfirmationDialogManager::setShowCancelButton(bool value)
{
    assign(m_showCancelButton, value, &ConfirmationDialogManager::buttonsChanged);
}

void ConfirmationDialogManager::show(const Question &question, std::function<void()> confirmAction,
                                     std::function<void()> cancelAction)
{
    setTitle(question.title);
    setMessage(question.message);
    setConfirmTitle(question.confirmTitle);
    setCancelTitle(question.cancelTitle);
    setIsDestructive(question.isDestructive);
    setShowCancelButton(question.showCancelButton);
    onConfirm = std::move(confirmAction);
    onCancel = std::move(cancelAction);
    setIsPresented(true);
}

Answer<DialogEnd> ConfirmationDialogManager::ask(const Question &question)
{
    const StoredAnswer<DialogEnd> stored(DialogEnd::Replaced);
    show(question, [stored] { stored.give(DialogEnd::Confirmed); }, [stored] { stored.give(DialogEnd::Cancelled); });
    return stored.answer();
}

void ConfirmationDialogManager::confirm()
{
    closeThen(onConfirm);
}

void ConfirmationDialogManager::cancel()
{
    closeThen(onCancel);
}

} // namespace quillhaven
