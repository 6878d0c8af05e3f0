// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import Quillhaven.Design

/// A symbol in one colour.
CrispImage {
    property string symbol
    property color color: Colors.textPrimary

    function hexByte(value: real): string {
        return Math.round(value * 255).toString(16).padStart(2, "0")
    }

    readonly property string colorCode: hexByte(color.a) + hexByte(color.r) + hexByte(color.g) + hexByte(color.b)

    source: symbol === "" ? "" : "image://symbols/" + symbol + "/" + colorCode
    // What points to where the text goes on points to the other side in a layout from right to left.
    mirror: (symbol === "chevron.right" || symbol === "arrow.uturn.backward") && LayoutMirroring.enabled
}
