// SPDX-License-Identifier: GPL-3.0-or-later

pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts
import Quillhaven.Controls
import Quillhaven.Design
import Quillhaven.Dialogs

/// The smaller error dialog for a single row, with one hint. Its owner shows it by setting `presented`.
Sheet {
    id: dialog

    property string errorMessage
    readonly property string hint: rules.permissionHint(errorMessage)

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
    minimumSheetWidth: Metrics.smallSheetMinimumWidth
    initialFocusItem: buttons.mainButton
    onReturnPressed: dismiss()
    onEscapePressed: dismiss()

    ErrorDialogManager { id: rules }

    TextLabel {
        Layout.fillWidth: true
        visible: text !== ""
        text: dialog.hint
        font: Typography.settingDescription
        color: Colors.textSecondary
        horizontalAlignment: Text.AlignHCenter
        wrapMode: Text.Wrap
    }

    buttons: SheetButtons {
        id: buttons

        secondaryText: "Show Troubleshooting"
        showsSecondary: dialog.hint !== ""
        mainText: "OK"
        onSecondaryPressed: dialog.showTroubleshooting()
        onMainPressed: dialog.dismiss()
    }
}
