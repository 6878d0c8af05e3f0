// SPDX-License-Identifier: GPL-3.0-or-later

#include "async/Answer.h"
#include "async/AfterPosted.h"
#include "support/RunTask.h"

#include <QString>

#include <gtest/gtest.h>

#include <vector>

namespace quillhaven::test {
namespace {

// Long enough to be on the heap, so that a moved-from value would be empty.
const QString value = QStringLiteral("a value that is longer than any buffer inside a string");

QCoro::Task<QString> waitFor(Answer<QString> answer)
{
    co_return co_await answer;
}

QCoro::Task<> note(Answer<int> answer, int number, std::vector<int> *order)
{
    (void)co_await answer;
    order->push_back(number);
}

QCoro::Task<> noteAfterPosted(std::vector<int> *order, int number)
{
    co_await afterPosted();
    order->push_back(number);
}

TEST(Answer, SuspendsUntilItIsGivenAndContinuesFromTheEventLoop)
{
    const Answer<QString> answer;
    const RunningTask<QString> waiting(waitFor(answer));
    EXPECT_TRUE(waiting.hasSuspended());
    EXPECT_TRUE(answer.give(value));
    EXPECT_FALSE(waiting.isFinished());
    EXPECT_EQ(waiting.wait(), value);
}

TEST(Answer, DoesNotSuspendIfItWasGivenBefore)
{
    const Answer<QString> answer;
    answer.give(value);
    const RunningTask<QString> waiting(waitFor(answer));
    EXPECT_FALSE(waiting.hasSuspended());
    EXPECT_EQ(waiting.wait(), value);
}

TEST(Answer, AllAwaitersGetTheValueInTheOrderInWhichTheyWait)
{
    const Answer<int> answer;
    std::vector<int> order;
    const RunningTask<void> first(note(answer, 1, &order));
    const RunningTask<void> second(note(answer, 2, &order));
    const RunningTask<void> third(note(answer, 3, &order));
    answer.give(0);
    third.wait();
    EXPECT_EQ(order, (std::vector{1, 2, 3}));
}

TEST(Answer, ALaterAwaiterGetsTheValueToo)
{
    const Answer<QString> answer;
    const RunningTask<QString> first(waitFor(answer));
    const RunningTask<QString> second(waitFor(answer));
    answer.give(value);
    EXPECT_EQ(first.wait(), value);
    EXPECT_EQ(second.wait(), value);
    EXPECT_EQ(runTask(waitFor(answer)), value);
}

TEST(Answer, OnlyTheFirstGivenValueIsUsed)
{
    const Answer<QString> answer;
    EXPECT_TRUE(answer.give(value));
    EXPECT_FALSE(answer.give(QStringLiteral("another")));
    EXPECT_EQ(runTask(waitFor(answer)), value);
}

TEST(AfterPosted, ContinuesAfterEarlierPostedEventsAndBeforeLaterOnes)
{
    std::vector<int> order;
    const auto post = [&order](int number) {
        QMetaObject::invokeMethod(
            QCoreApplication::instance(), [&order, number] { order.push_back(number); }, Qt::QueuedConnection);
    };
    post(1);
    const RunningTask<void> turn(noteAfterPosted(&order, 2));
    post(3);
    EXPECT_TRUE(turn.hasSuspended());
    EXPECT_TRUE(spinUntil([&order] { return order.size() == 3; }));
    EXPECT_EQ(order, (std::vector{1, 2, 3}));
}

} // namespace
} // namespace quillhaven::test
