// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import Quillhaven.Controls
import Quillhaven.Preferences

/// The period of auto-lock.
SettingRow {
    id: row

    required property AutoLockSectionModel autoLock

    title: autoLock.minutesText

    Stepper {
        from: row.autoLock.fewestMinutes
        to: row.autoLock.mostMinutes
        value: row.autoLock.minutes
        Accessible.name: row.title
        onValueModified: {
            row.autoLock.minutes = value
            value = Qt.binding(() => row.autoLock.minutes) // The press has replaced the binding.
        }
    }
}
