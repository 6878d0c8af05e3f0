// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import QtQuick.Controls.Basic
import QtQuick.Layouts
import Quillhaven.Design

/// A check box with a text. It never changes its own state: `toggleRequested` reports that the user wants to change it,
/// and the owner of `ticked` decides.
CheckBox {
    id: box

    property bool ticked: false
    property bool isRound: false
    property int boxSize: Metrics.checkBoxSize
    /// The accessible name: the text, unless the box has none.
    property string label: text
    readonly property string symbol: isRound ? (ticked ? "checkmark.circle.fill" : "circle")
                                             : (ticked ? "checkmark.square.fill" : "square")

    signal toggleRequested

    implicitHeight: Math.max(boxSize + Spacing.sm, implicitContentHeight)
    padding: 0
    hoverEnabled: true
    checkState: ticked ? Qt.Checked : Qt.Unchecked
    nextCheckState: () => checkState
    onClicked: toggleRequested()
    Accessible.name: label
    Accessible.checked: checked // the toolkit reports no change that comes from checkState

    KeyboardPress {
        control: box
        onPressed: box.toggleRequested()
    }

    indicator: null
    contentItem: RowLayout {
        spacing: Spacing.sm

        Item {
            implicitWidth: box.boxSize
            implicitHeight: box.boxSize

            // Seen through the tick, which is a hole in the symbol.
            Rectangle {
                anchors.centerIn: parent
                width: parent.width * 0.7
                height: width
                radius: height / 2
                visible: box.ticked && !Colors.isHighContrast
                color: Colors.textPrimary
            }

            SymbolImage {
                anchors.centerIn: parent
                symbol: box.symbol
                // The shape fills the box; the padding of the drawing is outside it.
                size: box.boxSize * 1.2
                color: box.ticked ? (Colors.isHighContrast ? Colors.textPrimary : Colors.primary)
                                  : box.hovered ? Colors.primaryAccent : Colors.iconMuted
            }
        }

        Text {
            Layout.fillWidth: true
            visible: text !== ""
            text: box.text
            textFormat: Text.PlainText
            font: Typography.settingLabel
            color: Colors.textPrimary
            horizontalAlignment: Text.AlignLeft
            wrapMode: Text.Wrap
            Accessible.ignored: true
        }
    }

    background: Item {
        FocusRing { shown: box.visualFocus }
    }
}
