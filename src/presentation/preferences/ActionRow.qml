// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import Quillhaven.Controls

/// What can be done, with a button that does it.
SettingRow {
    id: row

    required property string action
    property bool isBusy: false

    signal pressed

    SecondaryButton {
        text: row.action
        enabled: !row.isBusy
        busy: row.isBusy
        Accessible.description: row.title
        onClicked: row.pressed()
    }
}
