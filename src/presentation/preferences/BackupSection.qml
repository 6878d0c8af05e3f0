// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import QtQuick.Layouts
import Quillhaven.Controls
import Quillhaven.Design
import Quillhaven.Preferences

/// The recovery backups of all items.
ColumnLayout {
    id: section

    required property BackupSectionModel backup

    spacing: Spacing.md

    SettingsSection {
        Layout.fillWidth: true
        title: "Backup"
        icon: "icloud"

        ActionRow {
            Layout.fillWidth: true
            title: "Create iCloud backup of all protected items"
            description: section.backup.statusText
            action: "Backup Now"
            isBusy: section.backup.isBackingUp
            onPressed: section.backup.backUpNow()
        }

        ActionRow {
            Layout.fillWidth: true
            title: "Restore files from iCloud backup using master password"
            action: "Recover Files"
            onPressed: section.backup.showRecoveryDialog()
        }

        ActionRow {
            Layout.fillWidth: true
            title: "Check iCloud backup status and storage"
            action: "Check Status"
            onPressed: section.backup.checkiCloudStatus()
        }
    }

    SettingsSection {
        Layout.fillWidth: true
        title: "Folder"
        icon: "folder.fill"

        ActionRow {
            Layout.fillWidth: true
            title: "Backups are kept in a folder of your sync tool"
            description: section.backup.folder + "\nThe tool keeps it in step with other computers. Another folder does not get the backups of this one."
            showsWarning: true
            warningMessage: section.backup.folderProblem
            action: "Change Folder…"
            onPressed: section.backup.chooseFolder()
        }
    }
}
