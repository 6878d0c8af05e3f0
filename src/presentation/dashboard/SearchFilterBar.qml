// SPDX-License-Identifier: GPL-3.0-or-later

pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts
import Quillhaven.Controls
import Quillhaven.Dashboard
import Quillhaven.Design

/// The list's search field, its filters and its order.
GridLayout {
    id: bar

    required property SearchFilterBarModel filters
    required property bool showFilters
    required property bool hasNoResults
    readonly property real maximumSearchWidth: Metrics.searchWidth

    /// The user wants to move the focus from the search field to the results.
    signal listWanted
    /// The user pressed the keys that select all in the search field, which has no text to select.
    signal selectAllWanted

    /// A picker for the values of an enumeration, by their labels.
    component FilterPicker: PopPicker {
        id: picker

        required property int choice

        signal chosen(int value)

        visible: bar.showFilters
        selection: options[choice]
        onSelected: (option) => picker.chosen(options.indexOf(option))
    }

    columns: width < maximumSearchWidth + pickers.rowWidth + badge.implicitWidth + 2 * Spacing.xl ? 1 : 2
    columnSpacing: Spacing.lg
    rowSpacing: Spacing.sm

    Shortcut {
        sequences: [StandardKey.Find] // qmllint disable unqualified
        onActivated: search.forceActiveFocus(Qt.ShortcutFocusReason)
    }

    RowLayout {
        Layout.fillWidth: true
        spacing: Spacing.md

        SearchField {
            id: search

            Layout.fillWidth: true
            Layout.maximumWidth: bar.columns === 1 ? -1 : bar.maximumSearchWidth
            placeholderText: "Search items"
            text: bar.filters.searchText
            Keys.onDownPressed: bar.listWanted()
            Keys.onPressed: (event) => {
                event.accepted = text === "" && event.matches(StandardKey.SelectAll)
                if (event.accepted)
                    bar.selectAllWanted()
            }
            onTextEdited: bar.filters.searchText = text
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

    WrappingRow {
        id: pickers

        Layout.alignment: bar.columns === 1 ? Qt.AlignLeft : Qt.AlignRight
        spacing: Spacing.sm

        TextLabel {
            visible: !bar.showFilters
            text: "Filters will appear once you add items."
            color: Colors.textSecondary
            font.pixelSize: Typography.subheadlineSize
        }

        FilterPicker {
            label: "Status"
            options: bar.filters.statusFilters
            choice: bar.filters.statusFilter
            onChosen: (value) => bar.filters.statusFilter = value
        }

        FilterPicker {
            label: "Authentication"
            options: bar.filters.authFilters
            choice: bar.filters.authFilter
            onChosen: (value) => bar.filters.authFilter = value
        }

        FilterPicker {
            label: "Type"
            options: bar.filters.typeFilters
            choice: bar.filters.typeFilter
            onChosen: (value) => bar.filters.typeFilter = value
        }

        FilterPicker {
            label: "Sort by"
            options: bar.filters.sortOptions
            choice: bar.filters.sortOption
            onChosen: (value) => bar.filters.sortOption = value
        }

        SecondaryButton {
            visible: bar.filters.hasActiveFilters
            text: "Clear"
            helpText: "Clear all filters"
            onClicked: bar.filters.clearAllFilters()
        }
    }
}
