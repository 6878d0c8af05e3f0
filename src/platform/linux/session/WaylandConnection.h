// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QObject>
#include <QSocketNotifier>

#include <memory>

struct wl_display;
struct wl_registry;
struct wl_seat;
struct wl_callback;
struct ext_idle_notifier_v1;
struct ext_idle_notification_v1;

namespace quillhaven {

struct WaylandDeleter
{
    void operator()(wl_display *display) const;
    void operator()(wl_registry *registry) const;
    void operator()(wl_seat *seat) const;
    void operator()(wl_callback *callback) const;
    void operator()(ext_idle_notifier_v1 *notifier) const;
    void operator()(ext_idle_notification_v1 *notification) const;
};
template <typename T>
using WaylandOwned = std::unique_ptr<T, WaylandDeleter>;

/// A connection of our own to the Wayland compositor, with what it offers to watch the user's idleness. Nothing here
/// waits for the compositor. Main thread only.
class WaylandConnection : public QObject
{
    Q_OBJECT

public:
    /// Null when there is no compositor.
    [[nodiscard]] static std::unique_ptr<WaylandConnection> open();
    ~WaylandConnection() override;

    /// Both null until `listed`, and afterwards too when the compositor does not offer them.
    [[nodiscard]] wl_seat *seat() const { return m_seat.get(); }
    [[nodiscard]] ext_idle_notifier_v1 *notifier() const { return m_notifier.get(); }
    /// Sends the requests made so far.
    void send();

Q_SIGNALS:
    /// The compositor has listed all that it offers.
    void listed();
    /// The compositor is gone.
    void lost();

private:
    explicit WaylandConnection(WaylandOwned<wl_display> display);
    void list();
    void bind(uint32_t name, const char *interface);
    void read();
    [[nodiscard]] bool readAndDispatch();

    WaylandOwned<wl_display> m_display;
    WaylandOwned<wl_registry> m_registry;
    WaylandOwned<wl_callback> m_listing;
    WaylandOwned<wl_seat> m_seat;
    WaylandOwned<ext_idle_notifier_v1> m_notifier;
    QSocketNotifier m_readable;
};

} // namespace quillhaven
