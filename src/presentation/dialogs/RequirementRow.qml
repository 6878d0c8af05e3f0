// SPDX-License-Identifier: GPL-3.0-or-later

pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts
import Quillhaven.Controls
import Quillhaven.Design

/// A requirement for a new password, and whether it is met.
RowLayout {
    id: row

    property string text
    property bool isMet: false

    spacing: Spacing.sm
    Accessible.role: Accessible.StaticText
    Accessible.name: text + (isMet ? ", met" : ", not met")

    SymbolImage {
        symbol: row.isMet ? "checkmark.circle.fill" : "xmark.circle.fill"
        size: Metrics.symbolText
        color: row.isMet ? Colors.success : Colors.error
    }

    Text {
        Layout.fillWidth: true
        text: row.text
        horizontalAlignment: Text.AlignLeft
        wrapMode: Text.Wrap
        font: Typography.settingDescription
        color: row.isMet ? Colors.textPrimary : Colors.textSecondary
        Accessible.ignored: true
    }
}
