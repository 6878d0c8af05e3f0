// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import QtQuick.Layouts

/// Items in a row, and in more rows where one has no room for them.
Flow {
    id: flow

    /// The width of all items in one row.
    readonly property real rowWidth: {
        const shown = Array.from(visibleChildren).filter((item) => item.implicitWidth > 0)
        return shown.reduce((sum, item) => sum + Math.ceil(item.implicitWidth), 0) + spacing * Math.max(0, shown.length - 1)
    }

    Layout.fillWidth: true
    Layout.preferredWidth: rowWidth
    Layout.maximumWidth: rowWidth
}
