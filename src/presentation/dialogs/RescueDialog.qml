// SPDX-License-Identifier: GPL-3.0-or-later

pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Controls.Basic
import QtQuick.Layouts
import Quillhaven.Controls
import Quillhaven.Design
import Quillhaven.Dialogs

/// Shows what interrupted runs have left, and lets the user decide on each.
Sheet {
    id: sheet

    required property RescueDialogModel rescue

    presented: rescue.isPresented
    title: "Lost Items"
    message: "What is in private storage without an entry in the list, and what an interrupted operation has left. "
             + "Nothing changes until you choose."
    symbol: "lock.rotation"
    minimumSheetWidth: maximumSheetWidth // the names need it
    initialFocusItem: buttonRow.secondaryButton
    onReturnPressed: rescue.close()
    onEscapePressed: rescue.close()

    RowLayout {
        Layout.fillWidth: true
        spacing: Spacing.sm

        ActivityIndicator {
            Layout.preferredWidth: Metrics.symbolControl
            Layout.preferredHeight: Metrics.symbolControl
            visible: sheet.rescue.isBusy
            color: Colors.primaryAccent
        }

        TextLabel {
            Layout.fillWidth: true
            Layout.minimumWidth: sheet.leastBodyWidth
            text: sheet.rescue.summary
            font: Typography.settingTitle
            wrapMode: Text.Wrap
            Accessible.role: Accessible.StatusBar
        }
    }

    Rectangle {
        Layout.fillWidth: true
        visible: sheet.rescue.count > 0
        implicitHeight: Math.min(found.contentHeight + 2 * Spacing.xs, Metrics.tallListHeight)
        radius: DesignSystem.cornerRadiusMedium
        color: Colors.backgroundSecondary
        border.width: 1
        border.color: Colors.borderSubtle

        ListView {
            id: found

            anchors.fill: parent
            anchors.margins: Spacing.xs
            clip: true
            boundsBehavior: Flickable.StopAtBounds
            model: sheet.rescue.entries
            Accessible.role: Accessible.List
            Accessible.name: "Lost Items"

            ScrollBar.vertical: SlimScrollBar { }

            delegate: FocusScope {
                id: entry

                required property var modelData
                required property int index

                width: ListView.view.width
                height: content.implicitHeight + 2 * Spacing.sm
                Accessible.role: Accessible.ListItem
                Accessible.name: modelData.title
                Accessible.description: modelData.details
                onActiveFocusChanged: if (activeFocus) ListView.view.positionViewAtIndex(index, ListView.Contain)

                ColumnLayout {
                    id: content

                    anchors.left: parent.left
                    anchors.right: parent.right
                    anchors.verticalCenter: parent.verticalCenter
                    anchors.leftMargin: Spacing.sm
                    anchors.rightMargin: Spacing.md
                    spacing: Spacing.xs

                    RowLayout {
                        Layout.fillWidth: true
                        spacing: Spacing.sm

                        SymbolImage {
                            symbol: entry.modelData.symbol
                            size: Metrics.symbolEntry
                            color: Colors.primaryAccent
                        }

                        Text {
                            Layout.fillWidth: true
                            text: entry.modelData.title
                            textFormat: Text.PlainText
                            font: Typography.settingTitle
                            color: Colors.textPrimary
                            horizontalAlignment: Text.AlignLeft
                            elide: Text.ElideMiddle
                            Accessible.ignored: true
                        }
                    }

                    Text {
                        Layout.fillWidth: true
                        text: entry.modelData.details
                        textFormat: Text.PlainText
                        font: Typography.settingDescription
                        color: Colors.textSecondary
                        horizontalAlignment: Text.AlignLeft
                        wrapMode: Text.Wrap
                        Accessible.ignored: true
                    }

                    WrappingRow {
                        spacing: Spacing.sm

                        Repeater {
                            model: entry.modelData.choices

                            SecondaryButton {
                                required property string modelData
                                required property int index

                                text: modelData
                                enabled: !sheet.rescue.isBusy
                                Accessible.description: entry.modelData.title
                                onClicked: sheet.rescue.choose(entry.index, index)
                            }
                        }
                    }
                }
            }
        }
    }

    buttons: SheetButtons {
        id: buttonRow

        secondaryText: "Close"
        mainText: "Look Again"
        canAct: !sheet.rescue.isBusy
        onSecondaryPressed: sheet.rescue.close()
        onMainPressed: sheet.rescue.lookAgain()
    }
}
