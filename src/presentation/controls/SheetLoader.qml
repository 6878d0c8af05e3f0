// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick

/// Creates a sheet when it is first presented, and keeps it, so that sheets which are never opened cost no time at
/// start.
Item {
    id: loader

    required property bool presented
    required property Component sourceComponent
    property QtObject sheet: null
    /// A sheet cannot open before there is a window to open it in.
    readonly property bool isDue: presented && loader.Window.window !== null

    anchors.fill: parent
    onIsDueChanged: load()
    Component.onCompleted: load()

    function load() {
        if (isDue && !sheet)
            sheet = sourceComponent.createObject(loader)
    }
}
