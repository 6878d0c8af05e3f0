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
    const SyncStatus sync = m_serviceManager.syncStatus();
    if (m_serviceManager.lastError()) {
        return {QStringLiteral("Error"), iconName(SyncStatus::error), StatusTone::Error};
    }
    if (m_serviceManager.isSyncing()) {
        return {QStringLiteral("Updating"), iconName(SyncStatus::syncing), StatusTone::Info};
    }
    switch (sync) {
    case SyncStatus::synchronized:
        return m_serviceManager.isEnabled()
                   ? ShownStatus{QStringLiteral("Enabled"), iconName(sync), StatusTone::Enabled}
                   : ShownStatus{QStringLiteral("Disabled"), QStringLiteral("circle"), StatusTone::Disabled};
    case SyncStatus::outOfSync:
        return {QStringLiteral("Syncing"), iconName(sync), StatusTone::Warning};
    case SyncStatus::syncing:
        return {QStringLiteral("Updating"), iconName(sync), StatusTone::Info};
    case SyncStatus::error:
        return {QStringLiteral("Error"), iconName(sync), StatusTone::Error};
    case SyncStatus::unknown:
        break;
    }
    return {QStringLiteral("Unknown"), iconName(sync), StatusTone::Secondary};
}

} // namespace quillhaven
