// SPDX-License-Identifier: GPL-3.0-or-later

pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Controls.Basic
import Quillhaven.Design

/// A button that opens a list to choose one option from.
FilledButton {
    id: picker

    property string label
    property string selection
    property var options: []
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

    Menu {
        id: menu

        y: picker.height + Spacing.xs
        onOpened: currentIndex = picker.options.indexOf(picker.selection)
        width: Math.max(picker.width, 160)
        padding: Spacing.xs

        background: Rectangle {
            radius: DesignSystem.cornerRadiusMedium
            color: Colors.bgPanel
            border.width: 1
            border.color: Colors.border
        }

        Instantiator {
            model: picker.options
            delegate: MenuItem {
                id: option

                required property string modelData

                text: modelData
                implicitHeight: 32
                font: Typography.settingLabel
                Accessible.role: Accessible.MenuItem
                Accessible.name: modelData
                Accessible.onPressAction: choose()
                onTriggered: choose()

                function choose() {
                    menu.close()
                    picker.selected(modelData)
                }

                contentItem: Row {
                    spacing: Spacing.sm

                    SymbolImage {
                        anchors.verticalCenter: parent.verticalCenter
                        opacity: option.modelData === picker.selection ? 1 : 0
                        symbol: "checkmark.circle.fill"
                        size: 16
                        color: Colors.textPrimary
                    }

                    Text {
                        anchors.verticalCenter: parent.verticalCenter
                        text: option.text
                        font: option.font
                        color: Colors.textPrimary
                        Accessible.ignored: true
                    }
                }

                background: Rectangle {
                    radius: DesignSystem.cornerRadiusSmall
                    color: option.highlighted ? Colors.primary : "transparent"
                }
            }
            onObjectAdded: (index, object) => menu.insertItem(index, object)
            onObjectRemoved: (index, object) => menu.removeItem(object)
        }
    }
}
