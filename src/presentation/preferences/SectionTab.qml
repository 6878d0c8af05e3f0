// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import QtQuick.Controls.Basic
import Quillhaven.Controls
import Quillhaven.Design

/// A tab with a symbol and a word.
TabButton {
    id: tab

    property string symbol

    implicitHeight: Math.max(DesignSystem.buttonHeight, implicitContentHeight + 2 * Spacing.sm)
    padding: 0
    hoverEnabled: true
    focusPolicy: Qt.StrongFocus
    font: Typography.buttonText

    KeyboardPress {
        control: tab
        onPressed: tab.clicked()
    }

    contentItem: ButtonFace {
        symbol: tab.symbol
        caption: tab.text
        font: tab.font
    }

    background: Rectangle {
        radius: DesignSystem.cornerRadiusMedium
        color: tab.checked ? Colors.primary : tab.hovered ? Colors.panelHover : Colors.bgPanel
        border.width: 1
        border.color: tab.checked ? (Colors.isHighContrast ? Colors.textPrimary : Colors.primary) : Colors.borderSubtle

        FocusRing { shown: tab.visualFocus }
    }
}
