// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import QtQuick.Controls.Basic
import Quillhaven.Design

/// Shows how much of an operation is done, from 0 to 1.
ProgressBar {
    id: line

    property color tint: Colors.primaryAccent
    property string label: "Progress"

    implicitHeight: Spacing.sm
    Accessible.role: Accessible.ProgressBar
    Accessible.name: label

    background: Rectangle {
        radius: height / 2
        color: Colors.backgroundSecondary
        border.width: 1
        border.color: Colors.borderSubtle
    }

    contentItem: Item {
        Rectangle {
            anchors.left: parent.left
            width: Math.max(parent.height, line.position * parent.width)
            height: parent.height
            radius: height / 2
            visible: line.value > 0
            color: line.tint

            Behavior on width {
                NumberAnimation { duration: DesignSystem.animationQuick }
            }
        }
    }
}
