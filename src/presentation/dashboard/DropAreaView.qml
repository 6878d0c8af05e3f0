// SPDX-License-Identifier: GPL-3.0-or-later

pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts
import Quillhaven.Controls
import Quillhaven.Design

/// Says that files can be dropped on the window. DashboardView takes the drop, and DropActions does what it asks for.
Rectangle {
    id: area

    property bool isTargeted: false

    implicitHeight: Metrics.dropAreaHeight
    radius: DesignSystem.cornerRadiusLarge
    color: isTargeted ? Colors.selection : Colors.clear
    border.width: isTargeted ? 2 : 1
    border.color: isTargeted ? Colors.primaryAccent : Colors.border
    Accessible.role: Accessible.StaticText
    Accessible.name: words.text

    ColumnLayout {
        anchors.centerIn: parent
        width: parent.width - 2 * Spacing.xl
        spacing: Spacing.sm

        SymbolImage {
            Layout.alignment: Qt.AlignHCenter
            symbol: "tray.and.arrow.down.fill"
            size: Metrics.symbolLarge
            color: area.isTargeted ? Colors.primaryAccent : Colors.iconMuted
        }

        Text {
            id: words

            Layout.fillWidth: true
            text: "Drag & Drop files or folders here to protect"
            color: area.isTargeted ? Colors.primaryAccent : Colors.textSecondary
            font: Typography.settingLabel
            horizontalAlignment: Text.AlignHCenter
            wrapMode: Text.Wrap
            Accessible.ignored: true
        }
    }
}
