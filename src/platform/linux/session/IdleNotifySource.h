// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "platform/linux/session/IdleBasedSource.h"
#include "platform/linux/session/WaylandConnection.h"

#include <QCoroTask>

namespace quillhaven {

/// The idle notifications of a Wayland compositor (ext-idle-notify-v1).
class IdleNotifySource : public IdleBasedSource
{
    Q_OBJECT

public:
    /// Whether the compositor offers them. It is asked at once.
    [[nodiscard]] static QCoro::Task<bool> isOffered(std::shared_ptr<WaylandConnection> compositor);

    IdleNotifySource(std::shared_ptr<WaylandConnection> compositor, Clock &clock, std::chrono::milliseconds period);
    ~IdleNotifySource() override;

    [[nodiscard]] QString sentence() const override;

private:
    std::shared_ptr<WaylandConnection> m_compositor;
    WaylandOwned<ext_idle_notification_v1> m_notification;
};

} // namespace quillhaven
