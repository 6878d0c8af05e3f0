#!/usr/bin/python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""The keyboard shortcuts, and the order of the focus."""

import subprocess

import flows
import screens
from desktop_driver import BUTTON, DIALOG, FIELD, PASSWORD, ROW, SPIN, SWITCH, TAB, key, type_text
from window_case import WindowTest, main

SHORTCUTS = "Keyboard Shortcuts"
LISTED = {
    "Protect a new item": "Ctrl+N", "Lock all items": "Ctrl+L", "Search": "Ctrl+F", "Preferences": "Ctrl+,",
    "Keyboard shortcuts": "F1 or Ctrl+?", "Close the window": "Ctrl+W", "Quit": "Ctrl+Q",
    "Press the focused control": "Space or Enter",
    "Go to the results": "Down", "Clear the search": "Esc", "Open a filter": "Space or Down",
    "Previous or next item": "Up or Down", "One page up or down": "Page Up or Page Down", "First or last item": "Home or End",
    "Lock or unlock the item": "Enter", "All actions of the item": "Menu or Shift+F10", "Select all items": "Ctrl+A",
    "Select or deselect the item": "Space", "Leave the selection": "Esc", "Remove protection": "Delete",
    "Confirm": "Enter", "Cancel or close": "Esc", "Scroll": "Up or Down or Page Up or Page Down",
    "Previous or next section of the preferences": "Left or Right"}
CONTROLS = (BUTTON, FIELD, PASSWORD, SPIN, SWITCH, TAB)


def set_layout(name):
    subprocess.run(["setxkbmap", name], check=True)


class Shortcuts(WindowTest):
    def setUp(self):
        super().setUp()
        self.program.find(BUTTON, flows.PROTECT)
        self.program.wait_until_active()

    def wait_for_focus(self, role, name):
        self.program.wait_for(lambda: (focused := self.program.focused()) and focused.matches(role, name),
                              f"the focus on {name}")

    def check_window_shortcuts(self, *help_keys):
        for keys in ("F1", *help_keys):
            key(keys)
            self.program.find(DIALOG, SHORTCUTS)
            key("Escape")
            self.program.gone(DIALOG, SHORTCUTS)
        key("ctrl+comma")
        self.program.find(DIALOG, flows.PREFERENCES)
        key("Escape")
        self.program.gone(DIALOG, flows.PREFERENCES)
        key("ctrl+n")
        self.program.find(FIELD, "Name:")
        key("Escape")
        self.program.gone(FIELD, "Name:")
        key("ctrl+f")
        self.wait_for_focus(FIELD, "Search items")

    def test_each_shortcut_of_the_window(self):
        self.check_window_shortcuts("ctrl+question")

    def test_each_shortcut_of_the_window_on_a_german_keyboard(self):
        self.addCleanup(set_layout, "us")
        set_layout("de")
        self.check_window_shortcuts("ctrl+question", "ctrl+shift+ssharp")

    def test_control_l_locks_every_unlocked_item(self):
        names = ("one.txt", "two.txt")
        for name in names:
            flows.protect_with_password(self.program, self.file(name))
            flows.unlock(self.program, name)
        key("ctrl+l")
        for name in names:
            flows.row(self.program, name, "locked")

    def test_the_sheet_lists_every_shortcut(self):
        key("F1")
        rows = [node.name for node in self.program.find(DIALOG, SHORTCUTS).walk() if node.role == ROW]
        self.assertEqual(rows, [f"{action}: {keys}" for action, keys in LISTED.items()])

    def test_space_and_return_press_the_focused_control(self):
        for keys in ("space", "Return"):
            self.program.find(BUTTON, "Preferences").focus()
            key(keys)
            self.program.find(DIALOG, flows.PREFERENCES)
            key("Escape")
            self.program.gone(DIALOG, flows.PREFERENCES)

    def check_selection_keys(self):
        key("ctrl+a")
        self.program.says("1 selected")
        key("Escape")
        self.program.gone(None, "1 selected")

    def test_control_a_selects_all_and_escape_leaves_the_selection_wherever_the_focus_is(self):
        flows.protect_with_password(self.program, self.file("one.txt"))
        self.program.wait_until_active()
        self.check_selection_keys()
        for role, name in ((BUTTON, "Unlock Item"), (BUTTON, "Bulk Protect"), (FIELD, "Search items")):
            with self.subTest(name):
                self.program.find(role, name).focus()
                self.check_selection_keys()

    def test_control_a_selects_the_text_of_the_search(self):
        flows.protect_with_password(self.program, self.file("one.txt"))
        field = self.program.find(FIELD, "Search items")
        field.type("zero")
        key("ctrl+a")
        type_text("one")
        self.program.wait_for(lambda: field.text == "one", "the text to be replaced")
        self.assertFalse(self.program.shows(None, "1 selected"))

    def test_control_a_selects_nothing_under_a_sheet_or_a_menu(self):
        flows.protect_with_password(self.program, self.file("one.txt"))
        for screen in (screens.shortcuts, screens.filter_menu, screens.row_menu):
            with self.subTest(screen.__name__), screen(self):
                key("ctrl+a")
        self.assertFalse(self.program.shows(None, "1 selected"))

    def test_the_menu_key_and_shift_f10_open_the_menu_of_the_row(self):
        flows.protect_with_password(self.program, self.file("one.txt"))
        self.program.find(BUTTON, "Unlock Item").focus()
        for keys in ("Menu", "shift+F10"):
            key(keys)
            self.program.find("menu item", "Copy Path")
            key("Escape")
            self.program.gone("menu item", "Copy Path")
        self.wait_for_focus(BUTTON, "Unlock Item")

    def test_control_w_closes_the_window(self):
        key("ctrl+w")
        self.program.wait_for(lambda: not any(node.has("active") for node in self.program.windows()),
                              "the window to disappear")
        self.assertTrue(self.program.is_running())


