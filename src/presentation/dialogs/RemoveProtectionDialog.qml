// SPDX-License-Identifier: GPL-3.0-or-later

pragma ComponentBehavior: Bound

import QtQuick
import Quillhaven.Controls
import Quillhaven.Design
import Quillhaven.Dialogs

/// The question before an item's protection is removed.
Sheet {
    id: dialog

    required property RemoveProtectionDialogManager manager

    presented: manager.isPresented
    title: "Remove Protection"
    message: manager.message
    symbol: "folder.badge.minus"
    symbolColor: Colors.warning
    initialFocusItem: buttons.secondaryButton
    onEscapePressed: manager.cancel()

    buttons: SheetButtons {
        id: buttons

        mainText: "Remove Protection"
        onSecondaryPressed: dialog.manager.cancel()
        onMainPressed: dialog.manager.remove()
    }
}
