#!/usr/bin/python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""Protecting an item: the rules for a new password, and declined panels."""

import flows
from desktop_driver import BUTTON, DIALOG, LABEL, ROW, key
from home_on_disk import picture
from window_case import WindowTest, main

WEAK = "Password must be at least 8 characters with uppercase, lowercase, and numbers"
CELL = "table cell"
MISMATCH = "Passwords don't match"


class Protecting(WindowTest):
    def setUp(self):
        super().setUp()
        self.letter = self.file("letter.txt")
        self.before = picture(self.letter)

    def open_password_dialog(self):
        flows.open_protection(self.program, self.letter)
        self.program.find(BUTTON, flows.re.compile(f"^{flows.PASSWORD_CARD}")).press()

    def assert_untouched(self):
        self.assertEqual(picture(self.letter), self.before)
        self.assertEqual(self.home.catalogue(), [])
        self.assertEqual(list(self.home.storage.iterdir()), [])
        self.assertEqual(self.keyring.entries(), {})

    def test_a_weak_password_is_rejected_with_an_error(self):
        self.open_password_dialog()
        flows.enter_new_password(self.program, "feeble")
        self.program.says(WEAK)
        self.assert_untouched()

    def test_two_different_passwords_are_rejected_with_only_that_error(self):
        self.open_password_dialog()
        flows.enter_new_password(self.program, "feeble", again="feeblest")
        self.program.says(MISMATCH)
        self.assertIsNone(self.program.look(None, WEAK))
        self.assert_untouched()

    def test_the_requirements_for_a_password_are_listed(self):
        self.open_password_dialog()
        self.program.find(flows.FIELD, "Password").type("lower")
        for requirement in ("At least 8 characters", "Uppercase letter", "Lowercase letter", "Number"):
            self.program.find(None, flows.re.compile(requirement))

    def test_a_declined_panel_is_reported_and_the_file_is_unchanged(self):
        self.open_password_dialog()
        flows.enter_new_password(self.program, flows.ITEM_PASSWORD)
        flows.decline_access(self.program)
        self.program.says("File access was denied by the user")
        self.assert_untouched()
        self.program.press(BUTTON, "OK")
        self.program.gone(None, "File access was denied by the user")

    def test_another_item_chosen_in_the_panel_is_rejected_and_nothing_moves(self):
        notes = self.file("notes.txt")
        self.open_password_dialog()
        flows.enter_new_password(self.program, flows.ITEM_PASSWORD)
        flows.choose_instead(self.program, notes)
        self.program.says("Please select the correct item: letter.txt")
        self.assert_untouched()
        self.assertEqual(notes.read_text(), "content\n")

    def test_the_panel_for_choosing_shows_hidden_items_on_demand(self):
        self.file(".hidden")
        self.program.press(BUTTON, flows.PROTECT)
        self.program.wait_until_active()
        self.program.find(ROW, "Documents").click()
        self.program.find(CELL, "letter.txt")
        self.assertIsNone(self.program.look(CELL, ".hidden"))
        key("ctrl+h")
        self.program.find(CELL, ".hidden")

    def test_a_name_that_deceives_is_shown_as_it_is(self):
        reversed_name = self.file("\u202egnp.exe")
        flows.open_protection(self.program, reversed_name, "\ufffdgnp.exe")
        key("Escape")
        self.program.gone(None, "Protect \ufffdgnp.exe")
        two_lines = self.file("two\nlines.txt")
        flows.protect_with_password(self.program, two_lines, shown="two↵lines.txt")

    def test_cancelling_the_choice_of_a_method_leaves_the_file_unchanged(self):
        flows.open_protection(self.program, self.letter)
        self.program.press(BUTTON, "Cancel")
        self.program.gone(None, "Choose how to lock this file:")
        self.assert_untouched()

    def test_an_item_that_is_already_protected_is_rejected_with_an_error(self):
        flows.protect_with_password(self.program, self.letter)
        self.program.press(BUTTON, flows.PROTECT)
        flows.choose_in_panel(self.program, self.letter)
        self.program.says("Item is already protected")


class Unlocking(WindowTest):
    def setUp(self):
        super().setUp()
        self.letter = self.file("letter.txt")
        flows.protect_with_password(self.program, self.letter)

    def test_a_wrong_item_password_fails_immediately_and_leaves_the_item_locked(self):
        flows.press_in_row(self.program, "letter.txt", "Unlock Item")
        flows.enter_item_password(self.program, "letter.txt", "Wrong1Password")
        self.program.says("Authentication failed. Please try again.")
        self.program.press(BUTTON, "OK")
        self.program.gone(None, "Authentication failed. Please try again.")
        flows.row(self.program, "letter.txt", "locked")
        flows.unlock(self.program, "letter.txt")
        self.assertEqual(self.letter.read_text(), "content\n")

    def test_cancelling_the_password_dialog_shows_no_message(self):
        flows.press_in_row(self.program, "letter.txt", "Unlock Item")
        self.program.says("Enter the password for 'letter.txt':")
        self.program.press(BUTTON, "Cancel")
        self.program.gone(None, "Enter the password for 'letter.txt':")
        flows.unlock(self.program, "letter.txt")

    def test_a_deleted_placeholder_does_not_lock_its_owner_out(self):
        self.letter.unlink()
        flows.press_in_row(self.program, "letter.txt", "Unlock Item")
        flows.enter_item_password(self.program, "letter.txt")
        self.program.says("There is nothing at this place at the moment.")
        flows.grant_access(self.program)
        flows.row(self.program, "letter.txt", "unlocked")
        self.assertEqual(self.letter.read_text(), "content\n")

    def test_a_missing_folder_is_explained_and_the_item_stays_locked(self):
        folder = self.home.documents / "stick"
        folder.mkdir()
        notes = folder / "notes.txt"
        notes.write_text("notes\n")
        flows.protect_with_password(self.program, notes)
        folder.rename(self.home.documents / "elsewhere")
        flows.press_in_row(self.program, "notes.txt", "Unlock Item")
        flows.enter_item_password(self.program, "notes.txt")
        self.program.says("The folder of this item does not exist at the moment. Its drive may not be connected, or the "
                          "folder may be protected itself.")
        flows.grant_access(self.program)
        self.program.find(None, "Error")
        flows.row(self.program, "notes.txt", "locked")
        self.program.press(BUTTON, "OK")
        (self.home.documents / "elsewhere").rename(folder)
        flows.unlock(self.program, "notes.txt")
        self.assertEqual(notes.read_text(), "notes\n")

    def test_declining_the_panel_shows_no_message(self):
        flows.press_in_row(self.program, "letter.txt", "Unlock Item")
        flows.enter_item_password(self.program, "letter.txt")
        flows.decline_access(self.program)
        self.program.gone(None, flows.ACCESS_MESSAGE)
        flows.row(self.program, "letter.txt", "locked")
        self.assertIsNone(self.program.look(None, "Error"))


if __name__ == "__main__":
    main()
