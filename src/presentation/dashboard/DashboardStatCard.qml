// SPDX-License-Identifier: GPL-3.0-or-later

pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts
import Quillhaven.Controls
import Quillhaven.Design

/// A card with one figure about the list.
Rectangle {
    id: card

    required property string title
    required property string value
    required property string icon
    required property color iconColor
    property bool isPrimary: false
    property bool isCompact: false
    readonly property bool isHovered: hover.hovered

    Layout.fillWidth: true
    Layout.fillHeight: true // as high as the others
    Layout.preferredWidth: 1
    implicitHeight: Math.max(isCompact ? Metrics.compactStatCardHeight : Metrics.statCardHeight,
                             content.implicitHeight + 2 * content.anchors.margins)
    radius: DesignSystem.cornerRadiusLarge
    color: Colors.cardBackground
    border.width: isPrimary ? 0 : 1
    border.color: isHovered ? Colors.focus : Colors.borderSubtle
    Accessible.role: Accessible.StaticText
    Accessible.name: title + ": " + value

    Behavior on border.color {
        ColorAnimation { duration: DesignSystem.animationQuick }
    }

    HoverHandler { id: hover }

    PrimaryGradient {
        anchors.fill: parent
        visible: card.isPrimary
        radius: card.radius
    }

    ColumnLayout {
        id: content

        anchors.fill: parent
        anchors.margins: card.isCompact ? Spacing.md : Spacing.lg
        spacing: 0

        RowLayout {
            Layout.fillWidth: true
            spacing: Spacing.sm

            Text {
                Layout.fillWidth: true
                text: card.value
                horizontalAlignment: Text.AlignLeft
                color: Colors.textPrimary
                font.pixelSize: card.isCompact ? Typography.titleSize : Typography.largeTitleSize
                font.weight: Font.DemiBold
                Accessible.ignored: true
            }

            Rectangle {
                implicitWidth: card.isCompact ? Metrics.smallButton : DesignSystem.buttonHeight
                implicitHeight: implicitWidth
                radius: DesignSystem.cornerRadiusMedium
                color: card.isPrimary ? Qt.alpha(Colors.textPrimary, Metrics.badgeOpacity) : Qt.alpha(card.iconColor, Metrics.tintOpacity)

                SymbolImage {
                    anchors.centerIn: parent
                    symbol: card.icon
                    size: Math.min(card.isCompact ? Metrics.symbolText : Metrics.symbolEntry, parent.height - Spacing.md)
                    color: card.isPrimary ? Colors.textPrimary : card.iconColor
                }
            }
        }

        Item { Layout.fillHeight: true }

        Text {
            Layout.fillWidth: true
            text: card.title
            color: card.isPrimary ? Colors.textPrimary : Colors.textSecondary
            font.pixelSize: card.isCompact ? Typography.footnoteSize : Typography.subheadlineSize
            horizontalAlignment: Text.AlignLeft
            wrapMode: Text.Wrap
            maximumLineCount: 3
            elide: Text.ElideRight
            Accessible.ignored: true
        }
    }
}
