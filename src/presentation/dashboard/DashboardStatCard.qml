// SPDX-License-Identifier: GPL-3.0-or-later

pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Controls.Basic
import QtQuick.Layouts
import Quillhaven.Controls
import Quillhaven.Design

/// A card with one figure.
Rectangle {
    id: card

    required property string title
    required property string value
    required property string icon
    required property color iconColor
    property bool isPrimary: false
    property bool isCompact: false
    property string tooltip
    /// Shows a button for the settings of what the card is about.
    property bool showSettingsIcon: false
    readonly property bool isHovered: hover.hovered

    signal tap
    signal settingsTap

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

    ToolTip.visible: isHovered && tooltip !== ""
    ToolTip.text: tooltip
    ToolTip.delay: Metrics.toolTipDelay

    HoverHandler { id: hover }

    TapHandler { onTapped: card.tap() }

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

        // No layout, which would misplace the symbol when it appears while the card changes its width.
        Item {
            id: figure

            /// The symbol yields to a value that would not fit beside it even in its smallest size.
            readonly property bool hasSymbol: words.implicitWidth * words.minimumPixelSize / words.font.pixelSize
                                              <= width - tile.width - Spacing.sm

            Layout.fillWidth: true
            implicitHeight: Math.max(words.implicitHeight, tile.height)

            Text {
                id: words

                anchors.left: parent.left
                anchors.verticalCenter: parent.verticalCenter
                width: figure.hasSymbol ? figure.width - tile.width - Spacing.sm : figure.width
                text: card.value
                horizontalAlignment: Text.AlignLeft
                color: Colors.textPrimary
                font.pixelSize: card.isCompact ? Typography.titleSize : Typography.largeTitleSize
                font.weight: Font.DemiBold
                fontSizeMode: Text.HorizontalFit
                minimumPixelSize: Typography.subheadlineSize
                Accessible.ignored: true
            }

            Rectangle {
                id: tile

                anchors.right: parent.right
                anchors.verticalCenter: parent.verticalCenter
                width: card.isCompact ? Metrics.smallButton : DesignSystem.buttonHeight
                height: width
                visible: figure.hasSymbol
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

        RowLayout {
            Layout.fillWidth: true
            spacing: Spacing.xs

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

            IconButton {
                Layout.topMargin: -Spacing.sm
                Layout.bottomMargin: -Spacing.sm
                Layout.rightMargin: -Spacing.xs
                implicitWidth: Metrics.smallButton
                implicitHeight: Metrics.smallButton
                visible: card.showSettingsIcon
                symbol: "gearshape.fill"
                helpText: card.tooltip
                onClicked: card.settingsTap()
            }
        }
    }
}
