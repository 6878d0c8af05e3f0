// SPDX-License-Identifier: GPL-3.0-or-later

pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts
import Quillhaven.Controls
import Quillhaven.Dialogs

/// Asks for the master password, or for a new one.
Sheet {
    id: dialog

    required property MasterPasswordDialogManager manager

    function handleAuthenticate() {
        if (manager.handleAuthenticate(field.secret))
            field.secret = ""
    }

    function forget() {
        field.secret = ""
        field.revealed = false
    }

    presented: manager.isPresented
    title: manager.title
    message: manager.message
    symbol: "lock.shield.fill"
    initialFocusItem: field.inputItem
    onPresentedChanged: forget()
    onReturnPressed: handleAuthenticate()
    onEscapePressed: manager.cancel()

    Connections {
        target: dialog.manager
        function onAsked() {
            dialog.forget()
            dialog.takeFocusAgain()
        }
    }

    PasswordField {
        id: field

        Layout.fillWidth: true
        Layout.minimumWidth: dialog.fieldWidth
        label: "Master Password"
        prompt: "Enter password"
        onAccepted: dialog.handleAuthenticate()
    }

    InputErrorText {
        text: dialog.manager.shownError
    }

    buttons: SheetButtons {
        mainText: dialog.manager.actionTitle
        busy: dialog.manager.isAuthenticating
        canAct: field.secret !== "" && !dialog.manager.isAuthenticating
        onSecondaryPressed: dialog.manager.cancel()
        onMainPressed: dialog.handleAuthenticate()
    }
}
