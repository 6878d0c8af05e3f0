// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import Quillhaven.Design

/// A small label that names the state of something.
Rectangle {
    id: badge

    /// A BadgeStyle.
    property int style: BadgeStyle.Info
    property string text
    property bool showIcon: true

    readonly property color fill: {
        switch (style) {
        case BadgeStyle.Locked: return Colors.badgeLockedFill
        case BadgeStyle.Unlocked: return Colors.badgeUnlockedFill
        case BadgeStyle.Warning: return Colors.badgeWarningBg
        case BadgeStyle.Error: return Colors.badgeErrorBg
        default: return Colors.badgeInfoBg
        }
    }
    readonly property color ink: {
        switch (style) {
        case BadgeStyle.Locked: return Colors.primary
        case BadgeStyle.Unlocked: return Colors.badgeUnlockedText
        case BadgeStyle.Warning: return Colors.badgeWarning
        case BadgeStyle.Error: return Colors.error
        default: return Colors.info
        }
    }
    readonly property string symbol: {
        switch (style) {
        case BadgeStyle.Locked: return "lock.fill"
        case BadgeStyle.Unlocked: return "lock.open.fill"
        case BadgeStyle.Warning: return "exclamationmark.triangle.fill"
        case BadgeStyle.Error: return "exclamationmark.octagon.fill"
        default: return "info.circle.fill"
        }
    }

    implicitWidth: row.implicitWidth + Spacing.md * 2
    implicitHeight: Math.max(Metrics.badgeHeight, row.implicitHeight + Spacing.sm)
    radius: height / 2
    color: fill
    Accessible.role: Accessible.StaticText
    Accessible.name: text

    Row {
        id: row

        anchors.centerIn: parent
        spacing: Spacing.xs

        SymbolImage {
            anchors.verticalCenter: parent.verticalCenter
            visible: badge.showIcon || DesignSystem.differentiateWithoutColor
            symbol: badge.symbol
            size: Metrics.symbolSmall
            color: badge.ink
        }

        Text {
            anchors.verticalCenter: parent.verticalCenter
            text: badge.text
            textFormat: Text.PlainText
            font: Typography.statusText
            color: badge.ink
            Accessible.ignored: true
        }
    }
}
