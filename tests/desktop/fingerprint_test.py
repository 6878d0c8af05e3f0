#!/usr/bin/python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""Protecting and unlocking with a fingerprint, with the real fprintd and a virtual reader."""

import flows
from accessible_screen import Screen
from desktop_driver import BUTTON
from fingerprint_reader import enrol, forget_all, lay_finger, unresponsive
from home_on_disk import PLACEHOLDER, picture
from window_case import WindowTest, main


class Fingerprint(WindowTest):
    def setUp(self):
        forget_all()
        super().setUp()
        self.letter = self.file("letter.txt")
        self.before = picture(self.letter)

    def protect_with_touch_id(self):
        flows.open_protection(self.program, self.letter)
        self.program.find(BUTTON, flows.re.compile(f"^{flows.TOUCH_ID_CARD}")).press()
        flows.grant_access(self.program)
        flows.row(self.program, "letter.txt", "locked")

    def test_the_enrolled_finger_unlocks_an_item_protected_with_touch_id(self):
        enrol("alice")
        self.protect_with_touch_id()
        item = self.home.item(self.letter)
        self.assertTrue(item["useTouchID"])
        self.assertEqual(set(self.keyring.entries()), {item["id"] + "_touchid"})

        flows.press_in_row(self.program, "letter.txt", "Unlock Item")
        lay_finger("alice")
        flows.grant_access(self.program)
        flows.row(self.program, "letter.txt", "unlocked")
        self.assertEqual(picture(self.letter), self.before)

    def test_another_finger_leaves_the_item_locked(self):
        enrol("alice")
        self.protect_with_touch_id()
        flows.press_in_row(self.program, "letter.txt", "Unlock Item")
        lay_finger("mallory")
        self.program.says("Authentication failed. Please try again.")
        flows.row(self.program, "letter.txt", "locked")
        self.assertEqual(self.letter.read_bytes(), PLACEHOLDER)

    def test_a_reader_that_does_not_answer_is_waited_for_visibly(self):
        enrol("alice")
        self.protect_with_touch_id()
        waiting = "Waiting for the fingerprint reader"
        with unresponsive():
            flows.press_in_row(self.program, "letter.txt", "Unlock Item")
            self.program.says(waiting)
            prompt = Screen(self.program)
            self.assertEqual(prompt.problems, [])
            self.assertEqual(prompt.focused, ['push button "Cancel"'])
            self.program.press(BUTTON, "Cancel")
            self.program.gone(None, waiting)
            self.program.says("Touch ID is not available on this device.")
            self.program.press(BUTTON, "OK")
            flows.press_in_row(self.program, "letter.txt", "Unlock Item")
            self.program.says(waiting)
            self.assertEqual(self.program.quit(), 0)

    def test_without_an_enrolled_finger_touch_id_is_reported_as_not_available(self):
        enrol("alice")
        self.protect_with_touch_id()
        forget_all()
        flows.press_in_row(self.program, "letter.txt", "Unlock Item")
        self.program.says("Touch ID is not available on this device.")
        self.assertEqual(self.letter.read_bytes(), PLACEHOLDER)


if __name__ == "__main__":
    main()
