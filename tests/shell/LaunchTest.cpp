// SPDX-License-Identifier: GPL-3.0-or-later

#include "shell/AppDelegate.h"
#include "shell/LaunchContextManager.h"
#include "shell/quillhavenApp.h"
#include "support/LogCapture.h"
#include "support/ManualClock.h"
#include "support/RecordingPresence.h"
#include "support/RunTask.h"

#include <gtest/gtest.h>

using namespace quillhaven;
using namespace quillhaven::test;
using namespace std::chrono_literals;

namespace {

QStringList arguments(const char *argument = nullptr)
{
    QStringList list{QStringLiteral("/usr/bin/quillhaven")};
    if (argument) {
        list.append(QString::fromLatin1(argument));
    }
    return list;
}

class Launch : public ::testing::Test
{
protected:
    ~Launch() override { spinOnce(); } // runs the jobs of a launch, which refer to this object

    LaunchStep step(const char *name)
    {
        return [this, name] { order.append(QString::fromLatin1(name)); };
    }
    std::function<QCoro::Task<>()> job(const char *name)
    {
        return [this, name]() -> QCoro::Task<> {
            order.append(QString::fromLatin1(name));
            co_return;
        };
    }
    /// All services that a program can have, named in another order than that of the launch.
    LaunchSequence sequence(LaunchContextManager &context)
    {
        return {.launchContext = [this, &context]() -> LaunchContextManager & {
                    order.append(QStringLiteral("context"));
                    return context;
                },
                .launch = {{LaunchPhase::launchAtLogin, launchAtLoginStep(job("login synchronisation"))},
                           {LaunchPhase::updateCheck, updateCheckStep(job("update check"))},
                           {LaunchPhase::activateFinderExtension, step("extension")},
                           {LaunchPhase::autoLockManagers, autoLockStep(step("auto-lock"), step("smart auto-lock"))},
                           {LaunchPhase::setupMenuBar, step("menu bar")}},
                .termination = {{TerminationPhase::cleanupMenuBar, step("clean menu bar")},
                                {TerminationPhase::launchAtLoginServiceManager, step("clear login manager")}}};
    }

    RecordingPresence presence;
    ManualClock clock;
    LogCapture log;
    QStringList order;
};

} // namespace

TEST_F(Launch, ContextIsUserActivationWithoutALoginArgument)
{
    const LaunchContextManager context(arguments(), presence);
    EXPECT_EQ(context.currentContext(), LaunchContext::userActivation);
    EXPECT_FALSE(context.shouldStartInBackground());
    EXPECT_TRUE(context.shouldShowMainWindow());
    EXPECT_EQ(context.contextDescription(), QStringLiteral("User Activation"));
}

TEST_F(Launch, EachOfTheThreeArgumentsMeansALoginItem)
{
    for (const char *argument : {"-psn_", "--login-item", "-loginItem"}) {
        const LaunchContextManager context(arguments(argument), presence);
        EXPECT_EQ(context.currentContext(), LaunchContext::loginItem) << argument;
        EXPECT_TRUE(context.shouldStartInBackground()) << argument;
        EXPECT_FALSE(context.shouldShowMainWindow()) << argument;
    }
}

TEST_F(Launch, ArgumentThatOnlyStartsLikeALoginArgumentIsIgnored)
{
    const LaunchContextManager context(arguments("-psn_0_12345"), presence);
    EXPECT_EQ(context.currentContext(), LaunchContext::userActivation);
}

TEST_F(Launch, UnknownContextBehavesLikeALoginLaunch)
{
    LaunchContextManager context(arguments(), presence);
    context.updateContext(LaunchContext::unknown);
    EXPECT_TRUE(context.shouldStartInBackground());
    EXPECT_FALSE(context.shouldShowMainWindow());
    EXPECT_EQ(context.contextDescription(), QStringLiteral("Unknown"));
}

TEST_F(Launch, EveryContextHasTwoTextForms)
{
    LaunchContextManager context(arguments(), presence);
    QStringList forms;
    for (const LaunchContext each : allLaunchContexts) {
        context.updateContext(each);
        forms << description(each) << context.contextDescription();
    }
    EXPECT_EQ(forms.join(QLatin1Char('|')),
              QStringLiteral("userActivation|User Activation|loginItem|Login Item|systemRestart|System Restart|"
                             "unknown|Unknown"));
}

