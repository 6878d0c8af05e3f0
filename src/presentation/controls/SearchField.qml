// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import Quillhaven.Design

/// A search field with a prompt and a button that clears it.
InputField {
    id: field

    implicitHeight: Math.max(DesignSystem.buttonHeight, contentHeight + 2 * Spacing.sm)
    leftPadding: Metrics.symbolControl + 2 * Spacing.sm + 2
    rightPadding: leftPadding
    font: Typography.settingLabel
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

    SymbolImage {
        anchors.left: parent.left
        anchors.leftMargin: Spacing.sm + 2
        anchors.verticalCenter: parent.verticalCenter
        symbol: "magnifyingglass"
        size: Metrics.symbolControl
        color: Colors.iconMuted
    }

    IconButton {
        anchors.right: parent.right
        anchors.rightMargin: 2
        anchors.verticalCenter: parent.verticalCenter
        width: Math.max(Metrics.smallButton, Metrics.symbolControl + Spacing.md)
        height: width
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
