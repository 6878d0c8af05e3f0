// SPDX-License-Identifier: GPL-3.0-or-later

#include "presentation/dialogs/RemoveProtectionDialogManager.h"

namespace quillhaven {

QString RemoveProtectionDialogManager::message() const
{
    return QStringLiteral("This will restore '") + m_itemName +
           QStringLiteral("' to its original location and remove it from Quillhaven's protection. Your original file "
                          "will be safely restored.");
}

void RemoveProtectionDialogManager::setIsPresented(bool value)
{
    if (m_isPresented != value) {
        m_isPresented = value;
        Q_EMIT changed();
    }
}

void RemoveProtectionDialogManager::show(const QString &itemName, std::function<void()> removeAction,
                                         std::function<void()> cancelAction)
{
    m_itemName = itemName;
    onRemove = std::move(removeAction);
    onCancel = std::move(cancelAction);
    Q_EMIT changed();
    setIsPresented(true);
}

void RemoveProtectionDialogManager::remove()
{
    setIsPresented(false);
    if (const auto action = onRemove) {
        action();
    }
}

void RemoveProtectionDialogManager::cancel()
{
    setIsPresented(false);
    if (const auto action = onCancel) {
        action();
    }
}

} // namespace quillhaven
