// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import QtQuick.Templates as T
import Quillhaven.Design

/// A single-line text field. Its text, its caret and its prompt begin at the side at which the layout begins.
T.TextField {
    id: field

    implicitWidth: Math.max(contentWidth, prompt.implicitWidth) + leftPadding + rightPadding
    implicitHeight: Math.max(Metrics.inputHeight, contentHeight + 2 * Spacing.sm)
    leftPadding: Spacing.md
    rightPadding: Spacing.md
    horizontalAlignment: TextInput.AlignLeft
    verticalAlignment: TextInput.AlignVCenter
    font: Typography.settingTitle
    color: Colors.textPrimary
    placeholderTextColor: Colors.textTertiary
    selectionColor: Colors.primary
    selectedTextColor: Colors.textPrimary
    selectByMouse: true
    hoverEnabled: true

    Text {
        id: prompt

        x: field.leftPadding
        width: field.width - field.leftPadding - field.rightPadding
        height: field.height
        visible: field.length === 0 && field.preeditText === ""
        text: field.placeholderText
        textFormat: Text.PlainText
        font: field.font
        color: field.placeholderTextColor
        horizontalAlignment: Text.AlignLeft
        verticalAlignment: Text.AlignVCenter
        elide: Text.ElideRight
        Accessible.ignored: true
    }

    background: TextFieldFrame {
        focused: field.activeFocus
        hovered: field.hovered
    }
}
