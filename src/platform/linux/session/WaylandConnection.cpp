// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/linux/session/WaylandConnection.h"

#include "ext-idle-notify-v1-client-protocol.h"

#include <wayland-client.h>

#include <string_view>

namespace quillhaven {

void WaylandDeleter::operator()(wl_display *display) const
{
    wl_display_disconnect(display);
}

void WaylandDeleter::operator()(wl_registry *registry) const
{
    wl_registry_destroy(registry);
}

void WaylandDeleter::operator()(wl_seat *seat) const
{
    wl_seat_destroy(seat);
}

void WaylandDeleter::operator()(wl_callback *callback) const
{
    wl_callback_destroy(callback);
}

void WaylandDeleter::operator()(ext_idle_notifier_v1 *notifier) const
{
    ext_idle_notifier_v1_destroy(notifier);
}

void WaylandDeleter::operator()(ext_idle_notification_v1 *notification) const
{
    ext_idle_notification_v1_destroy(notification);
}

std::unique_ptr<WaylandConnection> WaylandConnection::open()
{
    WaylandOwned<wl_display> display(wl_display_connect(nullptr));
    if (!display) {
        return nullptr;
    }
    return std::unique_ptr<WaylandConnection>(new WaylandConnection(std::move(display)));
}

WaylandConnection::WaylandConnection(WaylandOwned<wl_display> display)
    : m_display(std::move(display)), m_readable(wl_display_get_fd(m_display.get()), QSocketNotifier::Read)
{
    connect(&m_readable, &QSocketNotifier::activated, this, &WaylandConnection::read);
    list();
}

WaylandConnection::~WaylandConnection() = default;

void WaylandConnection::list()
{
    static const wl_registry_listener onGlobal{
        .global = [](void *self, wl_registry *, uint32_t name, const char *interface,
                     uint32_t) { static_cast<WaylandConnection *>(self)->bind(name, interface); },
        .global_remove = [](void *, wl_registry *, uint32_t) {}};
    static const wl_callback_listener onListed{
        .done = [](void *self, wl_callback *, uint32_t) { Q_EMIT static_cast<WaylandConnection *>(self)->listed(); }};

    m_registry.reset(wl_display_get_registry(m_display.get()));
    wl_registry_add_listener(m_registry.get(), &onGlobal, this);
    // It is done after everything before it.
    m_listing.reset(wl_display_sync(m_display.get()));
    wl_callback_add_listener(m_listing.get(), &onListed, this);
    send();
}

void WaylandConnection::bind(uint32_t name, const char *interface)
{
    const auto bound = [this, name](const wl_interface &type) {
        return wl_registry_bind(m_registry.get(), name, &type, 1);
    };
    if (std::string_view(interface) == wl_seat_interface.name && !m_seat) {
        m_seat.reset(static_cast<wl_seat *>(bound(wl_seat_interface)));
    } else if (std::string_view(interface) == ext_idle_notifier_v1_interface.name && !m_notifier) {
        m_notifier.reset(static_cast<ext_idle_notifier_v1 *>(bound(ext_idle_notifier_v1_interface)));
    }
}

void WaylandConnection::send()
{
    wl_display_flush(m_display.get());
}

void WaylandConnection::read()
{
    if (readAndDispatch()) {
        send();
        return;
    }
    m_readable.setEnabled(false);
    Q_EMIT lost();
}

bool WaylandConnection::readAndDispatch()
{
    while (wl_display_prepare_read(m_display.get()) != 0) {
        if (wl_display_dispatch_pending(m_display.get()) < 0) {
            return false;
        }
    }
    return wl_display_read_events(m_display.get()) >= 0 && wl_display_dispatch_pending(m_display.get()) >= 0;
}

} // namespace quillhaven
