// SPDX-License-Identifier: GPL-3.0-or-later

pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts
import QtQuick.Controls.Basic
import Quillhaven.Controls
import Quillhaven.Dashboard
import Quillhaven.Design

/// A row with a protected item and its actions.
FocusScope {
    id: row

    required property int index
    required property string itemId
    required property string originalName
    required property string shortenedPath
    required property string statusText
    required property string leadingIcon
    required property bool isMounted
    required property string toggleLockText
    required property string toggleLockIcon
    required property string accessibleText
    required property string accessibleDescription
    required property bool isBusy
    required property bool showingCopySuccess
    required property bool isSelected
    property bool isInSelectionMode: false
    /// A menu covers the list, so that no help appears above it.
    property bool isUnderMenu: false
    required property RowActions actions

    readonly property bool isCurrent: ListView.isCurrentItem
    /// The buttons for what cannot be undone have their colours only here, so that a long list stays calm.
    readonly property bool isActive: hover.hovered || activeFocus
    readonly property string helpText: "Double-tap to reveal in Finder"
    readonly property bool isLast: index === ListView.view.count - 1

    signal toggleLock(string id)
    signal remove(string id)
    signal revealInFinder(string id)
    signal selectionToggle(string id)
    /// Selects or deselects the row, even outside the selection mode.
    signal selectionExtend(string id)
    /// Selects the rows from the current one to this one.
    signal selectionRange
    /// The menu with the actions is wanted at this point of the row.
    signal menuWanted(real x, real y)

    component RowButton: ActionButton {
        actions: row.actions
        enabled: !row.isBusy
        activeFocusOnTab: row.isCurrent || activeFocus
        Accessible.description: row.accessibleText // screen readers do not read out the row around a button
    }

    function toggle() {
        if (!isBusy)
            toggleLock(itemId)
    }

    function startAtFirstControl() {
        (isInSelectionMode ? mark : toggleButton).focus = true
    }

    implicitHeight: Math.max(Metrics.listRowHeight, texts.implicitHeight + 2 * Spacing.sm)
    Accessible.role: Accessible.ListItem
    Accessible.name: accessibleText
    Accessible.description: accessibleDescription
    Accessible.selectable: isInSelectionMode
    Accessible.selected: isSelected

    // The buttons get the keyboard focus; the row itself has it only while they are disabled.
    Keys.onReturnPressed: toggle()
    Keys.onEnterPressed: toggle()

    Component.onCompleted: startAtFirstControl()
    onItemIdChanged: startAtFirstControl() // the row shows another item now
    // A row that waits to be used again is not drawn, but would still be on the accessibility bus.
    ListView.onPooled: visible = false
    ListView.onReused: visible = true
    onIsInSelectionModeChanged: startAtFirstControl()
    onActiveFocusChanged: if (activeFocus) ListView.view.currentIndex = index

    HoverHandler { id: hover }

    TapHandler {
        acceptedModifiers: Qt.NoModifier
        onTapped: {
            row.forceActiveFocus(Qt.MouseFocusReason)
            if (row.isInSelectionMode)
                row.selectionToggle(row.itemId)
        }
        onDoubleTapped: if (!row.isInSelectionMode) row.revealInFinder(row.itemId)
    }

    TapHandler {
        acceptedModifiers: Qt.ControlModifier
        onTapped: {
            row.forceActiveFocus(Qt.MouseFocusReason)
            row.selectionExtend(row.itemId)
        }
    }

    TapHandler {
        acceptedModifiers: Qt.ShiftModifier
        onTapped: {
            row.selectionRange()
            row.forceActiveFocus(Qt.MouseFocusReason)
        }
    }

    TapHandler {
        acceptedButtons: Qt.RightButton
        gesturePolicy: TapHandler.ReleaseWithinBounds
        onTapped: (point) => {
            row.forceActiveFocus(Qt.MouseFocusReason)
            row.menuWanted(point.position.x, point.position.y)
        }
    }

    Rectangle {
        anchors.fill: parent
        anchors.margins: 4
        radius: DesignSystem.cornerRadiusMedium
        color: row.isSelected || row.activeFocus && !row.isInSelectionMode ? Colors.selection : hover.hovered ? Colors.hover : Colors.clear
        border.width: row.activeFocus ? 2 : 0
        border.color: Colors.primaryAccent

        Behavior on color {
            ColorAnimation { duration: DesignSystem.animationQuick }
        }
    }

    Rectangle {
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.bottom: parent.bottom
        anchors.leftMargin: Spacing.lg
        anchors.rightMargin: Spacing.lg
        height: 1
        visible: !row.isLast
        color: Colors.borderSubtle
    }

    RowLayout {
        anchors.fill: parent
        anchors.leftMargin: Spacing.lg
        anchors.rightMargin: Spacing.lg
        spacing: Spacing.md

        CheckMark {
            id: mark

            Layout.preferredWidth: row.isInSelectionMode ? implicitWidth : 0
            visible: Layout.preferredWidth > 0
            opacity: row.isInSelectionMode ? 1 : 0
            isRound: true
            label: "Select " + row.originalName
            ticked: row.isSelected
            activeFocusOnTab: row.isCurrent || activeFocus
            onToggleRequested: row.selectionToggle(row.itemId)

            Behavior on Layout.preferredWidth {
                NumberAnimation { duration: DesignSystem.animationQuick; easing.type: Easing.InOutQuad }
            }
            Behavior on opacity {
                NumberAnimation { duration: DesignSystem.animationQuick; easing.type: Easing.InOutQuad }
            }
        }

        SymbolImage {
            symbol: row.leadingIcon
            size: Metrics.symbolRow
            color: row.isMounted ? Colors.iconMuted : Colors.primaryAccent
        }

        ColumnLayout {
            id: texts

            HoverHandler { id: textsHover }

            Layout.fillWidth: true
            spacing: 2

            Text {
                id: name

                ToolTip.visible: textsHover.hovered && !row.isUnderMenu && ToolTip.text !== ""
                ToolTip.text: !truncated ? (row.isInSelectionMode ? "" : row.helpText)
                                         : row.originalName + (row.isInSelectionMode ? "" : "\n" + row.helpText)
                ToolTip.delay: Metrics.toolTipDelay
                Layout.fillWidth: true
                text: row.originalName
                textFormat: Text.PlainText
                color: Colors.textPrimary
                font.pixelSize: Typography.bodySize
                font.weight: Font.Medium
                horizontalAlignment: Text.AlignLeft
                elide: Text.ElideMiddle
                Accessible.ignored: true
            }

            Repeater {
                model: row.showingCopySuccess ? 1 : 0
                delegate: CopiedNote { Layout.fillWidth: true }
            }

            Text {
                Layout.fillWidth: true
                visible: !row.showingCopySuccess
                text: row.shortenedPath
                textFormat: Text.PlainText
                horizontalAlignment: Text.AlignLeft
                color: Colors.textSecondary
                font.pixelSize: Typography.footnoteSize
                elide: Text.ElideMiddle
            }
        }

        Item {
            Layout.preferredWidth: Metrics.symbolRow
            Layout.preferredHeight: Metrics.symbolRow

            Repeater {
                model: row.isBusy ? 1 : 0
                delegate: ActivityIndicator {
                    anchors.fill: parent
                    color: Colors.primaryAccent
                    Accessible.role: Accessible.Animation
                    Accessible.name: "Working on " + row.originalName
                }
            }
        }

        Item {
            Layout.preferredWidth: Metrics.badgeColumnWidth
            Layout.preferredHeight: badge.implicitHeight

            StatusBadge {
                id: badge

                anchors.right: parent.right
                style: row.isMounted ? BadgeStyle.Unlocked : BadgeStyle.Locked
                text: row.statusText
            }
        }

        Row {
            spacing: Spacing.xs

            RowButton {
                id: toggleButton

                symbol: row.toggleLockIcon
                helpText: row.toggleLockText
                color: Colors.textPrimary
                onClicked: row.toggle()
                // The second click of a double click would undo what the first one has just done.
                onDoubleClicked: {}
            }

            RowButton {
                symbol: "folder.badge.plus"
                helpText: "Reveal in Finder"
                enabled: true
                onClicked: row.actions.revealInFinder(row.itemId)
            }

            RowButton {
                symbol: "doc.on.clipboard"
                helpText: "Copy Path to Clipboard"
                enabled: true
                onClicked: row.actions.copyPathToClipboard(row.itemId)
            }

            RowButton {
                symbol: "plus.square.on.square"
                helpText: "Duplicate as Encrypted Copy"
                onClicked: row.actions.duplicateAsEncryptedCopy(row.itemId)
            }

            RowButton {
                symbol: "trash.fill"
                helpText: "Secure Shred"
                color: row.isActive ? Colors.error : Colors.iconMuted
                onClicked: row.actions.askToDelete(row.itemId)
            }

            RowButton {
                symbol: "minus.circle.fill"
                helpText: "Remove Protection"
                color: row.isActive ? Colors.warning : Colors.iconMuted
                onClicked: row.remove(row.itemId)
            }
        }
    }
}
