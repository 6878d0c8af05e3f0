// SPDX-License-Identifier: GPL-3.0-or-later

pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts
import Quillhaven.Controls
import Quillhaven.Design
import Quillhaven.Preferences

/// The preferences, in sections. Every change takes effect at once.
Sheet {
    id: sheet

    required property PreferencesModel preferences

    presented: preferences.isPresented
    title: "Preferences"
    symbol: "gearshape"
    maximumSheetWidth: DesignSystem.modalWidth
    minimumSheetWidth: maximumSheetWidth
    onReturnPressed: preferences.close()
    onEscapePressed: preferences.close()

    SettingsSection {
        Layout.fillWidth: true
        title: "General"
        icon: "gear"
        accessory: LaunchAtLoginCompactBadge { serviceManager: sheet.preferences.launchAtLogin.badge }

        LaunchAtLoginToggle {
            Layout.fillWidth: true
            serviceManager: sheet.preferences.launchAtLogin
            title: "Launch at login"
            description: "Automatically launch Quillhaven when signing into your Mac"
            hint: "When enabled, Quillhaven will start automatically when you sign into your Mac"
            showStatusDetails: true
        }
    }

    AutoLockSection {
        Layout.fillWidth: true
        autoLock: sheet.preferences.autoLock
    }

    StatusSection {
        Layout.fillWidth: true
        sources: sheet.preferences.watchedSources
    }

    buttons: [
        Item { Layout.fillWidth: true },
        SecondaryButton {
            Layout.minimumWidth: Metrics.sheetButtonWidth
            text: "Close"
            onClicked: sheet.preferences.close()
        },
        Item { Layout.fillWidth: true }
    ]
}
