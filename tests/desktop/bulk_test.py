#!/usr/bin/python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""Operations on several items, shredding and recovery, from the window to the disk."""

import flows
from desktop_driver import BUTTON, FIELD, ROW, SWITCH, TAB, key, type_text
from home_on_disk import PLACEHOLDER
from window_case import WindowTest, main

CHECK_BOX = "check box"
BULK_ACCESS_MESSAGE = "Please grant access to the selected items for bulk protection"
UNDERSTOOD = "I understand this will permanently delete the selected items"
PHRASE_FIELD = "Type 'SHRED PERMANENTLY' to confirm:"
RECOVERY_PANEL = "Choose Recovery Location – Select a folder where your recovered files will be saved"
SHRED = "🗑️ Shred Permanently"


class SeveralItems(WindowTest):
    def setUp(self):
        super().setUp()
        self.letter = self.file("letter.txt", "dear\n")
        self.notes = self.file("notes.txt", "todo\n")

    def add_to_bulk_sheet(self, *paths):
        """Opens the bulk sheet and adds the paths, with one panel for each."""
        self.program.press(BUTTON, "Bulk Protect")
        for count, path in enumerate(paths, 1):
            self.program.press(BUTTON, "Select Files & Folders")
            flows.choose_in_panel(self.program, path)
            self.program.says(f"Selected Items ({count})")

    def protect_both(self):
        self.add_to_bulk_sheet(self.letter, self.notes)
        self.program.press(BUTTON, "Protect 2 Items")
        self.program.says("Protect 2 Items")
        self.program.press(BUTTON, flows.re.compile(f"^{flows.PASSWORD_CARD}"))
        self.program.says("Set Protection for 2 Items")
        flows.enter_new_password(self.program, flows.ITEM_PASSWORD)
        self.grant_access()
        for name in ("letter.txt", "notes.txt"):
            flows.row(self.program, name, "locked")

    def grant_access(self):
        self.program.press_in(BULK_ACCESS_MESSAGE, BUTTON, flows.ACCESS_PROMPT)

    def select_all(self):
        self.program.press(BUTTON, "Select")
        self.program.press(BUTTON, "Select All")
        self.program.says("2 selected")

    def test_two_files_are_protected_unlocked_locked_and_restored_in_one_run(self):
        self.protect_both()
        self.assertEqual([self.letter.read_bytes(), self.notes.read_bytes()], [PLACEHOLDER, PLACEHOLDER])

        self.select_all()
        self.program.press(BUTTON, "Unlock (2)")
        self.grant_access()
        for name in ("letter.txt", "notes.txt"):
            flows.enter_item_password(self.program, name)
            flows.row(self.program, name, "unlocked")
        self.program.gone(None, "2 selected")
        self.assertEqual([self.letter.read_text(), self.notes.read_text()], ["dear\n", "todo\n"])

        self.select_all()
        self.program.press(BUTTON, "Lock (2)")
        for name in ("letter.txt", "notes.txt"):
            flows.row(self.program, name, "locked")
        self.program.gone(None, "2 selected")
        self.assertEqual([self.letter.read_bytes(), self.notes.read_bytes()], [PLACEHOLDER, PLACEHOLDER])

        self.select_all()
        self.program.press(BUTTON, "Remove (2)")
        self.program.says("Remove Protection from 2 Items")
        flows.dialog_button(self.program, "Remove Protection").press()
        self.grant_access()
        self.program.says("No items found")
        self.assertEqual([self.letter.read_text(), self.notes.read_text()], ["dear\n", "todo\n"])
        self.assertEqual(self.home.catalogue(), [])

    def test_the_bulk_sheet_lists_a_file_once_and_removes_it_on_request(self):
        self.add_to_bulk_sheet(self.letter)
        self.program.press(BUTTON, "Select Files & Folders")
        flows.choose_in_panel(self.program, self.letter)
        self.program.gone(FIELD, "Name:")
        self.program.press(BUTTON, "Select Files & Folders")
        flows.choose_in_panel(self.program, self.notes)
        self.program.says("Selected Items (2)")
        self.program.press(BUTTON, "Remove letter.txt")
        self.program.says("Selected Items (1)")
        self.program.press(BUTTON, "Cancel")
        self.program.gone(None, "Bulk File Protection")
        self.assertEqual(self.home.catalogue(), [])

    def test_one_row_is_selected_and_locked_with_the_keyboard_only(self):
        self.protect_both()
        flows.unlock(self.program, "letter.txt")
        self.program.find(BUTTON, "Lock Item").focus()
        key("ctrl+a")
        self.program.says("2 selected")
        self.program.wait_for(lambda: "Select " in str(self.program.focused()), "the focus on a mark")
        key("Down")
        key("space")
        self.program.says("1 selected")
        self.program.find(BUTTON, "Lock (1)").focus()
        key("Return")
        flows.row(self.program, "letter.txt", "locked")
        self.program.gone(None, "1 selected")


