// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import QtQuick.Layouts
import Quillhaven.Controls
import Quillhaven.Design
import Quillhaven.Preferences

/// The version of the program, and the search for a newer one.
SettingsSection {
    id: section

    required property UpdateSectionModel updates

    title: "App Updates"
    icon: "arrow.clockwise"

    RowLayout {
        Layout.fillWidth: true
        spacing: Spacing.md

        TextLabel {
            text: section.updates.versionText
            font: Typography.settingLabel
        }

        TextLabel {
            Layout.fillWidth: true
            text: section.updates.updateText
            font: Typography.settingLabel
            color: Colors.warning
        }
    }

    RowLayout {
        Layout.fillWidth: true
        spacing: Spacing.sm

        SecondaryButton {
            Layout.fillWidth: true
            Layout.preferredWidth: 1
            text: section.updates.checkTitle
            symbol: "arrow.clockwise"
            busy: section.updates.isChecking
            enabled: section.updates.unavailableReason === ""
            Accessible.description: enabled ? "Asks the server for the latest version"
                : section.updates.unavailableReason
            onClicked: if (!busy) section.updates.check()
        }

        SecondaryButton {
            Layout.fillWidth: true
            Layout.preferredWidth: 1
            visible: section.updates.updateText !== ""
            text: "Download Update"
            helpText: "Opens the page of the download in your browser"
            onClicked: section.updates.download()
        }
    }

    TextLabel {
        Layout.fillWidth: true
        visible: text !== ""
        text: section.updates.unavailableReason
        font: Typography.settingDescription
        color: Colors.textSecondary
        wrapMode: Text.Wrap
    }

    RowLayout {
        Layout.fillWidth: true
        visible: section.updates.errorText !== ""
        spacing: Spacing.xs

        SymbolImage {
            symbol: "exclamationmark.triangle.fill"
            size: Metrics.symbolText
            color: Colors.error
        }

        TextLabel {
            Layout.fillWidth: true
            text: section.updates.errorText
            font: Typography.settingDescription
            color: Colors.error
            wrapMode: Text.Wrap
            Accessible.role: Accessible.AlertMessage
        }
    }
}
