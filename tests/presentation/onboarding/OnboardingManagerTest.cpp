// SPDX-License-Identifier: GPL-3.0-or-later

#include "presentation/onboarding/OnboardingManager.h"

#include "support/TestPlatform.h"

#include <QSignalSpy>

#include <gtest/gtest.h>

using namespace quillhaven;
using namespace quillhaven::test;

namespace {

class Onboarding : public ::testing::Test
{
protected:
    [[nodiscard]] bool isShownAtNextStart() { return OnboardingManager(defaults()).shouldShowOnboarding(); }
    UserDefaults &defaults() { return services.defaults.standard(); }

    TestPlatform services;
};

} // namespace

TEST_F(Onboarding, ItIsShownAtTheFirstStart)
{
    EXPECT_TRUE(isShownAtNextStart());
}

TEST_F(Onboarding, AfterGetStartedItIsNeverShownAgain)
{
    OnboardingManager manager(defaults());
    const QSignalSpy changes(&manager, &OnboardingManager::shouldShowOnboardingChanged);
    manager.getStarted();
    EXPECT_FALSE(manager.shouldShowOnboarding());
    EXPECT_EQ(changes.size(), 1);
    EXPECT_EQ(defaults().boolForKey(QStringLiteral("hasCompletedOnboarding")), true);
    EXPECT_FALSE(isShownAtNextStart());
}

TEST_F(Onboarding, ClosedWithoutTheButtonItIsShownAtTheNextStart)
{
    OnboardingManager manager(defaults());
    manager.close();
    EXPECT_FALSE(manager.shouldShowOnboarding());
    EXPECT_FALSE(defaults().boolForKey(QStringLiteral("hasCompletedOnboarding")));
    EXPECT_TRUE(isShownAtNextStart());
}
