#pragma once

#include "platform/WorkInFlight.h"

#include <QCoroFuture>
#include <QCoroTask>
#include <QtConcurrentRun>

#include <exception>
#include <optional>
#include <type_traits>
#include <variant>

namespace quillhaven {

/// Runs `work` on a thread of `pool` and returns its result, or throws what it threw, on the main thread. Only values
/// may cross: `work` owns or copies all it uses, and what it refers to outlives it.
template <typename Work>
QCoro::Task<std::invoke_result_t<Work>> offMainThread(QThreadPool &pool, Work work)
{
    using Result = std::invoke_result_t<Work>;
    using Stored = std::conditional_t<std::is_void_v<Result>, std::monostate, Result>;
    struct Outcome
    {
        std::optional<Stored> value;
        std::exception_ptr error;
    };

    // Shared, since a QFuture's result must be copyable and results such as a FileBuffer are not.
    auto outcome = std::make_shared<Outcome>();
    std::exception_ptr error;
    {
        const WorkInFlight::Piece piece;
        auto guarded = [outcome, job = std::make_shared<Work>(std::move(work))]() mutable {
            try {
                if constexpr (std::is_void_v<Result>) {
                    (*job)();
                    outcome->value.emplace();
                } else {
                    outcome->value.emplace((*job)());
                }
            } catch (...) {
                outcome->error = std::current_exception();
            }
            job.reset();
        };
        QFuture<void> finished = QtConcurrent::run(&pool, std::move(guarded));
        co_await finished;
    }
    if (outcome->error) {
        std::rethrow_exception(outcome->error);
    }
    if constexpr (!std::is_void_v<Result>) {
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
