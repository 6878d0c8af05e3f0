#!/usr/bin/python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""What shows an item in the file manager: the button, and a double click on the row."""

import subprocess

import flows
from bus_services import FileManagerService, RecordedFileManager
from desktop_driver import BUTTON, DIALOG, FIELD, application_of, wait_for
from window_case import WindowTest, main

ODD = "a%41 #1 & ü.txt"
REVEAL = "Reveal in Finder"


class RevealTest(WindowTest):
    def protect(self, name):
        path = self.file(name)
        flows.protect_with_password(self.program, path)
        return path


class RevealInThunar(RevealTest):
    """The file manager is not running: the bus starts it when it is called."""

    def setUp(self):
        super().setUp()
        self.service = FileManagerService("/usr/bin/thunar --daemon")
        self.addCleanup(self.service.remove)

    def windows(self):
        found = subprocess.run(["xdotool", "search", "--onlyvisible", "--class", "^Thunar$"], capture_output=True,
                               text=True, check=False)
        return found.stdout.split()

    def wait_for(self, condition, what):
        return wait_for(condition, what)

    def status(self):
        """The status bar of the file manager's window, which says what is selected."""
        root = self.service.pid and application_of(self.service.pid, self)
        found = root and next((node for node in root.walk() if node.role == "status bar" and node.showing), None)
        return found.name if found else ""

    def reveal(self, name):
        flows.press_in_row(self.program, name, REVEAL)
        wait_for(self.windows, "a window of the file manager", explain=self.program.describe)
        self.assertEqual(len(self.windows()), 1)

    def test_an_unlocked_file_is_selected_in_its_folder(self):
        self.protect(ODD)
        flows.unlock(self.program, ODD)
        self.reveal(ODD)
        wait_for(lambda: f'"{ODD}"' in self.status(), "the file to be selected", explain=self.status)

    def test_of_a_locked_file_the_placeholder_is_selected(self):
        self.file("another.txt")
        self.protect(ODD)
        self.reveal(ODD)
        wait_for(lambda: f'"{ODD}"' in self.status(), "the placeholder to be selected", explain=self.status)

    def test_without_the_placeholder_the_folder_is_shown_with_nothing_selected(self):
        self.file("another.txt")
        self.protect("letter.txt").unlink()
        self.reveal("letter.txt")
        # The other file and the item's container.
        wait_for(lambda: self.status().startswith("2 files:"), "the folder", explain=self.status)


class RevealWithoutFileManager(RevealTest):
    """The bus cannot start one."""

    starts = False

    def setUp(self):
        super().setUp()
        service = FileManagerService("/bin/false")
        self.addCleanup(service.remove)
        self.programs = self.home.path / "programs"
        self.programs.mkdir()

    def start_with_own_programs(self):
        self.program = self.start(PATH=str(self.programs))

    def test_the_folder_is_opened_by_the_desktops_program_for_folders(self):
        opened = self.home.path / "opened"
        opener = self.programs / "xdg-open"
        opener.write_text(f'#!/bin/sh\nprintf "%s" "$*" >"{opened}"\n')
        opener.chmod(0o755)
        self.start_with_own_programs()
        path = self.protect(ODD)
        flows.press_in_row(self.program, ODD, REVEAL)
        self.program.wait_for(lambda: opened.exists() and opened.read_text(), "the folder to be opened")
        self.assertEqual(opened.read_text(), path.parent.as_uri())
        self.assertIsNone(self.program.look(DIALOG, None))

    def test_without_any_the_row_says_so(self):
        self.start_with_own_programs()
        self.protect(ODD)
        flows.press_in_row(self.program, ODD, REVEAL)
        self.program.says(f"There is no file manager that can show '{ODD}'.")


class DoubleClicks(RevealTest):
    """With the pointer, whose clicks the program handles in their order."""

    def setUp(self):
        super().setUp()
        self.manager = RecordedFileManager()
        self.addCleanup(self.manager.remove)
        self.letter = self.protect("letter.txt")
        self.other = self.protect("other.txt")

    def double_click_row(self, state):
        self.program.wait_until_active()
        flows.row(self.program, "letter.txt", state).click(count=2)

    def double_click_button(self, name):
        self.program.wait_until_active()
        flows.row(self.program, "letter.txt", "unlocked").find(BUTTON, name).click(count=2)

    def expect_shown(self, *paths):
        """After these, a click shows the other item: what else was shown before would be in the list, too."""
        flows.row(self.program, "other.txt", "locked").find(BUTTON, REVEAL).click()
        shown = [("ShowItems", [path.as_uri()]) for path in (*paths, self.other)]
        self.program.wait_for(lambda: shown[-1] in self.manager.calls(), "the other item to be shown")
        self.assertEqual(self.manager.calls(), shown)

    def test_on_the_row_of_an_unlocked_item_shows_it_once(self):
        flows.unlock(self.program, "letter.txt")
        self.double_click_row("unlocked")
        self.expect_shown(self.letter)

    def test_on_the_row_of_a_locked_item_does_nothing(self):
        self.double_click_row("locked")
        self.expect_shown()

    def test_on_lock_item_only_locks(self):
        flows.unlock(self.program, "letter.txt")
        self.double_click_button("Lock Item")
        flows.row(self.program, "letter.txt", "locked")
        self.expect_shown()
        self.assertFalse(self.program.shows(FIELD, "Password"))
        self.assertEqual(self.program.log.count("Button clicked: Lock Item"), 1)
        self.assertEqual(self.program.log.count("Button clicked: Unlock Item"), 1, "the one before")

    def test_on_a_button_of_the_row_does_not_show_the_item(self):
        flows.unlock(self.program, "letter.txt")
        self.double_click_button("Copy Path to Clipboard")
        self.expect_shown()


if __name__ == "__main__":
    main()
