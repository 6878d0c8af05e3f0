// SPDX-License-Identifier: GPL-3.0-or-later

pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts
import Quillhaven.Controls
import Quillhaven.Design
import Quillhaven.Dialogs

/// The choice between a password and the fingerprint reader for a new item.
Sheet {
    id: dialog

    required property ProtectionMethodDialogManager manager

    presented: manager.isPresented
    title: manager.title
    message: "Choose how to lock this file:"
    symbol: "lock.shield.fill"
    initialFocusItem: passwordCard
    onEscapePressed: manager.cancel()

    MethodCard {
        id: passwordCard

        Layout.fillWidth: true
        text: "Password Protection"
        detail: "Secure with a custom password"
        symbol: "key.fill"
        onClicked: dialog.manager.choosePasswordProtection()
    }

    MethodCard {
        Layout.fillWidth: true
        text: "Touch ID Protection"
        detail: "Secure with biometric authentication"
        symbol: "touchid"
        onClicked: dialog.manager.chooseTouchIDProtection()
    }

    TextLabel {
        Layout.fillWidth: true
        visible: text !== ""
        text: dialog.manager.touchIDNote
        font: Typography.settingDescription
        color: Colors.warning
        wrapMode: Text.Wrap
    }

    buttons: SecondaryButton {
        Layout.fillWidth: true
        text: "Cancel"
        onClicked: dialog.manager.cancel()
    }
}
