// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

// Before the standard library's coroutines, whose concepts moc cannot read otherwise.
#include <QObject>

#include "platform/linux/session/BusConnection.h"

#include <optional>

namespace quillhaven {

/// Follows which connection owns a name on a bus. It never waits for the bus, unlike QtDBus when it is asked to listen
/// to a name. Main thread only.
class BusNameOwner : public QObject
{
    Q_OBJECT

public:
    BusNameOwner(std::shared_ptr<BusConnection> bus, const QString &name);

    [[nodiscard]] const std::shared_ptr<BusConnection> &bus() const { return m_bus; }
    [[nodiscard]] const QString &name() const { return m_name; }
    /// Nothing until the bus has answered; empty when nobody owns the name.
    [[nodiscard]] const std::optional<QString> &owner() const { return m_owner; }

Q_SIGNALS:
    /// After the bus's first answer, and whenever another connection or none owns the name. Not from the constructor.
    void ownerChanged(const QString &owner);

private Q_SLOTS:
    void onNameOwnerChanged(const QDBusMessage &message);
    void onDisconnected() { setOwner({}); }

private:
    void setOwner(const QString &owner);

    std::shared_ptr<BusConnection> m_bus;
    QString m_name;
    std::optional<QString> m_owner;
};

} // namespace quillhaven
