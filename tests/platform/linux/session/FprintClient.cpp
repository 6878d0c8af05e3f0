// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/linux/session/FprintClient.h"

#include "support/RunTask.h"

#include <QDBusConnectionInterface>
#include <QDBusObjectPath>
#include <QDBusVariant>
#include <QLocalSocket>
#include <QUuid>

#include <stdexcept>

namespace quillhaven::test {

namespace {

const QString service = QStringLiteral("net.reactivated.Fprint");
const QString deviceInterface = QStringLiteral("net.reactivated.Fprint.Device");

} // namespace

FprintClient::FprintClient()
    : m_bus(QDBusConnection::connectToBus(qEnvironmentVariable("DBUS_SYSTEM_BUS_ADDRESS"),
                                          QUuid::createUuid().toString()))
{
}

FprintClient::~FprintClient()
{
    QDBusConnection::disconnectFromBus(m_bus.name());
}

bool FprintClient::hasService() const
{
    return m_bus.interface()->isServiceRegistered(service);
}

bool FprintClient::hasPolicyService() const
{
    return m_bus.interface()->isServiceRegistered(QStringLiteral("org.freedesktop.PolicyKit1"));
}

bool FprintClient::findsReader(qint64 limitMs)
{
    const QDBusMessage question =
        QDBusMessage::createMethodCall(service, QStringLiteral("/net/reactivated/Fprint/Manager"),
                                       service + QStringLiteral(".Manager"), QStringLiteral("GetDefaultDevice"));
    // The service has its name before it has found its readers.
    const auto find = [this, &question] {
        m_device = m_bus.call(question).arguments().value(0).value<QDBusObjectPath>().path();
        return !m_device.isEmpty();
    };
    return test::spinUntil(find, limitMs);
}

QDBusMessage FprintClient::call(const QString &method, const QVariantList &arguments)
{
    if (!findsReader(test::patience)) {
        throw std::runtime_error("fprintd offers no reader");
    }
    QDBusMessage message = QDBusMessage::createMethodCall(service, m_device, deviceInterface, method);
    message.setArguments(arguments);
    return m_bus.call(message);
}

void FprintClient::require(const QString &method, const QVariantList &arguments)
{
    const QDBusMessage reply = call(method, arguments);
    if (reply.type() != QDBusMessage::ReplyMessage) {
        throw std::runtime_error((method + QStringLiteral(": ") + reply.errorMessage()).toStdString());
    }
}

bool FprintClient::claim()
{
    return call(QStringLiteral("Claim"), {QString()}).type() == QDBusMessage::ReplyMessage;
}

void FprintClient::release()
{
    require(QStringLiteral("Release"));
}

void FprintClient::enrol(const QByteArray &finger)
{
    require(QStringLiteral("Claim"), {QString()});
    m_enrolStatuses.clear();
    m_bus.connect(service, m_device, deviceInterface, QStringLiteral("EnrollStatus"), this,
                  SLOT(onEnrollStatus(QString, bool)));
    require(QStringLiteral("EnrollStart"), {QStringLiteral("right-index-finger")});
    do {
        const auto known = m_enrolStatuses.size();
        if (!sendToReader("SCAN " + finger) || !spinUntil([&] { return m_enrolStatuses.size() > known; })) {
            throw std::runtime_error("the reader did not answer a scan");
        }
    } while (m_enrolStatuses.last() == QStringLiteral("enroll-stage-passed"));
    require(QStringLiteral("EnrollStop"));
    require(QStringLiteral("Release"));
    if (m_enrolStatuses.last() != QStringLiteral("enroll-completed")) {
        throw std::runtime_error("the finger could not be enrolled: " + m_enrolStatuses.last().toStdString());
    }
}

void FprintClient::forgetAllFingers()
{
    require(QStringLiteral("Claim"), {QString()});
    // It fails if there is no finger, which is fine.
    call(QStringLiteral("DeleteEnrolledFingers2"));
    require(QStringLiteral("Release"));
}

void FprintClient::setScanType(const QByteArray &type)
{
    require(QStringLiteral("Claim"), {QString()});
    const QVariantList asked = {deviceInterface, QStringLiteral("scan-type")};
    QDBusMessage question = QDBusMessage::createMethodCall(
        service, m_device, QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Get"));
    question.setArguments(asked);
    const bool isSet = sendToReader("SET_SCAN_TYPE " + type) && spinUntil([&] {
                           const QVariant answer = m_bus.call(question).arguments().value(0);
                           return answer.value<QDBusVariant>().variant().toString() == QString::fromLatin1(type);
                       });
    require(QStringLiteral("Release"));
    if (!isSet) {
        throw std::runtime_error("the reader does not change how it takes a finger");
    }
}

void FprintClient::setAllowed(bool isAllowed)
{
    QDBusMessage message = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.PolicyKit1"), QStringLiteral("/org/freedesktop/PolicyKit1/Authority"),
        QStringLiteral("org.freedesktop.DBus.Mock"), QStringLiteral("AllowUnknown"));
    message.setArguments({isAllowed});
    if (m_bus.call(message).type() != QDBusMessage::ReplyMessage) {
        throw std::runtime_error("the policy service does not answer");
    }
}

bool FprintClient::sendToReader(const QByteArray &event)
{
    return spinUntil([&event] {
        QLocalSocket reader;
        reader.connectToServer(qEnvironmentVariable("FP_VIRTUAL_DEVICE"));
        return reader.waitForConnected() && reader.write(event) == event.size() && reader.waitForBytesWritten();
    });
}

void FprintClient::onEnrollStatus(const QString &result, bool /*done*/)
{
    m_enrolStatuses.append(result);
}

} // namespace quillhaven::test
