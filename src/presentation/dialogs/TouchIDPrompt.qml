// SPDX-License-Identifier: GPL-3.0-or-later

pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts
import Quillhaven.Controls
import Quillhaven.Design
import Quillhaven.Dialogs

/// Shown while the fingerprint reader waits for a finger.
Sheet {
    id: prompt

    required property BiometricAuthenticator manager

    presented: manager.isPrompting
    title: "Touch ID"
    message: manager.reason
    symbol: "touchid"
    minimumSheetWidth: Metrics.smallSheetMinimumWidth
    maximumSheetWidth: Metrics.sheetMinimumWidth
    onEscapePressed: manager.cancel()

    TextLabel {
        Layout.fillWidth: true
        text: prompt.manager.hint
        font: Typography.settingTitle
        horizontalAlignment: Text.AlignHCenter
        wrapMode: Text.Wrap
        Accessible.role: Accessible.AlertMessage
    }

    buttons: SecondaryButton {
        Layout.fillWidth: true
        text: "Cancel"
        onClicked: prompt.manager.cancel()
    }
}