class Shredding(WindowTest):
    def setUp(self):
        super().setUp()
        self.letter = self.file("letter.txt")
        flows.protect_with_password(self.program, self.letter)

    def test_an_item_is_destroyed_after_it_was_fully_confirmed(self):
        item = self.home.item(self.letter)
        flows.ask_to_shred(self.program, "letter.txt")
        self.program.says("Permanent Deletion Warning")
        # A press before everything is confirmed does nothing: the dialog stays open.
        self.program.find_disabled(BUTTON, SHRED).press()
        box = self.program.find(CHECK_BOX, UNDERSTOOD)
        box.press()
        self.program.wait_for(lambda: box.has("checked"), "the tick")
        self.program.find_disabled(BUTTON, SHRED).press()
        self.program.find(FIELD, PHRASE_FIELD).type("shred permanently")
        self.program.press(BUTTON, SHRED)
        flows.enter_item_password(self.program, "letter.txt")
        flows.grant_access(self.program)
        self.program.gone(ROW, "letter.txt, locked")
        self.program.says("No items found")
        self.program.gone(None, "Secure Shredding in Progress")
        self.assertFalse(self.letter.exists())
        self.assertEqual(list(self.home.storage.iterdir()), [])
        self.assertEqual(list(self.home.documents.iterdir()), [])
        self.assertEqual(self.home.catalogue(), [])
        self.assertNotIn(item["id"], self.keyring.entries())

    def test_the_confirmation_says_where_the_data_may_survive(self):
        # The mark of Syncthing. What else is said depends on the disk of this machine.
        (self.home.documents / ".stfolder").mkdir()
        flows.ask_to_shred(self.program, "letter.txt")
        self.program.says("Permanent Deletion Warning")
        self.program.wait_for(
            lambda: any(node.name.startswith("Even so, ") and "wherever the folder is synchronized to" in node.name
                        for node in self.program.walk() if node.showing), "the note about the synchronized folder")

    def test_escape_closes_the_dialog_and_keeps_the_item(self):
        flows.ask_to_shred(self.program, "letter.txt")
        self.program.find(FIELD, PHRASE_FIELD).focus()
        type_text("shred permanently")
        key("Return")
        key("Escape")
        self.program.gone(FIELD, PHRASE_FIELD)
        flows.row(self.program, "letter.txt", "locked")
        self.assertEqual(len(list(self.home.storage.iterdir())), 1)

    def test_a_duplicate_is_a_separate_item(self):
        flows.press_in_row(self.program, "letter.txt", "Duplicate as Encrypted Copy")
        self.program.press(BUTTON, "Duplicate")
        flows.grant_access(self.program)
        flows.row(self.program, "letter Copy.txt", "locked")
        flows.row(self.program, "letter.txt", "locked")


class Backups(WindowTest):
    def test_a_file_is_backed_up_and_recovered(self):
        letter = self.file("letter.txt", "dear\n")
        cloud = self.home.make_cloud_folder()
        flows.protect_with_password(self.program, letter)
        flows.set_master_password(self.program)

        flows.open_preferences(self.program, "Security")
        self.program.press(SWITCH, "iCloud Backup")
        self.program.press(TAB, "Switch to Backup settings")
        self.program.press(BUTTON, "Backup Now")
        backup = cloud / "Documents" / "QuillhavenBackups" / f'{self.home.item(letter)["id"]}.backup'
        self.program.wait_for(backup.exists, "the backup")

        recovered = self.home.path / "recovered"
        recovered.mkdir()
        self.program.press(BUTTON, "Recover Files")
        self.program.find(FIELD, "Master Password").type(flows.MASTER_PASSWORD)
        self.program.press(BUTTON, "Recover All Files")
        self.program.find(FIELD, "Directory:").set_text(str(recovered))
        self.program.press_in(RECOVERY_PANEL, BUTTON, "Recover Files")
        self.program.says("Recovery Successful")
        self.program.says("Successfully recovered 1 files to the selected folder.")
        self.assertEqual((recovered / "letter.txt").read_text(), "dear\n")
        self.program.press(BUTTON, "OK")
        self.program.gone(None, "Recovery Successful")
        flows.close_preferences(self.program)

    def test_a_folder_for_backups_is_chosen_where_there_is_none(self):
        synced = self.home.path / "synced"
        synced.mkdir()
        flows.open_preferences(self.program, "Security")
        self.assertIsNone(self.program.look(TAB, "Switch to Backup settings"))
        self.program.press(BUTTON, "Open iCloud Settings")
        self.program.find(FIELD, "Directory:").set_text(str(synced))
        self.program.press(BUTTON, "Use This Folder")
        self.program.press(TAB, "Switch to Backup settings")
        folder = self.program.find("panel", "Backups are kept in a folder of your sync tool")
        self.assertIn(str(synced), folder.description)
        link = self.home.data / "cloud" / "iCloud~com~tarnwick~quillhaven"
        self.assertEqual(link.readlink(), synced)


if __name__ == "__main__":
    main()
