// SPDX-License-Identifier: GPL-3.0-or-later

#include "contact/AboutWindowManager.h"

namespace quillhaven {

void AboutWindowManager::setAboutWindow(QWindow *window)
{
    if (m_aboutWindow == window) {
        return;
    }
    if (m_aboutWindow) {
        disconnect(m_aboutWindow, &QObject::destroyed, this, nullptr);
    }
    m_aboutWindow = window;
    if (window) {
        connect(window, &QObject::destroyed, this, &AboutWindowManager::aboutWindowChanged);
    }
    Q_EMIT aboutWindowChanged();
}

} // namespace quillhaven
