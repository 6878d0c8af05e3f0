// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QObject>
#include <QStringList>

namespace quillhaven::testing {

/// Another program that speaks with fprintd, over a connection of its own. Its calls wait for their replies.
class FprintClient : public QObject
{
    Q_OBJECT

public:
    FprintClient();
    ~FprintClient() override;

    [[nodiscard]] bool hasService() const;
    [[nodiscard]] bool hasPolicyService() const;
    [[nodiscard]] bool claim();
    void release();
    /// Enrols a finger for the user who runs this.
    void enrol(const QByteArray &finger);
    void forgetAllFingers();
    /// How the reader takes a finger from now on: "press" or "swipe".
    void setScanType(const QByteArray &type);
    /// Whether the policy service of the bus lets anybody use a reader.
    void setAllowed(bool isAllowed);

    /// One event of the virtual reader, such as "SCAN alice". Waits until somebody has claimed the reader, since it
    /// listens only then. False when nobody did.
    [[nodiscard]] static bool sendToReader(const QByteArray &event);

private Q_SLOTS:
    void onEnrollStatus(const QString &result, bool done);

private:
    QDBusMessage call(const QString &method, const QVariantList &arguments = {});
    /// Throws what the call failed with.
    void require(const QString &method, const QVariantList &arguments = {});

    QDBusConnection m_bus;
    QString m_device;
    QStringList m_enrolStatuses;
};

} // namespace quillhaven::testing
