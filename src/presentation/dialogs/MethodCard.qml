// SPDX-License-Identifier: GPL-3.0-or-later

pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Controls.Basic
import QtQuick.Layouts
import Quillhaven.Controls
import Quillhaven.Design

/// One of the ways to protect an item, as a large button.
AbstractButton {
    id: card

    property string symbol
    property string detail

    implicitHeight: Math.max(Metrics.cardHeight, implicitContentHeight + topPadding + bottomPadding)
    padding: Spacing.lg
    hoverEnabled: true
    Accessible.role: Accessible.Button
    Accessible.name: text
    Accessible.description: detail

    KeyboardPress {
        control: card
        onPressed: card.clicked()
    }

    contentItem: RowLayout {
        spacing: Spacing.lg

        Rectangle {
            implicitWidth: Spacing.minTouchTarget
            implicitHeight: Spacing.minTouchTarget
            radius: DesignSystem.cornerRadiusLarge
            color: Colors.selection

            SymbolImage {
                anchors.centerIn: parent
                symbol: card.symbol
                size: Metrics.symbolRow
                color: Colors.primaryAccent
            }
        }

        ColumnLayout {
            Layout.fillWidth: true
            spacing: 2

            Text {
                Layout.fillWidth: true
                text: card.text
                font: Typography.settingTitle
                color: Colors.textPrimary
                horizontalAlignment: Text.AlignLeft
                wrapMode: Text.Wrap
                Accessible.ignored: true
            }

            Text {
                Layout.fillWidth: true
                text: card.detail
                font: Typography.settingDescription
                color: Colors.textSecondary
                horizontalAlignment: Text.AlignLeft
                wrapMode: Text.Wrap
                Accessible.ignored: true
            }
        }
    }

    background: Rectangle {
        radius: DesignSystem.cornerRadiusLarge
        color: card.down ? Colors.selection : card.hovered ? Colors.panelHover : Colors.bgPanel
        border.width: 1
        border.color: card.hovered ? Colors.primaryAccent : Colors.borderSubtle

        FocusRing {
            shown: card.visualFocus
            radius: DesignSystem.cornerRadiusLarge + Metrics.focusRingGap
        }
    }
}
