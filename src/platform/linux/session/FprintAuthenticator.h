// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "platform/BiometricAuthenticator.h"

#include "async/Answer.h"

#include <QPointer>
#include <QThreadPool>
#include <QTimer>

#include <chrono>
#include <memory>
#include <optional>

namespace quillhaven {

class FprintVerification;
class BusConnection;

/// The check of the user's finger by fprintd, over the system bus. A machine without a bus, without fprintd, without a
/// reader or without an enrolled finger cannot evaluate. A call that fprintd leaves unanswered fails after two seconds,
/// but its start and the opening of the reader may take 25, as long as the bus itself waits. The wait for the finger
/// has no limit: the prompt offers to cancel it.
class FprintAuthenticator : public BiometricAuthenticator
{
    Q_OBJECT

public:
    /// How long to wait for fprintd to start, and for the reader to open.
    static constexpr std::chrono::seconds defaultStartLimit{25};

    explicit FprintAuthenticator(std::chrono::milliseconds startLimit = defaultStartLimit, QObject *parent = nullptr);
    /// Cancels what is running.
    ~FprintAuthenticator() override;

    [[nodiscard]] QCoro::Task<bool> canEvaluatePolicy() override;
    [[nodiscard]] QCoro::Task<bool> hasEnrolledFinger() override;
    /// False at once while another evaluation runs. One that begins right after a cancel waits until the reader is
    /// free.
    [[nodiscard]] QCoro::Task<bool> evaluatePolicy(QString reason) override;
    void cancel() override;

private:
    /// Asks fprintd for an enrolled finger. Not a step of `canEvaluatePolicy`, which a cancel ends before fprintd
    /// answers.
    [[nodiscard]] static QCoro::Task<> look(QPointer<FprintAuthenticator> self, Answer<bool> canEvaluate);
    [[nodiscard]] static QCoro::Task<bool> findEnrolledFinger(std::shared_ptr<BusConnection> bus,
                                                              std::chrono::milliseconds startLimit);
    void endLook(const Answer<bool> &canEvaluate, bool result);
    [[nodiscard]] bool isEvaluating() const;
    [[nodiscard]] QCoro::Task<std::shared_ptr<BusConnection>> systemBus();
    /// Runs the verification on the bus, after the former one has given the reader back.
    [[nodiscard]] static QCoro::Task<> verify(QPointer<FprintAuthenticator> self,
                                              std::shared_ptr<FprintVerification> verification,
                                              std::shared_ptr<FprintVerification> former);

    std::chrono::milliseconds m_startLimit;
    QThreadPool m_connecting;                  ///< of its own, so that file and cipher work does not hold up the answer
    QTimer m_untilWaiting;                     ///< runs from the start of a look
    std::optional<Answer<bool>> m_canEvaluate; ///< of the running look, or the last
    std::shared_ptr<BusConnection> m_bus;
    std::shared_ptr<FprintVerification> m_verification; ///< the running one, or the last
};

} // namespace quillhaven
