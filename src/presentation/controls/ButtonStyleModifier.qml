// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import Quillhaven.Design

/// A button in one of the looks of ButtonStyleType.
FilledButton {
    /// ButtonStyleType: primary, secondary, destructive or cleared
    property string type: "primary"

    readonly property var looks: ({
        "primary": { fill: Colors.cta, outline: "transparent" },
        "secondary": { fill: Colors.bgPanel, outline: Colors.borderSubtle },
        "destructive": { fill: Qt.darker(Colors.error, 1.25), outline: "transparent" },
        "cleared": { fill: "transparent", outline: "transparent" }
    })
    readonly property var look: looks[type] ?? looks.primary

    fill: look.fill
    outline: look.outline
}
