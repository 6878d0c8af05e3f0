// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "platform/Clock.h"

#include <QList>

#include <atomic>

namespace quillhaven::test {

/// A clock that only the test advances; due timers fire in the order of their times.
class ManualClock : public Clock
{
public:
    [[nodiscard]] QDateTime now() const override { return m_start.addMSecs(m_elapsed.load().count()); }
    [[nodiscard]] std::chrono::nanoseconds uptime() const override { return m_elapsed.load(); }
    [[nodiscard]] std::unique_ptr<RunningTimer> startOneShot(std::chrono::milliseconds delay,
                                                             std::function<void()> action) override;
    [[nodiscard]] std::unique_ptr<RunningTimer> startRepeating(std::chrono::milliseconds interval,
                                                               std::function<void()> action) override;

    /// Advances the time while the event loop is running: every timer fires at each of its times.
    void advance(std::chrono::milliseconds step);
    /// Advances the time in one step, as while the machine is asleep: each timer that became due fires once at the end.
    void sleep(std::chrono::milliseconds step);
    /// The number of timers that will still fire.
    [[nodiscard]] qsizetype pendingTimers() const { return m_entries.size(); }

    struct Entry
    {
        quint64 id = 0;
        std::chrono::milliseconds due{};
        std::chrono::milliseconds interval{}; ///< zero for a one-shot
        std::function<void()> action;
    };

private:
    friend class ManualTimer;
    [[nodiscard]] std::unique_ptr<RunningTimer> start(std::chrono::milliseconds delay,
                                                      std::chrono::milliseconds interval, std::function<void()> action);
    void cancel(quint64 id);
    /// Fires the first timer that is due until `end`; returns false if there is none.
    bool fireNext(std::chrono::milliseconds end);

    QDateTime m_start = QDateTime(QDate(2026, 1, 1), QTime(12, 0), Qt::UTC);
    std::atomic<std::chrono::milliseconds> m_elapsed{std::chrono::milliseconds(0)}; ///< worker threads read the uptime
    quint64 m_nextId = 1;
    QList<Entry> m_entries;
};

} // namespace quillhaven::test
