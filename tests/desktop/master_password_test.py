#!/usr/bin/python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""The master password for the operations of the window."""

import flows
from desktop_driver import BUTTON, FIELD, key
from window_case import WindowTest, main

INVALID = "Invalid master password. Please try again."


class MasterPassword(WindowTest):
    def setUp(self):
        super().setUp()
        self.letter = self.file("letter.txt")
        flows.protect_with_password(self.program, self.letter)
        flows.set_master_password(self.program)

    def test_a_wrong_password_shows_an_error_and_can_be_retried(self):
        flows.press_in_row(self.program, "letter.txt", "Unlock Item")
        for _ in range(2):
            flows.enter_master_password(self.program, "Wrong1Password")
            self.program.says(INVALID)
        flows.enter_master_password(self.program)
        flows.enter_item_password(self.program, "letter.txt")
        flows.grant_access(self.program)
        flows.row(self.program, "letter.txt", "unlocked")

    def test_return_does_nothing_for_an_empty_password(self):
        flows.press_in_row(self.program, "letter.txt", "Unlock Item")
        self.program.find(FIELD, "Master Password").focus()
        key("Return")
        flows.enter_master_password(self.program, "Wrong1Password")
        self.program.says(INVALID)

    def test_cancelling_leaves_the_item_locked_without_a_message(self):
        flows.press_in_row(self.program, "letter.txt", "Unlock Item")
        self.program.find(FIELD, "Master Password")
        self.program.press(BUTTON, "Cancel")
        self.program.gone(FIELD, "Master Password")
        flows.row(self.program, "letter.txt", "locked")
        self.assertIsNone(self.program.look(None, "Error"))

    def test_each_operation_asks_for_it_again(self):
        flows.unlock(self.program, "letter.txt", master_password=flows.MASTER_PASSWORD)
        flows.lock(self.program, "letter.txt", master_password=flows.MASTER_PASSWORD)
        flows.remove_protection(self.program, "letter.txt", master_password=flows.MASTER_PASSWORD)
        self.assertEqual(self.letter.read_text(), "content\n")


class ChoosingOne(WindowTest):
    def test_a_weak_password_is_rejected_with_an_error(self):
        flows.ask_for_new_master_password(self.program)
        flows.enter_new_password(self.program, "feeble")
        self.program.says("Password must be at least 8 characters with uppercase, lowercase, and numbers")
        self.assertEqual(self.keyring.entries(), {})


if __name__ == "__main__":
    main()
