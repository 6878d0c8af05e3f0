// SPDX-License-Identifier: GPL-3.0-or-later

pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Controls.Basic
import Quillhaven.Controls
import Quillhaven.Dashboard
import Quillhaven.Design

/// The menu of the recovery backups: the setting, backing up, and recovering files.
PopMenu {
    id: menu

    required property BackupActions backup
    required property RescueActions rescue

    width: Metrics.wideMenuWidth

    PopMenuItem {
        text: "iCloud Backup"
        checkable: true
        checked: menu.backup.enableiCloudBackup
        onChosen: menu.backup.enableiCloudBackup = !menu.backup.enableiCloudBackup
    }
    PopMenuItem {
        text: "Back Up All Now"
        symbol: "icloud.fill"
        enabled: menu.backup.isAvailable && !menu.backup.isBackingUp
        onChosen: menu.backup.backUpAll()
    }
    PopMenuItem {
        text: "Recover All Files"
        symbol: "arrow.clockwise"
        enabled: menu.backup.isAvailable
        onChosen: menu.backup.showRecoveryDialog()
    }
    PopMenuItem {
        text: "Look for Lost Items"
        symbol: "magnifyingglass"
        onChosen: menu.rescue.show()
    }

    MenuItem {
        id: note

        text: "iCloud is not available. Please sign in to iCloud and enable iCloud Drive."
        enabled: false
        visible: !menu.backup.isAvailable
        height: visible ? implicitHeight : 0
        leftPadding: Spacing.sm
        rightPadding: Spacing.sm
        Accessible.role: Accessible.StaticText
        Accessible.name: text
        background: null
        contentItem: Text {
            text: note.text
            font: Typography.settingDescription
            color: Colors.warning
            wrapMode: Text.Wrap
            Accessible.ignored: true
        }
    }
}
