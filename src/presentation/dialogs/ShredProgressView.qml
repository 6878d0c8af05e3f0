// SPDX-License-Identifier: GPL-3.0-or-later

pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts
import Quillhaven.Controls
import Quillhaven.Design
import Quillhaven.Dialogs

/// Shown while items are destroyed. It can be closed only if its owner can cancel the operation.
Sheet {
    id: sheet

    required property OperationProgress operation
    readonly property string shredProgressMessage: operation.message
    readonly property real shredProgressValue: operation.progress
    property bool canCancel: false

    signal cancelled

    presented: operation.isPresented
    title: "Secure Shredding in Progress"
    symbol: "trash.fill"
    symbolColor: Colors.error
    symbolCircle: Metrics.largeSheetSymbolCircle
    symbolPulses: true
    onEscapePressed: canCancel ? cancelled() : operation.hideBeforeBeginning()

    TextLabel {
        Layout.fillWidth: true
        text: sheet.shredProgressMessage
        font: Typography.settingLabel
        horizontalAlignment: Text.AlignHCenter
        wrapMode: Text.Wrap
        maximumLineCount: 4
        elide: Text.ElideRight
        Accessible.role: Accessible.StatusBar
    }

    ProgressLine {
        Layout.fillWidth: true
        tint: Colors.error
        value: sheet.shredProgressValue
    }

    RowLayout {
        Layout.fillWidth: true
        Layout.topMargin: -Spacing.xs

        Text {
            Layout.fillWidth: true
            text: "Progress"
            horizontalAlignment: Text.AlignLeft
            font: Typography.settingDescription
            color: Colors.textSecondary
            Accessible.ignored: true
        }

        TextLabel {
            visible: text !== ""
            text: sheet.operation.timeLeft
            font: Typography.settingDescription
            color: Colors.textSecondary
        }

        TextLabel {
            text: sheet.operation.percent + "%"
            font: Typography.settingDescription
        }
    }

    Rectangle {
        Layout.fillWidth: true
        implicitHeight: facts.implicitHeight + 2 * Spacing.md
        radius: DesignSystem.cornerRadiusMedium
        color: Colors.backgroundSecondary
        border.width: 1
        border.color: Colors.borderSubtle

        ColumnLayout {
            id: facts

            anchors.left: parent.left
            anchors.right: parent.right
            anchors.top: parent.top
            anchors.margins: Spacing.md
            spacing: Spacing.sm

            FactRow { symbol: "shield.fill"; text: "DoD 5220.22-M Standard" }
            FactRow { symbol: "arrow.clockwise"; text: "3-Pass Overwrite Process" }
            FactRow { symbol: "lock.fill"; text: "Metadata Clearing" }
        }
    }

    FactRow {
        Layout.alignment: Qt.AlignHCenter
        Layout.fillWidth: false
        symbol: "exclamationmark.triangle.fill"
        text: "Do not interrupt this process"
        color: Colors.warning
    }

    buttons: SecondaryButton {
        Layout.fillWidth: true
        visible: sheet.canCancel
        text: "Cancel Operation"
        onClicked: sheet.cancelled()
    }
}
