// SPDX-License-Identifier: GPL-3.0-or-later

#include "contract/ClockContract.h"
#include "platform/linux/session/EventLoopClock.h"
#include "support/ManualClock.h"
#include "support/RunTask.h"

#include <QDir>
#include <QFile>

#include <time.h>

namespace quillhaven::test {
namespace {

using std::chrono::milliseconds;

struct ManualTime
{
    [[nodiscard]] Clock &clock() { return m_clock; }
    void pass(milliseconds step) { m_clock.advance(step); }
    void passBusy(milliseconds step) { m_clock.sleep(step); }

private:
    ManualClock m_clock;
};

struct RealTime
{
    [[nodiscard]] Clock &clock() { return m_clock; }
    void pass(milliseconds step)
    {
        const auto end = m_clock.uptime() + step;
        EXPECT_TRUE(spinUntil([&] { return m_clock.uptime() >= end; }));
        spinOnce();
    }
    void passBusy(milliseconds step)
    {
        const auto end = m_clock.uptime() + step;
        while (m_clock.uptime() < end) {
        }
        spinOnce();
    }

private:
    EventLoopClock m_clock;
};

INSTANTIATE_TYPED_TEST_SUITE_P(Manual, ClockContract, ManualTime);
INSTANTIATE_TYPED_TEST_SUITE_P(EventLoop, ClockContract, RealTime);

/// A field of each open timer of this process (man proc_pid_fdinfo).
QByteArrayList fieldOfOpenTimers(const QByteArray &field)
{
    QByteArrayList values;
    const QDir descriptors(QStringLiteral("/proc/self/fdinfo"));
    for (const QString &name : descriptors.entryList(QDir::Files)) {
        QFile file(descriptors.filePath(name));
        if (!file.open(QIODevice::ReadOnly)) {
            continue; // the descriptor with which the folder is read
        }
        for (const QByteArray &line : file.readAll().split('\n')) {
            if (line.startsWith(field + ':')) {
                values.append(line.mid(field.size() + 1).trimmed());
            }
        }
    }
    return values;
}

/// The clocks of the open timers, as the kernel numbers them.
QByteArrayList clocksOfOpenTimers()
{
    return fieldOfOpenTimers("clockid");
}

// A test cannot put the machine to sleep, so this checks that the clock is the one that includes suspended time.
TEST(EventLoopClock, TimersAndUptimeUseTheClockThatIncludesSuspendedTime)
{
    EventLoopClock clock;
    const auto oneShot = clock.startOneShot(std::chrono::hours(1), [] {});
    const auto repeating = clock.startRepeating(std::chrono::hours(1), [] {});
    EXPECT_EQ(clocksOfOpenTimers(), QByteArrayList(2, QByteArray::number(CLOCK_BOOTTIME)));

    const auto bootTime = [] {
        timespec now{};
        ::clock_gettime(CLOCK_BOOTTIME, &now);
        return std::chrono::seconds(now.tv_sec) + std::chrono::nanoseconds(now.tv_nsec);
    };
    const auto before = bootTime();
    const auto uptime = clock.uptime();
    EXPECT_GE(uptime, before);
    EXPECT_LE(uptime, bootTime());
}

TEST(EventLoopClock, LongDelaysAreNotRounded)
{
    EventLoopClock clock;
    for (const auto delay : {std::chrono::seconds(30), std::chrono::seconds(300)}) {
        const auto start = clock.uptime();
        const auto timer = clock.startOneShot(delay, [] {});
        const QByteArrayList remaining = fieldOfOpenTimers("it_value"); // such as "(29, 999998000)"
        const auto elapsed = clock.uptime() - start;
        ASSERT_EQ(remaining.size(), 1);
        const QByteArrayList parts = remaining.constFirst().mid(1).chopped(1).split(',');
        ASSERT_EQ(parts.size(), 2);
        const auto left = std::chrono::seconds(parts.at(0).toLongLong()) +
                          std::chrono::nanoseconds(parts.at(1).trimmed().toLongLong());
        EXPECT_LE(left, delay);
        EXPECT_GE(left, delay - elapsed);
    }
}

TEST(EventLoopClock, ADestroyedTimerClosesItsDescriptor)
{
    EventLoopClock clock;
    clock.startOneShot(std::chrono::hours(1), [] {}).reset();
    EXPECT_EQ(clocksOfOpenTimers(), QByteArrayList());
}

TEST(ManualClock, ARepeatingTimerFiresAtEachMultipleWhileTheClockAdvances)
{
    ManualClock clock;
    int fired = 0;
    const auto timer = clock.startRepeating(milliseconds(10), [&] { ++fired; });
    clock.advance(milliseconds(35));
    EXPECT_EQ(fired, 3);
    clock.sleep(milliseconds(1000));
    EXPECT_EQ(fired, 4);
    clock.advance(milliseconds(4));
    EXPECT_EQ(fired, 4);
    clock.advance(milliseconds(1));
    EXPECT_EQ(fired, 5);
}

} // namespace
} // namespace quillhaven::test
