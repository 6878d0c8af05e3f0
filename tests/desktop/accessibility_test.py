#!/usr/bin/python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""What is on the accessibility bus: a name for every control, and never a password."""

import flows
import screens
from bus_events import BusMonitor
from desktop_driver import BUTTON, DIALOG, FIELD, PASSWORD
from window_case import WindowTest, main


class Names(WindowTest):
    def assert_all_named(self, where):
        unnamed = [node for node in self.program.walk()
                   if node.showing and node.has("focusable") and not node.name and not node.description
                   and node.role not in ("frame", "window", "filler", "panel", "scroll bar")]
        self.assertEqual([str(node) for node in unnamed], [], f"{where}: controls without a name\n{self.program.tree()}")

    def test_every_control_of_the_window_and_its_dialogs_has_a_name(self):
        letter = self.file("letter.txt")
        self.program.find(BUTTON, flows.PROTECT)
        self.assert_all_named("the empty window")
        self.program.press(BUTTON, flows.PROTECT)
        self.program.find(FIELD, "Name:")
        self.assert_all_named("the panel for choosing")
        self.program.press(BUTTON, "Cancel")
        self.program.gone(FIELD, "Name:")
        flows.open_protection(self.program, letter)
        self.assert_all_named("the choice of a protection method")
        self.program.find(BUTTON, flows.re.compile(f"^{flows.PASSWORD_CARD}")).press()
        self.program.find(FIELD, "Confirm password")
        self.assert_all_named("the password dialog")
        flows.enter_new_password(self.program, flows.ITEM_PASSWORD)
        self.program.says(flows.ACCESS_MESSAGE)
        self.assert_all_named("the access panel")
        confirm = self.program.find(BUTTON, flows.ACCESS_PROMPT)
        self.assertEqual(confirm.description, str(letter))
        confirm.press()
        flows.row(self.program, "letter.txt", "locked")
        self.assert_all_named("the list")
        flows.ask_for_new_master_password(self.program)
        self.program.find(FIELD, "Confirm password")
        self.assert_all_named("the dialog for a new master password")

    def test_every_control_for_several_items_has_a_name(self):
        letter = self.file("letter.txt")
        flows.protect_with_password(self.program, letter)
        self.program.press(BUTTON, "Select")
        self.program.press(BUTTON, "Select All")
        self.program.says("1 selected")
        self.assert_all_named("the selection")
        self.program.press(BUTTON, "Shred (1)")
        self.program.says("Permanent Deletion Warning")
        self.assert_all_named("the confirmation of a shred")
        self.program.press(BUTTON, "Cancel")
        self.program.gone(None, "Permanent Deletion Warning")
        self.program.press(BUTTON, "Bulk Protect")
        self.program.press(BUTTON, "Select Files & Folders")
        flows.choose_in_panel(self.program, self.file("notes.txt"))
        self.program.says("Selected Items (1)")
        self.assert_all_named("the sheet for choosing files")
        self.program.press(BUTTON, "Cancel")
        self.program.gone(None, "Selected Items (1)")

    def test_every_control_of_the_preferences_has_a_name(self):
        self.home.make_cloud_folder()
        for section in ("General", "Security", "Backup"):
            flows.open_preferences(self.program, section)
            self.assert_all_named(f"the section {section}")
            flows.close_preferences(self.program)


class Sentences(WindowTest):
    def test_a_dialog_has_its_title_as_name_and_contains_its_controls(self):
        flows.open_protection(self.program, self.file("letter.txt"))
        dialog = self.program.find(DIALOG, "Protect letter.txt")
        self.assertEqual(dialog.description, "Choose how to lock this file:")
        dialog.find(BUTTON, flows.PASSWORD_CARD).press()
        dialog = self.program.find(DIALOG, "Set Protection")
        self.assertIsNotNone(dialog.find(FIELD, "Confirm password"))
        dialog.find(BUTTON, "Cancel").press()
        self.program.gone(DIALOG, None)

    def test_the_texts_in_the_window_are_read_out(self):
        self.program.says("Start protecting your sensitive files and folders by clicking the 'Protect New Item' button "
                          "above or by dragging them here.")
        self.program.says("Filters will appear once you add items.")
        self.program.says("Includes both locked and unlocked items currently managed by Quillhaven.")
        letter = self.file("letter.txt")
        row = flows.protect_with_password(self.program, letter)
        self.assertEqual(row.description, str(letter), "two items may have one name, and differ by their folder")
        self.assertEqual({node.description for node in row.walk() if node.role == BUTTON}, {"letter.txt, locked"},
                         "a screen reader does not read out the row of a button")
        self.program.find(FIELD, "Search items").type("no such name")
        self.program.says("No results")
        self.program.says("No items match your search criteria")


class Passwords(WindowTest):
    SECRET = "Hidden4Everyone"

    def assert_not_on_the_bus(self):
        for node in self.program.walk():
            for what in (node.name, node.description, node.text):
                self.assertNotIn(self.SECRET, what, f"{node} exposes the password")

    def test_a_new_password_is_never_exposed(self):
        letter = self.file("letter.txt")
        flows.open_protection(self.program, letter)
        self.program.find(BUTTON, flows.re.compile(f"^{flows.PASSWORD_CARD}")).press()
        self.program.find(FIELD, "Password").type(self.SECRET)
        self.program.find_disabled(BUTTON, "Protect")
        self.program.find(FIELD, "Confirm password").type(self.SECRET)
        self.program.find(BUTTON, "Protect")
        self.assert_not_on_the_bus()

    def test_no_message_on_the_bus_has_a_password_that_is_typed_even_if_it_is_shown(self):
        self.home.make_cloud_folder()
        with BusMonitor(self.home.path / "bus.log") as bus:
            for screen in (screens.new_password, screens.new_master_password, screens.recovery):
                with self.subTest(screen.__name__):
                    self.type_into_fields(screen)
            flows.protect_with_password(self.program, self.file("letter.txt"))
            self.type_into_fields(screens.item_password)
        self.assertIn("letter.txt, locked", bus.text(), "the monitor has seen the traffic")
        self.assertNotIn(self.SECRET, bus.text())
        self.assertNotIn(flows.ITEM_PASSWORD, bus.text())

    def type_into_fields(self, screen):
        with screen(self):
            for field in self.program.find_all(PASSWORD):
                field.type(self.SECRET)
            for button in self.program.find_all(BUTTON, "Show"):
                button.press()
            self.program.gone(BUTTON, "Show")
            self.assert_not_on_the_bus()

    def test_the_master_password_is_never_exposed(self):
        flows.ask_for_new_master_password(self.program)
        self.program.find(FIELD, "Password").type(self.SECRET)
        self.program.find(FIELD, "Confirm password").type(self.SECRET)
        confirm = self.program.find(BUTTON, "Protect")
        self.assert_not_on_the_bus()
        confirm.press()
        self.program.says(flows.MASTER_PASSWORD_IS_SET)
        self.assertEqual(self.keyring.entries().get("master_password"), self.SECRET)


if __name__ == "__main__":
    main()
