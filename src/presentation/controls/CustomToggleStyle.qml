// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import QtQuick.Controls.Basic
import Quillhaven.Design

/// The switch of a setting.
Switch {
    id: control

    function press() {
        if (enabled) {
            toggle()
            toggled()
        }
    }

    implicitHeight: DesignSystem.toggleSize
    padding: 0
    spacing: Spacing.sm
    hoverEnabled: true
    opacity: enabled ? 1 : 0.45
    font: Typography.settingLabel
    Accessible.role: Accessible.CheckBox
    Accessible.name: text
    Accessible.checkable: true
    Accessible.checked: checked
    Accessible.onPressAction: press()
    Accessible.onToggleAction: press()
    Keys.onReturnPressed: press()
    Keys.onEnterPressed: press()

    indicator: Rectangle {
        implicitWidth: DesignSystem.toggleSize * 1.75
        implicitHeight: DesignSystem.toggleSize
        radius: height / 2
        color: control.checked ? Colors.primary : Colors.backgroundSecondary
        border.width: 1
        border.color: control.checked ? Colors.primary : Colors.border

        Rectangle {
            x: control.checked ? parent.width - width - 3 : 3
            anchors.verticalCenter: parent.verticalCenter
            width: parent.height - 6
            height: width
            radius: width / 2
            color: Colors.textPrimary

            Behavior on x {
                NumberAnimation { duration: DesignSystem.animationQuick; easing.type: Easing.InOutQuad }
            }
        }

        FocusRing {
            shown: control.visualFocus
            radius: parent.radius + 3
        }
    }

    contentItem: Text {
        leftPadding: control.text === "" ? 0 : control.indicator.width + control.spacing
        text: control.text
        textFormat: Text.PlainText
        font: control.font
        color: Colors.textPrimary
        verticalAlignment: Text.AlignVCenter
        Accessible.ignored: true
    }
}