TEST_F(Launch, ShowAndHideOfTheManagerSetTheFlagAndTheApplication)
{
    LaunchContextManager context(arguments(), presence);
    context.hideMainWindow();
    EXPECT_FALSE(context.shouldShowMainWindow());
    EXPECT_TRUE(presence.isHidden);
    context.showMainWindow();
    EXPECT_TRUE(context.shouldShowMainWindow());
    EXPECT_EQ(presence.activations, 1);
}

TEST_F(Launch, ServicesStartInOrderAndTheJobsOnlyAfterTheLaunch)
{
    LaunchContextManager context(arguments(), presence);
    AppDelegate delegate(presence, sequence(context));
    delegate.applicationDidFinishLaunching();
    EXPECT_EQ(order.join(QLatin1Char('|')), QStringLiteral("context|menu bar|auto-lock|smart auto-lock|extension"));
    EXPECT_EQ(log.lines().join(QLatin1Char('|')),
              QStringLiteral("AutoLockManager and SmartAutoLockManager initialized|App launched by user activation"));
    log.clear();
    spinOnce();
    EXPECT_EQ(order.mid(5).join(QLatin1Char('|')), QStringLiteral("update check|login synchronisation"));
    EXPECT_EQ(log.lines().join(QLatin1Char('|')),
              QStringLiteral("🔄 Starting background update check...|🔄 Background update check requested|"
                             "✅ Background update check completed|"
                             "LaunchAtLoginServiceManager: Successfully initialized and synchronized"));
}

TEST_F(Launch, LoginLaunchRunsAllServicesAndStaysHidden)
{
    LaunchContextManager context(arguments("--login-item"), presence);
    AppDelegate delegate(presence, sequence(context));
    quillhavenApp app(context, presence, clock, {});
    delegate.applicationDidFinishLaunching();
    app.contentAppeared();
    clock.advance(100ms);
    EXPECT_EQ(order.size(), 5);
    EXPECT_EQ(presence.policy, ApplicationPresence::ActivationPolicy::Accessory);
    EXPECT_TRUE(presence.isHidden);
    EXPECT_EQ(presence.ordersToFront, 0);
    EXPECT_TRUE(log.contains(QStringLiteral("App launched in background mode (login item)")));
}

TEST_F(Launch, LoginLaunchHidesTheApplicationImmediately)
{
    LaunchContextManager context(arguments("--login-item"), presence);
    AppDelegate delegate(presence, sequence(context));
    delegate.applicationDidFinishLaunching();
    EXPECT_TRUE(presence.isHidden);
    EXPECT_EQ(log.lines().last(), QStringLiteral("App launched in background mode (login item)"));
}

TEST_F(Launch, AfterALoginLaunchAnAppearingWindowIsHiddenATenthOfASecondLater)
{
    LaunchContextManager context(arguments("--login-item"), presence);
    quillhavenApp app(context, presence, clock, {});
    app.contentAppeared();
    clock.advance(99ms);
    EXPECT_FALSE(presence.isHidden);
    clock.advance(1ms);
    EXPECT_TRUE(presence.isHidden);
}

TEST_F(Launch, UserLaunchBringsTheWindowForwardATenthOfASecondAfterItAppears)
{
    LaunchContextManager context(arguments(), presence);
    quillhavenApp app(context, presence, clock, {});
    app.contentAppeared();
    clock.advance(99ms);
    EXPECT_EQ(presence.ordersToFront, 0);
    clock.advance(1ms);
    EXPECT_EQ(presence.ordersToFront, 1);
}

TEST_F(Launch, WindowThatIsClosedAsSoonAsItAppearsStaysClosed)
{
    LaunchContextManager context(arguments(), presence);
    quillhavenApp app(context, presence, clock, {});
    app.contentAppeared();
    clock.advance(99ms);
    app.mainWindowClosed();
    presence.hide();
    clock.advance(500ms);
    EXPECT_EQ(presence.ordersToFront, 0);
    EXPECT_TRUE(presence.isHidden);
}

TEST_F(Launch, WindowThatIsWantedJustAfterALoginLaunchIsNotHiddenAgain)
{
    LaunchContextManager context(arguments("--login-item"), presence);
    AppDelegate delegate(presence, sequence(context));
    quillhavenApp app(context, presence, clock, {});
    delegate.applicationDidFinishLaunching();
    app.contentAppeared();
    clock.advance(50ms);
    delegate.reopen();
    app.contentAppeared();
    clock.advance(50ms);
    EXPECT_FALSE(presence.isHidden);
    clock.advance(50ms);
    EXPECT_FALSE(presence.isHidden);
}

