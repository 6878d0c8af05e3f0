#!/usr/bin/python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""What a screen reader finds on each screen: named controls with their states, in the order in which they are seen."""

import flows
import screens
from accessible_screen import Screen
from desktop_driver import DIALOG, SWITCH
from window_case import WindowTest, main

# The controls that are disabled at first.
DISABLED = {"new password": ["Protect"], "new master password": ["Protect"], "bulk picker": ["Protect 0 Items"],
            "general": ["Lock on screen saver"], "recovery": ["Recover All Files"], "item password": ["Unlock"],
            "master password": ["Authenticate"], "shred confirmation": ["🗑️ Shred Permanently"]}
WITHOUT_FOCUS = ("empty", "list", "selection", "bulk progress", "shred progress")


class AccessibleTree(WindowTest):
    def check(self, table):
        self.home.make_cloud_folder()
        for name, screen in table.items():
            with self.subTest(name), screen(self) as title:
                top = title and self.program.find(DIALOG, title)
                shown = Screen(self.program, top)
                self.assertEqual(shown.problems, [])
                self.assertEqual(shown.disabled, DISABLED.get(name, []))
                self.assertLessEqual(len(shown.focused), 1, shown.focused)
                if name not in WITHOUT_FOCUS:
                    self.assertEqual(len(shown.focused), 1, "the object with the focus")
                self.check_boxes(shown.boxes())

    def check_boxes(self, names):
        """Each check box changes its state when it is pressed, and changes it back."""
        for name in names:
            is_checked = self.program.find(SWITCH, name).has("checked")
            for expected in (not is_checked, is_checked):
                self.program.press(SWITCH, name)
                self.program.wait_for(lambda: (box := self.program.look(SWITCH, name)) and box.has("checked") == expected,
                                      f'"{name}" to be checked: {expected}')

    def test_each_screen_without_items(self):
        self.program.wait_until_active()
        self.check(screens.WITHOUT_ITEMS)

    def test_each_screen_with_an_item(self):
        self.program.wait_until_active()
        flows.protect_with_password(self.program, self.file("letter.txt"))
        self.check(screens.WITH_AN_ITEM)

    def test_the_question_for_the_master_password(self):
        flows.protect_with_password(self.program, self.file("letter.txt"))
        flows.set_master_password(self.program)
        self.check({"master password": screens.master_password})


class Introduction(WindowTest):
    is_introduced = False

    def test_the_introduction(self):
        self.program.find(DIALOG, "Welcome to Quillhaven")
        shown = Screen(self.program)
        self.assertEqual(shown.problems, [])
        self.assertEqual(shown.focused, ['push button "Get Started"'])


if __name__ == "__main__":
    main()
