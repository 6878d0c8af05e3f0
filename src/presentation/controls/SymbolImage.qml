// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import Quillhaven.Design

/// A symbol in one colour.
CrispImage {
    property string symbol
    property color color: Colors.textPrimary

    source: symbol === "" ? "" : "image://symbols/" + symbol + "/" + color.toString().slice(1)
    // What points to where the text goes on points to the other side in a layout from right to left.
    mirror: (symbol === "chevron.right" || symbol === "arrow.uturn.backward") && LayoutMirroring.enabled
}
