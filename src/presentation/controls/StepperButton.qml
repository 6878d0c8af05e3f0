// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import Quillhaven.Design

/// The part of a stepper that makes the number smaller or larger.
Rectangle {
    id: button

    required property string symbol
    required property bool isActive
    required property bool isHovered
    required property bool isPressed

    width: DesignSystem.buttonHeight
    height: DesignSystem.buttonHeight
    radius: DesignSystem.cornerRadiusMedium
    color: !isActive ? Colors.clear : isPressed ? Colors.pressed : isHovered ? Colors.hover : Colors.clear

    SymbolImage {
        anchors.centerIn: parent
        symbol: button.symbol
        size: Metrics.symbolTiny
        color: button.isActive ? Colors.textPrimary : Colors.disabled
    }
}
