// SPDX-License-Identifier: GPL-3.0-or-later

#include "presentation/dialogs/OperationProgress.h"

#include <algorithm>
#include <cmath>

namespace quillhaven {

int OperationProgress::percent() const
{
    return static_cast<int>(m_progress * 100);
}

int OperationProgress::show()
{
    m_isPresented = true;
    m_message.clear();
    m_progress = 0;
    ++m_latest;
    Q_EMIT changed();
    return m_latest;
}

void OperationProgress::hide()
{
    m_isPresented = false;
    Q_EMIT changed();
}

void OperationProgress::report(const QString &message, double progress)
{
    m_message = message;
    m_progress = std::isnan(progress) ? 0 : std::clamp(progress, 0.0, 1.0);
    Q_EMIT changed();
}

} // namespace quillhaven
