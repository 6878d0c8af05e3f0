// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QCoreApplication>
#include <QCoroTask>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QTimer>

#include <exception>
#include <functional>
#include <memory>
#include <optional>
#include <stdexcept>
#include <vector>

namespace quillhaven::test {

/// A timeout for a hanging test, in milliseconds; not for measurements.
inline constexpr qint64 patience = 60'000;

/// Runs the event loop until the condition is true. Returns false after `limitMs` milliseconds.
inline bool spinUntil(const std::function<bool()> &condition, qint64 limitMs = patience)
{
    QElapsedTimer timer;
    timer.start();
    QTimer wakeUp; // the condition may become true without an event in this thread
    wakeUp.start(20);
    while (!condition()) {
        if (timer.elapsed() > limitMs) {
            return false;
        }
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents | QEventLoop::AllEvents);
    }
    return true;
}

/// Runs what is queued in the event loop now.
inline void spinOnce()
{
    for (int i = 0; i < 10; ++i) {
        QCoreApplication::processEvents(QEventLoop::AllEvents);
        QCoreApplication::sendPostedEvents();
    }
}

/// A running task, with its state, its result and its error.
template <typename T>
class RunningTask
{
public:
    explicit RunningTask(QCoro::Task<T> task)
        : m_state(std::make_shared<State>()),
          m_following(std::make_shared<QCoro::Task<>>(follow(std::move(task), m_state)))
    {
        m_hasSuspended = !m_state->finished;
    }

    /// Whether the task returned to the event loop before its end.
    [[nodiscard]] bool hasSuspended() const { return m_hasSuspended; }
    [[nodiscard]] bool isFinished() const { return m_state->finished; }
    /// For a task that is never to end: what it holds stays, where the leak sanitizer finds it.
    void abandon() const
    {
        static auto *const abandoned = new std::vector<std::shared_ptr<QCoro::Task<>>>;
        abandoned->push_back(m_following);
    }
    /// Waits for the end; rethrows the exception of the task.
    T wait(qint64 limitMs = patience) const
    {
        if (!spinUntil([this] { return m_state->finished; }, limitMs)) {
            throw std::runtime_error("the task did not end");
        }
        if (m_state->error) {
            std::rethrow_exception(m_state->error);
        }
        if constexpr (!std::is_void_v<T>) {
            return std::move(*m_state->value);
        }
    }

private:
    struct Nothing
    {
    };
    struct State
    {
        bool finished = false;
        std::exception_ptr error;
        std::optional<std::conditional_t<std::is_void_v<T>, Nothing, T>> value;
    };

    static QCoro::Task<> follow(QCoro::Task<T> task, std::shared_ptr<State> state)
    {
        try {
            if constexpr (std::is_void_v<T>) {
                co_await task;
            } else {
                state->value.emplace(co_await task);
            }
        } catch (...) {
            state->error = std::current_exception();
        }
        state->finished = true;
    }

    std::shared_ptr<State> m_state;
    std::shared_ptr<QCoro::Task<>> m_following;
    bool m_hasSuspended = false;
};

/// Runs a task to its end and returns its result, or rethrows its exception.
template <typename T>
T runTask(QCoro::Task<T> task, qint64 limitMs = patience)
{
    return RunningTask<T>(std::move(task)).wait(limitMs);
}

} // namespace quillhaven::test
