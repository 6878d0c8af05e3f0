// SPDX-License-Identifier: GPL-3.0-or-later

#include "launch_at_login/SyncStatus.h"

namespace quillhaven {

QString iconName(SyncStatus status)
{
    switch (status) {
    case SyncStatus::synchronized:
        return QStringLiteral("checkmark.circle.fill");
    case SyncStatus::outOfSync:
        return QStringLiteral("exclamationmark.triangle.fill");
    case SyncStatus::syncing:
        return QStringLiteral("arrow.triangle.2.circlepath");
    case SyncStatus::error:
        return QStringLiteral("xmark.circle.fill");
    case SyncStatus::unknown:
        break;
    }
    return QStringLiteral("questionmark.circle.fill");
}

QString statusColor(SyncStatus status)
{
    switch (status) {
    case SyncStatus::synchronized:
        return QStringLiteral("green");
    case SyncStatus::outOfSync:
        return QStringLiteral("orange");
    case SyncStatus::syncing:
        return QStringLiteral("blue");
    case SyncStatus::error:
        return QStringLiteral("red");
    case SyncStatus::unknown:
        break;
    }
    return QStringLiteral("gray");
}

QString description(SyncStatus status)
{
    switch (status) {
    case SyncStatus::synchronized:
        return QStringLiteral("Settings synchronized");
    case SyncStatus::outOfSync:
        return QStringLiteral("Settings out of sync");
    case SyncStatus::syncing:
        return QStringLiteral("Synchronizing...");
    case SyncStatus::error:
        return QStringLiteral("Synchronization error");
    case SyncStatus::unknown:
        break;
    }
    return QStringLiteral("Status unknown");
}

} // namespace quillhaven
