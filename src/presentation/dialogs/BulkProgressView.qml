// SPDX-License-Identifier: GPL-3.0-or-later

pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts
import Quillhaven.Controls
import Quillhaven.Design
import Quillhaven.Dialogs

/// Shows the progress of an operation on several items. Closing it does not stop the operation.
Sheet {
    id: sheet

    required property OperationProgress operation
    readonly property string bulkProgressMessage: operation.message
    readonly property real bulkProgressValue: operation.progress

    presented: operation.isPresented
    title: "Bulk Operation"
    message: bulkProgressMessage
    symbol: "square.stack.3d.up.fill"
    onEscapePressed: operation.hide()

    ProgressLine {
        Layout.fillWidth: true
        Layout.minimumWidth: sheet.leastBodyWidth
        value: sheet.bulkProgressValue
    }

    TextLabel {
        Layout.fillWidth: true
        text: sheet.operation.percent + "% Complete"
        font: Typography.settingDescription
        color: Colors.textSecondary
        horizontalAlignment: Text.AlignHCenter
        Accessible.role: Accessible.StatusBar
    }

    TextLabel {
        Layout.fillWidth: true
        visible: text !== ""
        text: sheet.operation.timeLeft
        font: Typography.settingDescription
        color: Colors.textSecondary
        horizontalAlignment: Text.AlignHCenter
    }

    buttons: SecondaryButton {
        Layout.fillWidth: true
        text: "Cancel"
        onClicked: sheet.operation.hide()
    }
}
