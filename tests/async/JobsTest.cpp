// SPDX-License-Identifier: GPL-3.0-or-later

#include "async/Jobs.h"
#include "support/RunTask.h"

#include <QRegularExpression>
#include <QStringList>

#include <gtest/gtest.h>

namespace quillhaven::test {
namespace {

std::function<QCoro::Task<>()> noting(QStringList &order, const QString &text)
{
    return [&order, text]() -> QCoro::Task<> {
        order.append(text);
        co_return;
    };
}

TEST(Jobs, EachOfSeveralStartsInATurnOfItsOwn)
{
    QStringList order;
    QTimer turns;
    QObject::connect(&turns, &QTimer::timeout, [&order] { order.append(QStringLiteral("turn")); });
    turns.start(0);
    startJobs({noting(order, QStringLiteral("first")), noting(order, QStringLiteral("second")),
               noting(order, QStringLiteral("third"))});
    EXPECT_TRUE(order.isEmpty());
    ASSERT_TRUE(spinUntil([&order] { return order.contains(QStringLiteral("third")); }));
    const QRegularExpression expected(QStringLiteral("^(turn )*first (turn )+second (turn )+third( turn)*$"));
    EXPECT_TRUE(expected.match(order.join(QLatin1Char(' '))).hasMatch()) << qPrintable(order.join(QLatin1Char(' ')));
}

TEST(Jobs, EachOfSeveralIsReleasedWhenItHasEnded)
{
    const auto held = std::make_shared<int>(0);
    long holdersAtSecond = 0;
    bool hasEnded = false;
    const std::weak_ptr<int> watched = held;
    startJobs({[held]() -> QCoro::Task<> { co_return; },
               [&holdersAtSecond, watched]() -> QCoro::Task<> {
                   holdersAtSecond = watched.use_count();
                   co_return;
               },
               [&hasEnded]() -> QCoro::Task<> {
                   hasEnded = true;
                   co_return;
               }});
    ASSERT_TRUE(spinUntil([&hasEnded] { return hasEnded; }));
    EXPECT_EQ(holdersAtSecond, 1);
}

TEST(Jobs, NoneIsFine)
{
    startJobs({});
    spinOnce();
}

} // namespace
} // namespace quillhaven::test
