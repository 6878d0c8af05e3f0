// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import QtQuick.Layouts
import Quillhaven.Controls
import Quillhaven.Design

/// What stands in the place of a list without rows.
ColumnLayout {
    id: view

    property var lines: [
        "Start protecting your sensitive files and folders by clicking the 'Protect New Item' button above or by dragging them here."
    ]
    property bool isCompact: false
    /// Below the text.
    default property alias actions: actionRow.data

    spacing: isCompact ? Spacing.xs : Spacing.sm

    Rectangle {
        Layout.alignment: Qt.AlignHCenter
        Layout.bottomMargin: Spacing.xs
        implicitWidth: view.isCompact ? 48 : 72
        implicitHeight: implicitWidth
        radius: height / 2
        color: Colors.selection

        SymbolImage {
            anchors.centerIn: parent
            symbol: "folder.badge.questionmark"
            size: view.isCompact ? 24 : 36
            color: Colors.primaryAccent
        }
    }

    Text {
        Layout.fillWidth: true
        text: "No items found"
        color: Colors.textPrimary
        font.pixelSize: Typography.title3Size
        font.weight: Font.DemiBold
        horizontalAlignment: Text.AlignHCenter
        Accessible.role: Accessible.Heading
        Accessible.name: text
    }

    Repeater {
        model: view.lines

        Text {
            required property string modelData

            Layout.fillWidth: true
            text: modelData
            color: Colors.textSecondary
            font.pixelSize: Typography.calloutSize
            lineHeight: 1.25
            wrapMode: Text.WordWrap
            horizontalAlignment: Text.AlignHCenter
            Accessible.role: Accessible.StaticText
            Accessible.name: text
        }
    }

    RowLayout {
        id: actionRow

        Layout.alignment: Qt.AlignHCenter
        Layout.topMargin: Spacing.sm
        visible: children.length > 0
    }
}
