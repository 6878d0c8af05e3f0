// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import QtQuick.Layouts
import Quillhaven.Controls
import Quillhaven.Preferences

/// When items are locked by themselves.
SettingsSection {
    id: section

    required property AutoLockSectionModel autoLock

    title: "Auto-Lock"
    icon: "lock.rotation"

    SwitchRow {
        Layout.fillWidth: true
        title: "Auto-Lock"
        description: section.autoLock.inputCaption
        checked: section.autoLock.isEnabled
        onToggled: (value) => { section.autoLock.isEnabled = value }
    }

    MinutesRow {
        Layout.fillWidth: true
        autoLock: section.autoLock
    }

    SwitchRow {
        Layout.fillWidth: true
        visible: section.autoLock.hasMasterPassword
        title: "Lock without asking for the master password"
        description: section.autoLock.masterPasswordCaption
        checked: section.autoLock.locksWithoutMasterPassword
        onToggled: (value) => { section.autoLock.locksWithoutMasterPassword = value }
    }

    SwitchRow {
        Layout.fillWidth: true
        title: "Lock on sleep"
        description: "Starts to lock every item when the computer goes to sleep"
        checked: section.autoLock.locksOnSleep
        onToggled: (value) => { section.autoLock.locksOnSleep = value }
    }

    SwitchRow {
        Layout.fillWidth: true
        title: "Smart Auto-Lock"
        description: "Advanced auto-lock rules for system events"
        checked: section.autoLock.isSmartEnabled
        onToggled: (value) => { section.autoLock.isSmartEnabled = value }
    }

    SwitchRow {
        Layout.fillWidth: true
        isEnabled: section.autoLock.isSmartEnabled
        title: "Lock on screen saver"
        controlScale: 0.8
        checked: section.autoLock.locksOnScreenSaver
        onToggled: (value) => { section.autoLock.locksOnScreenSaver = value }
    }

    SwitchRow {
        Layout.fillWidth: true
        isEnabled: section.autoLock.isSmartEnabled
        title: "Lock on screen lock"
        controlScale: 0.8
        checked: section.autoLock.locksOnScreenLock
        onToggled: (value) => { section.autoLock.locksOnScreenLock = value }
    }

    SwitchRow {
        Layout.fillWidth: true
        isEnabled: section.autoLock.isSmartEnabled
        title: "Lock on user logout/switch"
        controlScale: 0.8
        description: "Has no effect yet: Quillhaven does not notice a change of the user"
        checked: section.autoLock.locksOnUserSwitch
        onToggled: (value) => { section.autoLock.locksOnUserSwitch = value }
    }
}
