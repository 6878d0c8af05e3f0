// SPDX-License-Identifier: GPL-3.0-or-later

pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts
import Quillhaven.Controls
import Quillhaven.Design
import Quillhaven.Dialogs

/// An error message, with a hint if there is one for its text.
Sheet {
    id: dialog

    required property ErrorDialogManager manager

    signal showTroubleshooting

    presented: manager.isPresented
    title: manager.errorTitle
    message: manager.errorMessage
    symbol: "exclamationmark.triangle.fill"
    symbolColor: Colors.error
    symbolSpringsIn: true
    appearance: DesignSystem.animationStandard
    initialFocusItem: buttons.mainButton
    onReturnPressed: manager.hideError()
    onEscapePressed: manager.hideError()

    Rectangle {
        Layout.fillWidth: true
        visible: dialog.manager.showTroubleshooting
        implicitHeight: hint.implicitHeight + Spacing.md * 2
        radius: DesignSystem.cornerRadiusMedium
        color: Colors.backgroundSecondary
        border.width: 1
        border.color: Colors.borderSubtle

        RowLayout {
            id: hint

            anchors.left: parent.left
            anchors.right: parent.right
            anchors.top: parent.top
            anchors.margins: Spacing.md
            spacing: Spacing.md

            SymbolImage {
                Layout.alignment: Qt.AlignTop
                symbol: "lightbulb.fill"
                color: Colors.warning
            }

            ColumnLayout {
                Layout.fillWidth: true
                spacing: Spacing.xs

                TextLabel {
                    text: "Troubleshooting"
                    font: Typography.settingTitle
                    Accessible.role: Accessible.Heading
                }

                TextLabel {
                    Layout.fillWidth: true
                    text: dialog.manager.troubleshootingMessage
                    font: Typography.settingDescription
                    color: Colors.textSecondary
                    wrapMode: Text.Wrap
                }
            }
        }
    }

    buttons: SheetButtons {
        id: buttons

        secondaryText: "Troubleshooting"
        showsSecondary: dialog.manager.showTroubleshooting
        mainText: "OK"
        onSecondaryPressed: dialog.showTroubleshooting()
        onMainPressed: dialog.manager.hideError()
    }
}
