// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import Quillhaven.Design
import QtQuick.Layouts

/// The part of a sheet that scrolls if the window is low: a column that keeps the focused control in view.
Flickable {
    id: scroller

    /// The column is at least as high as this view, for what fills the rest.
    property bool fills: false
    default property alias items: column.data
    property alias spacing: column.spacing
    /// Room on each side for the rings around the outermost controls.
    readonly property int edge: Spacing.xs
    readonly property Item focusedItem: Window.activeFocusItem

    implicitWidth: column.implicitWidth + 2 * edge
    implicitHeight: column.implicitHeight + 2 * edge
    contentHeight: column.height + 2 * edge
    interactive: contentHeight > height
    boundsBehavior: Flickable.StopAtBounds
    clip: interactive
    onFocusedItemChanged: reveal(focusedItem)
    onHeightChanged: reveal(focusedItem)

    function scrollTo(position) {
        contentY = Math.max(0, Math.min(contentHeight - height, position))
    }

    /// Scrolls an item of the column into view.
    function reveal(item) {
        let ancestor = item
        while (ancestor && ancestor !== column)
            ancestor = ancestor.parent
        if (!ancestor)
            return
        const top = item.mapToItem(column, 0, 0).y
        if (top < contentY)
            scrollTo(top - Spacing.md)
        else if (top + item.height > contentY + height)
            scrollTo(top + item.height + Spacing.md - height)
    }

    Keys.onPressed: (event) => {
        const page = height - Spacing.xl
        const distances = { [Qt.Key_Down]: Spacing.xl, [Qt.Key_Up]: -Spacing.xl,
                            [Qt.Key_PageDown]: page, [Qt.Key_PageUp]: -page }
        if (event.key in distances) {
            scrollTo(contentY + distances[event.key])
            event.accepted = true
        }
    }

    ColumnLayout {
        id: column

        x: scroller.edge
        y: scroller.edge
        width: scroller.width - 2 * scroller.edge
        height: scroller.fills ? Math.max(implicitHeight, scroller.height - 2 * scroller.edge) : implicitHeight
    }
}
