// SPDX-License-Identifier: GPL-3.0-or-later

pragma ComponentBehavior: Bound
import QtQuick
import Quillhaven.Design

/// A button that opens a list to choose one option from.
FilledButton {
    id: picker

    property string label
    property string selection
    property list<string> options
    property bool isOpen: menu.visible

    signal selected(string option)

    leftPadding: Spacing.md
    rightPadding: Spacing.md
    trailingSymbol: "chevron.down"
    fill: Colors.bgPanel
    outline: Colors.borderSubtle
    text: label + ": " + selection
    Accessible.role: Accessible.ComboBox
    onClicked: menu.visible ? menu.close() : menu.open()
    Keys.onDownPressed: menu.open()

    PopMenu {
        id: menu

        x: picker.mirrored ? picker.width - width : 0
        y: picker.height + Spacing.xs
        width: Math.max(picker.width, Metrics.pickerMinimumWidth)
        onOpened: currentIndex = picker.options.indexOf(picker.selection)

        Instantiator {
            model: picker.options
            delegate: PopMenuItem {
                required property string modelData

                text: modelData
                symbol: "checkmark.circle.fill"
                showsSymbol: modelData === picker.selection
                Accessible.role: Accessible.MenuItem
                onChosen: picker.selected(modelData)
            }
            onObjectAdded: (index, object) => menu.insertItem(index, object as Item)
            onObjectRemoved: (index, object) => menu.removeItem(object as Item)
        }
    }
}
