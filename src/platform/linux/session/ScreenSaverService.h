// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

// Before the standard library's coroutines, whose concepts moc cannot read otherwise.
#include <QObject>

#include "platform/linux/session/BusNameOwner.h"

#include <QStringList>

namespace quillhaven {

/// One of the screen savers that a session bus may have. Only the owner of its name is listened to.
class ScreenSaverService : public QObject
{
    Q_OBJECT

public:
    /// `title` is for the user; `name` is its interface too; `paths` are where its versions have their object.
    ScreenSaverService(const std::shared_ptr<BusConnection> &sessionBus, const QString &title, const QString &name,
                       const QStringList &paths);

    [[nodiscard]] const QString &title() const { return m_title; }
    /// Whether the bus has said if it is there.
    [[nodiscard]] bool isKnown() const { return m_name.owner().has_value(); }
    [[nodiscard]] bool isThere() const { return !m_owner.isEmpty(); }

Q_SIGNALS:
    void started();
    /// It came or went, or is known now.
    void changed();

private Q_SLOTS:
    void onActiveChanged(bool isActive);

private:
    void onOwnerChanged(const QString &owner);

    QString m_title;
    BusNameOwner m_name;
    QStringList m_paths;
    QString m_owner; ///< whose signals arrive here
};

} // namespace quillhaven
