// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "platform/Clock.h"

#include <QObject>

#include <chrono>
#include <memory>

namespace quillhaven {

/// Passes on the last of several values when no other came for a while.
class Debouncer : public QObject
{
    Q_OBJECT

public:
    /// The clock must outlive this object.
    Debouncer(Clock &clock, std::chrono::milliseconds interval, QObject *parent = nullptr)
        : QObject(parent), m_clock(clock), m_interval(interval)
    {
    }

    void send(bool value)
    {
        m_timer = m_clock.startOneShot(m_interval, [this, value] { Q_EMIT settled(value); });
    }

Q_SIGNALS:
    void settled(bool value);

private:
    Clock &m_clock;
    std::chrono::milliseconds m_interval;
    std::unique_ptr<RunningTimer> m_timer;
};

} // namespace quillhaven
