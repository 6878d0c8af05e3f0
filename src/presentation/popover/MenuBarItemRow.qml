// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import QtQuick.Layouts
import Quillhaven.Controls
import Quillhaven.Design

/// A row with a protected item. A press anywhere on it locks or unlocks the item.
Item {
    id: row

    required property int index
    required property string symbol
    required property string name
    required property string path
    required property bool isMounted
    required property string badgeText
    required property string accessibleText
    required property string accessibleDescription
    readonly property bool isHovered: hover.hovered
    /// Whether the keyboard focus is on this row.
    readonly property bool isFocused: ListView.isCurrentItem && ListView.view.activeFocus

    signal toggleLock

    implicitHeight: Math.max(Metrics.popoverRowHeight, texts.implicitHeight + Spacing.md)
    Accessible.role: Accessible.ListItem
    Accessible.name: accessibleText
    Accessible.description: accessibleDescription
    Accessible.focusable: true
    Accessible.focused: isFocused
    Accessible.onPressAction: toggleLock()

    HoverHandler { id: hover }

    TapHandler { onTapped: row.toggleLock() }

    Rectangle {
        anchors.fill: parent
        radius: DesignSystem.cornerRadiusSmall
        color: row.isHovered ? Qt.alpha(Colors.cardBackground, Metrics.popoverHoverOpacity) : Colors.clear
        border.width: row.isFocused ? 2 : 0
        border.color: Colors.focusRingHighContrast

        Behavior on color {
            ColorAnimation { duration: DesignSystem.animationQuick }
        }
    }

    RowLayout {
        anchors.fill: parent
        anchors.leftMargin: Spacing.sm
        anchors.rightMargin: Spacing.sm
        spacing: Spacing.sm

        Item {
            Layout.preferredWidth: Math.max(Metrics.popoverSymbolFrame, Metrics.symbolText)
            Layout.preferredHeight: Layout.preferredWidth

            SymbolImage {
                anchors.centerIn: parent
                symbol: row.symbol
                size: Metrics.symbolText
                color: Colors.primaryAccent
            }
        }

        ColumnLayout {
            id: texts

            Layout.fillWidth: true
            spacing: 0

            Text {
                Layout.fillWidth: true
                text: row.name
                textFormat: Text.PlainText
                horizontalAlignment: Text.AlignLeft
                color: Colors.textPrimary
                font.pixelSize: Typography.subheadlineSize
                font.weight: Font.Medium
                elide: Text.ElideMiddle
                Accessible.ignored: true
            }

            Text {
                Layout.fillWidth: true
                text: row.path
                textFormat: Text.PlainText
                horizontalAlignment: Text.AlignLeft
                color: Colors.textSecondary
                font.pixelSize: Typography.captionSize
                elide: Text.ElideMiddle
                Accessible.ignored: true
            }
        }

        Rectangle {
            implicitWidth: badge.implicitWidth + 2 * Metrics.popoverBadgePadding
            implicitHeight: badge.implicitHeight + 4
            radius: DesignSystem.cornerRadiusSmall
            color: row.isMounted ? Colors.badgeUnlocked : Colors.badgeWarning

            Text {
                id: badge

                anchors.centerIn: parent
                text: row.badgeText
                textFormat: Text.PlainText
                color: Colors.isHighContrast ? Colors.bgBody : Colors.textPrimary
                font.pixelSize: Typography.caption2Size
                font.weight: Font.Medium
                Accessible.ignored: true
            }
        }
    }
}
