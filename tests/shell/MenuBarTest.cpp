// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/Popover.h"
#include "shell/AppDelegate.h"
#include "shell/LaunchContextManager.h"
#include "shell/WindowClosing.h"
#include "support/FakeStatusBar.h"
#include "support/LogCapture.h"
#include "support/ManualClock.h"
#include "support/RecordingPresence.h"

#include <gtest/gtest.h>

using namespace quillhaven;
using namespace quillhaven::test;
using namespace std::chrono_literals;

namespace {

using Policy = ApplicationPresence::ActivationPolicy;

class FakePopover : public Popover
{
public:
    FakePopover(QStringList &calls, const RecordingPresence &presence) : m_calls(calls), m_presence(presence) {}
    ~FakePopover() override { m_calls.append(QStringLiteral("remove popover")); }

    [[nodiscard]] bool isShown() const override { return m_isShown; }
    void show() override
    {
        m_isShown = true;
        m_calls.append(m_presence.policy == Policy::Regular ? QStringLiteral("show as regular")
                                                            : QStringLiteral("show as accessory"));
        Q_EMIT didShow();
    }
    void performClose() override
    {
        m_isShown = false;
        m_calls.append(QStringLiteral("close"));
        Q_EMIT didClose();
    }

private:
    QStringList &m_calls;
    const RecordingPresence &m_presence;
    bool m_isShown = false;
};

class MenuBarOfDelegate : public ::testing::Test
{
protected:
    explicit MenuBarOfDelegate(const char *argument = "")
        : context({QStringLiteral("/usr/bin/quillhaven"), QString::fromLatin1(argument)}, presence)
    {
    }

    [[nodiscard]] QString calls()
    {
        const QString all = statusBar.calls.join(QLatin1Char('|'));
        statusBar.calls.clear();
        return all;
    }

    RecordingPresence presence;
    FakeStatusBar statusBar;
    LogCapture log;
    LaunchContextManager context;
    AppDelegate delegate{
        presence,
        {.launchContext = [this]() -> LaunchContextManager & { return context; },
         .launch = {{LaunchPhase::autoLockManagers, [this] { statusBar.calls.append(QStringLiteral("auto-lock")); }}},
         .termination = {{TerminationPhase::launchAtLoginServiceManager,
                          [this] { statusBar.calls.append(QStringLiteral("clear login manager")); }}}},
        MenuBar{.statusBar = statusBar,
                .makePopover = [this]() -> std::unique_ptr<Popover> {
                    statusBar.calls.append(QStringLiteral("popover"));
                    return std::make_unique<FakePopover>(statusBar.calls, presence);
                },
                .menuEntries = [] { return std::vector<StatusItem::MenuEntry>{{QStringLiteral("Open"), [] {}}}; }}};
};

class MenuBarAfterLoginLaunch : public MenuBarOfDelegate
{
protected:
    MenuBarAfterLoginLaunch() : MenuBarOfDelegate("--login-item") {}
};

} // namespace

TEST_F(MenuBarOfDelegate, ThereIsNoItemOrPopoverBeforeTheLaunchAndAClickDoesNothing)
{
    EXPECT_EQ(delegate.statusItem(), nullptr);
    EXPECT_EQ(delegate.popover(), nullptr);
    delegate.toggleMenu();
    EXPECT_EQ(calls(), QString());
}

TEST_F(MenuBarOfDelegate, TheLaunchMakesTheItemThenThePopoverBeforeAllOtherServices)
{
    delegate.applicationDidFinishLaunching();
    EXPECT_EQ(calls(), QStringLiteral("item|popover|auto-lock"));
    EXPECT_EQ(statusBar.image, QStringLiteral("menubarIcon"));
    ASSERT_EQ(statusBar.menu.size(), 1U);
    EXPECT_EQ(statusBar.menu.front().text, QStringLiteral("Open"));
    EXPECT_NE(delegate.statusItem(), nullptr);
    EXPECT_NE(delegate.popover(), nullptr);
}

