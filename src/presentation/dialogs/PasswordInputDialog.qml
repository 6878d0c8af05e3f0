// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import QtQuick.Layouts
import Quillhaven.Controls
import Quillhaven.Design
import Quillhaven.Dialogs

/// Asks for an item's password, or for a new one twice.
SheetFrame {
    id: sheet

    required property QtObject manager
    /// The state of this showing.
    required property QtObject dialog

    presented: manager.isPresented
    title: manager.title
    message: manager.message
    symbol: "key.fill"
    minimumSheetWidth: 350
    maximumSheetWidth: 500
    initialFocusItem: passwordField.inputItem
    onReturnPressed: dialog.confirm()
    onEscapePressed: dialog.cancel()

    PasswordField {
        id: passwordField

        Layout.fillWidth: true
        Layout.minimumWidth: 360
        label: "Password"
        prompt: "Enter password"
        onSecretChanged: sheet.dialog.password = secret
        onRevealedChanged: sheet.dialog.showPassword = revealed
        onAccepted: sheet.dialog.confirm()
    }

    PasswordField {
        id: confirmField

        Layout.fillWidth: true
        visible: sheet.manager.requiresConfirmation
        label: "Confirm password"
        prompt: "Confirm password"
        onSecretChanged: sheet.dialog.confirmPassword = secret
        onRevealedChanged: sheet.dialog.showConfirmPassword = revealed
        onAccepted: sheet.dialog.confirm()
    }

    // The fields follow the state, and the state the fields: no binding would survive the typing.
    function takeState() {
        passwordField.secret = dialog.password
        confirmField.secret = dialog.confirmPassword
        passwordField.revealed = dialog.showPassword
        confirmField.revealed = dialog.showConfirmPassword
    }

    Component.onCompleted: takeState()

    Connections {
        target: sheet.dialog
        function onChanged() {
            sheet.takeState()
        }
    }

    InputErrorText {
        text: sheet.dialog.showPasswordMismatch ? "Passwords don't match" : ""
    }

    ColumnLayout {
        Layout.fillWidth: true
        visible: sheet.dialog.showsRequirements
        spacing: Spacing.xs

        RequirementRow { text: "At least 8 characters"; isMet: sheet.dialog.hasMinimumLength }
        RequirementRow { text: "Uppercase letter"; isMet: sheet.dialog.hasUppercase }
        RequirementRow { text: "Lowercase letter"; isMet: sheet.dialog.hasLowercase }
        RequirementRow { text: "Number"; isMet: sheet.dialog.hasDigit }
    }

    InputErrorText {
        text: sheet.dialog.showPasswordStrengthError
              ? "Password must be at least 8 characters with uppercase, lowercase, and numbers" : ""
    }

    buttons: [
        SecondaryButton {
            Layout.fillWidth: true
            Layout.preferredWidth: 1
            text: "Cancel"
            onClicked: sheet.dialog.cancel()
        },
        PrimaryFilledButton {
            Layout.fillWidth: true
            Layout.preferredWidth: 1
            text: sheet.dialog.confirmTitle
            enabled: sheet.dialog.canConfirm
            onClicked: sheet.dialog.confirm()
        }
    ]
}
