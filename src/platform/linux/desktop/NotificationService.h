// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

// Before the standard library's coroutines, whose concepts moc cannot read otherwise.
#include <QObject>

#include "platform/DesktopNotifications.h"
#include "platform/linux/session/BusNameOwner.h"

#include <QHash>
#include <QPointer>
#include <QThreadPool>

#include <memory>

namespace quillhaven {

/// The desktop's notification server: the Desktop Notifications Specification of freedesktop.org, version 1.2. The
/// server may start after this object, end, and come back.
class NotificationService : public QObject, public DesktopNotifications
{
    Q_OBJECT

public:
    NotificationService();
    ~NotificationService() override;

    void show(const Message &message) override;

private:
    /// A message that the server shows.
    struct Shown
    {
        quint32 number = 0; ///< the server's
        std::function<void()> onActivated;
    };

    [[nodiscard]] static QCoro::Task<> send(QPointer<NotificationService> self, Message message);
    void use(const std::shared_ptr<BusConnection> &bus);
    [[nodiscard]] QDBusMessage notifyCall(const Message &message, bool readsMarkup) const;
    [[nodiscard]] QString topicOf(quint32 number) const;
    Q_SLOT void activate(uint number, const QString &action);
    Q_SLOT void forget(uint number);

    QThreadPool m_connecting;
    std::shared_ptr<BusConnection> m_bus;
    std::unique_ptr<BusNameOwner> m_server;
    QHash<QString, Shown> m_shown; ///< by their topics
};

} // namespace quillhaven
