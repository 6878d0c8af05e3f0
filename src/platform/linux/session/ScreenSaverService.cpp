// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/linux/session/ScreenSaverService.h"

namespace quillhaven {

ScreenSaverService::ScreenSaverService(const std::shared_ptr<BusConnection> &sessionBus, const QString &title,
                                       const QString &name, const QStringList &paths)
    : m_title(title), m_name(sessionBus, name), m_paths(paths)
{
    connect(&m_name, &BusNameOwner::ownerChanged, this, &ScreenSaverService::onOwnerChanged);
}

void ScreenSaverService::onOwnerChanged(const QString &owner)
{
    const QString signal = QStringLiteral("ActiveChanged");
    QDBusConnection &connection = m_name.bus()->connection();
    for (const QString &path : std::as_const(m_paths)) {
        if (!m_owner.isEmpty()) {
            connection.disconnect(m_owner, path, m_name.name(), signal, this, SLOT(onActiveChanged(bool)));
        }
        if (!owner.isEmpty()) {
            connection.connect(owner, path, m_name.name(), signal, this, SLOT(onActiveChanged(bool)));
        }
    }
    m_owner = owner;
    Q_EMIT changed();
}

void ScreenSaverService::onActiveChanged(bool isActive)
{
    if (isActive) {
        Q_EMIT started();
    }
}

} // namespace quillhaven
