// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import Quillhaven.Controls
import Quillhaven.Preferences

/// The period of auto-lock, with a button for less and one for more.
SettingRow {
    id: row

    required property AutoLockSectionModel autoLock

    title: autoLock.minutesText

    IconButton {
        symbol: "minus.circle.fill"
        helpText: "One minute less"
        enabled: row.autoLock.minutes > 1
        onClicked: row.autoLock.minutes -= 1
    }

    IconButton {
        symbol: "plus.circle.fill"
        helpText: "One minute more"
        enabled: row.autoLock.minutes < 120
        onClicked: row.autoLock.minutes += 1
    }
}
