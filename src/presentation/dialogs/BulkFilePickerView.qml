// SPDX-License-Identifier: GPL-3.0-or-later

pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Controls.Basic
import QtQuick.Layouts
import Quillhaven.Controls
import Quillhaven.Design
import Quillhaven.Dialogs

/// Lets the user choose files and folders to protect in one run.
Sheet {
    id: sheet

    required property BulkFilePickerModel picker

    presented: picker.isPresented
    title: "Bulk File Protection"
    message: "Select multiple files and folders to protect at once"
    symbol: "plus.circle.fill"
    minimumSheetWidth: maximumSheetWidth // the names need it
    initialFocusItem: selectButton
    onReturnPressed: picker.protect()
    onEscapePressed: picker.cancel()

    FilledButton {
        id: selectButton

        Layout.fillWidth: true
        Layout.minimumWidth: sheet.leastBodyWidth
        text: "Select Files & Folders"
        symbol: "plus.circle.fill"
        fill: Colors.selection
        outline: Colors.primaryAccent
        enabled: !sheet.picker.showingFilePicker
        onClicked: sheet.picker.selectFiles()
    }

    RowLayout {
        Layout.fillWidth: true
        visible: sheet.picker.count > 0

        TextLabel {
            Layout.fillWidth: true
            text: "Selected Items (" + sheet.picker.count + ")"
            font: Typography.settingTitle
            Accessible.role: Accessible.Heading
        }

        SecondaryButton {
            text: "Clear All"
            onClicked: sheet.picker.clearAll()
        }
    }

    Rectangle {
        Layout.fillWidth: true
        visible: sheet.picker.count > 0
        implicitHeight: Math.min(chosen.contentHeight + 2 * Spacing.xs, Metrics.shortListHeight)
        radius: DesignSystem.cornerRadiusMedium
        color: Colors.backgroundSecondary
        border.width: 1
        border.color: Colors.borderSubtle

        ListView {
            id: chosen

            anchors.fill: parent
            anchors.margins: Spacing.xs
            clip: true
            boundsBehavior: Flickable.StopAtBounds
            model: sheet.picker.entries
            Accessible.role: Accessible.List
            Accessible.name: "Selected Items"

            ScrollBar.vertical: SlimScrollBar { }

            delegate: FocusScope {
                id: entry

                required property var modelData
                required property int index

                width: ListView.view.width
                height: Math.max(Metrics.entryHeight, face.implicitHeight + Spacing.xs)
                Accessible.role: Accessible.ListItem
                Accessible.name: modelData.name
                onActiveFocusChanged: if (activeFocus) ListView.view.positionViewAtIndex(index, ListView.Contain)

                RowLayout {
                    id: face

                    anchors.fill: parent
                    anchors.leftMargin: Spacing.sm
                    anchors.rightMargin: Spacing.md
                    spacing: Spacing.sm

                    SymbolImage {
                        symbol: entry.modelData.isFolder ? "folder.fill" : "doc.fill"
                        size: Metrics.symbolEntry
                        color: Colors.primaryAccent
                    }

                    Text {
                        Layout.fillWidth: true
                        text: entry.modelData.name
                        textFormat: Text.PlainText
                        font: Typography.settingLabel
                        color: Colors.textPrimary
                        horizontalAlignment: Text.AlignLeft
                        elide: Text.ElideMiddle
                        Accessible.ignored: true
                    }

                    IconButton {
                        symbol: "xmark.circle.fill"
                        helpText: "Remove " + entry.modelData.name
                        onClicked: sheet.picker.remove(entry.modelData.path)
                    }
                }
            }
        }
    }

    buttons: SheetButtons {
        mainText: "Protect " + sheet.picker.count + " Items"
        canAct: sheet.picker.canProtect
        onSecondaryPressed: sheet.picker.cancel()
        onMainPressed: sheet.picker.protect()
    }
}
