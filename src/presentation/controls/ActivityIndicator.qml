// SPDX-License-Identifier: GPL-3.0-or-later

pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Controls.Basic
import Quillhaven.Design

/// Shows that something is going on: a ring that turns, or three dots if nothing is to move.
Item {
    id: indicator

    property color color: Colors.primaryAccent

    implicitWidth: Metrics.symbolControl
    implicitHeight: Metrics.symbolControl

    BusyIndicator {
        anchors.fill: parent
        padding: 0
        visible: !DesignSystem.reduceMotion
        running: visible
        palette.dark: indicator.color
        Accessible.ignored: true
    }

    Row {
        anchors.centerIn: parent
        visible: DesignSystem.reduceMotion
        spacing: indicator.width / 8

        Repeater {
            model: DesignSystem.reduceMotion ? 3 : 0

            Rectangle {
                width: indicator.width / 4
                height: width
                radius: width / 2
                color: indicator.color
            }
        }
    }
}
