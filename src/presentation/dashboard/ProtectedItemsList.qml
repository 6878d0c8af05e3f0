// SPDX-License-Identifier: GPL-3.0-or-later

pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts
import QtQuick.Controls.Basic
import Quillhaven.Controls
import Quillhaven.Dashboard
import Quillhaven.Design

/// The list of the items, or a text if it is empty.
Rectangle {
    id: area

    required property DashboardViewModel dashboard
    readonly property ItemSelection selection: dashboard.selection
    readonly property bool isEmpty: dashboard.items.count === 0

    /// Gives the keyboard focus to the current row, if there is one.
    function takeFocus() {
        list.forceLayout() // a search may just have changed the rows
        list.currentItem?.forceActiveFocus(Qt.TabFocusReason)
    }

    /// The least height at which the list is of use.
    implicitHeight: content.implicitHeight + 2
    radius: DesignSystem.cornerRadiusLarge
    color: Colors.cardBackground
    border.width: 1
    border.color: Colors.borderSubtle

    ColumnLayout {
        id: content

        anchors.fill: parent
        anchors.margins: 1
        spacing: 0

        ListControls {
            visible: !area.isEmpty || filters.hasActiveFilters
            Layout.fillWidth: true
            Layout.leftMargin: Spacing.lg
            Layout.rightMargin: Spacing.lg
            Layout.preferredHeight: Math.max(Spacing.minTouchTarget, implicitHeight + Spacing.md)
            filters: area.dashboard.filters
            selection: area.selection
            offersSelection: !area.isEmpty
        }

        // Also while every selected item is hidden.
        BulkOperationsToolbar {
            Layout.alignment: Qt.AlignTop
            Layout.fillWidth: true
            visible: area.selection.selectedCount > 0
            selection: area.selection
            onBulkUnlock: area.dashboard.bulk.performBulkUnlock()
            onBulkLock: area.dashboard.bulk.performBulkLock()
            onBulkRemove: area.dashboard.bulk.performBulkRemove()
            onBulkShred: area.dashboard.shredding.performBulkShred()
            onClearSelection: area.selection.clearSelection()
        }

        Rectangle {
            visible: !area.isEmpty
            Layout.fillWidth: true
            Layout.preferredHeight: 1
            color: Colors.borderSubtle
        }

        Item {
            id: emptyArea

            Layout.fillWidth: true
            Layout.fillHeight: true
            visible: area.isEmpty
            implicitHeight: (noResults.visible ? noResults.implicitHeight : empty.implicitHeight) + 2 * Spacing.sm

            EnhancedEmptyStateView {
                id: empty

                anchors.centerIn: parent
                width: Math.min(parent.width - 2 * Spacing.xl, Metrics.emptyStateWidth)
                isCompact: emptyArea.height < Metrics.compactList
                visible: area.isEmpty && !area.dashboard.items.hasNoResults
            }

            EnhancedEmptyStateView {
                id: noResults

                anchors.centerIn: parent
                width: Math.min(parent.width - 2 * Spacing.xl, Metrics.emptyStateWidth)
                isCompact: emptyArea.height < Metrics.compactList
                visible: area.dashboard.items.hasNoResults
                lines: ["No items match your search criteria",
                        "Try adjusting filters above or clear all to see your protected files."]

                SecondaryButton {
                    text: area.dashboard.filters.adaptiveCTAText
                    helpText: "Click to clear all filters"
                    onClicked: area.dashboard.filters.clearAllFilters()
                }
            }
        }

        ListView {
            id: list

            visible: !area.isEmpty
            implicitHeight: Metrics.listHeight
            Layout.fillWidth: true
            Layout.fillHeight: true
            clip: true
            reuseItems: true
            keyNavigationEnabled: true
            boundsBehavior: Flickable.StopAtBounds
            model: area.dashboard.items
            currentIndex: 0
            highlightMoveDuration: 0
            Accessible.role: Accessible.List
            Accessible.name: "Protected Items"

            property string keptId

            // After a change of the order or the filters, the same item is the current one, or else the next one.
            function keepPlace() {
                if (keptId === "")
                    return
                const row = area.dashboard.items.rowNear(keptId)
                keptId = ""
                if (row >= 0)
                    currentIndex = row
            }

            Connections {
                target: area.dashboard.items
                function onOrderAboutToChange() { list.keptId = list.keptId || area.dashboard.items.idAt(list.currentIndex) }
                function onOrderChanged() { list.keepPlace() }
                function onItemsChanged() {
                    if (list.menu?.visible && area.dashboard.items.rowOf(list.menu.itemId) < 0)
                        list.menu.close()
                }
            }

            property ItemContextMenu menu: null

            function openMenu(row, x, y, isByKeyboard = false) {
                menu = menu ?? menuOfRow.createObject(list)
                menu.isByKeyboard = isByKeyboard
                const point = list.mapFromItem(row, x, y)
                menu.openFor(row, list, point.x, point.y)
            }

            Component { id: menuOfRow; ItemContextMenu { } }

            ScrollBar.vertical: SlimScrollBar { }

            // The keyboard focus follows the current row, even when the focused row was removed.
            onCurrentItemChanged: if (activeFocus && currentItem) currentItem.forceActiveFocus(Qt.OtherFocusReason)
            Keys.onPressed: (event) => {
                const page = Math.max(1, Math.floor(height / (currentItem?.height ?? height)) - 1)
                const targets = { [Qt.Key_Home]: 0, [Qt.Key_End]: count - 1,
                                  [Qt.Key_PageUp]: currentIndex - page, [Qt.Key_PageDown]: currentIndex + page }
                event.accepted = true
                if (event.key === Qt.Key_Menu || (event.key === Qt.Key_F10 && event.modifiers & Qt.ShiftModifier))
                    openMenu(currentItem, Spacing.xxxl, currentItem.height / 2, true)
                else if (event.key === Qt.Key_Delete)
                    area.dashboard.itemActions.onDelete(currentIndex)
                else if (event.key in targets)
                    currentIndex = Math.max(0, Math.min(count - 1, targets[event.key]))
                else
                    event.accepted = false
            }

            delegate: FinderRowView {
                id: row

                width: ListView.view.width
                actions: area.dashboard.rowActions
                isInSelectionMode: area.selection.isInSelectionMode
                isUnderMenu: list.menu?.visible ?? false
                onToggleLock: (id) => area.dashboard.itemActions.onToggleLock(id)
                onRemove: (id) => area.dashboard.itemActions.askToRemove(id)
                onRevealInFinder: (id) => area.dashboard.rowActions.onRevealInFinder(id)
                onMenuWanted: (x, y) => list.openMenu(row, x, y)
                onSelectionToggle: (id) => area.selection.onSelectionToggle(id)
                onSelectionExtend: (id) => area.selection.extendSelection(id)
                onSelectionRange: area.selection.selectRange(list.currentIndex, row.index)
            }
        }
    }
}
