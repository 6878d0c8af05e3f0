// SPDX-License-Identifier: GPL-3.0-or-later

#include "shell/WindowClosing.h"

#include "platform/ApplicationPresence.h"
#include "platform/Clock.h"
#include "platform/StatusBar.h"

namespace quillhaven {

WindowClosing::WindowClosing(StatusBar &statusBar, ApplicationPresence &presence, Clock &clock, QObject *parent)
    : QObject(parent), m_statusBar(statusBar), m_presence(presence), m_clock(clock), m_wasShown(statusBar.isShown())
{
    connect(&m_statusBar, &StatusBar::isShownChanged, this, &WindowClosing::statusBarChanged);
}

WindowClosing::~WindowClosing() = default;

void WindowClosing::close()
{
    if (m_statusBar.isShown()) {
        m_presence.hide();
    } else {
        m_presence.minimize();
    }
}

void WindowClosing::statusBarChanged()
{
    const bool hasGone = m_wasShown && !m_statusBar.isShown();
    m_wasShown = m_wasShown || m_statusBar.isShown();
    m_waiting.reset();
    if (hasGone) {
        m_waiting = m_clock.startOneShot(patience, [this] {
            if (!m_presence.hasVisibleWindows()) {
                m_presence.minimize();
            }
        });
    }
}

} // namespace quillhaven
