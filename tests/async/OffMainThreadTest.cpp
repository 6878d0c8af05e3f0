// SPDX-License-Identifier: GPL-3.0-or-later

#include "async/OffMainThread.h"
#include "async/MainThread.h"
#include "support/EventLoopChecker.h"
#include "support/RunTask.h"

#include <QThread>

#include <gtest/gtest.h>

#include <stdexcept>

namespace quillhaven::test {
namespace {

template <typename Work>
QCoro::Task<std::invoke_result_t<Work>> inScope(Work work)
{
    co_return co_await offMainThread(std::move(work));
}

TEST(OffMainThread, RunsOnAnotherThreadWhileTheEventLoopIsRunning)
{
    EventLoopChecker loop;
    const QThread *main = QThread::currentThread();
    const RunningTask<bool> work(
        inScope([&loop, main] { return QThread::currentThread() != main && loop.ticksAgain(); }));
    EXPECT_TRUE(work.hasSuspended());
    EXPECT_EQ(WorkInFlight::count(), 1);
    EXPECT_TRUE(work.wait());
    EXPECT_EQ(WorkInFlight::count(), 0);
}

TEST(OffMainThread, ContinuesOnTheMainThread)
{
    const auto whereItContinues = []() -> QCoro::Task<QThread *> {
        co_await offMainThread([] {});
        co_return QThread::currentThread();
    };
    EXPECT_EQ(runTask(whereItContinues()), QThread::currentThread());
}

TEST(OffMainThread, RethrowsTheExceptionOfTheWork)
{
    const RunningTask<int> work(inScope([]() -> int { throw std::runtime_error("no disk"); }));
    EXPECT_THROW(work.wait(), std::runtime_error);
    EXPECT_EQ(WorkInFlight::count(), 0);
}

TEST(OffMainThread, ContinuesAfterTheEventsThatTheWorkPosted)
{
    bool isDelivered = false;
    const auto wasDeliveredFirst = [&isDelivered]() -> QCoro::Task<bool> {
        auto work = [&isDelivered] { postToMainThread([&isDelivered] { isDelivered = true; }); };
        co_await offMainThread(work);
        co_return isDelivered;
    };
    EXPECT_TRUE(runTask(wasDeliveredFirst()));
}

TEST(OffMainThread, DestroysTheWorkBeforeItContinues)
{
    auto held = std::make_shared<int>(0);
    const std::weak_ptr<int> watched = held;
    const auto isHeldAfterwards = [&watched](std::shared_ptr<int> value) -> QCoro::Task<bool> {
        co_await offMainThread([value = std::move(value)] {});
        co_return !watched.expired();
    };
    EXPECT_FALSE(runTask(isHeldAfterwards(std::move(held))));
}

TEST(OffMainThread, ANestedLoopInAContinuationDeliversOtherResults)
{
    bool isInnerDone = false;
    const auto outer = [&isInnerDone]() -> QCoro::Task<bool> {
        co_await offMainThread([] {});
        co_return spinUntil([&isInnerDone] {
            // A nested loop delivers events that were queued before it only after the next post.
            QCoreApplication::sendPostedEvents();
            return isInnerDone;
        });
    };
    const auto inner = [&isInnerDone]() -> QCoro::Task<> {
        co_await offMainThread([] {});
        co_await offMainThread([] {});
        isInnerDone = true;
    };
    const RunningTask<bool> first(outer());
    const RunningTask<void> second(inner());
    EXPECT_TRUE(first.wait());
}

} // namespace
} // namespace quillhaven::test
