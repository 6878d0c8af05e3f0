// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import QtQuick.Layouts
import Quillhaven.Design

/// A setting: its name, what it does, its control, and a warning if there is one.
Item {
    id: row

    property string icon
    property string title
    property string description
    default property alias control: controlSlot.data
    property bool isEnabled: true
    property bool showsWarning: false
    property string warningMessage
    /// A StatusType, or -1 for none.
    property int statusIndicator: -1
    /// What the status means, for a screen reader.
    property string statusText
    property string accessibilityHint
    readonly property bool isHovered: hover.hovered

    implicitWidth: layout.implicitWidth + Spacing.md * 2
    implicitHeight: Math.max(Spacing.minTouchTarget, layout.implicitHeight + Spacing.sm * 2)
    enabled: isEnabled
    opacity: isEnabled ? 1 : Colors.disabledOpacity
    Accessible.role: Accessible.Grouping
    Accessible.name: title
    Accessible.description: accessibilityHint !== "" ? accessibilityHint : description

    HoverHandler { id: hover }

    Rectangle {
        anchors.fill: parent
        radius: DesignSystem.cornerRadiusMedium
        color: row.isHovered ? Colors.hover : Colors.clear
    }

    ColumnLayout {
        id: layout

        anchors.left: parent.left
        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        anchors.margins: Spacing.md
        spacing: Spacing.xs

        RowLayout {
            Layout.fillWidth: true
            spacing: Spacing.md

            SymbolImage {
                visible: row.icon !== ""
                symbol: row.icon
                color: Colors.iconMuted
            }

            ColumnLayout {
                Layout.fillWidth: true
                spacing: 2

                Text {
                    Layout.fillWidth: true
                    text: row.title
                    textFormat: Text.PlainText
                    font: Typography.settingTitle
                    color: Colors.textPrimary
                    horizontalAlignment: Text.AlignLeft
                    wrapMode: Text.Wrap
                    Accessible.ignored: true
                }

                Text {
                    Layout.fillWidth: true
                    visible: text !== ""
                    text: row.description
                    textFormat: Text.PlainText
                    font: Typography.settingDescription
                    color: Colors.textSecondary
                    horizontalAlignment: Text.AlignLeft
                    wrapMode: Text.Wrap
                    Accessible.ignored: true
                }
            }

            StatusIndicator {
                visible: row.statusIndicator >= 0
                status: row.statusIndicator
                Accessible.name: row.statusText !== "" ? row.statusText : word + " status"
            }

            RowLayout {
                id: controlSlot

                Layout.fillWidth: false // the text gets the room
            }
        }

        RowLayout {
            Layout.fillWidth: true
            visible: row.showsWarning && row.warningMessage !== ""
            spacing: Spacing.xs

            SymbolImage {
                symbol: "exclamationmark.triangle.fill"
                size: Metrics.symbolText
                color: Colors.warning
            }

            TextLabel {
                Layout.fillWidth: true
                text: row.warningMessage
                font: Typography.settingDescription
                color: Colors.warning
                wrapMode: Text.Wrap
                Accessible.role: Accessible.AlertMessage
            }
        }
    }
}
