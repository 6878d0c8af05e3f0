// SPDX-License-Identifier: GPL-3.0-or-later

#include "support/ManualClock.h"

#include <algorithm>

namespace quillhaven::testing {

class ManualTimer : public RunningTimer
{
public:
    ManualTimer(ManualClock &clock, quint64 id) : m_clock(clock), m_id(id) {}
    ~ManualTimer() override { m_clock.cancel(m_id); }

private:
    ManualClock &m_clock;
    quint64 m_id;
};

std::unique_ptr<RunningTimer> ManualClock::startOneShot(std::chrono::milliseconds delay, std::function<void()> action)
{
    return start(delay, {}, std::move(action));
}

std::unique_ptr<RunningTimer> ManualClock::startRepeating(std::chrono::milliseconds interval,
                                                          std::function<void()> action)
{
    return start(interval, interval, std::move(action));
}

std::unique_ptr<RunningTimer> ManualClock::start(std::chrono::milliseconds delay, std::chrono::milliseconds interval,
                                                 std::function<void()> action)
{
    const quint64 id = m_nextId++;
    m_entries.append(Entry{id, m_elapsed.load() + delay, interval, std::move(action)});
    return std::make_unique<ManualTimer>(*this, id);
}

void ManualClock::cancel(quint64 id)
{
    m_entries.removeIf([id](const Entry &entry) { return entry.id == id; });
}

void ManualClock::advance(std::chrono::milliseconds step)
{
    const auto end = m_elapsed.load() + step;
    while (true) {
        const auto next = std::ranges::min_element(m_entries, {}, &Entry::due);
        if (next == m_entries.end() || next->due > end) {
            break;
        }
        m_elapsed = next->due;
        const auto action = next->action;
        if (next->interval.count() > 0) {
            next->due += next->interval;
        } else {
            m_entries.erase(next);
        }
        action();
    }
    m_elapsed = end;
}

} // namespace quillhaven::testing
