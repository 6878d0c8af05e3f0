// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import Quillhaven.Design

/// A symbol in a circle, at the head of a sheet.
Rectangle {
    id: circle

    property string symbol
    property color symbolColor: Colors.primaryAccent
    /// Whether the sheet is shown.
    property bool showing: false
    /// Grows to its full size when the sheet appears, over 0.6 seconds.
    property bool springsIn: false
    /// Pulses while the sheet is shown.
    property bool pulses: false

    implicitHeight: implicitWidth
    radius: height / 2
    visible: symbol !== ""
    color: Colors.clear
    scale: showing || !springsIn ? 1 : 0.3

    Behavior on scale {
        NumberAnimation { duration: DesignSystem.reduceMotion ? 0 : Metrics.springDuration; easing.type: Easing.OutBack }
    }

    SequentialAnimation {
        running: circle.pulses && circle.showing && !DesignSystem.reduceMotion
        loops: Animation.Infinite
        alwaysRunToEnd: true
        NumberAnimation { target: pulse; property: "scale"; to: 1.15; duration: DesignSystem.animationSlow; easing.type: Easing.InOutQuad }
        NumberAnimation { target: pulse; property: "scale"; to: 1; duration: DesignSystem.animationSlow; easing.type: Easing.InOutQuad }
    }

    Rectangle {
        id: pulse

        anchors.fill: parent
        radius: circle.radius
        color: Qt.alpha(circle.symbolColor, Metrics.tintOpacity)
    }

    SymbolImage {
        anchors.centerIn: parent
        scale: pulse.scale
        symbol: circle.symbol
        size: circle.height / 2
        color: circle.symbolColor
    }
}
