// SPDX-License-Identifier: GPL-3.0-or-later

#include "SharedInstances.h"
#include "contact/SupportManager.h"
#include "credentials/MasterPasswordDialogManager.h"
#include "engine/QuillhavenManager.h"
#include "platform/ApplicationPresence.h"
#include "shell/LaunchContextManager.h"
#include "support/TestPlatform.h"

#include <gtest/gtest.h>

namespace quillhaven::test {
namespace {

class NoPresence : public ApplicationPresence
{
public:
    [[nodiscard]] ActivationPolicy activationPolicy() const override { return ActivationPolicy::Regular; }
    void setActivationPolicy(ActivationPolicy) override {}
    void activate() override {}
    void hide() override {}
    void minimize() override {}
    bool makeKeyAndOrderFront(const QString &) override { return false; }
    [[nodiscard]] bool hasVisibleWindows() const override { return false; }
    void terminate() override {}
};

const char *const tooEarly = "A shared instance was used before installPlatform";

/// Expects that the call ends the process, in every kind of build, with a reason on standard error.
class SharedInstancesDeathTest : public ::testing::Test
{
protected:
    SharedInstancesDeathTest() : m_handler(qInstallMessageHandler(nullptr)) {}
    ~SharedInstancesDeathTest() override { qInstallMessageHandler(m_handler); }

private:
    QtMessageHandler m_handler;
};

TEST_F(SharedInstancesDeathTest, AnInstanceUsedBeforeTheInstallationEndsTheProcess)
{
    EXPECT_DEATH((void)LaunchContextManager::shared(), tooEarly);
    EXPECT_DEATH((void)MasterPasswordDialogManager::shared(), tooEarly);
    EXPECT_DEATH((void)QuillhavenManager::shared(), tooEarly);
}

TEST_F(SharedInstancesDeathTest, ASecondInstallationOrAUseAfterTheShutdownEndsTheProcess)
{
    TestPlatform services;
    NoPresence presence;
    const QStringList arguments{QStringLiteral("quillhaven"), QStringLiteral("--login-item")};
    installPlatform(services.platform(), presence, arguments);
    EXPECT_EQ(LaunchContextManager::shared().currentContext(), LaunchContext::loginItem);
    EXPECT_EQ(&LaunchContextManager::shared(), &LaunchContextManager::shared());
    EXPECT_EQ(SupportManager::shared().getMacModel(), services.machine.model);
    EXPECT_DEATH(installPlatform(services.platform(), presence, arguments), "called twice");
    shutDownSharedInstances();
    EXPECT_DEATH((void)LaunchContextManager::shared(), tooEarly);
}

} // namespace
} // namespace quillhaven::test
