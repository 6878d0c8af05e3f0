// SPDX-License-Identifier: GPL-3.0-or-later

pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts
import Quillhaven.Controls
import Quillhaven.Preferences

/// What of the desktop is watched at present, and a button that locks everything.
SettingsSection {
    id: section

    required property WatchedSourcesModel sources

    title: "Status"
    icon: "info.circle"

    Repeater {
        model: section.sources

        delegate: SettingRow {
            id: row

            required title
            required property string sentence
            required property bool isAvailable
            required property bool canRepair
            required property int index

            Layout.fillWidth: true
            icon: isAvailable ? "checkmark.circle.fill" : "exclamationmark.triangle.fill"
            description: sentence

            SecondaryButton {
                visible: row.canRepair
                text: "Repair"
                Accessible.name: "Repair: " + row.title
                onClicked: section.sources.repair(row.index)
            }
        }
    }

    SecondaryButton {
        Layout.alignment: Qt.AlignRight
        text: "Lock Everything Now"
        onClicked: section.sources.lockEverything()
    }
}
