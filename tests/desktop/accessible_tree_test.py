#!/usr/bin/python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""What a screen reader finds on each screen: named controls, in the order in which they are seen."""

from collections import Counter

import flows
import screens
from desktop_driver import DIALOG, ROW
from window_case import WindowTest, main

# Roles of objects that only contain others, or that take the focus on behalf of one of them.
CONTAINERS = ("frame", "window", "filler", "panel", "scroll bar", "scroll pane", "dialog", "list", "layered pane")
MENU = "popup menu"
TOLERANCE = 4


class Screen:
    """What is showing in the topmost sheet, or in the window if there is none."""

    def __init__(self, program):
        shown = [node for node in program.walk() if node.showing]
        sheets = [node for node in shown if node.role == DIALOG]
        self.top = sheets[-1] if sheets else next(program.root().children())
        self.problems = []
        self._controls = Counter()
        self._check(self.top, in_row=False)
        self.problems += [f"{number} times {control}" for control, number in self._controls.items() if number > 1]

    def _check(self, node, in_row):
        in_row = in_row or node.role == ROW
        if node.has("focusable") and node.showing and node.role not in CONTAINERS:
            self._check_control(node, in_row)
        before = None
        for child in node.children():
            if child.showing and child.role not in ("scroll bar", "notification", DIALOG):
                self._check(child, in_row)
                before = self._check_order(before, child)

    def _check_control(self, node, in_row):
        if not node.name:
            self.problems.append(f"{node} has no name")
        if node.role in ("", "unknown", "invalid"):
            self.problems.append(f"{node} has no role")
        place = node.place
        if not place or place[2] <= 0 or place[3] <= 0:
            self.problems.append(f"{node} cannot be seen")
        if not in_row:
            self._controls[(node.role, node.name, node.description)] += 1

    def _check_order(self, before, node):
        x, y, width, height = node.place or (0, 0, 0, 0)
        if width <= 0 or height <= 0 or node.role == MENU:  # a menu is above everything else
            return before
        if before is not None:
            other, (left, top, right, bottom) = before
            above = y + height <= top + TOLERANCE
            same_line = y < bottom - TOLERANCE and top < y + height - TOLERANCE
            if above or (same_line and x + width <= left + TOLERANCE):
                self.problems.append(f"{node} is read after {other}, but comes before it")
        return node, (x, y, x + width, y + height)


class AccessibleTree(WindowTest):
    def check(self, table):
        self.home.make_cloud_folder()
        for name, screen in table.items():
            with self.subTest(name), screen(self):
                self.assertEqual(Screen(self.program).problems, [])

    def test_each_screen_without_items(self):
        self.program.wait_until_active()
        self.check(screens.WITHOUT_ITEMS)

    def test_each_screen_with_an_item(self):
        self.program.wait_until_active()
        flows.protect_with_password(self.program, self.file("letter.txt"))
        self.check(screens.WITH_AN_ITEM)


class Introduction(WindowTest):
    is_introduced = False

    def test_the_introduction(self):
        self.program.find(DIALOG, "Welcome to Quillhaven")
        self.assertEqual(Screen(self.program).problems, [])


if __name__ == "__main__":
    main()
