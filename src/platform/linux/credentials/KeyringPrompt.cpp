// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/linux/credentials/KeyringPrompt.h"

#include "support/Calls.h"

#include <memory>

namespace quillhaven {

namespace {

constexpr const char *promptInterface = "org.freedesktop.Secret.Prompt";
constexpr int startLimitMs = 10'000;
constexpr guint checkIntervalMs = 500;

using Context = std::unique_ptr<GMainContext, Calls<g_main_context_unref>>;
using Source = std::unique_ptr<GSource, Calls<g_source_unref>>;

/// The wait for one prompt, in a main context of its own.
struct Wait
{
    GDBusConnection *bus = nullptr;
    bool isOver = false;
};

void end(GDBusConnection * /*bus*/, const gchar * /*sender*/, const gchar * /*path*/, const gchar * /*interface*/,
         const gchar * /*signal*/, GVariant * /*parameters*/, gpointer wait)
{
    static_cast<Wait *>(wait)->isOver = true;
}

gboolean endByCancel(GCancellable * /*cancellable*/, gpointer wait)
{
    static_cast<Wait *>(wait)->isOver = true;
    return G_SOURCE_REMOVE;
}

gboolean endIfBusIsGone(gpointer pointer)
{
    auto *wait = static_cast<Wait *>(pointer);
    wait->isOver = wait->isOver || g_dbus_connection_is_closed(wait->bus);
    return G_SOURCE_CONTINUE;
}

/// A subscription to a signal for as long as this exists.
class Subscription
{
public:
    Subscription(Wait &wait, const char *sender, const char *interface, const char *signal, const char *path,
                 const char *argument)
        : m_bus(wait.bus),
          m_id(g_dbus_connection_signal_subscribe(wait.bus, sender, interface, signal, path, argument,
                                                  G_DBUS_SIGNAL_FLAGS_NONE, end, &wait, nullptr))
    {
    }
    ~Subscription() { g_dbus_connection_signal_unsubscribe(m_bus, m_id); }
    Subscription(const Subscription &) = delete;
    Subscription &operator=(const Subscription &) = delete;

private:
    GDBusConnection *m_bus;
    guint m_id;
};

/// Makes a main context that of this thread for as long as this exists.
class ThreadContext
{
public:
    explicit ThreadContext(GMainContext *context) : m_context(context)
    {
        g_main_context_push_thread_default(m_context);
    }
    ~ThreadContext() { g_main_context_pop_thread_default(m_context); }
    ThreadContext(const ThreadContext &) = delete;
    ThreadContext &operator=(const ThreadContext &) = delete;

private:
    GMainContext *m_context;
};

} // namespace

void showKeyringPrompt(GDBusConnection *bus, const char *owner, const char *path, GCancellable *cancellable)
{
    const Context context(g_main_context_new());
    const ThreadContext current(context.get());
    Wait wait{bus};
    const Subscription completed(wait, owner, promptInterface, "Completed", path, nullptr);
    const Subscription ended(wait, "org.freedesktop.DBus", "org.freedesktop.DBus", "NameOwnerChanged",
                             "/org/freedesktop/DBus", owner);
    const Source cancelled(g_cancellable_source_new(cancellable));
    g_source_set_callback(cancelled.get(), G_SOURCE_FUNC(endByCancel), &wait, nullptr);
    g_source_attach(cancelled.get(), context.get());
    const Source check(g_timeout_source_new(checkIntervalMs));
    g_source_set_callback(check.get(), endIfBusIsGone, &wait, nullptr);
    g_source_attach(check.get(), context.get());

    GVariant *started =
        g_dbus_connection_call_sync(bus, owner, path, promptInterface, "Prompt", g_variant_new("(s)", ""), nullptr,
                                    G_DBUS_CALL_FLAGS_NO_AUTO_START, startLimitMs, cancellable, nullptr);
    while (started && !wait.isOver) {
        g_main_context_iteration(context.get(), TRUE);
    }
    g_clear_pointer(&started, g_variant_unref);
    g_source_destroy(cancelled.get());
    g_source_destroy(check.get());
    // A prompt that is given up is not dismissed: that ends gnome-keyring 42, and with it the keyring of the session.
    // It closes with the connection.
}

} // namespace quillhaven
