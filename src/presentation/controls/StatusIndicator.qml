// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import Quillhaven.Design

/// A symbol and a word that show the state of something.
Row {
    id: indicator

    /// A StatusType.
    property int status: StatusType.Info
    property string text
    /// Without it the symbol is shown only to those who cannot rely on colours.
    property bool showIcon: true
    readonly property bool hasSymbol: showIcon || DesignSystem.differentiateWithoutColor
    /// A StatusSize.
    property int size: StatusSize.Medium

    readonly property color ink: {
        switch (status) {
        case StatusType.Enabled: return Colors.statusEnabled
        case StatusType.Disabled: return Colors.statusDisabled
        case StatusType.Warning: return Colors.statusWarning
        case StatusType.Error: return Colors.statusError
        default: return Colors.statusInfo
        }
    }
    readonly property string symbol: {
        switch (status) {
        case StatusType.Enabled: return "checkmark.circle.fill"
        case StatusType.Disabled: return "minus.circle.fill"
        case StatusType.Warning: return "exclamationmark.triangle.fill"
        case StatusType.Error: return "xmark.circle.fill"
        default: return "info.circle.fill"
        }
    }
    readonly property string word: {
        switch (status) {
        case StatusType.Enabled: return "Enabled"
        case StatusType.Disabled: return "Disabled"
        case StatusType.Warning: return "Warning"
        case StatusType.Error: return "Error"
        default: return "Information"
        }
    }
    readonly property int pointSize: {
        switch (size) {
        case StatusSize.Small: return Typography.captionSize
        case StatusSize.Large: return Typography.calloutSize
        default: return Typography.footnoteSize
        }
    }

    /// Shows the state of something that is on or off, with a text for each.
    function show(isEnabled: bool, enabledText: string, disabledText: string) {
        status = isEnabled ? StatusType.Enabled : StatusType.Disabled
        text = isEnabled ? enabledText : disabledText
    }

    spacing: Spacing.xs
    Accessible.role: Accessible.StaticText
    Accessible.name: word + " status"
    Accessible.description: text

    SymbolImage {
        anchors.verticalCenter: parent.verticalCenter
        visible: indicator.hasSymbol
        symbol: indicator.symbol
        size: indicator.pointSize + 4
        color: indicator.ink
    }

    Text {
        anchors.verticalCenter: parent.verticalCenter
        visible: text !== ""
        text: indicator.text
        textFormat: Text.PlainText
        font.family: Typography.family
        font.pixelSize: indicator.pointSize
        font.weight: Font.Medium
        color: indicator.ink
        Accessible.ignored: true
    }
}
