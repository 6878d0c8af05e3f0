// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/linux/session/ScreenEvents.h"

#include "platform/Clock.h"
#include "platform/NotificationCenter.h"

namespace quillhaven {

void ScreenEvents::post(const QString &name)
{
    constexpr std::chrono::seconds oneEvent(2);
    const std::chrono::nanoseconds now = m_clock.uptime();
    const auto last = m_lastPosts.find(name);
    if (last == m_lastPosts.end() || now - last->second >= oneEvent) {
        m_lastPosts[name] = now;
        m_center.post(name);
    }
}

} // namespace quillhaven
