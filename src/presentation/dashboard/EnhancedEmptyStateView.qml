// SPDX-License-Identifier: GPL-3.0-or-later

pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts
import Quillhaven.Controls
import Quillhaven.Design

/// Shown instead of the list when it has no rows.
ColumnLayout {
    id: view

    property var lines: [
        "Start protecting your sensitive files and folders by clicking the 'Protect New Item' button above or by dragging them here."
    ]
    property bool isCompact: false
    /// Shown below the text.
    default property alias actions: actionRow.data

    spacing: isCompact ? Spacing.xs : Spacing.sm

    Rectangle {
        Layout.alignment: Qt.AlignHCenter
        Layout.bottomMargin: Spacing.xs
        implicitWidth: view.isCompact ? Spacing.xxxl : Metrics.emptyCircle
        implicitHeight: implicitWidth
        radius: height / 2
        color: Colors.selection

        SymbolImage {
            anchors.centerIn: parent
            symbol: "folder.badge.questionmark"
            size: view.isCompact ? Metrics.symbolRow : Metrics.emptyCircle / 2
            color: Colors.primaryAccent
        }
    }

    TextLabel {
        Layout.fillWidth: true
        text: "No items found"
        font.pixelSize: Typography.title3Size
        font.weight: Font.DemiBold
        horizontalAlignment: Text.AlignHCenter
        Accessible.role: Accessible.Heading
    }

    Repeater {
        model: view.lines

        TextLabel {
            required property string modelData

            Layout.fillWidth: true
            text: modelData
            color: Colors.textSecondary
            font.pixelSize: Typography.calloutSize
            lineHeight: 1.25
            wrapMode: Text.WordWrap
            horizontalAlignment: Text.AlignHCenter
        }
    }

    RowLayout {
        id: actionRow

        Layout.alignment: Qt.AlignHCenter
        Layout.topMargin: Spacing.sm
        visible: children.length > 0
    }
}
