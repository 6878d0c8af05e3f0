// SPDX-License-Identifier: GPL-3.0-or-later

#include "presentation/dialogs/DeleteConfirmationModel.h"

#include "support/DisplayName.h"

namespace quillhaven {

QString DeleteConfirmationModel::title() const
{
    return QStringLiteral("Secure delete \"") + displayName(m_itemName) + QStringLiteral("\"?");
}

QString DeleteConfirmationModel::trashNote() const
{
    return m_isLocked
               ? QStringLiteral("The trash gets only the placeholder. The data stays in private storage, where \"Look "
                                "for Lost Items\" in the preferences finds it again, without its name.")
               : QString();
}

void DeleteConfirmationModel::show(const QString &itemName, bool isLocked)
{
    m_itemName = itemName;
    m_isLocked = isLocked;
    Q_EMIT changed();
    setIsPresented(true);
}

void DeleteConfirmationModel::secureDelete()
{
    closeThen(onSecureDelete);
}

void DeleteConfirmationModel::moveToTrash()
{
    closeThen(onMoveToTrash);
}

void DeleteConfirmationModel::cancel()
{
    closeThen(onCancel);
}

} // namespace quillhaven
