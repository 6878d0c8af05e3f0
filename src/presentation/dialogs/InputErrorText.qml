// SPDX-License-Identifier: GPL-3.0-or-later

pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts
import Quillhaven.Design

/// What is wrong with what was typed.
Text {
    Layout.fillWidth: true
    Layout.preferredWidth: 1 // it wraps, and leaves the width of the sheet to the fields
    visible: text !== ""
    textFormat: Text.PlainText
    font: Typography.settingDescription
    color: Colors.error
    wrapMode: Text.Wrap
    Accessible.role: Accessible.AlertMessage
    Accessible.name: text
}
