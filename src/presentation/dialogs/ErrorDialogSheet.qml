// SPDX-License-Identifier: GPL-3.0-or-later

pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts
import Quillhaven.Controls
import Quillhaven.Design
import Quillhaven.Dialogs

/// The smaller error dialog for a single row, with one hint.
Sheet {
    id: dialog

    required property ErrorDialogSheetModel manager

    presented: manager.isPresented
    title: "Error"
    message: manager.errorMessage
    symbol: "exclamationmark.triangle.fill"
    symbolColor: Colors.error
    minimumSheetWidth: Metrics.smallSheetMinimumWidth
    initialFocusItem: buttons.mainButton
    onReturnPressed: manager.ok()
    onEscapePressed: manager.ok()

    TextLabel {
        Layout.fillWidth: true
        visible: text !== ""
        text: dialog.manager.hint
        font: Typography.settingDescription
        color: Colors.textSecondary
        horizontalAlignment: Text.AlignHCenter
        wrapMode: Text.Wrap
    }

    buttons: SheetButtons {
        id: buttons

        secondaryText: "Show Troubleshooting"
        showsSecondary: dialog.manager.hint !== ""
        mainText: "OK"
        onSecondaryPressed: dialog.manager.showTroubleshooting()
        onMainPressed: dialog.manager.ok()
    }
}
