// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import QtQuick.Layouts
import Quillhaven.Design

/// One step of the introduction: its number, what to do, and how.
RowLayout {
    id: step

    required property string number
    required property string title
    required property string description

    spacing: Spacing.md
    Accessible.role: Accessible.ListItem
    Accessible.name: number + ". " + title
    Accessible.description: description

    Rectangle {
        Layout.alignment: Qt.AlignTop
        implicitWidth: Metrics.stepCircle
        implicitHeight: implicitWidth
        radius: height / 2
        color: Colors.primary

        Text {
            anchors.centerIn: parent
            text: step.number
            font: Typography.buttonText
            color: Colors.textPrimary
            Accessible.ignored: true
        }
    }

    ColumnLayout {
        Layout.fillWidth: true
        spacing: Spacing.xs

        Text {
            Layout.fillWidth: true
            text: step.title
            font: Typography.settingTitle
            color: Colors.textPrimary
            horizontalAlignment: Text.AlignLeft
            wrapMode: Text.Wrap
            Accessible.ignored: true
        }

        Text {
            Layout.fillWidth: true
            text: step.description
            font: Typography.settingDescription
            color: Colors.textSecondary
            horizontalAlignment: Text.AlignLeft
            wrapMode: Text.Wrap
            Accessible.ignored: true
        }
    }
}
