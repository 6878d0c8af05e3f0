// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "platform/WatchedSources.h"
#include "platform/linux/session/SessionInput.h"
#include "support/ManualClock.h"
#include "support/RunTask.h"

#include <QProcess>

#include <gtest/gtest.h>

namespace quillhaven::test {

using namespace std::chrono_literals;

inline constexpr InputEvents anyInput =
    InputEvents(InputEvent::LeftMouseDown) | InputEvent::RightMouseDown | InputEvent::MouseMoved | InputEvent::KeyDown;

/// A monitor that counts its reports.
class CountingMonitor
{
public:
    CountingMonitor(GlobalInput &input, InputEvents events) : m_monitor(input.addMonitor(events, [this] { ++m_count; }))
    {
    }

    [[nodiscard]] int count() const { return m_count; }
    [[nodiscard]] bool isWatching() const { return m_monitor != nullptr; }

private:
    int m_count = 0;
    std::unique_ptr<UserInput::Monitor> m_monitor;
};

/// Runs a program to its end, while the event loop runs.
inline void run(const QString &program, const QStringList &arguments)
{
    QProcess process;
    process.setProcessChannelMode(QProcess::ForwardedChannels);
    process.start(program, arguments);
    ASSERT_TRUE(spinUntil([&process] { return process.state() == QProcess::NotRunning; }));
    ASSERT_EQ(process.exitStatus(), QProcess::NormalExit);
    ASSERT_EQ(process.exitCode(), 0) << qUtf8Printable(arguments.join(QLatin1Char(' ')));
}

class SessionInputFixture : public ::testing::Test
{
protected:
    [[nodiscard]] WatchedSources::State state() const
    {
        return watched.state(WatchedSources::Source::Input).value_or(WatchedSources::State());
    }
    /// Adds a monitor, and waits until its source is connected.
    std::unique_ptr<CountingMonitor> watch(SessionInput &input, InputEvents events = anyInput)
    {
        auto monitor = std::make_unique<CountingMonitor>(input, events);
        EXPECT_TRUE(spinUntil([this] { return state().isAvailable; }));
        return monitor;
    }

    ManualClock clock;
    WatchedSources watched;
};

} // namespace quillhaven::test
