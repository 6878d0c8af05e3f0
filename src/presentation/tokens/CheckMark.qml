import QtQuick
import QtQuick.Controls.Basic
import QtQuick.Layouts
import Quillhaven.Design

/// A box to tick, with what it says beside it. `toggleRequested` tells that the user wants it the other way round; the opener
/// decides.
AbstractButton {
    id: box

    property bool ticked: false
    property string tickedSymbol: "checkmark.square.fill"
    property string emptySymbol: "square"
    property int symbolSize: 22
    /// What is read out; the text, unless the box stands alone.
    property string label: text

    signal toggleRequested

    function press() {
        if (enabled)
            toggleRequested()
    }

    implicitHeight: Math.max(symbolSize + Spacing.sm, words.implicitHeight)
    hoverEnabled: true
    onClicked: press()
    Accessible.role: Accessible.CheckBox
    Accessible.name: label
    Accessible.checkable: true
    Accessible.checked: ticked
    Accessible.onPressAction: press()
    Accessible.onToggleAction: press()
    Keys.onReturnPressed: press()
    Keys.onEnterPressed: press()

    contentItem: RowLayout {
        spacing: Spacing.sm

        SymbolImage {
            symbol: box.ticked ? box.tickedSymbol : box.emptySymbol
            size: box.symbolSize
            color: box.ticked || box.hovered ? Colors.primaryAccent : Colors.iconMuted
        }

        Text {
            id: words

            Layout.fillWidth: true
            visible: text !== ""
            text: box.text
            textFormat: Text.PlainText
            font: Typography.settingLabel
            color: Colors.textPrimary
            wrapMode: Text.Wrap
            Accessible.ignored: true
        }
    }

    background: Item {
        FocusRing { shown: box.visualFocus }
    }
}
