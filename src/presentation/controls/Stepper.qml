// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import QtQuick.Controls.Basic
import Quillhaven.Design

/// A whole number, with a button for less and one for more. It can be typed too.
SpinBox {
    id: stepper

    // The names under which Qt 6.4 looks for the limits that screen readers read out.
    readonly property int minimumValue: from
    readonly property int maximumValue: to

    implicitWidth: leftPadding + rightPadding + Metrics.stepperField
    implicitHeight: Math.max(DesignSystem.buttonHeight, implicitContentHeight + 2 * Spacing.sm)
    leftPadding: DesignSystem.buttonHeight
    rightPadding: DesignSystem.buttonHeight
    topPadding: 0
    bottomPadding: 0
    editable: true
    valueFromText: (text, locale) => text === "" ? value : Number.fromLocaleString(locale, text)
    font: Typography.settingLabel
    opacity: enabled ? 1 : Colors.disabledOpacity

    contentItem: TextInput {
        text: stepper.displayText
        font: stepper.font
        color: Colors.textPrimary
        selectionColor: Colors.primary
        selectedTextColor: Colors.textPrimary
        horizontalAlignment: Qt.AlignHCenter
        verticalAlignment: Qt.AlignVCenter
        readOnly: !stepper.editable
        validator: stepper.validator
        inputMethodHints: Qt.ImhDigitsOnly
        Accessible.ignored: true
    }

    down.indicator: StepperButton {
        x: stepper.mirrored ? stepper.width - width : 0
        y: (stepper.height - height) / 2
        symbol: "minus"
        isActive: stepper.value > stepper.from
        isHovered: stepper.down.hovered
        isPressed: stepper.down.pressed
    }

    up.indicator: StepperButton {
        x: stepper.mirrored ? 0 : stepper.width - width
        y: (stepper.height - height) / 2
        symbol: "plus"
        isActive: stepper.value < stepper.to
        isHovered: stepper.up.hovered
        isPressed: stepper.up.pressed
    }

    background: Rectangle {
        radius: DesignSystem.cornerRadiusMedium
        color: Colors.backgroundSecondary
        border.width: 1
        border.color: Colors.border

        FocusRing {
            shown: stepper.activeFocus
            radius: parent.radius + Metrics.focusRingGap
        }
    }
}
