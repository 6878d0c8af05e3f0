import QtQuick
import QtQuick.Window

/// One symbol in one colour.
Image {
    property string symbol
    property color color: Colors.textPrimary
    property int size: 16

    implicitWidth: size
    implicitHeight: size
    source: symbol === "" ? "" : Symbols.source(symbol, color)
    sourceSize: Qt.size(Math.ceil(size * Screen.devicePixelRatio), Math.ceil(size * Screen.devicePixelRatio))
    opacity: color.a
    Accessible.ignored: true
}
