// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import QtQuick.Layouts
import Quillhaven.Controls
import Quillhaven.Design
import Quillhaven.Preferences

/// The ways to reach the people behind the program.
SettingsSection {
    id: section

    required property SupportSectionModel support

    title: "Contact & Support"
    icon: "envelope.fill"
    description: "Priority support with response within 24 hours"

    RowLayout {
        Layout.fillWidth: true
        spacing: Spacing.sm

        SecondaryButton {
            Layout.fillWidth: true
            Layout.preferredWidth: 1
            text: "Contact Support"
            helpText: "Opens a new mail in your mail program"
            onClicked: section.support.contactSupport()
        }

        SecondaryButton {
            Layout.fillWidth: true
            Layout.preferredWidth: 1
            text: "Report Issue"
            helpText: "Opens a new mail with the versions of Quillhaven and of your system"
            onClicked: section.support.reportIssue()
        }

        SecondaryButton {
            Layout.fillWidth: true
            Layout.preferredWidth: 1
            text: "Feedback"
            helpText: "Opens a page of the web site"
            onClicked: section.support.openFeedback()
        }
    }
}
