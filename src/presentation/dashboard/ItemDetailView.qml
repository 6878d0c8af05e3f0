// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import QtQuick.Layouts
import Quillhaven.Controls
import Quillhaven.Dashboard
import Quillhaven.Design

/// The details of one item.
Sheet {
    id: sheet

    required property ItemDetailModel details

    /// What is known of the item under a label.
    component DetailRow: RowLayout {
        id: detail

        property string label
        property string value

        Layout.fillWidth: true
        Accessible.role: Accessible.StaticText
        Accessible.name: label + ": " + value

        Text {
            Layout.fillWidth: true
            text: detail.label
            font: Typography.settingLabel
            color: Colors.textSecondary
            horizontalAlignment: Text.AlignLeft
            Accessible.ignored: true
        }

        Text {
            text: detail.value
            font: Typography.buttonText
            color: Colors.textPrimary
            Accessible.ignored: true
        }
    }

    presented: details.isPresented
    title: "Item Details"
    message: details.itemName
    symbol: details.icon
    initialFocusItem: doneButton
    onReturnPressed: details.done()
    onEscapePressed: details.done()

    DetailRow { label: "Status"; value: sheet.details.status }
    DetailRow { label: "Type"; value: sheet.details.type }
    DetailRow { label: "Authentication"; value: sheet.details.authentication }

    ColumnLayout {
        Layout.fillWidth: true
        Layout.topMargin: Spacing.sm
        spacing: Spacing.sm

        SecondaryButton {
            Layout.fillWidth: true
            text: sheet.details.isMounted ? "Lock Item" : "Unlock Item"
            symbol: sheet.details.isMounted ? "lock" : "lock.open"
            enabled: !sheet.details.isBusy
            onClicked: sheet.details.toggleLock()
        }

        SecondaryButton {
            Layout.fillWidth: true
            text: "Restore & Remove Protection"
            symbol: "arrow.uturn.backward"
            enabled: !sheet.details.isBusy
            onClicked: sheet.details.removeProtection()
        }
    }

    buttons: PrimaryFilledButton {
        id: doneButton

        Layout.fillWidth: true
        text: "Done"
        onClicked: sheet.details.done()
    }
}
