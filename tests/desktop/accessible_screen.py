# SPDX-License-Identifier: GPL-3.0-or-later

"""What a screen reader finds on one screen of the program, and what is wrong with it."""

import re
from collections import Counter

from desktop_driver import DIALOG, FIELD, PASSWORD, ROW, SPIN, SWITCH

# Roles of objects that only contain others, or that take the focus on behalf of one of them.
CONTAINERS = ("frame", "window", "filler", "panel", "scroll bar", "scroll pane", "dialog", "list", "layered pane", "popup menu")
MENU = "popup menu"
TOLERANCE = 4


class Screen:
    """What is showing in an object: the topmost sheet, or the window if there is none, unless another one is given."""

    def __init__(self, program, top=None):
        shown = [node for node in program.walk() if node.showing]
        sheets = [node for node in shown if node.role == DIALOG]
        self.top = top or (sheets[-1] if sheets else next(program.root().children()))
        self.problems = []
        self.disabled = []
        self.focused = [str(node) for node in shown if node.has("focused") and node.role not in CONTAINERS]
        self._controls = Counter()
        self._check(self.top, in_row=False)
        self.problems += [f"{number} times {control}" for control, number in self._controls.items() if number > 1]

    def boxes(self):
        """The names of the enabled check boxes."""
        return [node.name for node in self.top.walk() if node.role == SWITCH and node.showing and node.usable]

    def _check(self, node, in_row):
        if node.role == ROW:
            in_row = True
            self._check_row(node)
        if node.has("focusable") and node.showing and node.role not in CONTAINERS:
            self._check_control(node, in_row)
        before = None
        for child in node.children():
            if child.showing and child.role not in ("scroll bar", "notification", DIALOG):
                self._check(child, in_row)
                before = self._check_order(before, child)

    def _check_row(self, row):
        mark = row.find(SWITCH, re.compile("^Select "))
        if row.has("selectable") != (mark is not None):
            self.problems.append(f"{row} is selectable: {row.has('selectable')}, and has the mark {mark}")
        if row.has("selected") != (mark is not None and mark.has("checked")):
            self.problems.append(f"{row} is selected: {row.has('selected')}, unlike its mark")

    def _check_control(self, node, in_row):
        if not node.name:
            self.problems.append(f"{node} has no name")
        if node.role in ("", "unknown", "invalid"):
            self.problems.append(f"{node} has no role")
        place = node.place
        if not place or place[2] <= 0 or place[3] <= 0:
            self.problems.append(f"{node} cannot be seen")
        if node.has("enabled") != node.has("sensitive"):
            self.problems.append(f"{node} is enabled or sensitive, but not both")
        if not node.usable:
            self.disabled.append(node.name)
        if node.role in (FIELD, PASSWORD, SPIN) and not node.has("editable"):
            self.problems.append(f"{node} cannot be edited")
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
