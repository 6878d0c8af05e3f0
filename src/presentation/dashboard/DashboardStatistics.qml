// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import QtQuick.Layouts
import Quillhaven.Controls
import Quillhaven.Design

/// The cards, and the line that says what they count.
ColumnLayout {
    id: statistics

    required property QtObject dashboard
    property bool isCompact: false

    spacing: Spacing.sm

    RowLayout {
        Layout.fillWidth: true
        spacing: Spacing.md

        DashboardStatCard {
            isCompact: statistics.isCompact
            title: "Protected Items"
            value: statistics.dashboard.protectedItemsCount
            icon: "lock.shield.fill"
            iconColor: Colors.primary
            isPrimary: true
        }
        DashboardStatCard {
            isCompact: statistics.isCompact
            title: "Currently Unlocked"
            value: statistics.dashboard.currentlyUnlockedCount
            icon: "lock.open.fill"
            iconColor: Colors.error
        }
        DashboardStatCard {
            isCompact: statistics.isCompact
            title: "Locked with Touch ID"
            value: statistics.dashboard.touchIDProtectedCount
            icon: "touchid"
            iconColor: Colors.success
        }
        DashboardStatCard {
            isCompact: statistics.isCompact
            title: "Locked with Password"
            value: statistics.dashboard.passwordProtectedCount
            icon: "key.fill"
            iconColor: Colors.primaryAccent
        }
    }

    TextLabel {
        Layout.fillWidth: true
        text: statistics.dashboard.statisticsNote
        color: Colors.textSecondary
        font.pixelSize: Typography.footnoteSize
        wrapMode: Text.WordWrap
    }
}
