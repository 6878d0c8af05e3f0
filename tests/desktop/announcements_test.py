#!/usr/bin/python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""What happens away from the keyboard focus arrives on the accessibility bus as a notification, which screen readers read out."""

import flows
from desktop_driver import FIELD, AppearedNotifications
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


if __name__ == "__main__":
    main()
