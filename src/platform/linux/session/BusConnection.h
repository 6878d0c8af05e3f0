// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QCoroTask>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QThreadPool>

#include <chrono>
#include <memory>

namespace quillhaven {

/// The two message buses of a desktop.
enum class MessageBus { Session, System };

/// Whether the session has a message bus. To be asked before any client connects to it: where there is none, a client
/// starts one, which would belong to nobody.
[[nodiscard]] bool hasSessionBus();

/// Whether a call ended with this error because no reply came in time. A busy service may answer the next call.
[[nodiscard]] bool isUnanswered(const QDBusMessage &reply);

/// A connection of our own to a message bus. It closes with its last holder, and the services of the bus then drop what
/// they kept for this client. Main thread only.
class BusConnection
{
public:
    /// Connects on a thread of `pool`, since connecting waits for the bus. Null when there is none, or when it does not
    /// answer within `answerLimit`, which limits every later call too.
    [[nodiscard]] static QCoro::Task<std::shared_ptr<BusConnection>> open(QThreadPool &pool, MessageBus bus,
                                                                          std::chrono::milliseconds answerLimit);

    BusConnection(const QDBusConnection &connection, std::chrono::milliseconds answerLimit);
    ~BusConnection();
    BusConnection(const BusConnection &) = delete;
    BusConnection &operator=(const BusConnection &) = delete;

    [[nodiscard]] QDBusConnection &connection() { return m_connection; }
    /// Whether the bus is there and every call so far was answered in time.
    [[nodiscard]] bool isUsable() const { return !m_hasUnansweredCall && m_connection.isConnected(); }

    /// Calls a method and returns the reply, or the error it ended with; no reply within the limit is an error too.
    /// Unlike an interface object it asks for no description of the service first, which would block.
    [[nodiscard]] static QCoro::Task<QDBusMessage> call(std::shared_ptr<BusConnection> bus, QDBusMessage message);
    /// The same with a limit of its own, for a call that starts a service or opens a device.
    [[nodiscard]] static QCoro::Task<QDBusMessage> call(std::shared_ptr<BusConnection> bus, QDBusMessage message,
                                                        std::chrono::milliseconds limit);

private:
    QDBusConnection m_connection;
    std::chrono::milliseconds m_answerLimit;
    bool m_hasUnansweredCall = false;
};

} // namespace quillhaven
