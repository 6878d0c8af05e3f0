// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "async/MainThread.h"
#include "async/WorkInFlight.h"

#include <QCoroTask>
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

/// The result of a piece of work: its value or its error.
template <typename Work>
struct WorkOutcome
{
    using Result = std::invoke_result_t<Work>;
    using Stored = std::conditional_t<std::is_void_v<Result>, std::monostate, Result>;

    std::optional<Stored> value;
    std::exception_ptr error;
};

/// One piece of work for a pool's thread. The flag orders the two threads by itself, as MainThread.cpp does on the way
/// back: the thread sanitizer does not see the order that Qt's pool establishes.
template <typename Work>
class PoolJob : public QRunnable
{
public:
    PoolJob(Work work, std::shared_ptr<WorkOutcome<Work>> outcome)
        : m_work(std::move(work)), m_outcome(std::move(outcome))
    {
    }

    /// Gives the job to `pool`, which deletes it after its run; then `waiting` is resumed.
    static void start(QThreadPool &pool, std::unique_ptr<PoolJob> job, std::coroutine_handle<> waiting)
    {
        job->m_waiting = waiting;
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
        m_work.reset();    // before the awaiting side continues, which may own what it refers to
        m_outcome.reset(); // so that the awaiting side is its last owner, and destroys it on its own thread
        resumeOnMainThread(m_waiting);
    }

private:
    std::atomic_flag m_isHandedOver;
    std::optional<Work> m_work;
    std::shared_ptr<WorkOutcome<Work>> m_outcome;
    std::coroutine_handle<> m_waiting;
};

/// What a coroutine awaits to start a piece of work and to go on after it.
template <typename Work>
struct PoolRun
{
    QThreadPool &pool;
    std::unique_ptr<PoolJob<Work>> job;

    [[nodiscard]] bool await_ready() const noexcept { return false; }
    void await_suspend(std::coroutine_handle<> waiting)
    {
        if (WorkInFlight::isClosed()) {
            WorkInFlight::park(waiting);
        } else {
            PoolJob<Work>::start(pool, std::move(job), waiting);
        }
    }
    void await_resume() const noexcept {}
};

/// Runs `work` on a thread of `pool` and returns its result, or throws what it threw, on the main thread, after all
/// that the work posted to it. Only values may cross: `work` owns or copies all it uses, and what it refers to outlives
/// it. Called on the main thread.
///
/// Once the end of the process is decided, the work does not start and the caller is never resumed.
template <typename Work>
[[nodiscard]] QCoro::Task<std::invoke_result_t<Work>> offMainThread(QThreadPool &pool, Work work)
{
    auto outcome = std::make_shared<WorkOutcome<Work>>();
    {
        const WorkInFlight::Piece piece;
        PoolRun<Work> run{.pool = pool, .job = std::make_unique<PoolJob<Work>>(std::move(work), outcome)};
        co_await run;
    }
    if (outcome->error) {
        std::rethrow_exception(outcome->error);
    }
    if constexpr (!std::is_void_v<std::invoke_result_t<Work>>) {
        co_return std::move(*outcome->value);
    }
}

/// The same on the pool for file and cipher work.
template <typename Work>
[[nodiscard]] QCoro::Task<std::invoke_result_t<Work>> offMainThread(Work work)
{
    QThreadPool &pool = *QThreadPool::globalInstance();
    return offMainThread(pool, std::move(work));
}

} // namespace quillhaven
