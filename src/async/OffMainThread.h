// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "async/WorkInFlight.h"

#include <QCoreApplication>
#include <QCoroTask>
#include <QEvent>
#include <QObject>
#include <QRunnable>
#include <QThreadPool>

#include <atomic>
#include <coroutine>
#include <exception>
#include <memory>
#include <optional>
#include <type_traits>
#include <variant>

namespace quillhaven {

/// What a piece of work left behind: its value or its error.
template <typename Work>
struct WorkOutcome
{
    using Result = std::invoke_result_t<Work>;
    using Stored = std::conditional_t<std::is_void_v<Result>, std::monostate, Result>;

    std::optional<Stored> value;
    std::exception_ptr error;
    std::atomic_flag isWritten; ///< nothing above is read before this is set
};

/// Where a coroutine waits for the event that a piece of work posts at its end. Both are made and read by one thread.
class WorkEnd : public QObject
{
public:
    [[nodiscard]] bool await_ready() const noexcept { return false; }
    void await_suspend(std::coroutine_handle<> handle) noexcept { m_waiting = handle; }
    void await_resume() const noexcept {}

    bool event(QEvent *event) override
    {
        if (event->type() != QEvent::User) {
            return QObject::event(event);
        }
        m_waiting.resume(); // may end this object
        return true;
    }

private:
    std::coroutine_handle<> m_waiting;
};

/// One piece of work on its way to a pool's thread. The flags order the two threads by themselves: the order that Qt's
/// pool and its event queue make is out of the thread sanitizer's sight, so that it could not tell a hand-over from a
/// race.
template <typename Work>
class PoolJob : public QRunnable
{
public:
    PoolJob(Work work, std::shared_ptr<WorkOutcome<Work>> outcome, WorkEnd &end)
        : m_work(std::move(work)), m_outcome(std::move(outcome)), m_end(end)
    {
    }

    /// Gives the job to `pool`, which deletes it after its run.
    static void start(QThreadPool &pool, std::unique_ptr<PoolJob> job)
    {
        job->m_isHandedOver.test_and_set(std::memory_order_release);
        pool.start(job.release());
    }

    void run() override
    {
        m_isHandedOver.wait(false, std::memory_order_acquire);
        try {
            if constexpr (std::is_void_v<std::invoke_result_t<Work>>) {
                (*m_work)();
                m_outcome->value.emplace();
            } else {
                m_outcome->value.emplace((*m_work)());
            }
        } catch (...) {
            m_outcome->error = std::current_exception();
        }
        m_work.reset(); // before the awaiting side goes on, which may own what it refers to
        m_outcome->isWritten.test_and_set(std::memory_order_release);
        m_outcome.reset(); // so that the awaiting side is its last owner, and destroys it on its own thread
        QCoreApplication::postEvent(&m_end, m_ending.release());
    }

private:
    std::atomic_flag m_isHandedOver;
    std::optional<Work> m_work;
    std::shared_ptr<WorkOutcome<Work>> m_outcome;
    WorkEnd &m_end;
    std::unique_ptr<QEvent> m_ending = std::make_unique<QEvent>(QEvent::User);
};

/// Runs `work` on a thread of `pool` and returns its result, or throws what it threw, on the main thread, after all
/// that the work posted to it. Only values may cross: `work` owns or copies all it uses, and what it refers to outlives
/// it. Called on the main thread.
template <typename Work>
QCoro::Task<std::invoke_result_t<Work>> offMainThread(QThreadPool &pool, Work work)
{
    auto outcome = std::make_shared<WorkOutcome<Work>>();
    {
        const WorkInFlight::Piece piece;
        WorkEnd end;
        PoolJob<Work>::start(pool, std::make_unique<PoolJob<Work>>(std::move(work), outcome, end));
        co_await end;
    }
    [[maybe_unused]] const bool isWritten = outcome->isWritten.test(std::memory_order_acquire);
    Q_ASSERT(isWritten);
    if (outcome->error) {
        std::rethrow_exception(outcome->error);
    }
    if constexpr (!std::is_void_v<std::invoke_result_t<Work>>) {
        co_return std::move(*outcome->value);
    }
}

/// The same on the pool for file and cipher work.
template <typename Work>
QCoro::Task<std::invoke_result_t<Work>> offMainThread(Work work)
{
    QThreadPool &pool = *QThreadPool::globalInstance();
    return offMainThread(pool, std::move(work));
}

} // namespace quillhaven
