// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import QtQuick.Layouts
import Quillhaven.Controls
import Quillhaven.Design
import Quillhaven.Dialogs

/// The question how an item is to be deleted.
Sheet {
    id: sheet

    required property DeleteConfirmationModel dialog

    presented: dialog.isPresented
    title: dialog.title
    message: "This will permanently erase the encrypted file."
    symbol: "exclamationmark.triangle.fill"
    symbolColor: Colors.error
    maximumSheetWidth: minimumSheetWidth
    initialFocusItem: cancelButton
    onEscapePressed: dialog.cancel()

    TextLabel {
        Layout.fillWidth: true
        text: "This action cannot be undone."
        font: Typography.settingTitle
        color: Colors.error
        horizontalAlignment: Text.AlignHCenter
        wrapMode: Text.Wrap
    }

    TextLabel {
        Layout.fillWidth: true
        visible: text !== ""
        text: sheet.dialog.trashNote
        font: Typography.settingDescription
        color: Colors.textSecondary
        horizontalAlignment: Text.AlignHCenter
        wrapMode: Text.Wrap
    }

    buttons: ColumnLayout {
        Layout.fillWidth: true
        spacing: Spacing.sm

        DestructiveButton {
            Layout.fillWidth: true
            text: "Secure Delete"
            symbol: "trash.fill"
            onClicked: sheet.dialog.secureDelete()
        }

        SecondaryButton {
            Layout.fillWidth: true
            text: "Move to Trash"
            onClicked: sheet.dialog.moveToTrash()
        }

        SecondaryButton {
            id: cancelButton

            Layout.fillWidth: true
            text: "Cancel"
            onClicked: sheet.dialog.cancel()
        }
    }
}
