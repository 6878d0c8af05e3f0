#!/usr/bin/python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""Using the program with only the keyboard: Tab, Return, Space, Escape."""

import flows
from desktop_driver import BUTTON, DIALOG, FIELD, key, type_text
from window_case import WindowTest, main


class Keyboard(WindowTest):
    def setUp(self):
        super().setUp()
        self.letter = self.file("letter.txt")
        self.program.find(BUTTON, flows.PROTECT)
        self.program.wait_until_active()

    def tab_to(self, name):
        """Presses Tab until the control with this name has the focus; fails if it is not reached."""
        seen = []
        for _ in range(60):
            focused = self.program.focused()
            if focused is not None and flows.re.search(name, focused.name):
                return focused
            seen.append(str(focused))
            key("Tab")
            self.program.wait_for(lambda: str(self.program.focused()) != seen[-1], f"Tab to leave {seen[-1]}")
        raise AssertionError(f"Tab never reached {name}: {seen}")

    def test_a_file_is_protected_without_the_pointer(self):
        self.tab_to(f"^{flows.PROTECT}$")
        key("Return")
        self.program.find(FIELD, "Name:")
        type_text(str(self.letter))
        key("Return")
        self.program.says("Protect letter.txt")
        self.tab_to(f"^{flows.PASSWORD_CARD}")
        key("Return")
        self.program.find(FIELD, "Confirm password")
        self.tab_to("^Password$")
        type_text(flows.ITEM_PASSWORD)
        self.tab_to("^Confirm password$")
        type_text(flows.ITEM_PASSWORD)
        key("Return")
        self.program.says(flows.ACCESS_MESSAGE)
        self.program.wait_for(lambda: (focused := self.program.focused()) and focused.name == flows.ACCESS_PROMPT,
                              "the focus on the button that confirms")
        key("Return")
        flows.row(self.program, "letter.txt", "locked")

    def test_control_q_ends_the_program(self):
        key("ctrl+q")
        self.assertEqual(self.program.wait(), 0)

    def test_control_q_ends_the_program_while_a_dialog_has_the_focus(self):
        flows.open_protection(self.program, self.letter)
        key("ctrl+q")
        self.assertEqual(self.program.wait(), 0)
        self.assertEqual(self.home.catalogue(), [])

    def test_escape_closes_each_dialog(self):
        flows.open_protection(self.program, self.letter)
        key("Escape")
        self.program.gone(None, "Choose how to lock this file:")

        flows.open_protection(self.program, self.letter)
        self.program.find(BUTTON, flows.re.compile(f"^{flows.PASSWORD_CARD}")).press()
        self.program.find(FIELD, "Confirm password")
        key("Escape")
        self.program.gone(FIELD, "Confirm password")

        flows.ask_for_new_master_password(self.program)
        self.program.find(FIELD, "Confirm password")
        key("Escape")
        self.program.gone(FIELD, "Confirm password")
        key("Escape")
        self.program.gone(DIALOG, flows.PREFERENCES)
        self.assertEqual(self.home.catalogue(), [])

    def test_escape_returns_the_focus_to_the_button_that_opened_the_dialog(self):
        flows.open_preferences(self.program, "Security")
        self.tab_to("^Set or Reset Master Password$")
        key("Return")
        self.program.find(FIELD, "Confirm password")
        key("Escape")
        self.program.gone(FIELD, "Confirm password")
        self.assertEqual(self.program.focused().name, "Set or Reset Master Password")

    def test_an_item_is_unlocked_and_locked_without_the_pointer(self):
        flows.protect_with_password(self.program, self.letter)
        self.tab_to("^Unlock Item$")
        key("Return")
        self.program.says("Enter the password for 'letter.txt':")
        self.tab_to("^Password$")
        type_text(flows.ITEM_PASSWORD)
        key("Return")
        self.program.says(flows.ACCESS_MESSAGE)
        self.tab_to(f"^{flows.ACCESS_PROMPT}$")
        key("Return")
        flows.row(self.program, "letter.txt", "unlocked")
        self.tab_to("^Lock Item$")
        key("Return")
        flows.row(self.program, "letter.txt", "locked")

    def test_the_focus_stays_inside_an_open_dialog(self):
        flows.open_protection(self.program, self.letter)
        for _ in range(8):
            before = str(self.program.focused())
            key("Tab")
            self.program.wait_for(lambda: str(self.program.focused()) != before, f"Tab to leave {before}")
            self.assertNotIn(flows.PROTECT, str(self.program.focused()))


if __name__ == "__main__":
    main()
