// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/linux/session/FprintAuthenticator.h"

#include "async/Jobs.h"
#include "platform/linux/session/FprintVerification.h"

#include <utility>

namespace quillhaven {

namespace {

constexpr std::chrono::seconds answerLimit(2);

} // namespace

FprintAuthenticator::FprintAuthenticator(std::chrono::milliseconds startLimit, QObject *parent)
    : BiometricAuthenticator(parent), m_startLimit(startLimit)
{
    m_connecting.setMaxThreadCount(1);
    m_untilWaiting.setSingleShot(true);
    m_untilWaiting.setInterval(FprintVerification::waitingDelay);
    connect(&m_untilWaiting, &QTimer::timeout, this, [this] {
        if (!isEvaluating()) {
            setPrompt(true, {}, FprintVerification::waitingHint);
        }
    });
}

FprintAuthenticator::~FprintAuthenticator()
{
    if (m_canEvaluate) {
        m_canEvaluate->give(false);
    }
    if (m_verification) {
        m_verification->disconnect(this);
        m_verification->cancel();
    }
}

QCoro::Task<bool> FprintAuthenticator::canEvaluatePolicy()
{
    if (!m_canEvaluate || m_canEvaluate->isGiven()) {
        m_canEvaluate.emplace();
        m_untilWaiting.start();
        startJob([self = QPointer(this), canEvaluate = *m_canEvaluate] { return look(self, canEvaluate); });
    }
    const Answer<bool> canEvaluate = *m_canEvaluate;
    co_return co_await canEvaluate;
}

QCoro::Task<> FprintAuthenticator::look(QPointer<FprintAuthenticator> self, Answer<bool> canEvaluate)
{
    bool result = false;
    if (self && !canEvaluate.isGiven()) {
        const std::chrono::milliseconds startLimit = self->m_startLimit;
        const std::shared_ptr<BusConnection> bus = co_await self->systemBus();
        result = co_await findEnrolledFinger(bus, startLimit);
    }
    if (self) {
        self->endLook(canEvaluate, result);
    }
}

QCoro::Task<bool> FprintAuthenticator::findEnrolledFinger(std::shared_ptr<BusConnection> bus,
                                                         std::chrono::milliseconds startLimit)
{
    if (!bus) {
        co_return false;
    }
    const std::optional<FprintDevice> device = co_await FprintDevice::findDefault(bus, startLimit);
    if (!device) {
        co_return false;
    }
    const QVariantList thisUser = {QString()};
    const QDBusMessage reply =
        co_await BusConnection::call(bus, device->call(QStringLiteral("ListEnrolledFingers"), thisUser));
    co_return reply.type() == QDBusMessage::ReplyMessage && !reply.arguments().value(0).toStringList().isEmpty();
}

QCoro::Task<bool> FprintAuthenticator::hasEnrolledFinger()
{
    const std::chrono::milliseconds startLimit = m_startLimit;
    const std::shared_ptr<BusConnection> bus = co_await systemBus();
    co_return co_await findEnrolledFinger(bus, startLimit);
}

void FprintAuthenticator::endLook(const Answer<bool> &canEvaluate, bool result)
{
    if (!canEvaluate.give(result)) {
        return; // cancelled before; another one may be running
    }
    m_untilWaiting.stop();
    if (!isEvaluating()) {
        setPrompt(false, {}, {});
    }
}

bool FprintAuthenticator::isEvaluating() const
{
    return m_verification && !m_verification->isDecided();
}

QCoro::Task<bool> FprintAuthenticator::evaluatePolicy(QString reason)
{
    if (isEvaluating()) {
        co_return false;
    }
    const QPointer<FprintAuthenticator> self(this);
    const auto verification = std::make_shared<FprintVerification>(m_startLimit);
    const auto former = std::exchange(m_verification, verification);
    connect(verification.get(), &FprintVerification::hintChanged, this,
            [this, reason](const QString &hint) { setPrompt(true, reason, hint); });
    connect(verification.get(), &FprintVerification::decided, this, [this] { setPrompt(false, {}, {}); });

    startJob([self, verification, former] { return verify(self, verification, former); });
    const Answer<bool> result = verification->result();
    co_return co_await result;
}

QCoro::Task<> FprintAuthenticator::verify(QPointer<FprintAuthenticator> self,
                                          std::shared_ptr<FprintVerification> verification,
                                          std::shared_ptr<FprintVerification> former)
{
    if (former) {
        const Answer<bool> closed = former->closed();
        static_cast<void>(co_await closed);
    }
    std::shared_ptr<BusConnection> bus;
    if (self && !verification->isDecided()) {
        bus = co_await self->systemBus();
    }
    co_await FprintVerification::run(verification, bus);
    bus.reset();
    if (self && self->m_bus && !self->m_bus->isUsable()) {
        // A reader whose release went unanswered is let go by closing the connection that claimed it.
        self->m_bus.reset();
    }
}

void FprintAuthenticator::cancel()
{
    if (m_canEvaluate) {
        endLook(*m_canEvaluate, false);
    }
    if (m_verification) {
        m_verification->cancel();
    }
}

QCoro::Task<std::shared_ptr<BusConnection>> FprintAuthenticator::systemBus()
{
    if (m_bus && m_bus->isUsable()) {
        co_return m_bus;
    }
    const QPointer<FprintAuthenticator> self(this);
    const std::shared_ptr<BusConnection> bus =
        co_await BusConnection::open(m_connecting, MessageBus::System, answerLimit);
    if (self) {
        m_bus = bus;
    }
    co_return bus;
}

} // namespace quillhaven
