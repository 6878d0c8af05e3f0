// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import Quillhaven.Controls
import Quillhaven.Design

/// The actions of a row in a menu. It follows the row's item while it is open, and closes when the row is gone.
PopMenu {
    id: menu

    property FinderRowView row: null
    readonly property bool canAct: row !== null && !row.isBusy

    onRowChanged: if (!row) close()

    PopMenuItem {
        text: menu.row?.toggleLockText ?? ""
        symbol: menu.row?.toggleLockIcon ?? ""
        enabled: menu.canAct
        onChosen: menu.row.toggle()
    }

    PopMenuItem {
        text: "Reveal in Finder"
        symbol: "folder.badge.plus"
        onChosen: menu.row.actions.revealInFinder(menu.row.itemId)
    }

    PopMenuItem {
        text: "Copy Path"
        symbol: "doc.on.clipboard"
        onChosen: menu.row.actions.copyPathToClipboard(menu.row.itemId)
    }

    PopMenuItem {
        text: "Duplicate as Encrypted Copy"
        symbol: "plus.square.on.square"
        enabled: menu.canAct
        onChosen: menu.row.actions.duplicateAsEncryptedCopy(menu.row.itemId)
    }

    PopMenuItem {
        text: "🗑️ Secure Shred"
        shownText: "Secure Shred"
        symbol: "trash.fill"
        ink: Colors.error
        enabled: menu.canAct
        onChosen: menu.row.actions.askToDelete(menu.row.itemId)
    }

    PopMenuItem {
        text: "Remove Protection"
        symbol: "minus.circle.fill"
        enabled: menu.canAct
        onChosen: menu.row.remove(menu.row.itemId)
    }
}
