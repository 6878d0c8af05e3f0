// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/linux/session/SessionInputFixture.h"
#include "support/EventLoopChecker.h"

#ifdef WITH_KWIN
#include "platform/linux/session/KWinInput.h"
#else
#include "platform/linux/session/MutterInput.h"
#endif

#include <QThreadPool>

#include <atomic>
#include <csignal>

namespace quillhaven::test {
namespace {

#ifdef WITH_KWIN
using CompositorInput = KWinInput;
const QString sentence =
    QStringLiteral("Keyboard and pointer are watched through the compositor's idle notifications.");
#else
using CompositorInput = MutterInput;
const QString sentence = QStringLiteral("Keyboard and pointer are watched through GNOME's idle monitor.");
#endif

/// The compositor counts this time for real; the clock of the test does not move by itself.
constexpr auto period = 200ms;

class IdleBasedSourceTest : public SessionInputFixture
{
protected:
    /// The timer of the active user has ended.
    bool waitUntilIdle()
    {
        return spinUntil([this] { return clock.pendingTimers() == 0; });
    }

    CompositorInput user;
    SessionInput input{clock, watched, period};
};

TEST_F(IdleBasedSourceTest, EachInputIsReportedOnceAtOnceWhenTheUserWasIdle)
{
    const auto monitor = watch(input);
    EXPECT_EQ(state(), (WatchedSources::State{true, sentence}));
    int reports = 0;
    for (const auto act : {&CompositorInput::movePointer, &CompositorInput::pressKey, &CompositorInput::movePointer}) {
        ASSERT_TRUE(waitUntilIdle());
        EXPECT_EQ(monitor->count(), reports);
        // Mutter notices the return only after a further message.
        EXPECT_TRUE(spinUntil([&] {
            (user.*act)();
            spinOnce();
            return monitor->count() > reports;
        }));
        EXPECT_EQ(monitor->count(), ++reports);
    }
}

TEST_F(IdleBasedSourceTest, AnActiveUserIsReportedOnceInEachPeriodAndAnIdleOneWakesNothing)
{
    // While the source begins, since the compositor soon says that nobody is there.
    QObject::connect(&watched, &WatchedSources::stateChanged, [this] {
        EXPECT_EQ(clock.pendingTimers(), 1) << "the user is active until the compositor says otherwise";
        clock.advance(3 * period);
    });
    const auto monitor = watch(input);
    EXPECT_TRUE(spinUntil([&] { return monitor->count() == 3; }));

    ASSERT_TRUE(waitUntilIdle());
    clock.advance(100 * period);
    spinOnce();
    EXPECT_EQ(monitor->count(), 3);
}

TEST_F(IdleBasedSourceTest, AHandlerMayEndItsMonitor)
{
    int reports = 0;
    std::unique_ptr<UserInput::Monitor> monitor = input.addMonitor(anyInput, [&] {
        ++reports;
        monitor.reset();
    });
    ASSERT_TRUE(spinUntil([this] { return state().isAvailable; }));
    ASSERT_TRUE(waitUntilIdle());
    EXPECT_TRUE(spinUntil([&] {
        user.movePointer();
        return reports == 1;
    }));
    EXPECT_EQ(clock.pendingTimers(), 0);
}

TEST_F(IdleBasedSourceTest, NothingIsWatchedAfterTheMonitorIsGone)
{
    int reports = 0;
    auto monitor = input.addMonitor(anyInput, [&reports] { ++reports; });
    ASSERT_TRUE(spinUntil([this] { return state().isAvailable; }));
    monitor.reset();
    EXPECT_EQ(clock.pendingTimers(), 0);
    user.movePointer();
    spinOnce();
    EXPECT_EQ(reports, 0);
}

TEST_F(IdleBasedSourceTest, ACompositorThatDoesNotAnswerDoesNotBlockTheLoop)
{
    const auto compositor = static_cast<pid_t>(qEnvironmentVariableIntValue("COMPOSITOR_PID"));
    ASSERT_EQ(::kill(compositor, SIGSTOP), 0);
    const CountingMonitor monitor(input, anyInput);
    EventLoopChecker loop;
    QThreadPool pool;
    std::atomic<bool> hasTicked = false;
    pool.start([&] { hasTicked = loop.ticksAgain() && loop.ticksAgain() && loop.ticksAgain(); });
    EXPECT_TRUE(spinUntil([&pool] { return pool.waitForDone(0); }));
    ASSERT_EQ(::kill(compositor, SIGCONT), 0);
    EXPECT_TRUE(hasTicked);
    EXPECT_TRUE(monitor.isWatching());
    EXPECT_TRUE(spinUntil([this] { return state().isAvailable; }));
}

TEST_F(IdleBasedSourceTest, ADesktopThatOffersNothingHasNoMonitorAndTheStateSaysWhy)
{
    const QByteArray display = qgetenv("WAYLAND_DISPLAY");
    const QByteArray bus = qgetenv("DBUS_SESSION_BUS_ADDRESS");
    const bool hasNotifications = sentence.contains(QStringLiteral("notifications"));
    qputenv(hasNotifications ? "WAYLAND_DISPLAY" : "DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent");
    const CountingMonitor first(input, anyInput);
    EXPECT_TRUE(spinUntil([this] { return !state().sentence.isEmpty(); }));
    EXPECT_EQ(state(),
              (WatchedSources::State{false, QStringLiteral("Only input to Quillhaven's own windows is noticed: this "
                                                           "Wayland desktop does not report when you are idle.")}));
    EXPECT_FALSE(CountingMonitor(input, anyInput).isWatching());
    qputenv("WAYLAND_DISPLAY", display);
    qputenv("DBUS_SESSION_BUS_ADDRESS", bus);
}

/// The last test: it ends the compositor.
TEST_F(IdleBasedSourceTest, TheEndOfTheCompositorEndsTheSourceAndTheStateSaysSo)
{
    const auto monitor = watch(input);
    ASSERT_EQ(::kill(qEnvironmentVariableIntValue("COMPOSITOR_PID"), SIGKILL), 0);
    EXPECT_TRUE(spinUntil([&] { return !state().isAvailable; }));
    EXPECT_EQ(state().sentence, QStringLiteral("Only input to Quillhaven's own windows is noticed: "
                                               "the desktop has ended its reports of other input."));
    EXPECT_EQ(clock.pendingTimers(), 0);
    EXPECT_EQ(monitor->count(), 0);
    EXPECT_FALSE(CountingMonitor(input, anyInput).isWatching());
}

} // namespace
} // namespace quillhaven::test
