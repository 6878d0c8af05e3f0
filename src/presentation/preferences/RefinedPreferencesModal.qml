// SPDX-License-Identifier: GPL-3.0-or-later

pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts
import Quillhaven.Controls
import Quillhaven.Design
import Quillhaven.Preferences

/// The preferences, in sections with a tab each. Every change takes effect at once.
Sheet {
    id: sheet

    required property PreferencesModel preferences
    readonly property int selected: preferences.selectedSection

    presented: preferences.isPresented
    accessibleName: "Settings Modal"
    accessibleHint: "Configure application preferences and security settings"
    minimumSheetWidth: preferences.modalWidth * Typography.scale
    maximumSheetWidth: minimumSheetWidth
    implicitHeight: DesignSystem.modalMaxHeight * Typography.scale
    initialFocusItem: frame
    onSelectedChanged: scrollToTop()
    onEscapePressed: preferences.handleCloseAttempt()

    Connections {
        target: sheet.preferences

        function onFocusChanged() {
            // The user may have moved on already.
            if (sheet.preferences.focusedField === PreferencesModel.CloseButton && frame.activeFocus)
                closeButton.forceActiveFocus(Qt.TabFocusReason)
        }
    }

    heading: [
        RowLayout {
            Layout.fillWidth: true
            spacing: Spacing.md

            TextLabel {
                id: frame // has the keyboard focus until the first control gets it

                Layout.fillWidth: true
                text: "Preferences"
                font: Typography.modalTitle
                Accessible.role: Accessible.Heading
            }

            IconButton {
                id: closeButton

                implicitWidth: Math.max(Metrics.closeButton, Metrics.symbolControl + Spacing.xs)
                implicitHeight: implicitWidth
                symbol: "xmark"
                helpText: "Close Settings"
                Accessible.description: "Closes the settings modal. Press Escape key as alternative."
                onClicked: sheet.preferences.handleCloseAttempt()
            }
        },
        SectionTabs {
            Layout.fillWidth: true
            preferences: sheet.preferences
        }
    ]

    SectionContent {
        name: "General"
        isSelected: sheet.selected === PreferencesSectionType.General
        section: GeneralSection { preferences: sheet.preferences }
    }

    SectionContent {
        name: "Security"
        isSelected: sheet.selected === PreferencesSectionType.Security
        section: SecuritySection { preferences: sheet.preferences }
    }

    SectionContent {
        name: "Backup"
        isSelected: sheet.selected === PreferencesSectionType.Backup
        section: BackupSection { backup: sheet.preferences.backup }
    }
}