TEST_F(MenuBarOfDelegate, AClickShowsThePopoverAndAClickWhileItIsShownClosesIt)
{
    delegate.applicationDidFinishLaunching();
    static_cast<void>(calls());
    statusBar.click();
    EXPECT_EQ(calls(), QStringLiteral("show as regular"));
    statusBar.click();
    EXPECT_EQ(calls(), QStringLiteral("close"));
    statusBar.click();
    EXPECT_EQ(calls(), QStringLiteral("show as regular"));
}

TEST_F(MenuBarAfterLoginLaunch, AClickMakesARegularApplicationBeforeThePopoverOpens)
{
    delegate.applicationDidFinishLaunching();
    ASSERT_EQ(presence.policy, Policy::Accessory);
    static_cast<void>(calls());
    statusBar.click();
    EXPECT_EQ(calls(), QStringLiteral("show as regular"));
    statusBar.click();
    EXPECT_EQ(presence.policy, Policy::Regular);
    EXPECT_EQ(presence.ordersToFront, 0);
}

TEST_F(MenuBarOfDelegate, TheTerminationClosesThePopoverThenRemovesTheItem)
{
    delegate.applicationDidFinishLaunching();
    statusBar.click();
    static_cast<void>(calls());
    delegate.applicationWillTerminate();
    EXPECT_EQ(calls(), QStringLiteral("clear login manager|close|remove popover|remove item"));
    EXPECT_EQ(delegate.statusItem(), nullptr);
    EXPECT_EQ(delegate.popover(), nullptr);
    delegate.toggleMenu();
    EXPECT_EQ(calls(), QString());
}

namespace {

class ClosingTheWindow : public ::testing::Test
{
protected:
    RecordingPresence presence;
    FakeStatusBar statusBar;
    ManualClock clock;
    WindowClosing closing{statusBar, presence, clock};
};

} // namespace

TEST_F(ClosingTheWindow, HidesItWhileTheStatusItemIsOnTheScreen)
{
    statusBar.setShown(true);
    closing.close();
    EXPECT_TRUE(presence.isHidden);
    EXPECT_FALSE(presence.isMinimized);
    EXPECT_FALSE(presence.hasTerminated);
}

TEST_F(ClosingTheWindow, MinimizesItWithoutAStatusBar)
{
    closing.close();
    EXPECT_TRUE(presence.isMinimized);
    EXPECT_FALSE(presence.isHidden);
    EXPECT_FALSE(presence.hasTerminated);
}

TEST_F(ClosingTheWindow, AStatusBarThatGoesAwayBringsAHiddenWindowBackMinimized)
{
    statusBar.setShown(true);
    closing.close();
    statusBar.setShown(false);
    clock.advance(9999ms);
    EXPECT_FALSE(presence.isMinimized);
    clock.advance(1ms);
    EXPECT_TRUE(presence.isMinimized);
}

TEST_F(ClosingTheWindow, AStatusBarThatGoesAwayLeavesAVisibleWindowAlone)
{
    statusBar.setShown(true);
    statusBar.setShown(false);
    clock.advance(60s);
    EXPECT_FALSE(presence.isMinimized);
}

TEST_F(ClosingTheWindow, AStatusBarThatRestartsLeavesTheWindowHidden)
{
    statusBar.setShown(true);
    closing.close();
    statusBar.setShown(false);
    clock.advance(3s);
    statusBar.setShown(true);
    clock.advance(60s);
    EXPECT_FALSE(presence.isMinimized);
}

TEST_F(ClosingTheWindow, AProgramStartedAtLoginBeforeAnyStatusBarStaysHidden)
{
    presence.isHidden = true;
    statusBar.setShown(false);
    clock.advance(60s);
    EXPECT_FALSE(presence.isMinimized);
}

TEST(ClosingTheWindowUnderAStatusBar, ThatWasShownFromTheStartBringsItBackWhenTheBarGoesAway)
{
    RecordingPresence presence;
    FakeStatusBar statusBar;
    ManualClock clock;
    statusBar.setShown(true);
    WindowClosing closing{statusBar, presence, clock};
    closing.close();
    statusBar.setShown(false);
    clock.advance(WindowClosing::patience);
    EXPECT_TRUE(presence.isMinimized);
}
