// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import Quillhaven.Dashboard

/// The announcer's text, for screen readers only: they read out a notification when it appears.
Item {
    required property Announcer announcer

    width: 1
    height: 1
    visible: announcer.text !== ""
    Accessible.role: Accessible.Notification
    Accessible.name: announcer.text
}
