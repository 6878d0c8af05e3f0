// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import Quillhaven.Design

/// A small label that says in which state something is.
Rectangle {
    id: badge

    /// locked, unlocked, warning, error or info
    property string style: "info"
    property string text
    property bool showIcon: true

    readonly property var looks: ({
        "locked": { fill: Colors.badgeLockedFill, ink: Colors.primary, symbol: "lock.fill" },
        "unlocked": { fill: Colors.badgeUnlockedFill, ink: Colors.badgeUnlockedText, symbol: "lock.open.fill" },
        "warning": { fill: Colors.badgeWarningBg, ink: Colors.badgeWarning, symbol: "exclamationmark.triangle.fill" },
        "error": { fill: Colors.badgeErrorBg, ink: Colors.error, symbol: "exclamationmark.octagon.fill" },
        "info": { fill: Colors.badgeInfoBg, ink: Colors.info, symbol: "info.circle.fill" }
    })
    readonly property var look: looks[style] ?? looks.info

    implicitWidth: row.implicitWidth + Spacing.md * 2
    implicitHeight: 24
    radius: height / 2
    color: look.fill
    Accessible.role: Accessible.StaticText
    Accessible.name: text

    Row {
        id: row

        anchors.centerIn: parent
        spacing: Spacing.xs

        SymbolImage {
            anchors.verticalCenter: parent.verticalCenter
            visible: badge.showIcon
            symbol: badge.look.symbol
            size: 14
            color: badge.look.ink
        }

        Text {
            anchors.verticalCenter: parent.verticalCenter
            text: badge.text
            textFormat: Text.PlainText
            font: Typography.statusText
            color: badge.look.ink
            Accessible.ignored: true
        }
    }
}
