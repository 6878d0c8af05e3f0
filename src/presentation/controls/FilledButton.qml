// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import QtQuick.Controls.Basic
import Quillhaven.Design

/// The base of all buttons: a fill or a gradient, a corner radius, a brighter fill under the pointer.
Button {
    id: button

    property string symbol
    /// Shown after the text, such as the arrow of a button that opens a list.
    property string trailingSymbol
    property bool busy: false
    property color fill: Colors.cta
    property Gradient fillGradient: null
    property color foreground: Colors.textPrimary
    property color outline: Colors.isHighContrast && fill.a > 0 ? Colors.border : Colors.clear
    property int cornerRadius: DesignSystem.cornerRadiusMedium
    property real hoverBrightness: DesignSystem.hoverBrightness
    readonly property bool hasFill: enabled || !Colors.isHighContrast
    property string helpText
    /// False to save room: only the symbol is shown then; the text remains the accessible name.
    property bool showsText: true
    /// The part of the text that is drawn, if a symbol replaces the rest.
    property string shownText: text

    implicitHeight: Math.max(DesignSystem.buttonHeight, implicitContentHeight + 2 * Spacing.sm)
    implicitWidth: Math.max(implicitContentWidth + leftPadding + rightPadding, Metrics.buttonMinimumWidth)
    leftPadding: Spacing.lg
    rightPadding: Spacing.lg
    topPadding: 0
    bottomPadding: 0
    hoverEnabled: true
    font: Typography.buttonText

    Accessible.role: Accessible.Button
    Accessible.name: text
    Accessible.description: helpText

    // As KeyboardPress does, but without its objects: a long list has many buttons.
    function press() {
        if (enabled && !busy)
            clicked()
    }
    Keys.onReturnPressed: press()
    Keys.onEnterPressed: press()
    Accessible.onPressAction: press()
    Accessible.onToggleAction: press()

    ToolTip.visible: hovered && ToolTip.text !== ""
    ToolTip.text: helpText === "" && !showsText ? text : helpText
    ToolTip.delay: Metrics.toolTipDelay

    contentItem: ButtonFace {
        symbol: button.symbol
        trailingSymbol: button.trailingSymbol
        caption: button.shownText
        busy: button.busy
        showsText: button.showsText && button.text !== ""
        ink: button.foreground
        font: button.font
    }

    opacity: enabled ? 1 : Colors.disabledOpacity

    background: Rectangle {
        radius: button.cornerRadius
        // With more contrast, a disabled button has no fill: its text is readable on what is under it.
        color: button.hasFill ? button.fill : Colors.clear
        gradient: button.hasFill ? button.fillGradient : null
        border.width: button.outline.a > 0 ? 1 : 0
        border.color: button.outline

        Rectangle {
            anchors.fill: parent
            radius: parent.radius
            color: Colors.brightening
            opacity: button.down ? 0 : button.hovered && button.enabled ? button.hoverBrightness : 0

            Behavior on opacity {
                NumberAnimation { duration: DesignSystem.animationQuick }
            }
        }

        Rectangle {
            anchors.fill: parent
            radius: parent.radius
            color: Colors.pressed
            visible: button.down
        }

        FocusRing {
            shown: button.visualFocus
            radius: button.cornerRadius + Metrics.focusRingGap
        }
    }
}
