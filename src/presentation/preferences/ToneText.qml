// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import QtQuick.Layouts
import Quillhaven.Controls
import Quillhaven.Design
import Quillhaven.Preferences

/// A symbol, or an activity indicator, and a word in the colour of a status.
RowLayout {
    id: row

    property bool isBusy: false
    property string symbol
    property string text
    /// A StatusTone.
    property int tone: StatusTone.Secondary
    property font font: Typography.settingLabel
    property int symbolSize: Metrics.symbolText
    /// Of the activity indicator.
    property real indicatorScale: 1
    readonly property color ink: {
        switch (tone) {
        case StatusTone.Enabled: return Colors.statusEnabled
        case StatusTone.Disabled: return Colors.statusDisabled
        case StatusTone.Warning: return Colors.statusWarning
        case StatusTone.Error: return Colors.statusError
        case StatusTone.Info: return Colors.statusInfo
        default: return Colors.textSecondary
        }
    }

    spacing: Spacing.xs

    ActivityIndicator {
        Layout.preferredWidth: Metrics.symbolControl
        Layout.preferredHeight: Metrics.symbolControl
        visible: row.isBusy
        scale: row.indicatorScale
        color: row.ink
    }

    SymbolImage {
        visible: !row.isBusy
        symbol: row.symbol
        size: row.symbolSize
        color: row.ink
    }

    TextLabel {
        text: row.text
        font: row.font
        color: row.ink
        Accessible.role: Accessible.StatusBar
    }
}
