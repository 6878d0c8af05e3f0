// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/linux/session/BusConnection.h"

#include "async/Answer.h"
#include "async/OffMainThread.h"

#include <QDBusError>
#include <QDBusPendingCallWatcher>
#include <QFile>
#include <QFileInfo>
#include <QUuid>

#include <gio/gio.h>

#include <optional>

namespace quillhaven {

namespace {

using std::chrono::milliseconds;

struct GlibDeleter
{
    void operator()(char *text) const { g_free(text); }
    void operator()(GCancellable *cancellable) const { g_object_unref(cancellable); }
    void operator()(GMainContext *context) const { g_main_context_unref(context); }
    void operator()(GSource *source) const { g_source_unref(source); }
};
template <typename T>
using Glib = std::unique_ptr<T, GlibDeleter>;

struct Greeting
{
    bool isOver = false;
    bool isAnswered = false;
};

void endGreeting(GObject * /*source*/, GAsyncResult *result, gpointer greeting)
{
    GDBusConnection *connection = g_dbus_connection_new_for_address_finish(result, nullptr);
    *static_cast<Greeting *>(greeting) = {.isOver = true, .isAnswered = connection != nullptr};
    g_clear_object(&connection);
}

gboolean cancel(gpointer cancellable)
{
    g_cancellable_cancel(G_CANCELLABLE(cancellable));
    return G_SOURCE_REMOVE;
}

/// Whether a bus listens at the address and lets this user in. QtDBus cannot be told how long to wait for that: its
/// first call waits 25 seconds for a bus that keeps silent, and every other connection of the process with it.
bool isAnswering(const char *address, milliseconds limit)
{
    const Glib<GMainContext> context(g_main_context_new());
    const Glib<GCancellable> cancellable(g_cancellable_new());
    const Glib<GSource> timeout(g_timeout_source_new(static_cast<guint>(limit.count())));
    g_source_set_callback(timeout.get(), cancel, cancellable.get(), nullptr);
    g_source_attach(timeout.get(), context.get());

    Greeting greeting;
    g_main_context_push_thread_default(context.get());
    g_dbus_connection_new_for_address(address, G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT, nullptr,
                                      cancellable.get(), endGreeting, &greeting);
    while (!greeting.isOver) {
        g_main_context_iteration(context.get(), true);
    }
    g_main_context_pop_thread_default(context.get());
    g_source_destroy(timeout.get());
    return greeting.isAnswered;
}

/// Empty when the session has no bus.
QByteArray addressOfSessionBus()
{
    QByteArray address = qgetenv("DBUS_SESSION_BUS_ADDRESS");
    const QByteArray runtime = qgetenv("XDG_RUNTIME_DIR");
    const QByteArray socket = runtime + "/bus";
    if (!address.isEmpty() || runtime.isEmpty() || !QFileInfo::exists(QFile::decodeName(socket))) {
        return address;
    }
    const Glib<char> escaped(g_dbus_address_escape_value(socket.constData()));
    return QByteArrayLiteral("unix:path=") + escaped.get();
}

QByteArray addressOf(MessageBus bus)
{
    if (bus == MessageBus::Session) {
        return addressOfSessionBus(); // GIO would start a bus where there is none
    }
    const Glib<char> address(g_dbus_address_get_for_bus_sync(G_BUS_TYPE_SYSTEM, nullptr, nullptr));
    return address.get();
}

std::optional<QDBusConnection> connectBlocking(MessageBus bus, milliseconds limit)
{
    const QByteArray address = addressOf(bus);
    if (address.isEmpty() || !isAnswering(address.constData(), limit)) {
        return {};
    }
    const QString name = QUuid::createUuid().toString();
    QDBusConnection connection = QDBusConnection::connectToBus(QString::fromUtf8(address), name);
    if (!connection.isConnected()) {
        QDBusConnection::disconnectFromBus(name);
        return {};
    }
    return connection;
}

} // namespace

bool isUnanswered(const QDBusMessage &reply)
{
    const QDBusError::ErrorType error = QDBusError(reply).type();
    return error == QDBusError::NoReply || error == QDBusError::Timeout || error == QDBusError::TimedOut;
}

bool hasSessionBus()
{
    return !addressOfSessionBus().isEmpty();
}

QCoro::Task<std::shared_ptr<BusConnection>> BusConnection::open(QThreadPool &pool, MessageBus bus,
                                                                milliseconds answerLimit)
{
    auto connect = [bus, answerLimit] { return connectBlocking(bus, answerLimit); };
    const std::optional<QDBusConnection> connection = co_await offMainThread(pool, std::move(connect));
    co_return connection ? std::make_shared<BusConnection>(*connection, answerLimit) : nullptr;
}

BusConnection::BusConnection(const QDBusConnection &connection, milliseconds answerLimit)
    : m_connection(connection), m_answerLimit(answerLimit)
{
}

BusConnection::~BusConnection()
{
    QDBusConnection::disconnectFromBus(m_connection.name());
}

QCoro::Task<QDBusMessage> BusConnection::call(std::shared_ptr<BusConnection> bus, QDBusMessage message)
{
    const milliseconds limit = bus->m_answerLimit;
    return call(std::move(bus), message, limit);
}

QCoro::Task<QDBusMessage> BusConnection::call(std::shared_ptr<BusConnection> bus, QDBusMessage message,
                                              milliseconds limit)
{
    const Answer<QDBusMessage> answer;
    const QDBusPendingCall pending = bus->m_connection.asyncCall(message, static_cast<int>(limit.count()));
    if (pending.isFinished()) {
        // A call over a lost connection ends like this; a watcher would never report it.
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
