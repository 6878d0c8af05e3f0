// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import Quillhaven.Dashboard

/// The announcer's text, for screen readers only: they read out a notification when it appears.
Item {
    id: announcement

    required property Announcer announcer
    /// Another window announces what happens now.
    property bool isElsewhere: false

    width: 1
    height: 1
    visible: false
    Accessible.role: Accessible.Notification
    Accessible.name: announcer.text

    // Not a binding: a text that another window has announced is not repeated here when that window disappears.
    Connections {
        target: announcement.announcer
        function onTextChanged() {
            announcement.visible = announcement.announcer.text !== "" && !announcement.isElsewhere
        }
    }
}
