// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import QtQuick.Layouts
import Quillhaven.Controls
import Quillhaven.Design
import Quillhaven.Preferences

/// Passwords, the fingerprint reader, and what helps when something is lost.
ColumnLayout {
    id: section

    required property PreferencesModel preferences
    readonly property SecuritySectionModel security: preferences.security
    readonly property BackupSectionModel backup: preferences.backup

    spacing: Spacing.md

    SettingsSection {
        Layout.fillWidth: true
        title: "Authentication"
        icon: "lock.shield"

        SwitchRow {
            Layout.fillWidth: true
            title: "Touch ID for unlocking"
            description: "Use Touch ID to unlock protected files and folders"
            accessibilityHint: "When enabled, you can use Touch ID to unlock protected files and folders"
            checked: section.security.enableTouchID
            onToggled: (value) => { section.security.enableTouchID = value }
        }

        SwitchRow {
            Layout.fillWidth: true
            title: "Enforce strong passwords"
            description: "Require strong passwords for protected items"
            accessibilityHint: "When enabled, strong passwords will be required for all protected items"
            checked: section.security.enforceStrongPasswords
            onToggled: (value) => { section.security.enforceStrongPasswords = value }
        }

        SettingRow {
            Layout.fillWidth: true
            title: "Where passwords are kept"
            description: section.security.storeDescription
            statusIndicator: section.security.isStoreSafe ? StatusType.Enabled : StatusType.Warning
            statusText: section.security.isStoreSafe ? "Safe" : "Not safe"
        }
    }

    SettingsSection {
        Layout.fillWidth: true
        title: "Master Password"
        icon: "key.fill"
        description: section.security.masterPasswordDescription

        SecondaryButton {
            Layout.fillWidth: true
            text: "Set or Reset Master Password"
            Accessible.description: "Opens dialog to set or reset your master password"
            onClicked: section.security.chooseMasterPassword()
        }
    }

    SettingsSection {
        Layout.fillWidth: true
        title: "Recovery"
        icon: "icloud"

        SwitchRow {
            Layout.fillWidth: true
            title: "iCloud Backup"
            description: section.backup.backupDescription
            showsWarning: true
            warningMessage: section.backup.folderProblem
            checked: section.backup.enableiCloudBackup
            onToggled: (value) => { section.backup.enableiCloudBackup = value }
        }

        SecondaryButton {
            Layout.fillWidth: true
            visible: !section.backup.isiCloudAvailable
            text: "Open iCloud Settings"
            Accessible.description: "Lets you choose a folder of your sync tool for the backups"
            onClicked: section.backup.chooseFolder()
        }

        ActionRow {
            Layout.fillWidth: true
            title: "Look for items in private storage that have no entry in the list"
            action: "Look for Lost Items"
            onPressed: section.preferences.lookForLostItems()
        }
    }
}
