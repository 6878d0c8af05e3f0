// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import Quillhaven.Design

/// A square picture that is drawn for the pixels of the screen, crisp at every scale factor.
Item {
    id: crispImage

    property url source
    property int size: Metrics.symbolStandard
    property bool mirror: false

    readonly property real scaleFactor: Screen.devicePixelRatio
    /// The size in pixels of the screen, always a whole number even if the scale factor is not.
    readonly property int devicePixels: Math.round(size * scaleFactor)

    implicitWidth: size
    implicitHeight: size
    Accessible.ignored: true

    Image {
        anchors.centerIn: parent
        width: crispImage.devicePixels / crispImage.scaleFactor
        height: width
        mirror: crispImage.mirror
        sourceSize.width: crispImage.devicePixels
        sourceSize.height: crispImage.devicePixels
        source: crispImage.source
        Accessible.ignored: true
    }
}
