// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/linux/session/SessionInputFixture.h"

#include <QAbstractEventDispatcher>
#include <QEventLoop>
#include <QTemporaryFile>

#include <csignal>

namespace quillhaven::test {
namespace {

/// Input by another client of the X server, which has dealt with it all afterwards.
void xdotool(const QString &commands)
{
    run(QStringLiteral("xdotool"), commands.split(QLatin1Char(' ')));
}

const QString move = QStringLiteral("mousemove_relative 3 2");

class XInputSourceTest : public SessionInputFixture
{
protected:
    /// Gives the events that have been sent so far the time to come: a second monitor hears of a later one.
    void waitForEarlierInput()
    {
        const auto last = std::make_unique<CountingMonitor>(input, InputEvent::KeyDown);
        EXPECT_TRUE(spinUntil([&] {
            xdotool(QStringLiteral("key F12"));
            return last->count() > 0;
        }));
        spinOnce();
    }
    static constexpr InputEvents pointerInput =
        InputEvents(InputEvent::LeftMouseDown) | InputEvent::RightMouseDown | InputEvent::MouseMoved;

    SessionInput input{clock, watched};
};

class EachInputTest : public XInputSourceTest, public ::testing::WithParamInterface<std::pair<const char *, InputEvent>>
{
};

INSTANTIATE_TEST_SUITE_P(Input, EachInputTest,
                         ::testing::Values(std::pair("click 1", InputEvent::LeftMouseDown),
                                           std::pair("click 3", InputEvent::RightMouseDown),
                                           std::pair("mousemove_relative 5 5", InputEvent::MouseMoved),
                                           std::pair("key a", InputEvent::KeyDown)));

TEST_P(EachInputTest, IsReportedToAMonitorThatWantsItAndToNoOther)
{
    const auto [commands, event] = GetParam();
    const auto wanting = watch(input, event);
    const auto all = watch(input);
    const auto others = watch(input, anyInput & ~InputEvents(event));
    spinOnce();
    EXPECT_TRUE(spinUntil([&] {
        xdotool(QString::fromLatin1(commands));
        return wanting->count() > 0 && all->count() > 0;
    }));
    EXPECT_EQ(others->count(), 0);
    EXPECT_EQ(state(),
              (WatchedSources::State{true, QStringLiteral("Keyboard and pointer are watched through XInput 2.")}));
}

class NoInputTest : public XInputSourceTest, public ::testing::WithParamInterface<const char *>
{
};

INSTANTIATE_TEST_SUITE_P(Input, NoInputTest,
                         ::testing::Values("click 2", "click 4 click 5 click 6 click 7", "click 8 click 9",
                                           "mousedown 2 mousemove_relative 9 9 mousemove_relative 9 9 mouseup 2"));

TEST_P(NoInputTest, OtherButtonsScrollingAndDraggingAreNotReported)
{
    const auto monitor = watch(input, pointerInput);
    waitForEarlierInput();
    ASSERT_EQ(monitor->count(), 0);
    xdotool(QString::fromLatin1(GetParam()));
    waitForEarlierInput();
    EXPECT_EQ(monitor->count(), 0);
    xdotool(move);
    EXPECT_TRUE(spinUntil([&] { return monitor->count() == 1; })) << "the next move is reported";
}

TEST_F(XInputSourceTest, ADragThatBeganBeforeTheMonitorIsNotReported)
{
    xdotool(QStringLiteral("mousedown 1 mousemove_relative 9 9"));
    const auto monitor = watch(input, pointerInput);
    waitForEarlierInput();
    xdotool(move);
    waitForEarlierInput();
    EXPECT_EQ(monitor->count(), 0);
    xdotool(QStringLiteral("mouseup 1"));
    waitForEarlierInput();
    xdotool(move);
    EXPECT_TRUE(spinUntil([&] { return monitor->count() == 1; }));
}

TEST_F(XInputSourceTest, AButtonPressedWhileAnotherIsHeldIsReported)
{
    const auto monitor = watch(input, pointerInput);
    waitForEarlierInput();
    xdotool(QStringLiteral("mousedown 2 mousemove_relative 9 9"));
    waitForEarlierInput();
    xdotool(QStringLiteral("click 1"));
    EXPECT_TRUE(spinUntil([&] { return monitor->count() == 1; }));
    xdotool(QStringLiteral("mouseup 2"));
}

TEST_F(XInputSourceTest, MuchMotionIsOneReportInEachQuietPeriod)
{
    const auto monitor = watch(input, pointerInput);
    waitForEarlierInput();
    for (int period = 1; period <= 3; ++period) {
        // The display may get the motion before the request to report it again.
        EXPECT_TRUE(spinUntil([&] {
            xdotool(QStringList(50, move).join(QLatin1Char(' ')));
            return monitor->count() >= period;
        }));
        EXPECT_EQ(monitor->count(), period);
        xdotool(QStringList(50, move).join(QLatin1Char(' ')));
        waitForEarlierInput();
        clock.advance(9'999ms);
        xdotool(move);
        waitForEarlierInput();
        EXPECT_EQ(monitor->count(), period);
        clock.advance(1ms);
    }
}

TEST_F(XInputSourceTest, NoInputWakesTheProcessInAQuietPeriod)
{
    const auto monitor = watch(input);
    EXPECT_TRUE(spinUntil([&] {
        xdotool(move);
        return monitor->count() == 1;
    }));
    int wakeUps = 0;
    QProcess mover;
    mover.setProcessChannelMode(QProcess::ForwardedChannels);
    QEventLoop loop;
    QObject::connect(&mover, &QProcess::finished, &loop, &QEventLoop::quit);
    QObject::connect(QAbstractEventDispatcher::instance(), &QAbstractEventDispatcher::awake, &loop,
                     [&wakeUps] { ++wakeUps; });
    // Paced, so that the server sends each by itself.
    const QString pause = QStringLiteral(" sleep 0.002 ");
    const QString paced = QStringList(10, move + pause + QStringLiteral("mousedown 1 mouseup 1")).join(pause) + pause +
                          QStringLiteral("key F12");
    mover.start(QStringLiteral("xdotool"), QStringList(10, paced).join(QLatin1Char(' ')).split(QLatin1Char(' ')));
    loop.exec();
    EXPECT_EQ(mover.exitCode(), 0);
    EXPECT_EQ(monitor->count(), 1);
    EXPECT_LT(wakeUps, 30) << "for 210 inputs";
}

TEST_F(XInputSourceTest, NothingIsReportedAfterTheMonitorIsGone)
{
    int reports = 0;
    auto monitor = input.addMonitor(anyInput, [&reports] { ++reports; });
    EXPECT_TRUE(spinUntil([&] { return state().isAvailable; }));
    monitor.reset();
    xdotool(move);
    waitForEarlierInput();
    EXPECT_EQ(reports, 0);
}

TEST_F(XInputSourceTest, AHandlerMayEndItsMonitor)
{
    int reports = 0;
    std::unique_ptr<UserInput::Monitor> monitor;
    monitor = input.addMonitor(anyInput, [&] {
        ++reports;
        monitor.reset();
    });
    EXPECT_TRUE(spinUntil([&] {
        xdotool(move);
        return reports == 1;
    }));
    EXPECT_EQ(clock.pendingTimers(), 0);
}

TEST_F(XInputSourceTest, AMonitorThatEndsBeforeItsSourceIsConnectedLeavesNothing)
{
    EXPECT_TRUE(input.addMonitor(anyInput, [] { ADD_FAILURE(); }));
    {
        SessionInput shortLived(clock, watched);
        EXPECT_TRUE(shortLived.addMonitor(anyInput, [] { ADD_FAILURE(); }));
    }
    xdotool(move);
    waitForEarlierInput();
}

TEST_F(XInputSourceTest, AServerThatEndsEndsTheSourceAndTheStateSaysSo)
{
    QTemporaryFile number;
    ASSERT_TRUE(number.open());
    QProcess server;
    server.start(
        QStringLiteral("/bin/sh"),
        {QStringLiteral("-c"),
         QStringLiteral("exec Xvfb -displayfd 7 -nolisten tcp -noreset 7>%1 2>/dev/null").arg(number.fileName())});
    QByteArray display;
    ASSERT_TRUE(spinUntil([&] {
        QFile written(number.fileName());
        display = written.open(QIODevice::ReadOnly) ? written.readAll() : QByteArray();
        return display.endsWith('\n');
    }));
    const QByteArray former = qgetenv("DISPLAY");
    qputenv("DISPLAY", ":" + display.trimmed());
    const auto monitor = watch(input);
    EXPECT_TRUE(spinUntil([&] {
        xdotool(move);
        return monitor->count() == 1;
    }));
    ASSERT_EQ(clock.pendingTimers(), 1);
    server.kill();
    EXPECT_TRUE(spinUntil([&] { return !state().isAvailable; }));
    EXPECT_EQ(state().sentence, QStringLiteral("Only input to Quillhaven's own windows is noticed: "
                                               "the desktop has ended its reports of other input."));
    clock.advance(1min); // the end of the quiet period touches the server no more
    EXPECT_EQ(clock.pendingTimers(), 0);
    EXPECT_FALSE(CountingMonitor(input, anyInput).isWatching());
    server.waitForFinished();
    qputenv("DISPLAY", former);
}

TEST_F(XInputSourceTest, WithoutADisplayThereIsNoMonitorAndTheStateSaysWhy)
{
    const QByteArray former = qgetenv("DISPLAY");
    qputenv("DISPLAY", {});
    SessionInput none(clock, watched);
    EXPECT_FALSE(CountingMonitor(none, anyInput).isWatching());
    EXPECT_EQ(state(),
              (WatchedSources::State{false, QStringLiteral("Only input to Quillhaven's own windows is noticed: "
                                                           "there is no X server or Wayland desktop.")}));
    qputenv("DISPLAY", former);
}

} // namespace
} // namespace quillhaven::test
