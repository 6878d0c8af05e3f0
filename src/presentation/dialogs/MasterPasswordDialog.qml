// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import QtQuick.Layouts
import Quillhaven.Controls
import Quillhaven.Design
import Quillhaven.Dialogs

/// Asks for the master password, or for a new one.
SheetFrame {
    id: dialog

    required property QtObject manager

    function handleAuthenticate() {
        if (manager.handleAuthenticate(field.secret))
            field.secret = ""
    }

    presented: manager.isPresented
    title: manager.title
    message: manager.message
    symbol: "lock.shield.fill"
    initialFocusItem: field.inputItem
    onPresentedChanged: {
        field.secret = ""
        field.revealed = false
    }
    onReturnPressed: handleAuthenticate()
    onEscapePressed: manager.cancel()

    PasswordField {
        id: field

        Layout.fillWidth: true
        Layout.minimumWidth: 360
        label: "Master Password"
        prompt: "Enter password"
        onAccepted: dialog.handleAuthenticate()
    }

    InputErrorText {
        text: dialog.manager.showingError ? dialog.manager.errorMessage : ""
    }

    buttons: [
        SecondaryButton {
            Layout.fillWidth: true
            Layout.preferredWidth: 1
            text: "Cancel"
            onClicked: dialog.manager.cancel()
        },
        PrimaryFilledButton {
            Layout.fillWidth: true
            Layout.preferredWidth: 1
            text: dialog.manager.actionTitle
            busy: dialog.manager.isAuthenticating
            enabled: field.secret !== "" && !dialog.manager.isAuthenticating
            onClicked: dialog.handleAuthenticate()
        }
    ]
}
