// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/linux/session/IdleNotifySource.h"

#include "async/Answer.h"
#include "ext-idle-notify-v1-client-protocol.h"

#include <wayland-client.h>

namespace quillhaven {

QCoro::Task<bool> IdleNotifySource::isOffered(std::shared_ptr<WaylandConnection> compositor)
{
    const Answer<bool> isListed;
    connect(compositor.get(), &WaylandConnection::listed, compositor.get(), [isListed] { isListed.give(true); });
    connect(compositor.get(), &WaylandConnection::lost, compositor.get(), [isListed] { isListed.give(false); });
    co_return (co_await isListed) && compositor->seat() != nullptr && compositor->notifier() != nullptr;
}

IdleNotifySource::IdleNotifySource(std::shared_ptr<WaylandConnection> compositor, Clock &clock,
                                   std::chrono::milliseconds period)
    : IdleBasedSource(clock, period),
      m_compositor(std::move(compositor)),
      m_notification(ext_idle_notifier_v1_get_idle_notification(
          m_compositor->notifier(), static_cast<uint32_t>(period.count()), m_compositor->seat()))
{
    static const ext_idle_notification_v1_listener listener{
        .idled = [](void *self,
                    ext_idle_notification_v1 *) { static_cast<IdleNotifySource *>(self)->userBecameIdle(); },
        .resumed = [](void *self,
                      ext_idle_notification_v1 *) { static_cast<IdleNotifySource *>(self)->userReturned(); }};
    ext_idle_notification_v1_add_listener(m_notification.get(), &listener, this);
    connect(m_compositor.get(), &WaylandConnection::lost, this, &GlobalInputSource::lost);
    m_compositor->send();
    start();
}

IdleNotifySource::~IdleNotifySource() = default;

QString IdleNotifySource::sentence() const
{
    return QStringLiteral("Keyboard and pointer are watched through the compositor's idle notifications.");
}

} // namespace quillhaven
