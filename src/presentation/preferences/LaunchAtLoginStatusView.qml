// SPDX-License-Identifier: GPL-3.0-or-later

pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts
import Quillhaven.Controls
import Quillhaven.Design
import Quillhaven.Preferences

/// The state of the start at login: its error with what can be done, and the note of a success.
ColumnLayout {
    id: view

    required property LaunchAtLoginStatusModel status
    property bool showDetailedStatus: true
    property bool showRecoveryActions: true

    spacing: Spacing.sm
    onVisibleChanged: if (visible) status.refresh()

    ToneText {
        isBusy: view.status.isBusy
        indicatorScale: Metrics.smallIndicatorScale
        symbol: view.status.statusIcon
        text: view.status.statusText
        tone: view.status.statusTone
    }

    WrappingRow {
        visible: view.showDetailedStatus
        spacing: Spacing.lg

        TextLabel {
            text: view.status.lastUpdatedText
            font: Typography.settingDescription
            color: Colors.textSecondary
        }

        ToneText {
            symbol: view.status.syncIcon
            symbolSize: Metrics.symbolSmall
            text: view.status.syncText
            tone: view.status.syncTone
            font: Typography.settingDescription
        }
    }

    Rectangle {
        Layout.fillWidth: true
        visible: view.status.errorText !== ""
        implicitHeight: error.implicitHeight + 2 * Spacing.md
        radius: DesignSystem.cornerRadiusMedium
        color: Qt.alpha(Colors.statusError, Metrics.tintOpacity)
        border.width: 1
        border.color: Colors.statusError

        RowLayout {
            id: error

            anchors.left: parent.left
            anchors.right: parent.right
            anchors.top: parent.top
            anchors.margins: Spacing.md
            spacing: Spacing.md

            SymbolImage {
                Layout.alignment: Qt.AlignTop
                symbol: "exclamationmark.triangle.fill"
                size: Metrics.symbolText
                color: Colors.statusError
            }

            ColumnLayout {
                Layout.fillWidth: true
                spacing: Spacing.xs

                TextLabel {
                    Layout.fillWidth: true
                    text: view.status.errorText
                    font: Typography.settingLabel
                    wrapMode: Text.Wrap
                    Accessible.role: Accessible.AlertMessage
                }

                TextLabel {
                    Layout.fillWidth: true
                    text: view.status.suggestionText
                    font: Typography.settingDescription
                    color: Colors.textSecondary
                    wrapMode: Text.Wrap
                }
            }
        }
    }

    RowLayout {
        Layout.fillWidth: true
        visible: view.status.successText !== ""
        spacing: Spacing.sm

        ToneText {
            symbol: "checkmark.circle.fill"
            text: view.status.successText
            tone: StatusTone.Enabled
        }

        IconButton {
            symbol: "xmark"
            helpText: "Dismiss"
            onClicked: view.status.clearSuccessMessage()
        }

        Item { Layout.fillWidth: true }
    }

    WrappingRow {
        visible: view.showRecoveryActions && view.status.actionTexts.length > 0
        spacing: Spacing.sm

        TextLabel {
            text: "Actions:"
            font: Typography.settingDescription
            color: Colors.textSecondary
        }

        Repeater {
            model: view.status.actionTexts

            SecondaryButton {
                required property string modelData
                required property int index

                text: modelData
                symbol: view.status.actionIcons[index] ?? ""
                enabled: view.status.canAct
                onClicked: view.status.act(index)
            }
        }
    }
}
