// SPDX-License-Identifier: GPL-3.0-or-later

pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts
import QtQuick.Controls.Basic
import Quillhaven.Controls
import Quillhaven.Design
import Quillhaven.Popover

/// The content of the popover: the state of the items, a way to lock and unlock each, and ways into the main window.
FocusScope {
    id: view

    required property MenuBarViewModel menuBar

    /// Gives the keyboard focus to the list, or to the first button while there are no items.
    function takeFocus() {
        if (menuBar.isEmpty)
            plus.forceActiveFocus(Qt.TabFocusReason)
        else
            list.forceActiveFocus(Qt.TabFocusReason)
    }

    component Rule: Rectangle {
        Layout.fillWidth: true
        // At least one pixel of the screen.
        Layout.preferredHeight: Math.max(Metrics.popoverRule, 1 / Screen.devicePixelRatio)
        color: Colors.divider
    }

    component SummaryText: TextLabel {
        color: Colors.textSecondary
        font.pixelSize: Typography.footnoteSize
        font.weight: Font.Medium
    }

    implicitWidth: Metrics.popoverContentWidth
    Accessible.role: Accessible.Pane
    Accessible.name: "Quillhaven"

    ColumnLayout {
        anchors.fill: parent
        spacing: 0

        RowLayout {
            Layout.fillWidth: true
            Layout.topMargin: Spacing.sm
            Layout.bottomMargin: Spacing.sm
            spacing: Spacing.sm

            CrispImage { source: "qrc:/images/logo.svg"; size: Metrics.symbolRow }

            ColumnLayout {
                Layout.fillWidth: true
                spacing: 0

                TextLabel {
                    Layout.fillWidth: true
                    text: "Quillhaven"
                    font.pixelSize: Typography.menuTitleSize
                    font.weight: Font.DemiBold
                    Accessible.role: Accessible.Heading
                }

                TextLabel {
                    Layout.fillWidth: true
                    text: view.menuBar.countText
                    color: Colors.textSecondary
                    font.pixelSize: Typography.footnoteSize
                }
            }

            FilledButton {
                id: plus

                implicitWidth: Math.max(Metrics.smallButton, Metrics.symbolText + Spacing.md)
                implicitHeight: implicitWidth
                leftPadding: 0
                rightPadding: 0
                fill: Colors.clear
                hoverBrightness: Metrics.tintOpacity
                helpText: "Open Quillhaven"
                Accessible.name: helpText
                Accessible.description: ""
                onClicked: view.menuBar.bringMainWindowForward()

                contentItem: Item {
                    SymbolImage {
                        anchors.centerIn: parent
                        symbol: "plus.circle"
                        size: Metrics.symbolText
                        color: Colors.primaryAccent
                    }
                }
            }
        }

        Rule { }

        RowLayout {
            Layout.fillWidth: true
            Layout.topMargin: Spacing.sm
            Layout.bottomMargin: Spacing.sm
            spacing: Spacing.xs
            visible: !view.menuBar.isEmpty

            Rectangle {
                implicitWidth: Spacing.sm
                implicitHeight: Spacing.sm
                radius: width / 2
                color: Colors.badgeUnlocked
            }

            SummaryText { text: view.menuBar.activeText }

            Item { Layout.fillWidth: true }

            SummaryText { text: view.menuBar.securedText }
        }

        Item {
            Layout.fillWidth: true
            Layout.fillHeight: true
            visible: view.menuBar.isEmpty

            ColumnLayout {
                anchors.centerIn: parent
                spacing: Spacing.sm

                SymbolImage {
                    Layout.alignment: Qt.AlignHCenter
                    symbol: "folder.badge.questionmark"
                    size: Metrics.symbolRow
                    color: Colors.textSecondary
                }

                TextLabel {
                    text: "No protected items"
                    color: Colors.textSecondary
                    font.pixelSize: Typography.calloutSize
                    font.weight: Font.Medium
                }
            }
        }

        ListView {
            id: list

            function pressCurrent() {
                view.menuBar.onToggleLock(currentIndex)
            }

            Layout.fillWidth: true
            Layout.fillHeight: true
            Layout.maximumHeight: Metrics.popoverListHeight
            visible: !view.menuBar.isEmpty
            clip: true
            activeFocusOnTab: true
            keyNavigationEnabled: true
            boundsBehavior: Flickable.StopAtBounds
            model: view.menuBar.items
            currentIndex: 0
            highlightMoveDuration: 0
            Accessible.role: Accessible.List
            Accessible.name: "Protected Items"

            Keys.onSpacePressed: pressCurrent()
            Keys.onReturnPressed: pressCurrent()
            Keys.onEnterPressed: pressCurrent()
            Keys.onPressed: (event) => {
                const page = Math.max(1, Math.floor(height / (currentItem?.height ?? height)) - 1)
                const targets = { [Qt.Key_Home]: 0, [Qt.Key_End]: count - 1,
                                  [Qt.Key_PageUp]: currentIndex - page, [Qt.Key_PageDown]: currentIndex + page }
                event.accepted = event.key in targets
                if (event.accepted)
                    currentIndex = Math.max(0, Math.min(count - 1, targets[event.key]))
            }

            ScrollBar.vertical: SlimScrollBar { }

            delegate: MenuBarItemRow {
                width: ListView.view.width
                onToggleLock: view.menuBar.onToggleLock(index)
            }
        }

        Item {
            // Takes what the list leaves.
            Layout.fillHeight: true
            Layout.preferredHeight: 0
            visible: !view.menuBar.isEmpty
        }

        Rule { }

        RowLayout {
            Layout.fillWidth: true
            Layout.topMargin: 4
            Layout.bottomMargin: 4
            spacing: Spacing.xs

            MenuBarFooterButton {
                Layout.fillWidth: true
                Layout.preferredWidth: 1
                symbol: "power"
                text: "Quit"
                onClicked: view.menuBar.quit()
            }

            MenuBarFooterButton {
                Layout.fillWidth: true
                Layout.preferredWidth: 1
                symbol: "info.circle"
                text: "About"
                Accessible.name: "About Quillhaven"
                onClicked: view.menuBar.bringMainWindowForward()
            }

            MenuBarFooterButton {
                Layout.fillWidth: true
                Layout.preferredWidth: 1
                symbol: "gearshape"
                text: "Preferences"
                onClicked: view.menuBar.showPreferences()
            }
        }
    }
}
