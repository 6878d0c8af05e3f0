// SPDX-License-Identifier: GPL-3.0-or-later

pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts
import Quillhaven.Controls
import Quillhaven.Design
import Quillhaven.Dialogs

/// The list of the keyboard shortcuts.
Sheet {
    id: sheet

    required property KeyboardShortcutsModel shortcuts

    /// A heading of the list.
    component GroupHeading: TextLabel {
        Layout.fillWidth: true
        Layout.topMargin: Spacing.sm
        font: Typography.settingTitle
        Accessible.role: Accessible.Heading
    }

    /// The keys for an action.
    component ShortcutRow: RowLayout {
        id: shortcut

        required property string action
        /// Each is one way to press it.
        required property list<string> keys

        Layout.fillWidth: true
        spacing: Spacing.sm
        Accessible.role: Accessible.ListItem
        Accessible.name: action + ": " + Array.from(keys).join(" or ")

        Text {
            Layout.fillWidth: true
            text: shortcut.action
            font: Typography.settingLabel
            color: Colors.textSecondary
            horizontalAlignment: Text.AlignLeft
            wrapMode: Text.Wrap
            Accessible.ignored: true
        }

        Repeater {
            model: shortcut.keys

            Rectangle {
                id: cap

                required property string modelData

                implicitWidth: keyName.implicitWidth + 2 * Spacing.sm
                implicitHeight: keyName.implicitHeight + Spacing.xs
                radius: DesignSystem.cornerRadiusSmall
                color: Colors.backgroundSecondary
                border.width: 1
                border.color: Colors.border

                Text {
                    id: keyName

                    anchors.centerIn: parent
                    text: cap.modelData
                    font: Typography.statusText
                    color: Colors.textPrimary
                    Accessible.ignored: true
                }
            }
        }
    }

    presented: shortcuts.isPresented
    title: "Keyboard Shortcuts"
    symbol: "keyboard"
    initialFocusItem: closeButton
    onReturnPressed: shortcuts.close()
    onEscapePressed: shortcuts.close()

    ColumnLayout {
        Layout.fillWidth: true
        spacing: Spacing.sm
        Accessible.role: Accessible.List
        Accessible.name: sheet.title

        GroupHeading { text: "Window" }
        ShortcutRow { action: "Protect a new item"; keys: ["Ctrl+N"] }
        ShortcutRow { action: "Lock all items"; keys: ["Ctrl+L"] }
        ShortcutRow { action: "Search"; keys: ["Ctrl+F"] }
        ShortcutRow { action: "Preferences"; keys: ["Ctrl+,"] }
        ShortcutRow { action: "Keyboard shortcuts"; keys: ["F1", "Ctrl+?"] }
        ShortcutRow { action: "Close the window"; keys: ["Ctrl+W"] }
        ShortcutRow { action: "Quit"; keys: ["Ctrl+Q"] }
        ShortcutRow { action: "Press the focused control"; keys: ["Space", "Enter"] }

        GroupHeading { text: "Search and Filters" }
        ShortcutRow { action: "Go to the results"; keys: ["Down"] }
        ShortcutRow { action: "Clear the search"; keys: ["Esc"] }
        ShortcutRow { action: "Open a filter"; keys: ["Space", "Down"] }

        GroupHeading { text: "List" }
        ShortcutRow { action: "Previous or next item"; keys: ["Up", "Down"] }
        ShortcutRow { action: "One page up or down"; keys: ["Page Up", "Page Down"] }
        ShortcutRow { action: "First or last item"; keys: ["Home", "End"] }
        ShortcutRow { action: "Lock or unlock the item"; keys: ["Enter"] }
        ShortcutRow { action: "All actions of the item"; keys: ["Menu", "Shift+F10"] }
        ShortcutRow { action: "Select all items"; keys: ["Ctrl+A"] }
        ShortcutRow { action: "Select or deselect the item"; keys: ["Space"] }
        ShortcutRow { action: "Leave the selection"; keys: ["Esc"] }
        ShortcutRow { action: "Remove protection"; keys: ["Delete"] }

        GroupHeading { text: "Sheets" }
        ShortcutRow { action: "Confirm"; keys: ["Enter"] }
        ShortcutRow { action: "Cancel or close"; keys: ["Esc"] }
        ShortcutRow { action: "Scroll"; keys: ["Up", "Down", "Page Up", "Page Down"] }
        ShortcutRow { action: "Previous or next section of the preferences"; keys: ["Left", "Right"] }
    }

    buttons: PrimaryFilledButton {
        id: closeButton

        Layout.fillWidth: true
        text: "Close"
        onClicked: sheet.shortcuts.close()
    }
}
