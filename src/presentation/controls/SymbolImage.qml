// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import Quillhaven.Design

/// A symbol of the icon theme in one colour, crisp at every scale factor.
Item {
    id: symbolImage

    property string symbol
    property color color: Colors.textPrimary
    property int size: 22

    function hexByte(value) {
        return Math.round(value * 255).toString(16).padStart(2, "0")
    }

    readonly property string colorCode: hexByte(color.a) + hexByte(color.r) + hexByte(color.g) + hexByte(color.b)

    implicitWidth: size
    implicitHeight: size
    Accessible.ignored: true

    Image {
        anchors.centerIn: parent
        width: symbolImage.size
        height: symbolImage.size
        sourceSize: Qt.size(symbolImage.size * Screen.devicePixelRatio, symbolImage.size * Screen.devicePixelRatio)
        source: symbolImage.symbol === "" ? "" : "image://symbols/" + symbolImage.symbol + "/" + symbolImage.colorCode
        Accessible.ignored: true
    }
}
