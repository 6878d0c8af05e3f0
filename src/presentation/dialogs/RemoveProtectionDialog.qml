// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import QtQuick.Layouts
import Quillhaven.Controls
import Quillhaven.Design
import Quillhaven.Dialogs

/// The question before an item's protection is removed.
SheetFrame {
    id: dialog

    required property QtObject manager

    presented: manager.isPresented
    title: "Remove Protection"
    message: manager.message
    symbol: "folder.badge.minus"
    symbolColor: Colors.warning
    initialFocusItem: cancelButton
    onEscapePressed: manager.cancel()

    buttons: [
        SecondaryButton {
            id: cancelButton

            Layout.fillWidth: true
            Layout.preferredWidth: 1
            text: "Cancel"
            onClicked: dialog.manager.cancel()
        },
        PrimaryFilledButton {
            Layout.fillWidth: true
            Layout.preferredWidth: 1
            text: "Remove Protection"
            onClicked: dialog.manager.remove()
        }
    ]
}
