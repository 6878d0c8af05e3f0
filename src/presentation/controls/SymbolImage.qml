// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import Quillhaven.Design

/// A symbol of the icon theme in one colour, crisp at every scale factor.
Item {
    id: symbolImage

    property string symbol
    property color color: Colors.textPrimary
    property int size: Metrics.symbolStandard

    function hexByte(value: real): string {
        return Math.round(value * 255).toString(16).padStart(2, "0")
    }

    readonly property string colorCode: hexByte(color.a) + hexByte(color.r) + hexByte(color.g) + hexByte(color.b)

    readonly property bool hasDirection: symbol === "chevron.right" || symbol === "arrow.uturn.backward"

    readonly property real scaleFactor: Screen.devicePixelRatio
    /// The size in pixels of the screen, always a whole number even if the scale factor is not.
    readonly property int devicePixels: Math.round(size * scaleFactor)

    implicitWidth: size
    implicitHeight: size
    Accessible.ignored: true

    Image {
        anchors.centerIn: parent
        width: symbolImage.devicePixels / symbolImage.scaleFactor
        height: width
        mirror: symbolImage.hasDirection && symbolImage.LayoutMirroring.enabled
        sourceSize.width: symbolImage.devicePixels
        sourceSize.height: symbolImage.devicePixels
        source: symbolImage.symbol === "" ? "" : "image://symbols/" + symbolImage.symbol + "/" + symbolImage.colorCode
        Accessible.ignored: true
    }
}
