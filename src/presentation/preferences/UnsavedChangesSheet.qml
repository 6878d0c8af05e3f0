// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import QtQuick.Layouts
import Quillhaven.Controls
import Quillhaven.Preferences

/// Asks before changes that were not saved are given up.
Sheet {
    id: sheet

    required property PreferencesModel preferences

    presented: preferences.showingCloseConfirmation
    title: "Unsaved Changes"
    message: "You have unsaved changes. Are you sure you want to close without saving?"
    symbol: "exclamationmark.triangle"
    onEscapePressed: preferences.keepEditing()

    buttons: [
        DestructiveButton {
            Layout.fillWidth: true
            text: "Discard Changes"
            Accessible.description: "Discard unsaved changes and close settings"
            onClicked: sheet.preferences.discardChanges()
        },
        SecondaryButton {
            Layout.fillWidth: true
            text: "Keep Editing"
            Accessible.description: "Continue editing settings"
            onClicked: sheet.preferences.keepEditing()
        }
    ]
}
