// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QObject>
#include <QStringList>

namespace quillhaven::test {

/// Another client of fprintd, with its own connection. Its calls block until they are answered.
class FprintClient : public QObject
{
    Q_OBJECT

public:
    FprintClient();
    ~FprintClient() override;

    [[nodiscard]] bool hasService() const;
    [[nodiscard]] bool hasPolicyService() const;
    /// Whether fprintd offers a reader within this time, in milliseconds.
    [[nodiscard]] bool findsReader(qint64 limitMs);
    [[nodiscard]] bool claim();
    void release();
    /// Enrols a finger for the current user.
    void enrol(const QByteArray &finger);
    void forgetAllFingers();
    /// Sets how the reader scans a finger: "press" or "swipe".
    void setScanType(const QByteArray &type);
    /// Sets whether the policy service of the bus allows the use of a reader.
    void setAllowed(bool isAllowed);

    /// Sends an event to the virtual reader, such as "SCAN alice". Waits until a client has claimed the reader, since
    /// it listens only then. Returns false if no client does.
    [[nodiscard]] static bool sendToReader(const QByteArray &event);

private Q_SLOTS:
    void onEnrollStatus(const QString &result, bool done);

private:
    QDBusMessage call(const QString &method, const QVariantList &arguments = {});
    /// Throws the error of the call.
    void require(const QString &method, const QVariantList &arguments = {});

    QDBusConnection m_bus;
    QString m_device;
    QStringList m_enrolStatuses;
};

} // namespace quillhaven::test
