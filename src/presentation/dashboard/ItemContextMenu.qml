// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import Quillhaven.Controls
import Quillhaven.Design

/// The actions of a row in a menu. It follows the row's item while it is open, and closes when the row is gone or shows
/// another item.
PopMenu {
    id: menu

    property FinderRowView row: null
    property string itemId
    readonly property bool canAct: row !== null && !row.isBusy
    readonly property bool isOfOtherItem: row !== null && row.itemId !== itemId

    /// Whether the keyboard has opened the menu: then the first action gets the focus.
    property bool isByKeyboard: false

    function openFor(ofRow, place, x, y) {
        itemId = ofRow.itemId
        row = ofRow
        popup(place, x, y)
    }

    onOpened: if (isByKeyboard) currentIndex = 0

    onRowChanged: if (!row) close()
    onIsOfOtherItemChanged: if (isOfOtherItem) close()

    PopMenuItem {
        text: menu.row?.toggleLockText ?? ""
        symbol: menu.row?.toggleLockIcon ?? ""
        enabled: menu.canAct
        onChosen: menu.row.toggle()
    }

    PopMenuItem {
        text: "Reveal in Finder"
        symbol: "folder.badge.plus"
        onChosen: menu.row.actions.revealInFinder(menu.itemId)
    }

    PopMenuItem {
        text: "Copy Path"
        symbol: "doc.on.clipboard"
        onChosen: menu.row.actions.copyPathToClipboard(menu.itemId)
    }

    PopMenuItem {
        text: "Duplicate as Encrypted Copy"
        symbol: "plus.square.on.square"
        enabled: menu.canAct
        onChosen: menu.row.actions.duplicateAsEncryptedCopy(menu.itemId)
    }

    PopMenuItem {
        text: "🗑️ Secure Shred"
        shownText: "Secure Shred"
        symbol: "trash.fill"
        ink: Colors.error
        enabled: menu.canAct
        onChosen: menu.row.actions.askToDelete(menu.itemId)
    }

    PopMenuItem {
        text: "Remove Protection"
        symbol: "minus.circle.fill"
        enabled: menu.canAct
        onChosen: menu.row.remove(menu.itemId)
    }
}
