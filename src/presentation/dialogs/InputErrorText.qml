// SPDX-License-Identifier: GPL-3.0-or-later

pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts
import Quillhaven.Controls
import Quillhaven.Design

/// Says what is wrong with the input.
TextLabel {
    Layout.fillWidth: true
    Layout.preferredWidth: 1 // the text wraps, so that only the fields determine the width of the sheet
    visible: text !== ""
    font: Typography.settingDescription
    color: Colors.error
    wrapMode: Text.Wrap
    Accessible.role: Accessible.AlertMessage
}
