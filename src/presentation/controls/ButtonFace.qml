// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import Quillhaven.Design

/// The centred content of a button: a symbol or a busy indicator, a text, and a second symbol.
Item {
    id: face

    property string symbol
    property string trailingSymbol
    property string caption
    property bool busy: false
    property bool showsText: true
    property color ink: Colors.textPrimary
    property alias font: words.font

    implicitWidth: row.implicitWidth
    implicitHeight: row.implicitHeight

    Row {
        id: row

        anchors.centerIn: parent
        spacing: Spacing.sm

        SymbolImage {
            anchors.verticalCenter: parent.verticalCenter
            visible: face.symbol !== "" && !face.busy
            symbol: face.symbol
            size: Metrics.symbolControl
            color: face.ink
        }

        ActivityIndicator {
            anchors.verticalCenter: parent.verticalCenter
            width: Metrics.symbolControl
            height: Metrics.symbolControl
            visible: face.busy
            color: face.ink
            Accessible.ignored: true
        }

        Text {
            id: words

            anchors.verticalCenter: parent.verticalCenter
            visible: face.showsText && text !== ""
            text: face.caption
            textFormat: Text.PlainText
            color: face.ink
            Accessible.ignored: true
        }

        SymbolImage {
            anchors.verticalCenter: parent.verticalCenter
            visible: face.trailingSymbol !== "" && face.showsText
            symbol: face.trailingSymbol
            size: Metrics.symbolTiny
            color: face.ink
        }
    }
}
