// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick

/// Makes a sheet when it is first presented, and keeps it: the window's start does not pay for sheets nobody opens.
Item {
    id: loader

    required property bool presented
    required property Component sourceComponent
    property QtObject sheet: null

    anchors.fill: parent
    onPresentedChanged: load()
    Component.onCompleted: load()

    function load() {
        if (presented && !sheet)
            sheet = sourceComponent.createObject(loader)
    }
}
