// SPDX-License-Identifier: GPL-3.0-or-later

#include "support/FakeBiometricAuthenticator.h"

namespace quillhaven::testing {

QCoro::Task<bool> FakeBiometricAuthenticator::canEvaluatePolicy()
{
    co_return isAvailable;
}

QCoro::Task<bool> FakeBiometricAuthenticator::evaluatePolicy(QString reason)
{
    reasons.append(reason);
    co_return matches;
}

} // namespace quillhaven::testing
