#pragma once

#include "platform/WorkInFlight.h"

#include <QCoreApplication>
#include <QCoroTask>
#include <QMetaObject>
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

/// What a piece of work left behind, its value or its error, and who waits for it.
template <typename Work>
struct WorkOutcome
{
    using Result = std::invoke_result_t<Work>;
    using Stored = std::conditional_t<std::is_void_v<Result>, std::monostate, Result>;

    [[nodiscard]] bool await_ready() const noexcept { return false; }
    void await_suspend(std::coroutine_handle<> handle) noexcept { waiting = handle; }
    void await_resume() const noexcept {}

    std::optional<Stored> value;
    std::exception_ptr error;
    std::atomic_flag isWritten; ///< nothing above is read before this is set
    std::coroutine_handle<> waiting;
};

/// One piece of work on its way to a pool's thread. The flags order the two threads by themselves: the order that Qt's
/// pool and its event queue make is out of the thread sanitizer's sight, so that it could not tell a hand-over from a
/// race.
template <typename Work>
class PoolJob : public QRunnable
{
public:
    PoolJob(Work work, std::shared_ptr<WorkOutcome<Work>> outcome)
        : m_work(std::move(work)), m_outcome(std::move(outcome))
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
        // Moved, so that the main thread is the outcome's last owner.
        auto goOn = [outcome = std::move(m_outcome)] { outcome->waiting.resume(); };
        QMetaObject::invokeMethod(QCoreApplication::instance(), std::move(goOn), Qt::QueuedConnection);
    }

private:
    std::atomic_flag m_isHandedOver;
    std::optional<Work> m_work;
    std::shared_ptr<WorkOutcome<Work>> m_outcome;
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
        PoolJob<Work>::start(pool, std::make_unique<PoolJob<Work>>(std::move(work), outcome));
        co_await *outcome;
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
