// SPDX-License-Identifier: GPL-3.0-or-later

pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Controls.Basic
import Quillhaven
import Quillhaven.Dashboard
import Quillhaven.Design
import Quillhaven.Popover

ApplicationWindow {
    id: window

    required property MenuBarViewModel menuBarModel
    required property SheetModels sheets

    title: "Quillhaven Items"
    flags: Qt.Tool | Qt.FramelessWindowHint | Qt.WindowStaysOnTopHint
    width: Math.min(Metrics.popoverWidth, Screen.desktopAvailableWidth)
    height: Math.min(Metrics.popoverHeight, Screen.desktopAvailableHeight)
    color: Colors.windowBackground
    LayoutMirroring.enabled: Application.layoutDirection === Qt.RightToLeft
    LayoutMirroring.childrenInherit: true
    palette.toolTipBase: Colors.background
    palette.toolTipText: Colors.textPrimary
    palette.dark: Colors.border
    onVisibleChanged: if (visible) view.takeFocus()

    Connections {
        target: window.menuBarModel
        function onMainWindowWanted() { window.hide() }
    }

    Shortcut {
        sequence: "Ctrl+Q"
        enabled: window.active
        onActivated: window.menuBarModel.quit()
    }

    Rectangle {
        anchors.fill: parent
        color: Colors.clear
        border.width: 1
        border.color: Colors.border
    }

    MenuBarView {
        id: view

        anchors.horizontalCenter: parent.horizontalCenter
        anchors.top: parent.top
        anchors.bottom: parent.bottom
        width: Math.min(Metrics.popoverContentWidth, parent.width)
        focus: true
        menuBar: window.menuBarModel
        Keys.onEscapePressed: window.hide()
    }

    Announcement {
        announcer: window.sheets.announcer
        // The main window announces also while it is hidden, but there is none after a start at login.
        isElsewhere: window.sheets.questionWindow.mainWindow !== null
    }

    SheetHost {
        anchors.fill: parent
        models: window.sheets
    }
}
