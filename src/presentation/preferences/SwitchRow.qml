// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import Quillhaven.Controls

/// A setting that is on or off.
SettingRow {
    id: row

    property bool checked: false
    property real controlScale: 1

    signal toggled(bool value)

    Accessible.ignored: true // the switch has the same name and description

    CustomToggleStyle {
        id: control

        text: ""
        scale: row.controlScale
        transformOrigin: mirrored ? Item.Left : Item.Right // in line with the others
        checked: row.checked
        Accessible.name: row.title
        Accessible.description: row.accessibilityHint !== "" ? row.accessibilityHint : row.description
        onToggled: {
            row.toggled(checked)
            checked = Qt.binding(() => row.checked) // The press has replaced the binding.
        }
    }
}
