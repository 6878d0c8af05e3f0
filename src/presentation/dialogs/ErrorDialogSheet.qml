// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import QtQuick.Layouts
import Quillhaven.Controls
import Quillhaven.Design
import Quillhaven.Dialogs

/// The smaller error dialog of one row, with one hint. The opener shows it by `presented`.
SheetFrame {
    id: dialog

    property string errorMessage
    readonly property bool hasHint: {
        const lowered = errorMessage.toLowerCase()
        return lowered.includes("permission") || lowered.includes("access")
    }

    signal okPressed
    signal showTroubleshooting

    function dismiss() {
        okPressed()
        presented = false
    }

    title: "Error"
    message: errorMessage
    symbol: "exclamationmark.triangle.fill"
    symbolColor: Colors.error
    minimumSheetWidth: 350
    initialFocusItem: okButton
    onReturnPressed: dismiss()
    onEscapePressed: dismiss()

    Text {
        Layout.fillWidth: true
        visible: dialog.hasHint
        text: "Try closing any applications that might be using this file, or move it to a different location."
        font: Typography.settingDescription
        color: Colors.textSecondary
        horizontalAlignment: Text.AlignHCenter
        wrapMode: Text.Wrap
        Accessible.role: Accessible.StaticText
        Accessible.name: text
    }

    buttons: [
        SecondaryButton {
            Layout.fillWidth: true
            Layout.preferredWidth: 1
            visible: dialog.hasHint
            text: "Show Troubleshooting"
            onClicked: dialog.showTroubleshooting()
        },
        PrimaryFilledButton {
            id: okButton

            Layout.fillWidth: true
            Layout.preferredWidth: 1
            text: "OK"
            onClicked: dialog.dismiss()
        }
    ]
}
