// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/DisplayPreferences.h"

namespace quillhaven {

void DisplayPreferences::setValues(const Values &values)
{
    if (m_values != values) {
        m_values = values;
        Q_EMIT changed();
    }
}

} // namespace quillhaven