TEST_F(Launch, ReopenAfterALoginLaunchMakesARegularApplicationWithTheWindowInFront)
{
    LaunchContextManager context(arguments("-loginItem"), presence);
    AppDelegate delegate(presence, sequence(context));
    delegate.applicationDidFinishLaunching();
    EXPECT_TRUE(delegate.applicationShouldHandleReopen(false));
    EXPECT_TRUE(context.shouldShowMainWindow());
    EXPECT_EQ(presence.policy, ApplicationPresence::ActivationPolicy::Regular);
    EXPECT_EQ(presence.ordersToFront, 1);
    EXPECT_FALSE(presence.isHidden);
}

TEST_F(Launch, ReopenWithVisibleWindowsChangesNothing)
{
    LaunchContextManager context(arguments(), presence);
    AppDelegate delegate(presence, sequence(context));
    EXPECT_TRUE(delegate.applicationShouldHandleReopen(true));
    EXPECT_EQ(presence.activations, 0);
    EXPECT_EQ(presence.ordersToFront, 0);
}

TEST_F(Launch, ASecondStartShowsAHiddenWindowAndBringsAVisibleOneForward)
{
    LaunchContextManager context(arguments("-loginItem"), presence);
    AppDelegate delegate(presence, sequence(context));
    delegate.applicationDidFinishLaunching();
    delegate.reopen();
    EXPECT_FALSE(presence.isHidden);
    EXPECT_EQ(presence.ordersToFront, 1);
    const int activations = presence.activations;
    delegate.reopen();
    EXPECT_EQ(presence.ordersToFront, 1);
    EXPECT_EQ(presence.activations, activations + 1);
}

TEST_F(Launch, AMissingServiceIsNotLogged)
{
    LaunchContextManager context(arguments(), presence);
    AppDelegate delegate(presence, {.launchContext = [&context]() -> LaunchContextManager & { return context; },
                                    .launch = {{LaunchPhase::setupMenuBar, step("menu bar")}},
                                    .termination = {}});
    delegate.applicationDidFinishLaunching();
    spinOnce();
    delegate.applicationWillTerminate();
    EXPECT_EQ(order.join(QLatin1Char('|')), QStringLiteral("menu bar"));
    EXPECT_EQ(log.lines().join(QLatin1Char('|')), QStringLiteral("App launched by user activation"));
}

TEST_F(Launch, WindowWithAnotherTitleIsNotBroughtForwardWhenTheApplicationIsActivated)
{
    presence.windowTitle = QStringLiteral("Quillhaven 2");
    LaunchContextManager context(arguments(), presence);
    AppDelegate delegate(presence, sequence(context));
    quillhavenApp app(context, presence, clock, {});
    app.contentAppeared();
    clock.advance(100ms);
    delegate.applicationShouldHandleReopen(false);
    EXPECT_EQ(presence.ordersToFront, 0);
    EXPECT_EQ(presence.activations, 1);
}

TEST_F(Launch, EveryAppearanceAddsAnotherOneSecondCheck)
{
    LaunchContextManager context(arguments(), presence);
    int checks = 0;
    quillhavenApp app(context, presence, clock, [&checks] { ++checks; });
    app.contentAppeared();
    EXPECT_EQ(checks, 1);
    clock.advance(1000ms);
    EXPECT_EQ(checks, 2);
    app.contentAppeared();
    EXPECT_EQ(checks, 3);
    clock.advance(1000ms);
    EXPECT_EQ(checks, 5);
    app.applicationDidBecomeActive();
    EXPECT_EQ(checks, 6);
}

TEST_F(Launch, TerminationClearsTheLoginManagerThenTheMenuBarThenTheContext)
{
    LaunchContextManager context(arguments(), presence);
    LaunchSequence all = sequence(context);
    AppDelegate *running = nullptr;
    all.termination[TerminationPhase::cleanupMenuBar] = [this, &running] {
        order.append(running->launchContext() ? QStringLiteral("clean menu bar") : QStringLiteral("too late"));
    };
    AppDelegate delegate(presence, all);
    running = &delegate;
    delegate.applicationDidFinishLaunching();
    order.clear();
    delegate.applicationWillTerminate();
    EXPECT_EQ(order.join(QLatin1Char('|')), QStringLiteral("clear login manager|clean menu bar"));
    EXPECT_EQ(delegate.launchContext(), nullptr);
}
