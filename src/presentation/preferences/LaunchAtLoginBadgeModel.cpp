// SPDX-License-Identifier: GPL-3.0-or-later

#include "presentation/preferences/LaunchAtLoginBadgeModel.h"

namespace quillhaven {

LaunchAtLoginBadgeModel::LaunchAtLoginBadgeModel(LaunchAtLoginServiceManager &serviceManager, QObject *parent)
    : QObject(parent), m_serviceManager(serviceManager)
{
    using Services = LaunchAtLoginServiceManager;
    for (const auto signal : {&Services::isEnabledChanged, &Services::isSyncingChanged, &Services::syncStatusChanged,
                              &Services::lastErrorChanged}) {
        connect(&serviceManager, signal, this, &LaunchAtLoginBadgeModel::changed);
    }
}

ShownStatus LaunchAtLoginBadgeModel::status() const
{
    if (m_serviceManager.lastError()) {
        return shownBadge(SyncStatus::error, false);
    }
    if (m_serviceManager.isSyncing()) {
        return shownBadge(SyncStatus::syncing, false);
    }
    return shownBadge(m_serviceManager.syncStatus(), m_serviceManager.isEnabled());
}

ShownStatus shownBadge(SyncStatus status, bool isEnabled)
{
    ShownStatus badge = shownStatus(status, isEnabled);
    switch (status) {
    case SyncStatus::synchronized:
        break;
    case SyncStatus::outOfSync:
        badge.text = QStringLiteral("Syncing");
        break;
    case SyncStatus::syncing:
        badge.text = QStringLiteral("Updating");
        break;
    case SyncStatus::error:
        badge.text = QStringLiteral("Error");
        break;
    case SyncStatus::unknown:
        badge.text = QStringLiteral("Unknown");
        break;
    }
    return badge;
}

} // namespace quillhaven
