// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import QtQuick.Controls.Basic
import Quillhaven.Design

/// An action of a menu; with `checkable`, a setting that it toggles.
MenuItem {
    id: entry

    property string symbol
    property color ink: Colors.textPrimary
    /// The part of the text that is drawn, if a symbol replaces the rest.
    property string shownText: text
    /// If false, the symbol's place stays empty.
    property bool showsSymbol: true

    signal chosen

    function choose() {
        if (!enabled)
            return
        menu?.close()
        chosen()
    }

    implicitHeight: Metrics.menuRowHeight
    font: Typography.settingLabel
    onTriggered: choose()
    Accessible.name: text
    Accessible.onPressAction: choose()
    Accessible.onToggleAction: choose()

    indicator: null
    contentItem: Row {
        spacing: Spacing.sm
        opacity: entry.enabled ? 1 : Metrics.disabledOpacity

        SymbolImage {
            anchors.verticalCenter: parent.verticalCenter
            opacity: entry.showsSymbol ? 1 : 0
            symbol: !entry.checkable ? entry.symbol : entry.checked ? "checkmark.square.fill" : "square"
            size: Metrics.symbolControl
            color: entry.highlighted ? Colors.textPrimary : entry.ink
        }

        Text {
            anchors.verticalCenter: parent.verticalCenter
            text: entry.shownText
            textFormat: Text.PlainText
            font: entry.font
            color: entry.highlighted ? Colors.textPrimary : entry.ink
            Accessible.ignored: true
        }
    }

    background: Rectangle {
        radius: DesignSystem.cornerRadiusSmall
        color: entry.highlighted ? Colors.primary : Colors.clear
        border.width: entry.highlighted && Colors.isHighContrast ? 2 : 0
        border.color: Colors.focusRingHighContrast
    }
}
