// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "platform/BiometricAuthenticator.h"

#include <QThreadPool>

#include <memory>

namespace quillhaven {

class FprintVerification;
class BusConnection;

/// The check of the user's finger by fprintd, over the system bus. A machine without a bus, without fprintd, without a
/// reader or without an enrolled finger cannot evaluate. A call that fprintd leaves unanswered fails after two seconds,
/// while the wait for the finger itself has no limit: the prompt offers to cancel it.
class FprintAuthenticator : public BiometricAuthenticator
{
    Q_OBJECT

public:
    explicit FprintAuthenticator(QObject *parent = nullptr);
    /// Cancels a running evaluation.
    ~FprintAuthenticator() override;

    [[nodiscard]] QCoro::Task<bool> canEvaluatePolicy() override;
    /// False at once while another evaluation runs. One that begins right after a cancel waits until the reader is
    /// free.
    [[nodiscard]] QCoro::Task<bool> evaluatePolicy(QString reason) override;
    void cancel() override;

private:
    [[nodiscard]] QCoro::Task<std::shared_ptr<BusConnection>> systemBus();

    QThreadPool m_connecting; ///< of its own, so that file and cipher work does not hold up the answer
    std::shared_ptr<BusConnection> m_bus;
    std::shared_ptr<FprintVerification> m_verification; ///< the running one, or the last
};

} // namespace quillhaven
