// SPDX-License-Identifier: GPL-3.0-or-later

pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Controls.Basic
import QtQuick.Layouts
import Quillhaven.Controls
import Quillhaven.Design
import Quillhaven.Dialogs

/// The confirmation before items are permanently destroyed.
Sheet {
    id: sheet

    required property ShredConfirmationDialogModel dialog

    presented: dialog.isPresented
    title: "Permanent Deletion Warning"
    message: "You are about to permanently delete the following items:"
    symbol: "exclamationmark.triangle.fill"
    symbolColor: Colors.error
    minimumSheetWidth: Metrics.warningSheetMinimumWidth
    initialFocusItem: cancelButton
    onReturnPressed: dialog.confirm()
    onEscapePressed: dialog.cancel()

    Rectangle {
        Layout.fillWidth: true
        implicitHeight: 2 * Spacing.sm + Math.min(names.contentHeight, sheet.isCompact ? Metrics.compactNameListHeight
                                                                                        : Metrics.nameListHeight)
        radius: DesignSystem.cornerRadiusMedium
        color: Colors.backgroundSecondary
        border.width: 1
        border.color: Colors.borderSubtle

        FocusRing { shown: names.activeFocus }

        Flickable {
            id: names

            anchors.fill: parent
            anchors.margins: Spacing.sm
            anchors.leftMargin: Spacing.md
            clip: true
            interactive: contentHeight > height
            activeFocusOnTab: interactive
            boundsBehavior: Flickable.StopAtBounds
            contentHeight: nameColumn.implicitHeight
            Keys.onUpPressed: namesBar.decrease()
            Keys.onDownPressed: namesBar.increase()
            Accessible.role: Accessible.List
            Accessible.name: sheet.message

            ScrollBar.vertical: SlimScrollBar { id: namesBar }

            Column {
                id: nameColumn

                anchors.left: parent.left
                width: names.width - Spacing.md

                Repeater {
                    model: sheet.dialog.itemNames

                    Text {
                        required property string modelData

                        width: nameColumn.width
                        height: Math.max(Metrics.nameRowHeight, implicitHeight)
                        text: modelData
                        textFormat: Text.PlainText
                        font: Typography.buttonText
                        color: Colors.textPrimary
                        horizontalAlignment: Text.AlignLeft
                        elide: Text.ElideMiddle
                        verticalAlignment: Text.AlignVCenter
                        Accessible.role: Accessible.ListItem
                        Accessible.name: modelData
                    }
                }
            }
        }
    }

    TextLabel {
        Layout.fillWidth: true
        text: "⚠️ This action cannot be undone"
        font: Typography.settingTitle
        color: Colors.error
        wrapMode: Text.Wrap
        Accessible.role: Accessible.AlertMessage
    }

    ColumnLayout {
        Layout.fillWidth: true
        spacing: Spacing.xs

        Repeater {
            model: ["• Files will be overwritten using DoD 5220.22-M standard",
                    "• Data will be unrecoverable by any means",
                    "• File system metadata will be permanently cleared",
                    "• This process may take several minutes"]

            TextLabel {
                required property string modelData

                Layout.fillWidth: true
                text: modelData
                font: Typography.settingDescription
                color: Colors.textSecondary
                wrapMode: Text.Wrap
            }
        }
    }

    TextLabel {
        Layout.fillWidth: true
        visible: sheet.dialog.storageNote.length > 0
        text: sheet.dialog.storageNote
        font: Typography.settingDescription
        wrapMode: Text.Wrap
        Accessible.role: Accessible.AlertMessage
    }

    CheckMark {
        Layout.fillWidth: true
        text: "I understand this will permanently delete the selected items"
        ticked: sheet.dialog.hasReadWarning
        onToggleRequested: sheet.dialog.hasReadWarning = !sheet.dialog.hasReadWarning
    }

    ColumnLayout {
        Layout.fillWidth: true
        spacing: Spacing.xs

        Text {
            Layout.fillWidth: true
            text: "Type 'SHRED PERMANENTLY' to confirm:"
            font: Typography.settingLabel
            color: Colors.textSecondary
            horizontalAlignment: Text.AlignLeft
            wrapMode: Text.Wrap
            Accessible.ignored: true
        }

        InputField {
            Layout.fillWidth: true
            placeholderText: "Type here to confirm"
            text: sheet.dialog.confirmationText
            onTextEdited: sheet.dialog.confirmationText = text
            Accessible.role: Accessible.EditableText
            Accessible.name: "Type 'SHRED PERMANENTLY' to confirm:"
            Accessible.description: placeholderText
        }
    }

    buttons: [
        SecondaryButton {
            id: cancelButton

            Layout.fillWidth: true
            Layout.preferredWidth: 1
            text: "Cancel"
            onClicked: sheet.dialog.cancel()
        },
        DestructiveButton {
            Layout.fillWidth: true
            Layout.preferredWidth: 1
            text: "🗑️ Shred Permanently"
            shownText: "Shred Permanently"
            symbol: "trash.fill"
            enabled: sheet.dialog.isConfirmEnabled
            onClicked: sheet.dialog.confirm()
        }
    ]
}
