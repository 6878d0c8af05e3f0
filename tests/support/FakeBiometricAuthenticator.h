// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "async/Answer.h"
#include "platform/BiometricAuthenticator.h"

#include <QStringList>

#include <optional>

namespace quillhaven::test {

/// A fingerprint reader with a fixed answer or, if it waits for a finger, one that prompts until the test decides.
class FakeBiometricAuthenticator : public BiometricAuthenticator
{
    Q_OBJECT

public:
    using BiometricAuthenticator::setPrompt;

    [[nodiscard]] QCoro::Task<bool> canEvaluatePolicy() override;
    [[nodiscard]] QCoro::Task<bool> hasEnrolledFinger() override { co_return isAvailable; }
    [[nodiscard]] QCoro::Task<bool> evaluatePolicy(QString reason) override;
    void cancel() override { decide(false); }

    /// Ends an evaluation that waits for a finger.
    void decide(bool isMatch);

    bool isAvailable = true;
    /// Set by a test whose reader needs time: the answer to `canEvaluatePolicy` instead of `isAvailable`.
    std::optional<Answer<bool>> laterAvailability;
    int availabilityQuestions = 0;
    bool matches = true;
    bool waitsForFinger = false;
    QStringList reasons;

private:
    std::optional<Answer<bool>> m_waiting;
};

} // namespace quillhaven::test
