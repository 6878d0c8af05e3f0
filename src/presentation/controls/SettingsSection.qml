// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import QtQuick.Controls.Basic
import QtQuick.Layouts
import Quillhaven.Design

/// A heading and its settings. A collapsible section is opened and closed by its heading.
SectionModifier {
    id: section

    property string title
    property string icon
    property string description
    default property alias content: contentColumn.data
    /// Shown at the end of the heading.
    property alias accessory: accessorySlot.data
    property bool isCollapsible: false
    property bool showDivider: true
    property bool isExpanded: true
    readonly property bool isHovered: header.hovered

    implicitWidth: layout.implicitWidth + Spacing.lg * 2
    implicitHeight: layout.implicitHeight + Spacing.lg * 2

    ColumnLayout {
        id: layout

        anchors.fill: parent
        anchors.margins: Spacing.lg
        spacing: Spacing.controlSpacing

        RowLayout {
            Layout.fillWidth: true
            spacing: Spacing.sm

            AbstractButton {
                id: header

                Layout.fillWidth: true
                enabled: section.isCollapsible
                hoverEnabled: true
                focusPolicy: section.isCollapsible ? Qt.StrongFocus : Qt.NoFocus
                text: section.title
                onClicked: section.isExpanded = !section.isExpanded
                Accessible.ignored: !section.isCollapsible
                Accessible.name: section.title
                Accessible.description: section.isExpanded ? "Double tap to collapse" : "Double tap to expand"

                KeyboardPress {
                    control: header
                    onPressed: header.clicked()
                }

                contentItem: RowLayout {
                    spacing: Spacing.sm

                    SymbolImage {
                        visible: section.icon !== ""
                        symbol: section.icon
                        color: Colors.primaryAccent
                    }

                    TextLabel {
                        Layout.fillWidth: true
                        text: section.title
                        font: Typography.sectionHeader
                        Accessible.ignored: section.isCollapsible
                        Accessible.role: Accessible.Heading
                    }

                    SymbolImage {
                        visible: section.isCollapsible
                        symbol: section.isExpanded ? "chevron.down" : "chevron.right"
                        size: Metrics.symbolControl
                        color: Colors.iconMuted
                    }
                }

                background: FocusRing { shown: header.visualFocus }
            }

            RowLayout { id: accessorySlot }
        }

        TextLabel {
            Layout.fillWidth: true
            visible: text !== ""
            text: section.description
            font: Typography.settingDescription
            color: Colors.textSecondary
            wrapMode: Text.Wrap
        }

        Rectangle {
            Layout.fillWidth: true
            visible: section.showDivider && section.isExpanded
            implicitHeight: 1
            color: Colors.divider
        }

        ColumnLayout {
            id: contentColumn

            Layout.fillWidth: true
            visible: section.isExpanded
            spacing: Spacing.rowSpacing
        }
    }
}
