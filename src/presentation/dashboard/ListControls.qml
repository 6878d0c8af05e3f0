// SPDX-License-Identifier: GPL-3.0-or-later

pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts
import Quillhaven.Controls
import Quillhaven.Dashboard
import Quillhaven.Design

/// The row above the list: the filters, and the selection mode.
RowLayout {
    id: controls

    required property SearchFilterBarModel filters
    required property ItemSelection selection
    property bool offersSelection: true

    spacing: Spacing.sm

    SymbolImage {
        visible: controls.filters.hasActiveFilters
        symbol: "line.3.horizontal.decrease.circle.fill"
        size: Metrics.symbolText
        color: Colors.primaryAccent
    }

    TextLabel {
        visible: controls.filters.hasActiveFilters
        text: "Filters Active"
        color: Colors.textSecondary
        font.pixelSize: Typography.footnoteSize
        font.weight: Font.Medium
    }

    Item { Layout.fillWidth: true }

    SecondaryButton {
        visible: controls.offersSelection && controls.selection.isInSelectionMode
        implicitHeight: Math.max(Spacing.xxl, implicitContentHeight + Spacing.md)
        text: controls.selection.selectAllText
        onClicked: controls.selection.toggleSelectAll()
    }

    SecondaryButton {
        visible: controls.offersSelection || controls.selection.isInSelectionMode
        implicitHeight: Math.max(Spacing.xxl, implicitContentHeight + Spacing.md)
        text: controls.selection.modeText
        onClicked: controls.selection.toggleSelectionMode()
    }
}
