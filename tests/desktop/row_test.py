#!/usr/bin/python3
# SPDX-License-Identifier: GPL-3.0-or-later

"""What a row does by itself, with the real trash and a real file manager."""

import flows
import window_case
from desktop_driver import BUTTON, DIALOG, MENU_ITEM, ROW, key
from home_on_disk import PLACEHOLDER


class RowWindowTest(window_case.WindowTest):
    def setUp(self):
        super().setUp()
        self.letter = self.file("letter.txt", "Dear Ada,\n")
        flows.protect_with_password(self.program, self.letter)
        self.trash = self.home.data / "Trash" / "files"

    def move_to_trash(self):
        flows.press_in_row(self.program, "letter.txt", "Secure Shred")
        self.program.find(DIALOG, 'Secure delete "letter.txt"?')
        self.program.press(BUTTON, "Move to Trash")
        self.program.gone(ROW, "letter.txt, locked")

    def test_an_unlocked_file_goes_to_the_trash_whole(self):
        flows.unlock(self.program, "letter.txt")
        self.move_to_trash()
        self.program.says("No items found")
        self.assertEqual((self.trash / "letter.txt").read_text(), "Dear Ada,\n")
        self.assertFalse(self.letter.exists())
        self.assertEqual(self.home.catalogue(), [])

    def test_of_a_locked_file_the_placeholder_goes_and_the_data_can_be_found_again(self):
        self.move_to_trash()
        self.program.says("No items found")
        self.assertEqual((self.trash / "letter.txt").read_bytes(), PLACEHOLDER)
        flows.open_preferences(self.program, "Security")
        self.program.press(BUTTON, "Look for Lost Items")
        self.program.find(DIALOG, "Lost Items")
        self.program.says("letter.txt")

    def test_every_action_is_in_the_menu_by_keys_alone(self):
        self.program.find(ROW, "letter.txt, locked").click()
        key("Menu")
        for label in ("Unlock Item", "Reveal in Finder", "Copy Path", "Duplicate as Encrypted Copy",
                      "🗑️ Secure Shred", "Remove Protection"):
            self.program.find(MENU_ITEM, label)
        key("Down", "Down", "Down", "Down", "Return")
        self.program.find(DIALOG, 'Secure delete "letter.txt"?')


class OnboardingWindowTest(window_case.WindowTest):
    is_introduced = False

    def test_the_introduction_is_shown_until_it_was_read(self):
        self.program.find(DIALOG, "Welcome to Quillhaven")
        key("Escape")
        self.program.gone(DIALOG, "Welcome to Quillhaven")
        self.assertEqual(self.program.quit(), 0)
        self.assertNotIn("hasCompletedOnboarding", self.home.settings())
        second = self.start()
        second.press(BUTTON, "Get Started")
        second.gone(DIALOG, "Welcome to Quillhaven")
        self.assertEqual(second.quit(), 0)
        self.assertEqual(self.home.settings()["hasCompletedOnboarding"], b"1")
        third = self.start()
        third.find(BUTTON, flows.PROTECT)
        self.assertIsNone(third.look(DIALOG, "Welcome to Quillhaven"))


if __name__ == "__main__":
    window_case.main()
