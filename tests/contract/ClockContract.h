// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "platform/Clock.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace quillhaven::test {

/// The tests that every clock must pass. Instantiate it with a type that has a `Clock &clock()`; a
/// `void pass(milliseconds)` that lets at least this time pass with the event loop running; and a
/// `void passBusy(milliseconds)` that lets it pass in one step, as if the loop was blocked or the machine asleep, and
/// then runs the loop.
template <typename Fixture>
class ClockContract : public ::testing::Test
{
protected:
    using milliseconds = std::chrono::milliseconds;

    [[nodiscard]] Clock &clock() { return m_fixture.clock(); }
    void pass(int count) { m_fixture.pass(milliseconds(count)); }
    void passBusy(int count) { m_fixture.passBusy(milliseconds(count)); }

private:
    Fixture m_fixture;
};

TYPED_TEST_SUITE_P(ClockContract);

TYPED_TEST_P(ClockContract, UptimeGrowsByTheElapsedTime)
{
    const auto first = this->clock().uptime();
    EXPECT_GE(this->clock().uptime(), first);
    this->pass(5);
    EXPECT_GE(this->clock().uptime(), first + std::chrono::milliseconds(5));
    EXPECT_TRUE(this->clock().now().isValid());
}

TYPED_TEST_P(ClockContract, AOneShotTimerFiresOnceAndNotBeforeItsDelay)
{
    const auto start = this->clock().uptime();
    std::vector<std::chrono::nanoseconds> firings;
    const auto timer = this->clock().startOneShot(std::chrono::milliseconds(10),
                                                  [&] { firings.push_back(this->clock().uptime() - start); });
    this->pass(40);
    ASSERT_EQ(firings.size(), 1U);
    EXPECT_GE(firings.front(), std::chrono::milliseconds(10));
}

TYPED_TEST_P(ClockContract, ADelayOfZeroOrLessFiresFromTheEventLoop)
{
    int fired = 0;
    const auto zero = this->clock().startOneShot(std::chrono::milliseconds(0), [&] { ++fired; });
    const auto negative = this->clock().startOneShot(std::chrono::milliseconds(-5), [&] { ++fired; });
    EXPECT_EQ(fired, 0);
    this->pass(5);
    EXPECT_EQ(fired, 2);
}

TYPED_TEST_P(ClockContract, TimersFireInTheOrderOfTheirDueTimes)
{
    std::string order;
    const auto late = this->clock().startOneShot(std::chrono::milliseconds(30), [&] { order += "c"; });
    const auto early = this->clock().startOneShot(std::chrono::milliseconds(1), [&] { order += "a"; });
    const auto middle = this->clock().startOneShot(std::chrono::milliseconds(15), [&] { order += "b"; });
    this->pass(60);
    EXPECT_EQ(order, "abc");
}

TYPED_TEST_P(ClockContract, ARepeatingTimerNeverFiresBeforeItsMultiples)
{
    const auto start = this->clock().uptime();
    std::vector<std::chrono::nanoseconds> firings;
    const auto timer = this->clock().startRepeating(std::chrono::milliseconds(2),
                                                    [&] { firings.push_back(this->clock().uptime() - start); });
    while (firings.size() < 5) {
        this->pass(2);
    }
    for (size_t i = 0; i < firings.size(); ++i) {
        EXPECT_GE(firings[i], std::chrono::milliseconds(2) * (i + 1));
    }
}

TYPED_TEST_P(ClockContract, AnIntervalOfZeroOrLessMeansOneMillisecond)
{
    const auto start = this->clock().uptime();
    int fired = 0;
    const auto timer = this->clock().startRepeating(std::chrono::milliseconds(0), [&] { ++fired; });
    const auto negative = this->clock().startRepeating(std::chrono::milliseconds(-5), [&] { ++fired; });
    this->pass(10);
    EXPECT_GE(fired, 2);
    EXPECT_LE(std::chrono::milliseconds(fired), 2 * (this->clock().uptime() - start));
}

TYPED_TEST_P(ClockContract, MissedTimeoutsFireOnceAndTheNextOneIsOnTime)
{
    const auto start = this->clock().uptime();
    std::vector<std::chrono::nanoseconds> firings;
    const auto timer = this->clock().startRepeating(std::chrono::milliseconds(20),
                                                    [&] { firings.push_back(this->clock().uptime() - start); });
    int once = 0;
    const auto oneShot = this->clock().startOneShot(std::chrono::milliseconds(50), [&] { ++once; });
    this->passBusy(110);
    EXPECT_EQ(once, 1);
    ASSERT_FALSE(firings.empty());
    EXPECT_GE(firings.front(), std::chrono::milliseconds(110));
    while (firings.size() < 2) {
        this->pass(20);
    }
    EXPECT_GE(firings[1], std::chrono::milliseconds(120));
}

TYPED_TEST_P(ClockContract, ADestroyedTimerDoesNotFire)
{
    bool hasFired = false;
    this->clock().startOneShot(std::chrono::milliseconds(0), [&] { hasFired = true; }).reset();
    auto repeating = this->clock().startRepeating(std::chrono::milliseconds(1), [&] { hasFired = true; });
    repeating.reset();
    this->pass(10);
    EXPECT_FALSE(hasFired);
}

TYPED_TEST_P(ClockContract, ATimerThatAnEarlierOneDestroysDoesNotFireEvenIfBothAreDue)
{
    bool hasFired = false;
    std::unique_ptr<RunningTimer> victim;
    const auto timer = this->clock().startOneShot(std::chrono::milliseconds(1), [&] { victim.reset(); });
    victim = this->clock().startOneShot(std::chrono::milliseconds(5), [&] { hasFired = true; });
    this->passBusy(20);
    EXPECT_EQ(victim, nullptr);
    EXPECT_FALSE(hasFired);
}

TYPED_TEST_P(ClockContract, ATimerMayBeDestroyedByItsOwnAction)
{
    std::unique_ptr<RunningTimer> timer;
    std::string after;
    timer = this->clock().startRepeating(std::chrono::milliseconds(1), [&, text = std::string(100, 'x')] {
        timer.reset();
        after = text; // The captures of the action must still exist.
    });
    this->pass(10);
    EXPECT_EQ(after, std::string(100, 'x'));
    EXPECT_EQ(timer, nullptr);
}

TYPED_TEST_P(ClockContract, AnActionMayStartATimer)
{
    bool hasFired = false;
    std::unique_ptr<RunningTimer> second;
    const auto first = this->clock().startOneShot(std::chrono::milliseconds(1), [&] {
        second = this->clock().startOneShot(std::chrono::milliseconds(1), [&] { hasFired = true; });
    });
    this->pass(20);
    EXPECT_TRUE(hasFired);
}

REGISTER_TYPED_TEST_SUITE_P(ClockContract, UptimeGrowsByTheElapsedTime, AOneShotTimerFiresOnceAndNotBeforeItsDelay,
                            ADelayOfZeroOrLessFiresFromTheEventLoop, TimersFireInTheOrderOfTheirDueTimes,
                            ARepeatingTimerNeverFiresBeforeItsMultiples, AnIntervalOfZeroOrLessMeansOneMillisecond,
                            MissedTimeoutsFireOnceAndTheNextOneIsOnTime, ADestroyedTimerDoesNotFire,
                            ATimerThatAnEarlierOneDestroysDoesNotFireEvenIfBothAreDue,
                            ATimerMayBeDestroyedByItsOwnAction, AnActionMayStartATimer);

} // namespace quillhaven::test
