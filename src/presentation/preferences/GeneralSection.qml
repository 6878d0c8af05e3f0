// SPDX-License-Identifier: GPL-3.0-or-later

pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts
import Quillhaven.Controls
import Quillhaven.Design
import Quillhaven.Preferences

/// How the program starts, when it locks, and what connects it with the desktop.
ColumnLayout {
    id: section

    required property PreferencesModel preferences

    spacing: Spacing.md

    SettingsSection {
        Layout.fillWidth: true
        title: "Startup"
        icon: "gear"
        accessory: LaunchAtLoginCompactBadge { serviceManager: section.preferences.launchAtLogin.badge }

        LaunchAtLoginToggle {
            Layout.fillWidth: true
            serviceManager: section.preferences.launchAtLogin
            title: "Launch at login"
            description: "Automatically launch Quillhaven when signing into your Mac"
            hint: "When enabled, Quillhaven will start automatically when you sign into your Mac"
            showStatusDetails: true
        }
    }

    AutoLockSection {
        Layout.fillWidth: true
        autoLock: section.preferences.autoLock
    }

    // What has to be scrolled to is created after the first frames, so that the sheet appears sooner.
    Timer {
        id: firstFrames

        interval: Metrics.firstFrames
        running: true
    }

    Repeater {
        model: firstFrames.running ? 0 : 1

        ColumnLayout {
            Layout.fillWidth: true
            spacing: section.spacing

            StatusSection {
                Layout.fillWidth: true
                sources: section.preferences.watchedSources
            }

            SupportSection {
                Layout.fillWidth: true
                support: section.preferences.support
            }

            UpdateSection {
                Layout.fillWidth: true
                updates: section.preferences.updates
            }
        }
    }
}
