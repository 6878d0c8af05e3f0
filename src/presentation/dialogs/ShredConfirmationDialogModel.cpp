// SPDX-License-Identifier: GPL-3.0-or-later

#include "presentation/dialogs/ShredConfirmationDialogModel.h"

namespace quillhaven {

bool ShredConfirmationDialogModel::isConfirmEnabled() const
{
    return m_hasReadWarning && m_confirmationText.toLower() == QStringLiteral("shred permanently");
}

void ShredConfirmationDialogModel::setConfirmationText(const QString &value)
{
    assign(m_confirmationText, value, &ShredConfirmationDialogModel::changed);
}

void ShredConfirmationDialogModel::setHasReadWarning(bool value)
{
    assign(m_hasReadWarning, value, &ShredConfirmationDialogModel::changed);
}

void ShredConfirmationDialogModel::setStorageNote(const QString &value)
{
    assign(m_storageNote, value, &ShredConfirmationDialogModel::changed);
}

void ShredConfirmationDialogModel::show(const QStringList &itemNames)
{
    m_itemNames = itemNames;
    m_confirmationText.clear();
    m_storageNote.clear();
    m_hasReadWarning = false;
    Q_EMIT changed();
    setIsPresented(true);
}

void ShredConfirmationDialogModel::confirm()
{
    if (isPresented() && isConfirmEnabled()) {
        closeThen(onConfirm);
    }
}

void ShredConfirmationDialogModel::cancel()
{
    if (isPresented()) {
        closeThen(onCancel);
    }
}

} // namespace quillhaven
