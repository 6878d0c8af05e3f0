// SPDX-License-Identifier: GPL-3.0-or-later

pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts
import Quillhaven.Controls
import Quillhaven.Dashboard
import Quillhaven.Design

/// The content of the main window. A scope, so that keys are received here also when no control has the focus.
FocusScope {
    id: view

    required property DashboardViewModel dashboard
    /// False while a sheet covers the window: nothing can be dropped then.
    property bool acceptsDrops: true
    readonly property bool hasRoomForDropArea: height >= Metrics.roomyWindow

    signal preferencesWanted

    function selectAll() {
        if (dashboard.items.count > 0)
            dashboard.selection.selectAll()
    }

    Keys.onPressed: (event) => {
        event.accepted = true
        if (event.matches(StandardKey.SelectAll))
            selectAll()
        else if (event.key === Qt.Key_Escape && dashboard.selection.isInSelectionMode)
            dashboard.selection.clearSelection()
        else
            event.accepted = false
    }

    ColumnLayout {
        anchors.fill: parent
        spacing: 0

        EnhancedToolbar {
            Layout.fillWidth: true
            dashboard: view.dashboard
            onProtectNewItem: view.dashboard.protecting.protectNewItem()
            onBulkProtect: view.dashboard.bulk.showBulkFilePicker()
            onShowPreferences: view.preferencesWanted()
        }

        // Scrolls where the window has no room for everything, as with large text.
        SheetScroller {
            id: body

            Layout.fillWidth: true
            Layout.fillHeight: true
            Layout.alignment: Qt.AlignHCenter
            Layout.maximumWidth: Metrics.contentMaximumWidth + 2 * edge
            Layout.margins: Spacing.xl - edge
            Layout.topMargin: Spacing.lg - edge
            fills: true
            spacing: view.height < Metrics.compactWindow ? Spacing.md : Spacing.lg

            NoticeList {
                Layout.fillWidth: true
                Layout.fillHeight: false
                notices: view.dashboard.notices
            }

            SearchFilterBar {
                Layout.fillWidth: true
                Layout.fillHeight: false
                filters: view.dashboard.filters
                showFilters: view.dashboard.items.showFilters
                hasNoResults: view.dashboard.items.hasNoResults
                onListWanted: itemsList.takeFocus()
                onSelectAllWanted: view.selectAll()
            }

            DashboardStatistics {
                Layout.fillWidth: true
                Layout.fillHeight: false
                isCompact: view.height < Metrics.compactWindow
                model: view.dashboard.statistics
                onPreferencesWanted: view.preferencesWanted()
            }

            ProtectedItemsList {
                id: itemsList

                Layout.fillWidth: true
                Layout.fillHeight: true
                Layout.minimumHeight: implicitHeight
                dashboard: view.dashboard
            }

            DropAreaView {
                Layout.fillWidth: true
                visible: view.hasRoomForDropArea
                isTargeted: dropTarget.containsDrag
            }
        }
    }

    SlimScrollBar {
        anchors.right: parent.right
        anchors.rightMargin: Spacing.xs
        y: body.y
        height: body.height
        orientation: Qt.Vertical
        size: body.height / body.contentHeight
        position: body.contentY / body.contentHeight
        onPositionChanged: if (pressed) body.scrollTo(position * body.contentHeight)
    }

    DropArea {
        id: dropTarget

        anchors.fill: parent
        enabled: view.acceptsDrops
        keys: ["text/uri-list"]
        // What is not a local file, such as a link from a browser, is refused while it is dragged.
        onEntered: (drag) => { drag.accepted = view.dashboard.dropping.canDrop(drag.urls) }
        onDropped: (drop) => {
            drop.accept(Qt.CopyAction)
            view.dashboard.dropping.onDrop(drop.urls)
            // The keyboard is still the other program's, which must not get a password.
            view.Window.window.requestActivate()
        }
    }

    DropAreaView {
        anchors.fill: parent
        anchors.margins: Spacing.xl
        visible: dropTarget.containsDrag && !view.hasRoomForDropArea
        isTargeted: true
        color: Colors.modalBackground
    }
}
