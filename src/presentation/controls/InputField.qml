// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import QtQuick.Controls.Basic
import Quillhaven.Design

/// A single-line text field.
TextField {
    id: field

    implicitHeight: Metrics.inputHeight
    leftPadding: Spacing.md
    rightPadding: Spacing.md
    font: Typography.settingTitle
    color: Colors.textPrimary
    placeholderTextColor: Colors.textTertiary
    selectionColor: Colors.primary
    selectedTextColor: Colors.textPrimary
    selectByMouse: true
    hoverEnabled: true

    background: TextFieldFrame {
        focused: field.activeFocus
        hovered: field.hovered
    }
}
