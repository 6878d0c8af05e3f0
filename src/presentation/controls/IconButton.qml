// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import Quillhaven.Design

/// A button that shows only a symbol; its help text is its accessible name.
FilledButton {
    id: button

    property color color: Colors.iconMuted

    implicitWidth: Math.max(DesignSystem.buttonHeight, Metrics.symbolControl + 2 * Spacing.sm)
    leftPadding: 0
    rightPadding: 0
    fill: Colors.clear
    hoverBrightness: 0.1
    foreground: color
    Accessible.name: helpText
    Accessible.description: ""

    contentItem: SymbolImage {
        symbol: button.symbol
        size: Metrics.symbolControl
        color: button.foreground
    }
}
