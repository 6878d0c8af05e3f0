// SPDX-License-Identifier: GPL-3.0-or-later

pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts
import Quillhaven.Design
import Quillhaven.Preferences

/// The tabs of the preferences.
RowLayout {
    id: tabs

    required property PreferencesModel preferences

    readonly property int selected: preferences.selectedSection

    function select(index: int) {
        repeater.itemAt(preferences.selectAt(index)).forceActiveFocus(Qt.TabFocusReason)
    }

    spacing: Spacing.sm
    Accessible.role: Accessible.PageTabList
    Accessible.name: "Sections"

    Repeater {
        id: repeater

        model: tabs.preferences.availableSections

        SectionTab {
            id: tab

            required property PreferencesTab modelData
            required property int index
            readonly property bool isSelected: modelData.section === tabs.selected

            Layout.fillWidth: true
            Layout.preferredWidth: 1
            text: modelData.name
            symbol: modelData.systemImage
            Accessible.name: "Switch to " + modelData.name + " settings"
            // A press would replace a binding.
            Binding on checked { value: tab.isSelected }
            Keys.onLeftPressed: tabs.select(index + (mirrored ? 1 : -1))
            Keys.onRightPressed: tabs.select(index + (mirrored ? -1 : 1))
            onClicked: tabs.preferences.selectedSection = modelData.section
        }
    }
}
