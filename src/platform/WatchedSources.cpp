// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/WatchedSources.h"

namespace quillhaven {

std::optional<WatchedSources::State> WatchedSources::state(Source source) const
{
    const auto found = m_states.find(source);
    return found == m_states.end() ? std::nullopt : std::optional(found->second);
}

void WatchedSources::setState(Source source, const State &state)
{
    const auto found = m_states.find(source);
    if (found != m_states.end() && found->second == state) {
        return;
    }
    m_states[source] = state;
    Q_EMIT stateChanged(source);
}

} // namespace quillhaven
