// SPDX-License-Identifier: GPL-3.0-or-later

pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts
import Quillhaven.Controls
import Quillhaven.Design

/// What is wrong with what was typed.
TextLabel {
    Layout.fillWidth: true
    Layout.preferredWidth: 1 // it wraps, and leaves the width of the sheet to the fields
    visible: text !== ""
    font: Typography.settingDescription
    color: Colors.error
    wrapMode: Text.Wrap
    Accessible.role: Accessible.AlertMessage
}
