// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/linux/session/SystemBus.h"

#include "async/Answer.h"
#include "async/OffMainThread.h"

#include <QDBusError>
#include <QDBusPendingCallWatcher>
#include <QUuid>

#include <gio/gio.h>

#include <chrono>
#include <optional>

namespace quillhaven {

namespace {

constexpr std::chrono::seconds answerLimit(2);

struct GlibDeleter
{
    void operator()(GIOStream *stream) const { g_object_unref(stream); }
    void operator()(char *text) const { g_free(text); }
};

/// Whether a bus listens at the address and answers. Asks for the ways to authenticate, which a bus tells anybody, and
/// hangs up. QtDBus has no such question with a limit: its first call waits 25 seconds for a bus that keeps silent, and
/// every other connection of the process with it.
bool isAnswering(const char *address)
{
    const std::unique_ptr<GIOStream, GlibDeleter> stream(
        g_dbus_address_get_stream_sync(address, nullptr, nullptr, nullptr));
    if (!stream || !G_IS_SOCKET_CONNECTION(stream.get())) {
        return false;
    }
    GSocket *socket = g_socket_connection_get_socket(G_SOCKET_CONNECTION(stream.get()));
    g_socket_set_timeout(socket, static_cast<guint>(answerLimit.count()));

    // The D-Bus authentication protocol begins with a zero byte; "AUTH" alone asks for the mechanisms.
    constexpr char question[] = "\0AUTH\r\n";
    if (!g_output_stream_write_all(g_io_stream_get_output_stream(stream.get()), question, sizeof question - 1, nullptr,
                                   nullptr, nullptr)) {
        return false;
    }
    char first = 0;
    return g_input_stream_read(g_io_stream_get_input_stream(stream.get()), &first, 1, nullptr, nullptr) == 1;
}

std::optional<QDBusConnection> connectBlocking()
{
    const std::unique_ptr<char, GlibDeleter> address(
        g_dbus_address_get_for_bus_sync(G_BUS_TYPE_SYSTEM, nullptr, nullptr));
    if (!address || !isAnswering(address.get())) {
        return {};
    }
    const QString name = QUuid::createUuid().toString();
    QDBusConnection connection = QDBusConnection::connectToBus(QString::fromUtf8(address.get()), name);
    if (!connection.isConnected()) {
        QDBusConnection::disconnectFromBus(name);
        return {};
    }
    return connection;
}

bool isUnanswered(const QDBusMessage &reply)
{
    const QDBusError::ErrorType error = QDBusError(reply).type();
    return error == QDBusError::NoReply || error == QDBusError::Timeout || error == QDBusError::TimedOut;
}

} // namespace

QCoro::Task<std::shared_ptr<SystemBus>> SystemBus::connect(QThreadPool &pool)
{
    const std::optional<QDBusConnection> connection = co_await offMainThread(pool, connectBlocking);
    co_return connection ? std::make_shared<SystemBus>(*connection) : nullptr;
}

SystemBus::~SystemBus()
{
    QDBusConnection::disconnectFromBus(m_connection.name());
}

QCoro::Task<QDBusMessage> SystemBus::call(std::shared_ptr<SystemBus> bus, QDBusMessage message)
{
    constexpr std::chrono::milliseconds limit = answerLimit;
    const Answer<QDBusMessage> answer;
    const QDBusPendingCall pending = bus->m_connection.asyncCall(message, static_cast<int>(limit.count()));
    if (pending.isFinished()) {
        // So ends a call over a lost connection; a watcher would never report it.
        answer.give(pending.reply());
    } else {
        auto *watcher = new QDBusPendingCallWatcher(pending);
        QObject::connect(watcher, &QDBusPendingCallWatcher::finished, watcher, [answer, watcher] {
            answer.give(watcher->reply());
            watcher->deleteLater();
        });
    }
    QDBusMessage reply = co_await answer;
    if (isUnanswered(reply)) {
        bus->m_hasUnansweredCall = true;
    }
    co_return reply;
}

} // namespace quillhaven
