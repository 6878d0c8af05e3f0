// SPDX-License-Identifier: GPL-3.0-or-later

pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts
import Quillhaven.Controls
import Quillhaven.Design
import Quillhaven.Preferences

/// The switch of the start at login, and the switch of the hidden start.
ColumnLayout {
    id: view

    required property LaunchAtLoginToggleModel serviceManager
    property string title
    property string description
    property string hint
    property bool showStatusDetails: false

    spacing: Spacing.sm

    SettingRow {
        Layout.fillWidth: true
        title: view.title
        description: view.description
        accessibilityHint: view.hint

        RowLayout {
            spacing: Spacing.md

            ToneText {
                isBusy: view.serviceManager.isSyncing
                text: view.serviceManager.stateText
                tone: view.serviceManager.isSyncing ? StatusTone.Info
                    : view.serviceManager.isEnabled ? StatusTone.Enabled : StatusTone.Secondary
                font: Typography.settingDescription
            }

            CustomToggleStyle {
                checked: view.serviceManager.isEnabled
                enabled: !view.serviceManager.isSyncing
                Accessible.name: view.title
                Accessible.description: view.hint
                onToggled: {
                    view.serviceManager.setEnabled(checked)
                    // Shows what is the case, not what was asked for.
                    checked = Qt.binding(() => view.serviceManager.isEnabled)
                }
            }
        }
    }

    SwitchRow {
        Layout.fillWidth: true
        title: "Start hidden, in the tray"
        description: "Quillhaven shows no window when it starts at login"
        checked: view.serviceManager.startsHidden
        onToggled: (value) => { view.serviceManager.setStartsHidden(value) }
    }

    LaunchAtLoginStatusView {
        Layout.fillWidth: true
        Layout.leftMargin: Spacing.md
        Layout.rightMargin: Spacing.md
        visible: view.showStatusDetails
        status: view.serviceManager.status
    }
}
