// SPDX-License-Identifier: GPL-3.0-or-later

pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts
import Quillhaven.Controls
import Quillhaven.Dashboard
import Quillhaven.Design

/// The operations on the selected items.
Rectangle {
    id: bar

    required property ItemSelection selection
    readonly property int selectedCount: selection.selectedCount
    // How many of them are shown and can be:
    readonly property int canUnlockItems: selection.canUnlockCount
    readonly property int canLockItems: selection.canLockCount
    readonly property bool isNarrow: width < Metrics.narrowBar

    signal bulkUnlock
    signal bulkLock
    signal bulkRemove
    signal bulkShred
    signal clearSelection

    component Action: SecondaryButton {
        leftPadding: bar.isNarrow ? Spacing.sm : Spacing.md
        rightPadding: leftPadding
    }

    implicitHeight: Math.max(Spacing.xxxl, content.implicitHeight + Spacing.md)
    color: Colors.selection
    Accessible.role: Accessible.ToolBar
    Accessible.name: "Selected Items"

    RowLayout {
        id: content

        anchors.fill: parent
        anchors.leftMargin: Spacing.lg
        anchors.rightMargin: Spacing.lg
        spacing: Spacing.sm

        SymbolImage {
            symbol: "checkmark.circle.fill"
            size: Metrics.symbolControl
            color: Colors.primaryAccent
        }

        TextLabel {
            text: bar.selectedCount + " selected"
            Layout.fillWidth: true
            Layout.minimumWidth: implicitWidth + Spacing.sm
            font: Typography.buttonText
            Accessible.role: Accessible.StatusBar
        }

        WrappingRow {
            spacing: Spacing.sm

            Action {
                visible: bar.canUnlockItems > 0
                text: "Unlock (" + bar.canUnlockItems + ")"
                symbol: "lock.open.fill"
                onClicked: bar.bulkUnlock()
            }

            Action {
                visible: bar.canLockItems > 0
                text: "Lock (" + bar.canLockItems + ")"
                symbol: "lock.fill"
                onClicked: bar.bulkLock()
            }

            Action {
                text: "Remove (" + bar.selectedCount + ")"
                symbol: "minus.circle.fill"
                onClicked: bar.bulkRemove()
            }

            Action {
                text: "Shred (" + bar.selectedCount + ")"
                symbol: "trash.fill"
                fill: Colors.background
                foreground: Colors.error
                outline: Colors.error
                onClicked: bar.bulkShred()
            }

            Action {
                text: "Clear"
                helpText: "Clear the selection"
                fill: Colors.clear
                outline: Colors.clear
                onClicked: bar.clearSelection()
            }
        }
    }
}
