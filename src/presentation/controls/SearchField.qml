// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import Quillhaven.Design
import QtQuick.Controls.Basic

/// A search text with a prompt and a button that empties it.
TextField {
    id: field

    implicitHeight: DesignSystem.buttonHeight
    leftPadding: Spacing.xl + Spacing.md
    rightPadding: Spacing.xl + Spacing.md
    font: Typography.settingLabel
    color: Colors.textPrimary
    placeholderTextColor: Colors.textTertiary
    selectionColor: Colors.primary
    selectedTextColor: Colors.textPrimary
    selectByMouse: true
    hoverEnabled: true
    Accessible.role: Accessible.EditableText
    Accessible.name: placeholderText

    function empty() {
        clear()
        textEdited()
    }

    Keys.onEscapePressed: (event) => {
        event.accepted = text !== ""
        if (event.accepted)
            empty()
    }

    background: TextFieldFrame {
        focused: field.activeFocus
        hovered: field.hovered
    }

    SymbolImage {
        anchors.left: parent.left
        anchors.leftMargin: Spacing.sm + 2
        anchors.verticalCenter: parent.verticalCenter
        symbol: "magnifyingglass"
        size: 18
        color: Colors.iconMuted
    }

    IconButton {
        anchors.right: parent.right
        anchors.rightMargin: 2
        anchors.verticalCenter: parent.verticalCenter
        width: 30
        height: 30
        visible: field.text !== ""
        activeFocusOnTab: false
        symbol: "xmark"
        helpText: "Clear search text"
        onClicked: {
            field.empty()
            field.forceActiveFocus()
        }
    }
}
