// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick

/// Makes a sheet when it is first presented, and keeps it: the window's start does not pay for sheets nobody opens.
Loader {
    id: loader

    required property bool presented

    anchors.fill: parent
    active: false
    z: item ? item.z : 0
    onPresentedChanged: if (presented) active = true
    Component.onCompleted: if (presented) active = true
}
