// SPDX-License-Identifier: GPL-3.0-or-later

#include "support/FakeBiometricAuthenticator.h"

#include <utility>

namespace quillhaven::test {

QCoro::Task<bool> FakeBiometricAuthenticator::canEvaluatePolicy()
{
    ++availabilityQuestions;
    if (laterAvailability) {
        const Answer<bool> later = *laterAvailability;
        co_return co_await later;
    }
    co_return isAvailable;
}

QCoro::Task<bool> FakeBiometricAuthenticator::evaluatePolicy(QString reason)
{
    reasons.append(reason);
    if (!waitsForFinger || !isAvailable) {
        co_return isAvailable &&matches;
    }
    const Answer<bool> finger;
    m_waiting = finger;
    setPrompt(true, reason, QStringLiteral("Place your finger on the reader"));
    co_return co_await finger;
}

void FakeBiometricAuthenticator::decide(bool isMatch)
{
    setPrompt(false, {}, {});
    if (const auto waiting = std::exchange(m_waiting, std::nullopt)) {
        waiting->give(isMatch);
    }
}

} // namespace quillhaven::test
