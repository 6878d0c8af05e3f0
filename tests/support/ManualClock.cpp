// SPDX-License-Identifier: GPL-3.0-or-later

#include "support/ManualClock.h"

#include <algorithm>

namespace quillhaven::test {

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
    return start(std::max(delay, std::chrono::milliseconds(0)), {}, std::move(action));
}

std::unique_ptr<RunningTimer> ManualClock::startRepeating(std::chrono::milliseconds interval,
                                                          std::function<void()> action)
{
    const auto positive = std::max(interval, std::chrono::milliseconds(1));
    return start(positive, positive, std::move(action));
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
    while (fireNext(end)) {
    }
    m_elapsed = end;
}

void ManualClock::sleep(std::chrono::milliseconds step)
{
    m_elapsed = m_elapsed.load() + step;
    while (fireNext(m_elapsed)) {
    }
}

bool ManualClock::fireNext(std::chrono::milliseconds end)
{
    const auto next = std::ranges::min_element(m_entries, {}, &Entry::due);
    if (next == m_entries.end() || next->due > end) {
        return false;
    }
    m_elapsed = std::max(m_elapsed.load(), next->due);
    const auto action = next->action;
    if (next->interval.count() > 0) {
        next->due += next->interval * ((m_elapsed.load() - next->due) / next->interval + 1);
    } else {
        m_entries.erase(next);
    }
    action();
    return true;
}

} // namespace quillhaven::test
