// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import QtQuick.Controls.Basic
import Quillhaven.Design

/// The switch of a setting.
Switch {
    id: settingSwitch

    /// The gap between the edge and the knob.
    readonly property int gap: 3
    /// Whether the knob is at the right end.
    readonly property bool isRight: checked !== mirrored

    implicitHeight: Math.max(DesignSystem.toggleSize, implicitContentHeight)
    padding: 0
    spacing: Spacing.sm
    hoverEnabled: true
    opacity: enabled ? 1 : Colors.disabledOpacity
    font: Typography.settingLabel
    Accessible.role: Accessible.CheckBox
    Accessible.name: text
    Accessible.checkable: true
    Accessible.checked: checked

    KeyboardPress {
        control: settingSwitch
        onPressed: {
            settingSwitch.toggle()
            settingSwitch.toggled()
        }
    }

    indicator: Rectangle {
        x: settingSwitch.mirrored ? settingSwitch.width - width : 0
        y: (settingSwitch.height - height) / 2
        implicitWidth: DesignSystem.toggleSize * 1.75
        implicitHeight: DesignSystem.toggleSize
        radius: height / 2
        color: settingSwitch.checked ? Colors.primary : Colors.backgroundSecondary
        border.width: 1
        border.color: settingSwitch.checked && !Colors.isHighContrast ? Colors.primary : Colors.border

        Rectangle {
            x: settingSwitch.isRight ? parent.width - width - settingSwitch.gap : settingSwitch.gap
            anchors.verticalCenter: parent.verticalCenter
            width: parent.height - 2 * settingSwitch.gap
            height: width
            radius: width / 2
            color: Colors.textPrimary

            Behavior on x {
                NumberAnimation { duration: DesignSystem.animationQuick; easing.type: Easing.InOutQuad }
            }
        }

        // A bar for on, a ring for off.
        Rectangle {
            objectName: "shape"
            readonly property int room: parent.height + settingSwitch.gap
            x: settingSwitch.isRight ? (parent.width - room - width) / 2 : (parent.width + room - width) / 2
            anchors.verticalCenter: parent.verticalCenter
            visible: DesignSystem.differentiateWithoutColor
            width: settingSwitch.checked ? 2 : Spacing.sm
            height: Spacing.sm
            radius: width / 2
            color: settingSwitch.checked ? Colors.textPrimary : Colors.clear
            border.width: settingSwitch.checked ? 0 : 2
            border.color: Colors.textPrimary
        }

        FocusRing {
            shown: settingSwitch.visualFocus
            radius: parent.radius + Metrics.focusRingGap
        }
    }

    contentItem: Text {
        readonly property real room: settingSwitch.indicator.width + (text === "" ? 0 : settingSwitch.spacing)

        leftPadding: settingSwitch.mirrored ? 0 : room
        rightPadding: settingSwitch.mirrored ? room : 0
        horizontalAlignment: Text.AlignLeft
        text: settingSwitch.text
        textFormat: Text.PlainText
        font: settingSwitch.font
        color: Colors.textPrimary
        verticalAlignment: Text.AlignVCenter
        Accessible.ignored: true
    }
}