class FocusOrder(WindowTest):
    """Tab visits what can be focused in the order in which a screen reader reads it, and begins again after the last."""

    def top(self):
        sheets = self.program.find_all(DIALOG, None)
        return sheets[-1] if sheets else next(self.program.root().children())

    @staticmethod
    def identity(node):
        return node.role, node.name, node.description

    def focused_control(self):
        focused = self.program.focused()
        return focused if focused and focused.role in CONTROLS else None

    def visited(self):
        """The controls that Tab visits until it comes to the first one again."""
        if self.focused_control() is None:  # the preferences begin with their heading
            key("Tab")
        visited = [self.identity(self.program.wait_for(self.focused_control, "the focus on a control"))]
        if len([node for node in self.top().walk() if node.showing and node.role in CONTROLS]) == 1:
            return visited
        while len(visited) < 60:
            key("Tab")
            self.program.wait_for(
                lambda: (focused := self.program.focused()) and self.identity(focused) != visited[-1], f"Tab to leave {visited[-1]}")
            current = self.identity(self.program.focused())
            if current == visited[0]:
                return visited
            visited.append(current)
        self.fail(f"Tab does not come back to {visited[0]}: {visited}")

    def check(self, table):
        self.home.make_cloud_folder()
        for name, screen in table.items():
            with self.subTest(name), screen(self):
                visited = self.visited()
                order = [self.identity(node) for node in self.top().walk()]  # some are scrolled away
                outside = [each for each in visited if each not in order]
                self.assertEqual(outside, [], "the focus left the screen")
                first = visited.index(min(visited, key=order.index))
                self.assertEqual(visited[first:] + visited[:first], sorted(visited, key=order.index))

    def test_in_each_screen_without_items(self):
        self.program.wait_until_active()
        self.check(screens.WITHOUT_ITEMS)

    def test_in_each_sheet_of_an_item(self):
        self.program.wait_until_active()
        flows.protect_with_password(self.program, self.file("letter.txt"))
        self.check({name: screens.WITH_AN_ITEM[name] for name in ("list", "selection", "item password", "removal",
                                                                  "delete question", "shred confirmation")})


if __name__ == "__main__":
    main()
