// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import QtQuick.Layouts
import Quillhaven.Controls
import Quillhaven.Design

/// A button of the popover's footer: a symbol over its label.
FilledButton {
    id: button

    implicitHeight: Math.max(Metrics.popoverFooterHeight, implicitContentHeight)
    leftPadding: 0
    rightPadding: 0
    fill: Colors.clear
    hoverBrightness: Metrics.tintOpacity

    contentItem: ColumnLayout {
        spacing: 0

        SymbolImage {
            Layout.alignment: Qt.AlignHCenter | Qt.AlignBottom
            symbol: button.symbol
            size: Metrics.symbolSmall
            color: Colors.textPrimary
        }

        Text {
            Layout.alignment: Qt.AlignHCenter | Qt.AlignTop
            text: button.text
            textFormat: Text.PlainText
            color: Colors.textPrimary
            font.pixelSize: Typography.footnoteSize
            Accessible.ignored: true
        }
    }
}
