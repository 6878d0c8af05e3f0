// SPDX-License-Identifier: GPL-3.0-or-later

pragma Singleton
import QtQuick

/// The sheets that show, in the order of their opening: in each window the latest lies on top and holds the keyboard.
QtObject {
    id: stack

    property var sheets: []

    function open(sheet) {
        sheets = sheets.concat([sheet])
    }

    /// Takes a sheet out, and answers with the one above it in its window, if there is one.
    function close(sheet) {
        const above = sheets.slice(sheets.indexOf(sheet) + 1).find(other => other.window === sheet.window)
        sheets = sheets.filter(other => other !== sheet)
        return above ?? null
    }

    function isTop(sheet) {
        const ofWindow = sheets.filter(other => other.window === sheet.window)
        return ofWindow.length > 0 && ofWindow[ofWindow.length - 1] === sheet
    }
}
