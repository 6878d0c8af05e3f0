// SPDX-License-Identifier: GPL-3.0-or-later

pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts
import Quillhaven.Controls
import Quillhaven.Design
import Quillhaven.Dialogs

/// A yes-or-no question.
Sheet {
    id: dialog

    required property ConfirmationDialogManager manager

    presented: manager.isPresented
    title: manager.title
    message: manager.message
    symbol: manager.isDestructive ? "exclamationmark.triangle" : "questionmark.circle"
    symbolColor: manager.isDestructive ? Colors.error : Colors.primaryAccent
    minimumSheetWidth: Metrics.smallSheetMinimumWidth
    initialFocusItem: manager.isDestructive && manager.showCancelButton ? cancelButton : confirmButton
    onReturnPressed: manager.confirm()
    onEscapePressed: manager.cancel()

    buttons: [
        Item { Layout.fillWidth: true },
        SecondaryButton {
            id: cancelButton

            Layout.minimumWidth: Metrics.sheetButtonWidth
            visible: dialog.manager.showCancelButton
            text: dialog.manager.cancelTitle
            onClicked: dialog.manager.cancel()
        },
        FilledButton {
            id: confirmButton

            Layout.minimumWidth: Metrics.sheetButtonWidth
            text: dialog.manager.confirmTitle
            fill: dialog.manager.isDestructive ? Colors.destructive : Colors.cta
            onClicked: dialog.manager.confirm()
        },
        Item { Layout.fillWidth: true }
    ]
}
