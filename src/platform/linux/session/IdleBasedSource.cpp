// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/linux/session/IdleBasedSource.h"

#include "platform/Clock.h"

namespace quillhaven {

IdleBasedSource::IdleBasedSource(Clock &clock, std::chrono::milliseconds period) : m_clock(clock), m_period(period) {}

IdleBasedSource::~IdleBasedSource() = default;

void IdleBasedSource::start()
{
    m_whileActive = m_clock.startRepeating(m_period, [this] { Q_EMIT inputSeen(); });
}

void IdleBasedSource::userBecameIdle()
{
    m_whileActive.reset();
}

void IdleBasedSource::userReturned()
{
    start();
    Q_EMIT inputSeen();
}

} // namespace quillhaven
