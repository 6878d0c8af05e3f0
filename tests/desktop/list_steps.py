# SPDX-License-Identifier: GPL-3.0-or-later

"""The steps of the tour in the list: several items in one run, search, the menu of a row, the trash and a shred."""

import subprocess

import flows
from desktop_driver import BUTTON, DIALOG, FIELD, MENU_ITEM, ROW, SWITCH, TAB, key

BULK_ACCESS_MESSAGE = "Please grant access to the selected items for bulk protection"
NAMES = ("contract.pdf", "holiday image.png", "old draft.txt")


class ListSteps:
    """The steps; the class of the tour has the rest."""

    def several_at_once(self):
        self.step("Protect three files in one run")
        paths = [self.home.documents / name for name in NAMES]
        for path in paths:
            path.write_text(f"{path.name}\n" * 100)
        self.program.press(BUTTON, "Bulk Protect")
        for count, path in enumerate(paths, 1):
            self.program.press(BUTTON, "Select Files & Folders")
            flows.choose_in_panel(self.program, path)
            self.program.says(f"Selected Items ({count})")
        self.shot("bulk-picker")
        self.program.press(BUTTON, "Protect 3 Items")
        self.program.press(BUTTON, flows.re.compile(f"^{flows.PASSWORD_CARD}"))
        flows.enter_new_password(self.program, flows.ITEM_PASSWORD)
        self.grant_access_to_all()
        for name in NAMES:
            flows.row(self.program, name, "locked")
        self.did("one password and one panel protected them all")
        self.program.find(BUTTON, flows.PROTECT).focus()
        self.program.press(BUTTON, "Select")
        self.program.press(BUTTON, "Select All")
        self.program.says("5 selected")
        self.shot("selection")
        self.program.press(BUTTON, "Done")

    def grant_access_to_all(self):
        self.program.press_in(BULK_ACCESS_MESSAGE, BUTTON, flows.ACCESS_PROMPT)

    def search(self):
        self.step("Search in the list")
        field = self.program.find(FIELD, "Search items")
        field.type("HOLIDAY")
        self.program.says("Showing filtered results from 5 total items.")
        self.shot("search")
        self.check(self.program.look(ROW, "contract.pdf, locked") is None, "only what matches is shown")
        key("ctrl+a")
        field.type("nothing like this")
        self.program.says("No items match your search criteria")
        self.shot("no-results")
        self.program.press(BUTTON, "Clear Search")
        flows.row(self.program, "contract.pdf", "locked")

    def menu_of_a_row(self):
        self.step("Open the menu of a row, and the list of the shortcuts")
        self.program.find(ROW, "contract.pdf, locked").click()
        key("Menu")
        self.program.find(MENU_ITEM, "Copy Path")
        self.shot("row-menu")
        key("Down", "Down", "Return")
        path = str(self.home.documents / "contract.pdf")
        self.program.wait_for(lambda: self.clipboard() == path, "the path in the clipboard")
        self.shot("path-copied")
        key("F1")
        self.program.find(DIALOG, "Keyboard Shortcuts")
        self.shot("shortcuts")
        key("Escape")
        self.program.gone(DIALOG, "Keyboard Shortcuts")

    @staticmethod
    def clipboard():
        return subprocess.run(["xclip", "-o", "-selection", "clipboard"], capture_output=True, text=True).stdout

    def to_the_trash(self):
        self.step("Move an unlocked file to the trash")
        name = "holiday image.png"
        flows.unlock(self.program, name)
        flows.press_in_row(self.program, name, "Secure Shred")
        self.program.find(DIALOG, f'Secure delete "{name}"?')
        self.shot("delete-question")
        self.program.press(BUTTON, "Move to Trash")
        self.program.gone(ROW, f"{name}, unlocked")
        trashed = self.home.data / "Trash" / "files" / name
        self.check(trashed.read_text() == f"{name}\n" * 100, "the file is in the trash, as it was")

    def shred(self):
        self.step("Shred a file")
        item = self.home.item(self.home.documents / "old draft.txt")
        flows.ask_to_shred(self.program, "old draft.txt")
        self.program.says("Permanent Deletion Warning")
        self.program.press(SWITCH, "I understand this will permanently delete the selected items")
        self.program.find(FIELD, "Type 'SHRED PERMANENTLY' to confirm:").type("shred permanently")
        self.shot("shred-confirmation")
        self.program.press(BUTTON, "🗑️ Shred Permanently")
        flows.enter_item_password(self.program, "old draft.txt")
        flows.grant_access(self.program)
        self.program.gone(ROW, flows.re.compile("^old draft.txt, "))
        self.program.gone(DIALOG, "Secure Shredding in Progress")
        self.check(self.home.item(self.home.documents / "old draft.txt") is None, "the list no longer has it")
        self.check(item["id"] not in self.keyring.entries(), "nor has the keyring its password")
        flows.remove_protection(self.program, "contract.pdf")

    def every_preference(self):
        self.step("Look at the preferences")
        flows.open_preferences(self.program)
        for section in ("General", "Security"):
            self.program.press(TAB, f"Switch to {section} settings")
            self.program.find(None, f"{section} section")
            self.shot(f"preferences-{section.lower()}")
        flows.close_preferences(self.program)
