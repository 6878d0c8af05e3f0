// SPDX-License-Identifier: GPL-3.0-or-later

#include "presentation/dialogs/RemoveProtectionDialogManager.h"

#include "support/DisplayName.h"

namespace quillhaven {

QString RemoveProtectionDialogManager::message() const
{
    return QStringLiteral("This will restore '") + displayName(m_itemName) +
           QStringLiteral("' to its original location and remove it from Quillhaven's protection. Your original file "
                          "will be safely restored.");
}

void RemoveProtectionDialogManager::show(const QString &itemName, std::function<void()> removeAction,
                                         std::function<void()> cancelAction)
{
    assign(m_itemName, itemName, &RemoveProtectionDialogManager::itemNameChanged);
    onRemove = std::move(removeAction);
    onCancel = std::move(cancelAction);
    setIsPresented(true);
}

void RemoveProtectionDialogManager::remove()
{
    closeThen(onRemove);
}

void RemoveProtectionDialogManager::cancel()
{
    closeThen(onCancel);
}

} // namespace quillhaven
