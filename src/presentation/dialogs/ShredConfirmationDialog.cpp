// SPDX-License-Identifier: GPL-3.0-or-later

#include "presentation/dialogs/ShredConfirmationDialog.h"

namespace quillhaven {

bool ShredConfirmationDialog::isConfirmEnabled() const
{
    return m_hasReadWarning && m_confirmationText.toLower() == QStringLiteral("shred permanently");
}

void ShredConfirmationDialog::setConfirmationText(const QString &value)
{
    if (m_confirmationText != value) {
        m_confirmationText = value;
        Q_EMIT changed();
    }
}

void ShredConfirmationDialog::setHasReadWarning(bool value)
{
    if (m_hasReadWarning != value) {
        m_hasReadWarning = value;
        Q_EMIT changed();
    }
}

void ShredConfirmationDialog::show(const QStringList &itemNames)
{
    m_itemNames = itemNames;
    m_confirmationText.clear();
    m_hasReadWarning = false;
    m_isPresented = true;
    Q_EMIT changed();
}

void ShredConfirmationDialog::confirm()
{
    if (m_isPresented && isConfirmEnabled()) {
        close(onConfirm);
    }
}

void ShredConfirmationDialog::cancel()
{
    if (m_isPresented) {
        close(onCancel);
    }
}

void ShredConfirmationDialog::close(const std::function<void()> &action)
{
    m_isPresented = false;
    Q_EMIT changed();
    if (action) {
        action();
    }
}

} // namespace quillhaven
