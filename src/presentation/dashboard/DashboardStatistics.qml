// SPDX-License-Identifier: GPL-3.0-or-later

pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts
import Quillhaven.Controls
import Quillhaven.Dashboard
import Quillhaven.Design

/// The statistics cards, and the line that says what they count.
ColumnLayout {
    id: statistics

    required property DashboardStatisticsModel model
    property bool isCompact: false

    signal preferencesWanted

    spacing: Spacing.sm

    RowLayout {
        Layout.fillWidth: true
        spacing: Spacing.md

        DashboardStatCard {
            isCompact: statistics.isCompact
            title: "Protected Items"
            value: statistics.model.protectedItems
            icon: "lock.shield.fill"
            iconColor: Colors.primary
            isPrimary: true
        }
        DashboardStatCard {
            isCompact: statistics.isCompact
            title: "Currently Unlocked"
            value: statistics.model.currentlyUnlocked
            icon: "lock.open.fill"
            iconColor: Colors.error
        }
        DashboardStatCard {
            isCompact: statistics.isCompact
            title: "Locked with Touch ID"
            value: statistics.model.touchIDProtected
            icon: "touchid"
            iconColor: Colors.success
        }
        DashboardStatCard {
            isCompact: statistics.isCompact
            title: "Locked with Password"
            value: statistics.model.passwordProtected
            icon: "key.fill"
            iconColor: Colors.primaryAccent
        }
        DashboardStatCard {
            isCompact: statistics.isCompact
            title: "Auto-lock"
            value: statistics.model.autoLockStatus
            icon: "clock.fill"
            iconColor: Colors.warning
            tooltip: "Auto-lock settings"
            showSettingsIcon: true
            onTap: statistics.preferencesWanted()
            onSettingsTap: statistics.preferencesWanted()
        }
    }

    TextLabel {
        Layout.fillWidth: true
        text: statistics.model.statisticsNote
        color: Colors.textSecondary
        font.pixelSize: Typography.footnoteSize
        wrapMode: Text.WordWrap
    }
}
