// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/BiometricAuthenticator.h"

namespace quillhaven {

void BiometricAuthenticator::setPrompt(bool isPrompting, const QString &reason, const QString &hint)
{
    if (m_isPrompting == isPrompting && m_reason == reason && m_hint == hint) {
        return;
    }
    m_isPrompting = isPrompting;
    m_reason = reason;
    m_hint = hint;
    Q_EMIT promptChanged();
}

} // namespace quillhaven
