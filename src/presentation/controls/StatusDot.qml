// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick

/// A dot in the colour of a state.
StatusIndicator {
    id: dot

    showIcon: false
    text: ""

    Rectangle {
        width: dot.pointSize * 2 / 3
        height: width
        radius: width / 2
        color: dot.ink
    }
}
