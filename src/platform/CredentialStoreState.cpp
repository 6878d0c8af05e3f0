// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/CredentialStoreState.h"

namespace quillhaven {

void CredentialStoreState::setPhase(Phase phase, const QString &sentence)
{
    if (m_phase != phase || m_sentence != sentence) {
        m_phase = phase;
        m_sentence = sentence;
        Q_EMIT changed();
    }
}

} // namespace quillhaven
