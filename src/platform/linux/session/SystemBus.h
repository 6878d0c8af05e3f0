// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QCoroTask>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QString>
#include <QThreadPool>
#include <QVariantList>

#include <memory>

namespace quillhaven {

/// A connection of our own to the system bus. With the last holder it closes, and the services of the bus then drop
/// what they kept for this client. Main thread only.
class SystemBus
{
public:
    /// Connects on a thread of `pool`, since connecting waits for the bus. Null when there is none, or when it does not
    /// answer within two seconds.
    [[nodiscard]] static QCoro::Task<std::shared_ptr<SystemBus>> connect(QThreadPool &pool);

    explicit SystemBus(const QDBusConnection &connection) : m_connection(connection) {}
    ~SystemBus();
    SystemBus(const SystemBus &) = delete;
    SystemBus &operator=(const SystemBus &) = delete;

    [[nodiscard]] QDBusConnection &connection() { return m_connection; }
    /// Whether the bus is there and every call so far was answered in time.
    [[nodiscard]] bool isUsable() const { return !m_hasUnansweredCall && m_connection.isConnected(); }

    /// Calls a method and returns the reply, or the error it ended with; two seconds without a reply are an error too.
    /// Unlike an interface object it asks for no description of the service first, which would block.
    [[nodiscard]] static QCoro::Task<QDBusMessage> call(std::shared_ptr<SystemBus> bus, QDBusMessage message);

private:
    QDBusConnection m_connection;
    bool m_hasUnansweredCall = false;
};

} // namespace quillhaven
