#!/usr/bin/python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""What happens away from the keyboard focus arrives on the accessibility bus as a notification, which screen readers read out."""

import flows
from bus_events import AppearedNotifications, StateChanges
from desktop_driver import BUTTON, FIELD, SWITCH, key
from window_case import WindowTest, main


class Announcements(WindowTest):
    def setUp(self):
        super().setUp()
        self.heard = AppearedNotifications()
        self.addCleanup(self.heard.stop)

    def assert_heard(self, text):
        self.program.wait_for(lambda: text in self.heard.texts(), f"the announcement {text!r}, not {self.heard.texts()}")

    def test_an_item_is_announced_when_it_is_protected_unlocked_locked_and_removed(self):
        flows.protect_with_password(self.program, self.file("letter.txt"))
        self.assert_heard("letter.txt, locked")
        flows.unlock(self.program, "letter.txt")
        self.assert_heard("letter.txt, unlocked")
        flows.press_in_row(self.program, "letter.txt", "Copy Path to Clipboard")
        self.assert_heard("Path copied to clipboard")
        flows.remove_protection(self.program, "letter.txt", locked=False)
        self.assert_heard("1 item removed from the list")

    def test_the_number_of_results_is_announced(self):
        flows.protect_with_password(self.program, self.file("letter.txt"))
        self.program.find(FIELD, "Search items").type("let")
        self.assert_heard("1 result")

    def test_each_tick_of_a_row_is_reported(self):
        flows.protect_with_password(self.program, self.file("letter.txt"))
        self.program.find(BUTTON, "Unlock Item").focus()
        key("ctrl+a")
        self.program.says("1 selected")
        self.program.wait_for(lambda: self.program.find(SWITCH, "Select letter.txt").has("focused"), "the focus on the mark")
        ticks = StateChanges("checked", SWITCH)
        self.addCleanup(ticks.stop)
        for is_ticked in (False, True):
            key("space")
            self.program.wait_for(lambda: ticks.changes()[-1:] == [("Select letter.txt", is_ticked)], f"ticked: {is_ticked}")

    def test_a_button_that_becomes_enabled_is_reported(self):
        flows.open_protection(self.program, self.file("letter.txt"))
        self.program.press(BUTTON, flows.re.compile(f"^{flows.PASSWORD_CARD}"))
        changes = StateChanges("enabled", BUTTON)
        self.addCleanup(changes.stop)
        for field in ("Password", "Confirm password"):
            self.program.find(FIELD, field).type(flows.ITEM_PASSWORD)
        self.program.wait_for(lambda: ("Protect", True) in changes.changes(), "the event of the button")


if __name__ == "__main__":
    main()
