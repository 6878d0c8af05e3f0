// SPDX-License-Identifier: GPL-3.0-or-later

pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Controls.Basic
import Quillhaven
import Quillhaven.Dashboard
import Quillhaven.Design

ApplicationWindow {
    id: window

    required property DashboardViewModel dashboard
    required property SheetModels sheets

    signal quitRequested

    title: "Quillhaven"
    width: Metrics.windowWidth
    height: Metrics.windowHeight
    minimumWidth: Metrics.windowMinimumWidth
    minimumHeight: Metrics.windowMinimumHeight
    color: Colors.windowBackground
    LayoutMirroring.enabled: Application.layoutDirection === Qt.RightToLeft
    LayoutMirroring.childrenInherit: true
    palette.toolTipBase: Colors.background
    palette.toolTipText: Colors.textPrimary
    palette.dark: Colors.border

    Shortcut {
        sequence: "Ctrl+Q" // the standard key for this is empty on a desktop that the toolkit does not know
        context: Qt.ApplicationShortcut // a sheet blocks those of the window
        enabled: window.active
        onActivated: window.quitRequested()
    }

    Shortcut {
        sequence: "Ctrl+," // as for Ctrl+Q
        onActivated: window.sheets.preferences.show()
    }

    Shortcut {
        sequences: ["F1", "Ctrl+?"]
        onActivated: window.sheets.keyboardShortcuts.show()
    }

    Shortcut {
        sequence: "Ctrl+N"
        enabled: !window.dashboard.protecting.showingFilePicker
        onActivated: window.dashboard.protecting.protectNewItem()
    }

    Shortcut {
        sequence: "Ctrl+L"
        onActivated: window.dashboard.bulk.lockEverything()
    }

    Shortcut {
        sequence: "Ctrl+W"
        onActivated: window.close()
    }

    DashboardView {
        anchors.fill: parent
        focus: true
        dashboard: window.dashboard
        acceptsDrops: !window.sheets.isAnyPresented
        onPreferencesWanted: window.sheets.preferences.show()
    }

    Announcement { announcer: window.dashboard.announcer }

    SheetHost {
        anchors.fill: parent
        isInMainWindow: true
        models: window.sheets
    }
}
