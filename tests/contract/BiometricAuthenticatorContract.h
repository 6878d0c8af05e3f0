// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "platform/BiometricAuthenticator.h"
#include "support/PrintText.h"
#include "support/RunTask.h"

#include <gtest/gtest.h>

namespace quillhaven::test {

/// The tests that every check of a fingerprint must pass. Instantiate it with a type that has a `BiometricAuthenticator
/// &authenticator()`, for which a finger of the user is enrolled, and the events of its reader: `placeFinger()`,
/// `placeOtherFinger()` and `failReader()` while it waits, and `forgetFingers()`.
template <typename Fixture>
class BiometricAuthenticatorContract : public ::testing::Test
{
protected:
    [[nodiscard]] BiometricAuthenticator &authenticator() { return reader.authenticator(); }
    [[nodiscard]] bool canEvaluate() { return runTask(authenticator().canEvaluatePolicy()); }
    /// Begins an evaluation and waits until the reader does.
    [[nodiscard]] RunningTask<bool> begin()
    {
        RunningTask<bool> evaluation(authenticator().evaluatePolicy(reason));
        EXPECT_TRUE(spinUntil([this] { return authenticator().isPrompting(); }));
        EXPECT_FALSE(evaluation.isFinished());
        return evaluation;
    }
    void expectNoPrompt()
    {
        EXPECT_FALSE(authenticator().isPrompting());
        EXPECT_EQ(authenticator().reason(), QString());
        EXPECT_EQ(authenticator().hint(), QString());
    }

    const QString reason = QStringLiteral("Unlock protected item");
    Fixture reader;
};

TYPED_TEST_SUITE_P(BiometricAuthenticatorContract);

TYPED_TEST_P(BiometricAuthenticatorContract, ItCanEvaluateWhileAFingerIsEnrolled)
{
    EXPECT_TRUE(this->canEvaluate());
    this->reader.forgetFingers();
    EXPECT_FALSE(this->canEvaluate());
    EXPECT_FALSE(runTask(this->authenticator().evaluatePolicy(this->reason)));
    this->expectNoPrompt();
}

TYPED_TEST_P(BiometricAuthenticatorContract, ThePromptSaysWhyAndWhatToDoWhileTheReaderWaits)
{
    this->expectNoPrompt();
    int changes = 0;
    QObject::connect(&this->authenticator(), &BiometricAuthenticator::promptChanged, &this->authenticator(),
                     [&changes] { ++changes; });
    const auto evaluation = this->begin();
    EXPECT_GT(changes, 0);
    EXPECT_EQ(this->authenticator().reason(), this->reason);
    EXPECT_NE(this->authenticator().hint(), QString());
    const int changesBefore = changes;
    this->reader.placeFinger();
    EXPECT_TRUE(evaluation.wait());
    EXPECT_GT(changes, changesBefore);
    this->expectNoPrompt();
    this->authenticator().disconnect();
}

TYPED_TEST_P(BiometricAuthenticatorContract, AnotherFingerIsFalseAndTheNextEvaluationCounts)
{
    const auto first = this->begin();
    this->reader.placeOtherFinger();
    EXPECT_FALSE(first.wait());
    this->expectNoPrompt();
    const auto second = this->begin();
    this->reader.placeFinger();
    EXPECT_TRUE(second.wait());
}

TYPED_TEST_P(BiometricAuthenticatorContract, AFailingReaderIsFalse)
{
    const auto evaluation = this->begin();
    this->reader.failReader();
    EXPECT_FALSE(evaluation.wait());
    this->expectNoPrompt();
}

TYPED_TEST_P(BiometricAuthenticatorContract, ACancelEndsARunningEvaluationWithFalse)
{
    const auto cancelled = this->begin();
    this->authenticator().cancel();
    EXPECT_FALSE(cancelled.wait());
    this->expectNoPrompt();
    const auto next = this->begin();
    this->reader.placeFinger();
    EXPECT_TRUE(next.wait());
}

TYPED_TEST_P(BiometricAuthenticatorContract, ACancelDoesNothingWhenNoneRuns)
{
    this->authenticator().cancel();
    this->expectNoPrompt();
    const auto evaluation = this->begin();
    this->reader.placeFinger();
    EXPECT_TRUE(evaluation.wait());
    this->authenticator().cancel();
    this->expectNoPrompt();
}

REGISTER_TYPED_TEST_SUITE_P(BiometricAuthenticatorContract, ItCanEvaluateWhileAFingerIsEnrolled,
                            ThePromptSaysWhyAndWhatToDoWhileTheReaderWaits,
                            AnotherFingerIsFalseAndTheNextEvaluationCounts, AFailingReaderIsFalse,
                            ACancelEndsARunningEvaluationWithFalse, ACancelDoesNothingWhenNoneRuns);

} // namespace quillhaven::test
