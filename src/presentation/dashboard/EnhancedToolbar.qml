// SPDX-License-Identifier: GPL-3.0-or-later

pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts
import Quillhaven.Controls
import Quillhaven.Dashboard
import Quillhaven.Design

/// The toolbar at the top of the window: the program's name and version, and its main actions.
Rectangle {
    id: toolbar

    required property DashboardViewModel dashboard
    property string title: "Quillhaven"
    readonly property bool isNarrow: width < Metrics.narrowToolbar
    /// There is no room for all texts, even in a window of the least width.
    readonly property bool isTight: width < Metrics.narrowBar

    signal protectNewItem
    signal bulkProtect
    signal showPreferences

    implicitHeight: content.implicitHeight
    color: Colors.backgroundSecondary

    ColumnLayout {
        id: content

        anchors.left: parent.left
        anchors.right: parent.right
        spacing: 0

        RowLayout {
            Layout.fillWidth: true
            Layout.leftMargin: Math.max(Spacing.xl, (toolbar.width - Metrics.contentMaximumWidth) / 2)
            Layout.rightMargin: Layout.leftMargin
            Layout.topMargin: Spacing.lg
            Layout.bottomMargin: Spacing.lg
            spacing: Spacing.md

            CrispImage {
                visible: !toolbar.isTight
                source: "qrc:/images/logo.svg"
                size: Spacing.minTouchTarget
            }

            ColumnLayout {
                Layout.fillWidth: true
                spacing: 2

                RowLayout {
                    Layout.fillWidth: true
                    spacing: Spacing.sm

                    TextLabel {
                        Layout.fillWidth: toolbar.isTight
                        elide: Text.ElideRight
                        text: toolbar.title
                        font.pixelSize: Typography.titleSize
                        font.weight: Font.Bold
                        Accessible.role: Accessible.Heading
                    }

                    Rectangle {
                        visible: !toolbar.isTight
                        implicitWidth: version.implicitWidth + 2 * Spacing.sm
                        implicitHeight: version.implicitHeight + Spacing.xs
                        radius: height / 2
                        color: Colors.selection

                        TextLabel {
                            id: version

                            anchors.centerIn: parent
                            text: toolbar.dashboard.versionText
                            color: Colors.textSecondary
                            font.pixelSize: Typography.captionSize
                            font.weight: Font.Medium
                        }
                    }

                    UpdateBadge { updates: toolbar.dashboard.updateBadge; showsText: !toolbar.isNarrow }
                }

                ActivityLine {
                    Layout.fillWidth: true
                    restingText: "Secure your files with ease"
                    activity: toolbar.dashboard.activityText
                }
            }

            PrimaryFilledButton {
                text: "Protect New Item"
                symbol: "plus"
                enabled: !toolbar.dashboard.protecting.showingFilePicker
                Accessible.description: "Opens file picker to select items to protect"
                onClicked: toolbar.protectNewItem()
            }

            SecondaryButton {
                text: "Bulk Protect"
                showsText: !toolbar.isTight
                symbol: "square.stack.3d.up.fill"
                helpText: "Protect multiple files and folders at once"
                Accessible.description: "Opens bulk file picker to protect multiple items"
                onClicked: toolbar.bulkProtect()
            }

            IconButton {
                symbol: "gearshape.fill"
                helpText: "Preferences"
                Accessible.description: "Opens application preferences"
                onClicked: toolbar.showPreferences()
            }
        }

        Rectangle {
            Layout.fillWidth: true
            Layout.preferredHeight: 1
            color: Colors.borderSubtle
        }
    }
}
