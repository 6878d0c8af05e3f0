#!/usr/bin/python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""The sheet with the preferences: how it opens and closes, its tabs, and the way of the keyboard through it."""

import flows
from desktop_driver import BUTTON, DIALOG, SWITCH, TAB, key
from preferences_case import CLOSE, PreferencesTest
from window_case import main

SMALLEST = (760, 560)
# Controls whose middles differ by less are in one line.
LINE = 14
# What is below the last control at the end of the sheet.
PADDING = 12
# What the keyboard reaches in each section of an empty home with a folder for backups.
CONTROLS = {
    "General": ["Launch at login", "Start hidden, in the tray", "Auto-Lock", "Lock after 5 minutes of inactivity",
                "Lock on sleep", "Smart Auto-Lock", "Repair: File manager menus", "Repair: Links to Quillhaven",
                "Lock Everything Now", "Contact Support", "Report Issue", "Feedback"],
    "Security": ["Touch ID for unlocking", "Enforce strong passwords", "Set or Reset Master Password", "iCloud Backup",
                 "Look for Lost Items"],
    "Backup": ["Backup Now", "Recover Files", "Check Status", "Change Folder…"],
}
SECTIONS = tuple(CONTROLS)


def tab(section):
    return f"Switch to {section} settings"


class Sheet(PreferencesTest):
    def test_it_is_opened_by_the_button_of_the_toolbar_and_closed_by_its_own(self):
        flows.open_preferences(self.program)
        self.assertEqual(self.program.find(DIALOG, flows.PREFERENCES).description,
                         "Configure application preferences and security settings")
        self.assertEqual(self.program.find(BUTTON, CLOSE).description,
                         "Closes the settings modal. Press Escape key as alternative.")
        flows.close_preferences(self.program)

    def test_control_comma_opens_it_and_escape_closes_it(self):
        key("ctrl+comma")
        self.program.find(DIALOG, flows.PREFERENCES)
        self.escape()
        self.program.find(BUTTON, flows.PROTECT)

    def test_the_focus_goes_to_its_first_control_and_then_back_to_the_opener(self):
        for close in ("Escape", "Return"):
            with self.subTest(close):
                self.program.find(BUTTON, "Preferences").focus()
                key("Return")
                self.wait_for_focus(CLOSE)
                key(close)
                self.program.gone(DIALOG, flows.PREFERENCES)
                self.wait_for_focus("Preferences")

    def test_escape_closes_it_wherever_the_focus_is(self):
        for role, name in ((TAB, tab("General")), (SWITCH, "Launch at login"), (BUTTON, "Feedback")):
            with self.subTest(name):
                self.open()
                self.reach(role, name)
                self.escape()

    def order_of_tab(self, section):
        """Presses Tab until the focus is where it began, in the tab of the section; returns each control."""
        self.program.find(TAB, tab(section)).focus()
        found = [self.program.focused()]
        while True:
            before = str(found[-1]), found[-1].bounds
            key("Tab")
            focused = self.program.wait_for(lambda: (now := self.program.focused()) and
                                            (str(now), now.bounds) != before and now, f"Tab to leave {before}")
            self.assert_in_view(focused)
            if focused.name == tab(section):
                return found
            self.assertLess(len(found), 60, [str(each) for each in found])
            found.append(focused)

    def assert_in_view(self, control):
        """Asserts that a control is neither under the tabs nor below the lower edge of the sheet."""
        _, top, _, height = control.bounds
        _, sheet_top, _, sheet_height = self.program.find(DIALOG, flows.PREFERENCES).bounds
        _, tab_top, _, tab_height = self.program.find(TAB, tab("General")).bounds
        if control.role != TAB and control.name != CLOSE:
            self.assertGreaterEqual(top, tab_top + tab_height, f"{control} is under the tabs")
        self.assertLessEqual(top + height, sheet_top + sheet_height - PADDING, f"{control} is below the sheet")

    def in_lines(self, controls):
        """The names of the controls by lines from top to bottom, and in a line from left to right."""
        lines = []
        for middle, x, name in sorted((y + height // 2, x, each.name)
                                      for each in controls for x, y, _, height in [each.bounds]):
            if not lines or middle - lines[-1][0] > LINE:
                lines.append((middle, []))
            lines[-1][1].append((x, name))
        return [name for _, line in lines for _, name in sorted(line)]

    def check_order(self):
        self.home.make_cloud_folder()
        for section, controls in CONTROLS.items():
            with self.subTest(section):
                self.open(section)
                walked = self.order_of_tab(section)
                # In the order of the keyboard from the close button on, with the sheet at rest.
                first = next(index for index, each in enumerate(walked) if each.name == CLOSE)
                walked = walked[first:] + walked[:first]
                self.assertEqual([each.name for each in walked], [CLOSE, *map(tab, SECTIONS), *controls])
                inside = walked[1 + len(SECTIONS):]
                self.assertEqual(self.in_lines(inside), [each.name for each in inside])
                self.escape()

    def test_tab_goes_through_each_section_in_reading_order_and_keeps_the_focus_in_view(self):
        self.check_order()

    def test_tab_does_so_in_the_smallest_window(self):
        self.resize(*SMALLEST)
        self.check_order()

    def test_tab_reaches_in_that_order_what_a_switch_has_enabled(self):
        self.resize(*SMALLEST)
        self.open("General")
        self.switch("Smart Auto-Lock", True)
        walked = self.order_of_tab("General")
        names = [each.name for each in walked]
        first = names.index("Smart Auto-Lock")
        inside = walked[first:first + 4]
        self.assertEqual([each.name for each in inside],
                         ["Smart Auto-Lock", "Lock on screen saver", "Lock on screen lock", "Lock on user logout/switch"])
        self.assertEqual(self.in_lines(inside), [each.name for each in inside])

    def test_shift_tab_keeps_the_focus_in_view_in_the_smallest_window(self):
        self.resize(*SMALLEST)
        self.open("General")
        self.program.find(BUTTON, CLOSE).focus()
        previous = None
        while previous is None or previous.name != tab("Security"):
            before = str(self.program.focused())
            key("shift+Tab")
            previous = self.program.wait_for(lambda: (now := self.program.focused()) and str(now) != before and now,
                                             f"Shift and Tab to leave {before}")
            self.assert_in_view(previous)


class Tabs(PreferencesTest):
    def selected(self):
        return [each.name for each in self.program.find_all(TAB) if each.has("checked")]

    def wait_for_section(self, section):
        self.program.find(None, f"{section} section")
        self.program.wait_for(lambda: self.selected() == [tab(section)], f"the tab of {section} to be the only one")
        for other in SECTIONS:
            if other != section:
                self.program.gone(None, f"{other} section")

    def test_a_press_shows_the_section_and_marks_its_tab(self):
        self.home.make_cloud_folder()
        self.open()
        self.wait_for_section("General")
        for section in (*SECTIONS, "General"):
            self.program.press(TAB, tab(section))
            self.wait_for_section(section)

    def test_the_arrow_keys_go_from_tab_to_tab_and_stop_at_the_ends(self):
        self.home.make_cloud_folder()
        self.open()
        self.program.find(TAB, tab("General")).focus()
        for pressed, section in (("Left", "General"), ("Right", "Security"), ("Right", "Backup"), ("Right", "Backup"),
                                 ("Left", "Security")):
            key(pressed)
            self.wait_for_section(section)
            self.wait_for_focus(tab(section))

    def test_the_tab_of_the_backups_is_absent_without_a_folder_for_them(self):
        self.open()
        self.assertEqual([each.name for each in self.program.find_all(TAB)], [tab("General"), tab("Security")])
        self.escape()
        self.home.make_cloud_folder()
        self.open()
        self.program.find(TAB, tab("Backup"))

    def test_a_section_begins_at_its_top_after_another_was_scrolled(self):
        self.resize(*SMALLEST)
        self.open("General")
        self.reach(BUTTON, "Report Issue")
        self.program.press(TAB, tab("Security"))
        self.wait_for_section("Security")
        self.program.wait_for(lambda: self.program.look(None, "Authentication"), "the top of the section")

    def test_the_section_is_kept_until_the_next_time(self):
        self.open("Security")
        self.escape()
        self.open()
        self.wait_for_section("Security")


if __name__ == "__main__":
    main()
