// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import QtQuick.Layouts
import Quillhaven.Controls
import Quillhaven.Design

/// Says in a row of the list that the path was copied.
RowLayout {
    spacing: Spacing.xs

    SymbolImage {
        symbol: "checkmark.circle.fill"
        size: Metrics.symbolSmall
        color: Colors.success
    }

    Text {
        Layout.fillWidth: true
        text: "Path copied to clipboard"
        color: Colors.success
        font.pixelSize: Typography.footnoteSize
        horizontalAlignment: Text.AlignLeft
        elide: Text.ElideRight
    }
}
