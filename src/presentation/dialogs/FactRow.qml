// SPDX-License-Identifier: GPL-3.0-or-later

pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts
import Quillhaven.Controls
import Quillhaven.Design

/// A short statement after a symbol.
RowLayout {
    id: row

    property string symbol
    property string text
    property color color: Colors.textSecondary

    spacing: Spacing.sm

    SymbolImage {
        symbol: row.symbol
        size: Metrics.symbolControl
        color: row.color
    }

    TextLabel {
        Layout.fillWidth: true
        text: row.text
        font: Typography.settingDescription
        color: row.color
        wrapMode: Text.Wrap
    }
}
