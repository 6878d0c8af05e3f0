#!/usr/bin/python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""Starting the program: a second time, after it has ended, and at login."""

import flows
from desktop_driver import BUTTON
from window_case import WindowTest, main


class Starting(WindowTest):
    def test_a_second_start_brings_the_first_window_forward_and_ends(self):
        self.program.find(BUTTON, flows.PROTECT)
        second = self.start()
        self.assertEqual(second.wait(), 0)
        self.assertTrue(self.program.is_running())
        self.program.wait_until_active()

    def test_a_restart_keeps_the_list(self):
        letter, notes = self.file("letter.txt"), self.file("notes.txt")
        flows.protect_with_password(self.program, letter)
        flows.protect_with_password(self.program, notes)
        flows.unlock(self.program, "notes.txt")
        before = self.home.catalogue()
        self.assertEqual(self.program.quit(), 0)
        again = self.start()
        flows.row(again, "letter.txt", "locked")
        flows.row(again, "notes.txt", "unlocked")
        self.assertEqual(self.home.catalogue(), before)
        flows.lock(again, "notes.txt")
        flows.unlock(again, "letter.txt")

    def test_a_killed_process_keeps_the_list(self):
        flows.protect_with_password(self.program, self.file("letter.txt"))
        self.program.kill()
        flows.row(self.start(), "letter.txt", "locked")


class StartingAtLogin(WindowTest):
    starts = False

    def test_no_window_is_shown_until_the_program_is_started_again(self):
        at_login = self.start("--login-item")
        at_login.wait_for_log("App launched in background mode (login item)")
        at_login.wait_for(at_login.root, "the program to be on the accessibility bus")
        self.assertIsNone(at_login.look(BUTTON, flows.PROTECT))
        self.assertEqual(self.start().wait(), 0)
        at_login.find(BUTTON, flows.PROTECT)
        at_login.wait_until_active()


if __name__ == "__main__":
    main()
