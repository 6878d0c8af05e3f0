// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

// Before the standard library's coroutines, whose concepts moc cannot read otherwise.
#include <QObject>

#include "platform/DesktopNotifications.h"
#include "platform/linux/session/BusConnection.h"

#include <QHash>
#include <QPointer>
#include <QThreadPool>

namespace quillhaven {

/// The desktop's notification server: the Desktop Notifications Specification of freedesktop.org, version 1.2.
class NotificationService : public QObject, public DesktopNotifications
{
    Q_OBJECT

public:
    NotificationService();
    ~NotificationService() override;

    void show(const Message &message) override;

private:
    [[nodiscard]] static QCoro::Task<> send(QPointer<NotificationService> self, Message message);

    QThreadPool m_connecting;
    std::shared_ptr<BusConnection> m_bus;
    QHash<QString, quint32> m_shown; ///< the server's numbers of the last messages, by their topics
};

} // namespace quillhaven
