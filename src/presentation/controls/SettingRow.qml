// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import QtQuick.Layouts
import Quillhaven.Design

/// One setting: its name, what it does, its control, and a warning where there is one.
Item {
    id: row

    property string icon
    property string title
    property string description
    default property alias control: controlSlot.data
    property bool isEnabled: true
    property bool showsWarning: false
    property string warningMessage
    /// A StatusType, or nothing.
    property string statusIndicator
    property string accessibilityHint
    readonly property bool isHovered: hover.hovered

    implicitWidth: layout.implicitWidth + Spacing.md * 2
    implicitHeight: Math.max(Spacing.minTouchTarget, layout.implicitHeight + Spacing.sm * 2)
    enabled: isEnabled
    opacity: isEnabled ? 1 : 0.45
    Accessible.role: Accessible.Grouping
    Accessible.name: title
    Accessible.description: accessibilityHint !== "" ? accessibilityHint : description

    HoverHandler { id: hover }

    Rectangle {
        anchors.fill: parent
        radius: DesignSystem.cornerRadiusMedium
        color: row.isHovered ? Colors.hover : "transparent"
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
                    wrapMode: Text.Wrap
                    Accessible.ignored: true
                }
            }

            StatusIndicator {
                visible: row.statusIndicator !== ""
                status: row.statusIndicator
            }

            RowLayout { id: controlSlot }
        }

        RowLayout {
            Layout.fillWidth: true
            visible: row.showsWarning && row.warningMessage !== ""
            spacing: Spacing.xs

            SymbolImage {
                symbol: "exclamationmark.triangle.fill"
                size: 16
                color: Colors.warning
            }

            Text {
                Layout.fillWidth: true
                text: row.warningMessage
                textFormat: Text.PlainText
                font: Typography.settingDescription
                color: Colors.warning
                wrapMode: Text.Wrap
                Accessible.role: Accessible.AlertMessage
                Accessible.name: text
            }
        }
    }
}
