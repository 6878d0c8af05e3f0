// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "platform/BiometricAuthenticator.h"

#include <QStringList>

namespace quillhaven::testing {

/// A fingerprint reader with a fixed answer.
class FakeBiometricAuthenticator : public BiometricAuthenticator
{
    Q_OBJECT

public:
    [[nodiscard]] QCoro::Task<bool> canEvaluatePolicy() override;
    [[nodiscard]] QCoro::Task<bool> evaluatePolicy(QString reason) override;
    void cancel() override {}

    bool isAvailable = true;
    bool matches = true;
    QStringList reasons;
};

} // namespace quillhaven::testing
