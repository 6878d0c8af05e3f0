// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick

/// A dot in the colour of a state; for those who cannot rely on colours, the symbol of the state.
StatusIndicator {
    id: dot

    showIcon: false
    text: ""

    Rectangle {
        visible: !dot.hasSymbol
        width: dot.pointSize * 2 / 3
        height: width
        radius: width / 2
        color: dot.ink
    }
}
