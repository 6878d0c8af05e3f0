// SPDX-License-Identifier: GPL-3.0-or-later

pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts
import Quillhaven.Controls
import Quillhaven.Design
import Quillhaven.Dialogs

/// Asks for an item's password, or for a new one twice.
Sheet {
    id: sheet

    required property PasswordInputDialogManager manager
    /// The state of this showing.
    required property PasswordInputDialogModel dialog

    presented: manager.isPresented
    title: manager.title
    message: manager.message
    symbol: "key.fill"
    minimumSheetWidth: Metrics.smallSheetMinimumWidth
    initialFocusItem: passwordField.inputItem
    onReturnPressed: dialog.confirm()
    onEscapePressed: dialog.cancel()

    Connections {
        target: sheet.manager
        function onAsked() { sheet.takeFocusAgain() }
    }

    PasswordField {
        id: passwordField

        Layout.fillWidth: true
        Layout.minimumWidth: sheet.fieldWidth
        label: "Password"
        prompt: "Enter password"
        secret: sheet.dialog.password
        onSecretChanged: sheet.dialog.password = secret
        Binding on revealed { value: sheet.dialog.showPassword }
        onRevealedChanged: sheet.dialog.showPassword = revealed
        onAccepted: sheet.dialog.confirm()
    }

    PasswordField {
        id: confirmField

        Layout.fillWidth: true
        visible: sheet.manager.requiresConfirmation
        label: "Confirm password"
        prompt: "Confirm password"
        secret: sheet.dialog.confirmPassword
        onSecretChanged: sheet.dialog.confirmPassword = secret
        Binding on revealed { value: sheet.dialog.showConfirmPassword }
        onRevealedChanged: sheet.dialog.showConfirmPassword = revealed
        onAccepted: sheet.dialog.confirm()
    }

    InputErrorText {
        text: sheet.dialog.mismatchText
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
        text: sheet.dialog.strengthErrorText
    }

    buttons: SheetButtons {
        mainText: sheet.dialog.confirmTitle
        canAct: sheet.dialog.canConfirm
        onSecondaryPressed: sheet.dialog.cancel()
        onMainPressed: sheet.dialog.confirm()
    }
}
