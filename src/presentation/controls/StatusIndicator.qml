// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import Quillhaven.Design

/// A symbol and a word that say in which state something is.
Row {
    id: indicator

    /// StatusType: enabled, disabled, warning, info or error
    property string status: "info"
    property string text
    property bool showIcon: true
    /// StatusSize: small, medium or large
    property string size: "medium"

    readonly property var looks: ({
        "enabled": { ink: Colors.statusEnabled, symbol: "checkmark.circle.fill", word: "Enabled" },
        "disabled": { ink: Colors.statusDisabled, symbol: "minus.circle.fill", word: "Disabled" },
        "warning": { ink: Colors.statusWarning, symbol: "exclamationmark.triangle.fill", word: "Warning" },
        "info": { ink: Colors.statusInfo, symbol: "info.circle.fill", word: "Information" },
        "error": { ink: Colors.statusError, symbol: "xmark.circle.fill", word: "Error" }
    })
    readonly property var sizes: ({ "small": Typography.captionSize, "medium": Typography.footnoteSize,
                                    "large": Typography.calloutSize })
    readonly property var look: looks[status] ?? looks.info
    readonly property int pointSize: sizes[size] ?? sizes.medium

    /// The state of something that is on or off, with a text for each.
    function show(isEnabled, enabledText, disabledText) {
        status = isEnabled ? "enabled" : "disabled"
        text = isEnabled ? enabledText : disabledText
    }

    spacing: Spacing.xs
    Accessible.role: Accessible.StaticText
    Accessible.name: look.word + " status"
    Accessible.description: text

    SymbolImage {
        anchors.verticalCenter: parent.verticalCenter
        visible: indicator.showIcon
        symbol: indicator.look.symbol
        size: indicator.pointSize + 4
        color: indicator.look.ink
    }

    Text {
        anchors.verticalCenter: parent.verticalCenter
        visible: text !== ""
        text: indicator.text
        textFormat: Text.PlainText
        font.family: Typography.family
        font.pixelSize: indicator.pointSize
        font.weight: Font.Medium
        color: indicator.look.ink
        Accessible.ignored: true
    }
}
