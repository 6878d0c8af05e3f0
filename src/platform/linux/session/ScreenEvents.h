// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QString>

#include <chrono>
#include <map>

namespace quillhaven {

class Clock;
class NotificationCenter;

/// Posts what happened to the screen. Several parts of a desktop report the same event: of those of one name within two
/// seconds only the first is posted. Main thread only.
class ScreenEvents
{
public:
    ScreenEvents(NotificationCenter &center, const Clock &clock) : m_center(center), m_clock(clock) {}

    void post(const QString &name);

private:
    NotificationCenter &m_center;
    const Clock &m_clock;
    std::map<QString, std::chrono::nanoseconds> m_lastPosts; ///< in uptime
};

} // namespace quillhaven
