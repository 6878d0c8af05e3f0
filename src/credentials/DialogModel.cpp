// SPDX-License-Identifier: GPL-3.0-or-later

#include "credentials/DialogModel.h"

namespace quillhaven {

void DialogModel::setIsPresented(bool value)
{
    if (value) {
        Q_EMIT asked();
    }
    assign(m_isPresented, value, &DialogModel::isPresentedChanged);
}

} // namespace quillhaven
