// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/linux/session/FprintFixture.h"

namespace quillhaven::test {
namespace {

/// A private reader, with alice's finger enrolled.
class FprintAuthenticatorTest : public FprintFixture
{
protected:
    FprintAuthenticatorTest()
    {
        other.forgetAllFingers();
        other.enrol("alice");
        other.setScanType("press");
    }
    ~FprintAuthenticatorTest() override
    {
        // After every test the reader must be free again.
        const bool isFree = spinUntil([this] { return other.claim(); });
        EXPECT_TRUE(isFree);
        if (isFree) {
            other.release();
        }
        expectNoPrompt();
    }

    FprintClient other;
};

struct Retry
{
    const char *name;
    QByteArray event;
    QString hint;
};

class FprintRetry : public FprintAuthenticatorTest, public ::testing::WithParamInterface<Retry>
{
};

TEST_F(FprintAuthenticatorTest, CanEvaluateWithAnEnrolledFinger)
{
    EXPECT_TRUE(canEvaluatePolicy());
}

TEST_F(FprintAuthenticatorTest, CannotEvaluateWithoutAnEnrolledFinger)
{
    other.forgetAllFingers();
    EXPECT_FALSE(canEvaluatePolicy());
}

TEST_F(FprintAuthenticatorTest, EvaluatingWithoutAnEnrolledFingerReturnsFalse)
{
    other.forgetAllFingers();
    EXPECT_FALSE(evaluatePolicy());
}

TEST_F(FprintAuthenticatorTest, TheEnrolledFingerReturnsTrue)
{
    const auto evaluation = beginEvaluation();
    ASSERT_TRUE(FprintClient::sendToReader("SCAN alice"));
    EXPECT_TRUE(evaluation.wait());
    expectNoPrompt();
}

TEST_F(FprintAuthenticatorTest, AnotherFingerReturnsFalse)
{
    const auto evaluation = beginEvaluation();
    ASSERT_TRUE(FprintClient::sendToReader("SCAN mallory"));
    EXPECT_FALSE(evaluation.wait());
    expectNoPrompt();
}

TEST_F(FprintAuthenticatorTest, AFailingReaderReturnsFalse)
{
    const auto evaluation = beginEvaluation();
    ASSERT_TRUE(FprintClient::sendToReader("ERROR 0"));
    EXPECT_FALSE(evaluation.wait());
    expectNoPrompt();
}

TEST_P(FprintRetry, AnUnusableScanShowsAHintAndTheNextOneIsUsed)
{
    const auto evaluation = beginEvaluation();
    ASSERT_TRUE(FprintClient::sendToReader(GetParam().event));
    expectPrompt(GetParam().hint);
    EXPECT_FALSE(evaluation.isFinished());
    ASSERT_TRUE(FprintClient::sendToReader("SCAN alice"));
    EXPECT_TRUE(evaluation.wait());
}

INSTANTIATE_TEST_SUITE_P(
    Codes, FprintRetry,
    ::testing::Values(
        Retry{"General", "RETRY 0", QStringLiteral("That did not work. Place your finger on the reader again")},
        Retry{"TooShort", "RETRY 1",
              QStringLiteral("That was too short. Hold your finger on the reader a little longer")},
        Retry{"NotCentered", "RETRY 2",
              QStringLiteral("Your finger was not in the middle. Place it on the middle of the reader")},
        Retry{"RemoveFinger", "RETRY 3", QStringLiteral("Lift your finger off the reader, then try again")}),
    [](const ::testing::TestParamInfo<Retry> &info) { return info.param.name; });

TEST_F(FprintAuthenticatorTest, AnUnusableScanFollowedByAnotherFingerReturnsFalse)
{
    const auto evaluation = beginEvaluation();
    ASSERT_TRUE(FprintClient::sendToReader("RETRY 1"));
    expectPrompt(QStringLiteral("That was too short. Hold your finger on the reader a little longer"));
    ASSERT_TRUE(FprintClient::sendToReader("SCAN mallory"));
    EXPECT_FALSE(evaluation.wait());
}

TEST_F(FprintAuthenticatorTest, CancelReturnsFalseAndClosesThePromptImmediately)
{
    const auto evaluation = beginEvaluation();
    authenticator->cancel();
    expectNoPrompt();
    EXPECT_FALSE(evaluation.wait());
}

TEST_F(FprintAuthenticatorTest, CancelBeforeTheReaderWaitsShowsNoPrompt)
{
    int prompts = 0;
    QObject::connect(authenticator.get(), &BiometricAuthenticator::promptChanged, [&prompts] { ++prompts; });
    const RunningTask<bool> evaluation(authenticator->evaluatePolicy(reasonText));
    authenticator->cancel();
    EXPECT_FALSE(evaluation.wait());
    EXPECT_EQ(prompts, 0);
}

TEST_F(FprintAuthenticatorTest, CancelWithoutAnEvaluationDoesNothing)
{
    authenticator->cancel();
    const auto evaluation = beginEvaluation();
    ASSERT_TRUE(FprintClient::sendToReader("SCAN alice"));
    EXPECT_TRUE(evaluation.wait());
    authenticator->cancel();
}

TEST_F(FprintAuthenticatorTest, TheMismatchReportedByAStopDoesNotAffectTheNextEvaluation)
{
    const auto cancelled = beginEvaluation();
    authenticator->cancel();
    const auto evaluation = beginEvaluation();
    EXPECT_TRUE(cancelled.isFinished());
    EXPECT_FALSE(cancelled.wait());
    EXPECT_FALSE(evaluation.isFinished());
    ASSERT_TRUE(FprintClient::sendToReader("SCAN alice"));
    EXPECT_TRUE(evaluation.wait());
}

TEST_F(FprintAuthenticatorTest, CancellingTwiceInARowDoesNotAffectTheThirdEvaluation)
{
    const auto first = beginEvaluation();
    authenticator->cancel();
    const RunningTask<bool> second(authenticator->evaluatePolicy(reasonText));
    authenticator->cancel();
    const auto third = beginEvaluation();
    EXPECT_FALSE(first.wait());
    EXPECT_FALSE(second.wait());
    ASSERT_TRUE(FprintClient::sendToReader("SCAN alice"));
    EXPECT_TRUE(third.wait());
}

TEST_F(FprintAuthenticatorTest, ASecondEvaluationWhileOneIsRunningReturnsFalseAndTheFirstContinues)
{
    const auto first = beginEvaluation();
    EXPECT_FALSE(evaluatePolicy());
    EXPECT_FALSE(first.isFinished());
    expectPrompt(placeFinger);
    ASSERT_TRUE(FprintClient::sendToReader("SCAN alice"));
    EXPECT_TRUE(first.wait());
}

TEST_F(FprintAuthenticatorTest, AReaderInUseByAnotherProgramReturnsFalseWithoutAPrompt)
{
    int prompts = 0;
    QObject::connect(authenticator.get(), &BiometricAuthenticator::promptChanged, [&prompts] { ++prompts; });
    ASSERT_TRUE(other.claim());
    EXPECT_FALSE(evaluatePolicy());
    EXPECT_EQ(prompts, 0);
    other.release();

    const auto evaluation = beginEvaluation();
    ASSERT_TRUE(FprintClient::sendToReader("SCAN alice"));
    EXPECT_TRUE(evaluation.wait());
}

TEST_F(FprintAuthenticatorTest, AUserWithoutPermissionGetsFalse)
{
    other.setAllowed(false);
    EXPECT_FALSE(evaluatePolicy());
    other.setAllowed(true);
}

TEST_F(FprintAuthenticatorTest, ASwipeReaderIsReportedAsSuch)
{
    other.setScanType("swipe");
    const RunningTask<bool> evaluation(authenticator->evaluatePolicy(reasonText));
    expectPrompt(QStringLiteral("Swipe your finger across the reader"));
    ASSERT_TRUE(FprintClient::sendToReader("RETRY 1"));
    expectPrompt(QStringLiteral("The swipe was too short. Swipe your whole finger across the reader"));
    ASSERT_TRUE(FprintClient::sendToReader("SCAN alice"));
    EXPECT_TRUE(evaluation.wait());
}

TEST_F(FprintAuthenticatorTest, TheEventLoopIsNotBlockedWhileTheReaderWaits)
{
    const auto evaluation = beginEvaluation();
    const Ticker ticker;
    EXPECT_TRUE(spinUntil([&] { return ticker.count() >= 50; }));
    EXPECT_FALSE(evaluation.isFinished());
    ASSERT_TRUE(FprintClient::sendToReader("SCAN alice"));
    EXPECT_TRUE(evaluation.wait());
}

TEST_F(FprintAuthenticatorTest, DestroyingItWhileTheReaderWaitsReturnsFalse)
{
    const auto evaluation = beginEvaluation();
    authenticator.reset();
    EXPECT_FALSE(evaluation.wait());
    authenticator = std::make_unique<FprintAuthenticator>();
}

} // namespace
} // namespace quillhaven::test
