// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import QtQuick.Layouts
import Quillhaven.Controls
import Quillhaven.Design

/// What the list is narrowed by, and its order.
GridLayout {
    id: bar

    required property QtObject dashboard
    readonly property bool showFilters: dashboard.showFilters
    readonly property bool hasNoResults: dashboard.hasNoResults
    readonly property real widestSearch: Metrics.searchWidth

    /// The keyboard goes on from the search to what it found.
    signal listWanted

    columns: width < widestSearch + filters.implicitWidth + badge.implicitWidth + 2 * Spacing.xl ? 1 : 2
    columnSpacing: Spacing.lg
    rowSpacing: Spacing.sm

    Shortcut {
        sequences: [StandardKey.Find]
        onActivated: search.forceActiveFocus(Qt.ShortcutFocusReason)
    }

    RowLayout {
        Layout.fillWidth: true
        spacing: Spacing.md

        SearchField {
            id: search

            Layout.fillWidth: true
            Layout.maximumWidth: bar.columns === 1 ? -1 : bar.widestSearch
            placeholderText: "Search items"
            text: bar.dashboard.searchText
            Keys.onDownPressed: bar.listWanted()
            onTextEdited: bar.dashboard.searchText = text
        }

        RowLayout {
            id: badge

            visible: bar.hasNoResults
            spacing: Spacing.xs

            SymbolImage { symbol: "magnifyingglass"; size: Typography.calloutSize; color: Colors.warning }

            TextLabel {
                text: "No results"
                color: Colors.warning
                font.pixelSize: Typography.subheadlineSize
            }
        }

        Item {
            Layout.fillWidth: true
            visible: bar.columns === 2
        }
    }

    RowLayout {
        id: filters

        Layout.alignment: bar.columns === 1 ? Qt.AlignLeft : Qt.AlignRight
        spacing: Spacing.sm

        TextLabel {
            visible: !bar.showFilters
            text: "Filters will appear once you add items."
            color: Colors.textSecondary
            font.pixelSize: Typography.subheadlineSize
        }

        PopPicker {
            visible: bar.showFilters
            label: "Status"
            options: bar.dashboard.statusFilters
            selection: bar.dashboard.statusFilter
            onSelected: (option) => bar.dashboard.statusFilter = option
        }

        PopPicker {
            visible: bar.showFilters
            label: "Authentication"
            options: bar.dashboard.authFilters
            selection: bar.dashboard.authFilter
            onSelected: (option) => bar.dashboard.authFilter = option
        }

        PopPicker {
            visible: bar.showFilters
            label: "Type"
            options: bar.dashboard.typeFilters
            selection: bar.dashboard.typeFilter
            onSelected: (option) => bar.dashboard.typeFilter = option
        }

        PopPicker {
            visible: bar.showFilters
            label: "Sort by"
            options: bar.dashboard.sortOptions
            selection: bar.dashboard.sortOption
            onSelected: (option) => bar.dashboard.sortOption = option
        }

        SecondaryButton {
            visible: bar.dashboard.hasActiveFilters
            text: "Clear"
            Accessible.description: "Clear all filters"
            onClicked: bar.dashboard.clearAllFilters()
        }
    }
}
