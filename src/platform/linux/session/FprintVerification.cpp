// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/linux/session/FprintVerification.h"

#include <QDBusObjectPath>
#include <QDBusVariant>

namespace quillhaven {

namespace {

const QString deviceInterface = QStringLiteral("net.reactivated.Fprint.Device");
const QString busPath = QStringLiteral("/org/freedesktop/DBus");
const QString busInterface = QStringLiteral("org.freedesktop.DBus");

bool isReply(const QDBusMessage &message)
{
    return message.type() == QDBusMessage::ReplyMessage;
}

QString firstHint(bool isSwiped)
{
    return isSwiped ? QStringLiteral("Swipe your finger across the reader")
                    : QStringLiteral("Place your finger on the reader");
}

/// The sentence after a scan that fprintd could not use.
QString retryHint(const QString &status, bool isSwiped)
{
    if (status == QLatin1String("verify-swipe-too-short")) {
        return isSwiped ? QStringLiteral("The swipe was too short. Swipe your whole finger across the reader")
                        : QStringLiteral("That was too short. Hold your finger on the reader a little longer");
    }
    if (status == QLatin1String("verify-too-fast")) {
        return isSwiped ? QStringLiteral("That was too fast. Swipe your finger more slowly")
                        : QStringLiteral("That was too fast. Hold your finger on the reader a little longer");
    }
    if (status == QLatin1String("verify-finger-not-centered")) {
        return isSwiped ? QStringLiteral("Your finger was not in the middle. Swipe it across the middle of the reader")
                        : QStringLiteral("Your finger was not in the middle. Place it on the middle of the reader");
    }
    if (status == QLatin1String("verify-remove-and-retry")) {
        return QStringLiteral("Lift your finger off the reader, then try again");
    }
    return isSwiped ? QStringLiteral("That did not work. Swipe your finger across the reader again")
                    : QStringLiteral("That did not work. Place your finger on the reader again");
}

} // namespace

QCoro::Task<std::optional<FprintDevice>> FprintDevice::findDefault(std::shared_ptr<BusConnection> bus,
                                                                   std::chrono::milliseconds startLimit)
{
    const QDBusMessage question = QDBusMessage::createMethodCall(
        QStringLiteral("net.reactivated.Fprint"), QStringLiteral("/net/reactivated/Fprint/Manager"),
        QStringLiteral("net.reactivated.Fprint.Manager"), QStringLiteral("GetDefaultDevice"));
    const QDBusMessage reply = co_await BusConnection::call(bus, question, startLimit);
    const QString path = reply.arguments().value(0).value<QDBusObjectPath>().path();
    if (!isReply(reply) || path.isEmpty()) {
        co_return std::nullopt;
    }
    co_return FprintDevice{.owner = reply.service(), .path = path};
}

QDBusMessage FprintDevice::call(const QString &method, const QVariantList &arguments) const
{
    QDBusMessage message = QDBusMessage::createMethodCall(owner, path, deviceInterface, method);
    message.setArguments(arguments);
    return message;
}

FprintVerification::FprintVerification(std::chrono::milliseconds startLimit) : m_startLimit(startLimit)
{
    m_untilWaiting.setSingleShot(true);
    connect(&m_untilWaiting, &QTimer::timeout, this, [this] { Q_EMIT hintChanged(waitingHint); });
    m_untilWaiting.start(waitingDelay);
}

void FprintVerification::cancel()
{
    decide(false);
    if (!m_isClaimed) {
        m_result.give(false); // fprintd may take long to answer, and what it has opened is given back then
    }
}

QCoro::Task<> FprintVerification::run(std::shared_ptr<FprintVerification> verification,
                                      std::shared_ptr<BusConnection> bus)
{
    // The empty name means the user who asks.
    const QVariantList thisUser = {QString()};
    std::optional<FprintDevice> device;
    if (bus && !verification->isDecided()) {
        device = co_await FprintDevice::findDefault(bus, verification->m_startLimit);
    }
    if (device && !verification->isDecided()) {
        const QDBusMessage claim = device->call(QStringLiteral("Claim"), thisUser);
        verification->m_isClaimed = isReply(co_await BusConnection::call(bus, claim, verification->m_startLimit));
    }
    if (verification->m_isClaimed) {
        co_await verification->verify(bus, *device);
        // An unplugged reader has nothing to give back; the failure says nothing new.
        co_await BusConnection::call(bus, device->call(QStringLiteral("Release")));
    }
    verification->decide(false);
    const bool matches = co_await verification->m_outcome;
    verification->m_result.give(matches);
    verification->m_closed.give(true);
}

QCoro::Task<> FprintVerification::verify(std::shared_ptr<BusConnection> bus, FprintDevice device)
{
    m_isSwiped = co_await readIsSwiped(bus, device);
    if (isDecided()) {
        co_return;
    }
    bool isWaiting = listen(bus->connection(), device);
    if (isWaiting) {
        const QVariantList anyFinger = {QStringLiteral("any")};
        isWaiting = isReply(co_await BusConnection::call(bus, device.call(QStringLiteral("VerifyStart"), anyFinger)));
    }
    if (!isWaiting) {
        decide(false);
    } else if (!isDecided()) {
        m_untilWaiting.stop();
        Q_EMIT hintChanged(firstHint(m_isSwiped));
    }
    const Answer<bool> outcome = m_outcome;
    static_cast<void>(co_await outcome);
    // VerifyStop makes fprintd report a mismatch for the finger that never came.
    stopListening(bus->connection(), device);
    co_await BusConnection::call(bus, device.call(QStringLiteral("VerifyStop")));
}

QCoro::Task<bool> FprintVerification::readIsSwiped(std::shared_ptr<BusConnection> bus, FprintDevice device)
{
    QDBusMessage question = QDBusMessage::createMethodCall(
        device.owner, device.path, QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Get"));
    question.setArguments({deviceInterface, QStringLiteral("scan-type")});
    const QDBusMessage reply = co_await BusConnection::call(bus, question);
    co_return reply.arguments().value(0).value<QDBusVariant>().variant().toString() == QLatin1String("swipe");
}

bool FprintVerification::listen(QDBusConnection &connection, const FprintDevice &device)
{
    // By the owner's own name: under the well-known one QtDBus asks the bus who that is, and waits.
    return connection.connect(device.owner, device.path, deviceInterface, QStringLiteral("VerifyStatus"), this,
                              SLOT(onVerifyStatus(QString, bool))) &&
           connection.connect({}, busPath, busInterface, QStringLiteral("NameOwnerChanged"), {device.owner},
                              QStringLiteral("sss"), this, SLOT(onServiceLost())) &&
           connection.connect({}, busPath + QStringLiteral("/Local"), busInterface + QStringLiteral(".Local"),
                              QStringLiteral("Disconnected"), this, SLOT(onServiceLost()));
}

void FprintVerification::stopListening(QDBusConnection &connection, const FprintDevice &device)
{
    connection.disconnect(device.owner, device.path, deviceInterface, QStringLiteral("VerifyStatus"), this,
                          SLOT(onVerifyStatus(QString, bool)));
    connection.disconnect({}, busPath, busInterface, QStringLiteral("NameOwnerChanged"), {device.owner},
                          QStringLiteral("sss"), this, SLOT(onServiceLost()));
    connection.disconnect({}, busPath + QStringLiteral("/Local"), busInterface + QStringLiteral(".Local"),
                          QStringLiteral("Disconnected"), this, SLOT(onServiceLost()));
}

void FprintVerification::onVerifyStatus(const QString &result, bool done)
{
    if (done) {
        decide(result == QLatin1String("verify-match"));
    } else if (!isDecided()) {
        Q_EMIT hintChanged(retryHint(result, m_isSwiped));
    }
}

void FprintVerification::decide(bool matches)
{
    if (m_outcome.give(matches)) {
        m_untilWaiting.stop();
        Q_EMIT decided();
    }
}

} // namespace quillhaven
