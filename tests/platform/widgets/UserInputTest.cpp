// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/linux/session/KWinInput.h"
#include "platform/linux/session/SessionInputFixture.h"
#include "platform/widgets/QtUserInput.h"

#include <QGuiApplication>
#include <QTest>
#include <QWidget>

namespace quillhaven::test {
namespace {

class UserInputTest : public SessionInputFixture
{
protected:
    static constexpr auto period = 200ms; // a compositor counts it for real

    /// Moves the pointer, as the user does, over whatever is there.
    void movePointer()
    {
        if (QGuiApplication::platformName() == QLatin1String("xcb")) {
            run(QStringLiteral("xdotool"),
                {QStringLiteral("mousemove_relative"), QStringLiteral("3"), QStringLiteral("2")});
        } else {
            if (!m_kwin) {
                m_kwin = std::make_unique<KWinInput>();
            }
            m_kwin->movePointer();
        }
    }

    SessionInput session{clock, watched, period};
    QtUserInput input{session};
    int reports = 0;

private:
    std::unique_ptr<KWinInput> m_kwin;
};

class LocalMonitorTest : public UserInputTest
{
protected:
    LocalMonitorTest()
    {
        window.resize(300, 200);
        window.show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(&window));
    }
    void watchHere(InputEvents events)
    {
        reports = 0;
        monitor = input.addLocalMonitor(events, [this] { ++reports; });
    }

    QWidget window;
    std::unique_ptr<UserInput::Monitor> monitor;
};

TEST_F(UserInputTest, TheGlobalMonitorReportsInputAsLongAsItLives)
{
    auto monitor = input.addGlobalMonitor(anyInput, [this] { ++reports; });
    ASSERT_TRUE(monitor);
    ASSERT_TRUE(spinUntil([this] { return state().isAvailable; }));
    ASSERT_TRUE(spinUntil([this] { return clock.pendingTimers() == 0; })) << "a compositor has not found the user idle";
    EXPECT_TRUE(spinUntil([this] {
        movePointer();
        return reports > 0;
    }));
    monitor.reset();
    reports = 0;
    movePointer();
    clock.advance(3 * period);
    spinOnce();
    EXPECT_EQ(reports, 0);
    EXPECT_EQ(clock.pendingTimers(), 0);
}

TEST_F(LocalMonitorTest, EachWantedInputToAWindowIsReportedOnceAndPassedOn)
{
    watchHere(anyInput & ~InputEvents(InputEvent::MouseMoved));
    QTest::mousePress(window.windowHandle(), Qt::LeftButton);
    EXPECT_EQ(reports, 1);
    QTest::mouseRelease(window.windowHandle(), Qt::LeftButton);
    EXPECT_EQ(reports, 1);
    QTest::mousePress(window.windowHandle(), Qt::RightButton);
    QTest::mouseRelease(window.windowHandle(), Qt::RightButton);
    EXPECT_EQ(reports, 2);
    QTest::keyClick(window.windowHandle(), Qt::Key_A);
    EXPECT_EQ(reports, 3);
    watchHere(InputEvent::KeyDown);
    QTest::mouseClick(window.windowHandle(), Qt::LeftButton);
    EXPECT_EQ(reports, 0);
}

TEST_F(LocalMonitorTest, AMoveIsReportedUnlessAButtonIsHeld)
{
    watchHere(InputEvent::MouseMoved);
    QTest::mouseMove(window.windowHandle(), {20, 20});
    EXPECT_TRUE(spinUntil([this] { return reports > 0; }));
    QTest::mousePress(window.windowHandle(), Qt::LeftButton, {}, {20, 20});
    spinOnce();
    reports = 0;
    QTest::mouseMove(window.windowHandle(), {60, 60});
    spinOnce();
    EXPECT_EQ(reports, 0);
    QTest::mouseRelease(window.windowHandle(), Qt::LeftButton, {}, {60, 60});
}

TEST_F(LocalMonitorTest, OtherButtonsAndAnEndedMonitorReportNothing)
{
    watchHere(anyInput & ~InputEvents(InputEvent::MouseMoved));
    QTest::mouseClick(window.windowHandle(), Qt::MiddleButton);
    QTest::mouseClick(window.windowHandle(), Qt::BackButton);
    EXPECT_EQ(reports, 0);
    monitor.reset();
    QTest::keyClick(window.windowHandle(), Qt::Key_A);
    EXPECT_EQ(reports, 0);
}

} // namespace
} // namespace quillhaven::test
