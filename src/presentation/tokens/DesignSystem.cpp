// SPDX-License-Identifier: GPL-3.0-or-later

#include "presentation/tokens/DesignSystem.h"

namespace quillhaven {

void DesignSystem::setReduceMotion(bool value)
{
    if (m_reduceMotion != value) {
        m_reduceMotion = value;
        Q_EMIT motionChanged();
    }
}

void DesignSystem::setDifferentiateWithoutColor(bool value)
{
    if (m_differentiateWithoutColor != value) {
        m_differentiateWithoutColor = value;
        Q_EMIT differentiationChanged();
    }
}

} // namespace quillhaven
