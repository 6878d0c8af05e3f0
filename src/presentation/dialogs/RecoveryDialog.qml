// SPDX-License-Identifier: GPL-3.0-or-later

pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts
import Quillhaven.Controls
import Quillhaven.Design
import Quillhaven.Dialogs

/// Asks for the master password before all files are recovered.
Sheet {
    id: dialog

    required property RecoveryDialogManager manager

    function recover() {
        manager.recover(field.secret)
    }

    presented: manager.isPresented
    title: "Recover All Files"
    message: "Enter your master password to restore all your protected files from iCloud backup"
    symbol: "lock.rotation"
    initialFocusItem: field.inputItem
    onPresentedChanged: {
        field.secret = ""
        field.revealed = false
    }
    onReturnPressed: recover()
    onEscapePressed: manager.cancel()

    PasswordField {
        id: field

        Layout.fillWidth: true
        Layout.minimumWidth: dialog.fieldWidth
        label: "Master Password"
        prompt: "Enter your master password"
        onAccepted: dialog.recover()
    }

    Rectangle {
        Layout.fillWidth: true
        implicitHeight: steps.implicitHeight + 2 * Spacing.md
        radius: DesignSystem.cornerRadiusMedium
        color: Colors.backgroundSecondary
        border.width: 1
        border.color: Colors.borderSubtle

        ColumnLayout {
            id: steps

            anchors.left: parent.left
            anchors.right: parent.right
            anchors.top: parent.top
            anchors.margins: Spacing.md
            spacing: Spacing.sm

            TextLabel {
                text: "How to use:"
                font: Typography.settingTitle
                Accessible.role: Accessible.Heading
            }

            Repeater {
                model: ["Enter your master password (the same password you use to access the app)",
                        "Click 'Recover All Files' to restore all your protected files",
                        "Choose a folder to save all recovered files"]

                RowLayout {
                    id: step

                    required property string modelData
                    required property int index

                    Layout.fillWidth: true
                    spacing: Spacing.sm

                    Text {
                        Layout.alignment: Qt.AlignTop
                        Layout.minimumWidth: Spacing.lg
                        text: (step.index + 1) + "."
                        font: Typography.settingDescription
                        color: Colors.textPrimary
                        Accessible.ignored: true
                    }

                    TextLabel {
                        Layout.fillWidth: true
                        text: step.modelData
                        font: Typography.settingDescription
                        color: Colors.textSecondary
                        wrapMode: Text.Wrap
                    }
                }
            }
        }
    }

    buttons: SheetButtons {
        mainText: dialog.manager.recoverTitle
        mainSymbol: "arrow.clockwise"
        busy: dialog.manager.isRecovering
        canAct: field.secret !== "" && !dialog.manager.isRecovering
        onSecondaryPressed: dialog.manager.cancel()
        onMainPressed: dialog.recover()
    }
}
