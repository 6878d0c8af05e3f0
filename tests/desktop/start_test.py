#!/usr/bin/python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""Starting the program: a second time, after it has ended, and at login."""

import os
import re
import subprocess

import flows
from desktop_driver import BUTTON, DIALOG, LABEL, NOTICE, key
from home_on_disk import OWN_DOMAIN
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

    def test_each_start_checks_for_an_update(self):
        steps = ["🔄 Starting background update check...", "🔄 Background update check requested",
                 "✅ Background update check completed"]
        self.program.wait_for_log(steps[-1])
        self.assertEqual([line for line in self.program.log.splitlines() if line in steps], steps)


    def test_the_window_has_the_icon_of_the_program(self):
        self.program.find(BUTTON, flows.PROTECT)
        self.program.wait_until_active()
        window = subprocess.run(["xdotool", "getactivewindow"], capture_output=True, text=True, check=True).stdout.strip()
        printed = subprocess.run(["xprop", "-id", window, "-notype", "-f", "_NET_WM_ICON", "32c", "_NET_WM_ICON"],
                                 capture_output=True, text=True, check=True).stdout
        width, height, *pixels = [int(number) & 0xFFFFFFFF for number in re.findall(r"-?\d+", printed.partition("=")[2])]
        self.assertEqual((width, height), (16, 16))
        # A blue square with a quill on it.
        red, green, blue = pixels[1 * width + width // 2].to_bytes(4, "big")[1:]
        self.assertGreater(blue, red + 80)
        self.assertGreater(blue, green + 80)
        self.assertIn(0xFFFFFFFF, pixels[:width * height])


class WhatIsKept(WindowTest):
    def test_the_toolkit_keeps_no_folder_in_which_a_file_was_chosen(self):
        folder = self.home.documents / "telling-name"
        folder.mkdir()
        letter = folder / "letter.txt"
        letter.write_text("content\n")
        flows.protect_with_password(self.program, letter)
        self.assertEqual(self.program.quit(), 0)
        # The settings and the containers hold it, as they must. Nothing else in the home does.
        kept = [path for path in self.home.path.rglob("*")
                if path.is_file() and b"telling-name" in path.read_bytes() and path.parent.name != "quillhaven"]
        self.assertEqual(kept, [self.program.log_path])
        self.assertEqual(list(self.home.config.glob("QtProject*")), [])


class StartingAtLogin(WindowTest):
    starts = False

    def test_no_window_is_shown_until_the_program_is_started_again(self):
        at_login = self.start("--login-item")
        at_login.wait_for_log("App launched in background mode (login item)")
        at_login.wait_for(at_login.root, "the program to be on the accessibility bus")
        self.assertFalse(at_login.shows(BUTTON, flows.PROTECT))
        self.assertEqual(self.start().wait(), 0)
        at_login.find(BUTTON, flows.PROTECT)
        at_login.wait_until_active()


class SettingsThatCannotBeWritten(WindowTest):
    def test_the_list_is_shown_and_nothing_is_taken_until_they_can_be_written_again(self):
        letter, notes = self.file("letter.txt"), self.file("notes.txt")
        flows.protect_with_password(self.program, letter)
        self.assertEqual(self.program.quit(), 0)
        settings = self.home.settings_file(OWN_DOMAIN)
        obstacle = settings.with_name(settings.name + "-shm")
        obstacle.mkdir()
        before = settings.read_bytes()

        program = self.start()
        flows.row(program, "letter.txt", "locked")
        notice = re.compile(re.escape(str(settings)) + ".*Nothing can be protected until this is put right.")
        program.find(NOTICE, notice)
        program.press(BUTTON, flows.PROTECT)
        flows.choose_in_panel(program, notes)
        program.find(DIALOG, None).find(None, notice)
        program.press(BUTTON, "OK")
        flows.unlock(program, "letter.txt")
        self.assertEqual(letter.read_text(), "content\n")
        self.assertEqual(settings.read_bytes(), before)

        obstacle.rmdir()
        program.press(BUTTON, "Try Again")
        program.gone(NOTICE, notice)
        flows.protect_with_password(program, notes)
        self.assertEqual(program.quit(), 0)
        self.assertTrue(self.home.item(letter)["isMounted"])
        self.assertFalse(self.home.item(notes)["isMounted"])


class PlacesThatAreAway(WindowTest):
    starts = False

    def test_without_the_documents_the_list_is_shown_and_nothing_is_taken(self):
        desktop = self.home.path / "Desktop"
        desktop.mkdir()
        letter, notes = desktop / "letter.txt", desktop / "notes.txt"
        for file in (letter, notes):
            file.write_text("content\n")
        first = self.start()
        flows.protect_with_password(first, letter)
        self.assertEqual(first.quit(), 0)
        self.home.documents.rename(self.home.path / "drive")
        self.home.documents.symlink_to(self.home.path / "away")

        program = self.start()
        flows.row(program, "letter.txt", "locked")
        program.press(BUTTON, flows.PROTECT)
        flows.choose_in_panel(program, notes)
        program.says("Cannot write to Documents folder. Please check app permissions.")
        program.press(BUTTON, "OK")
        flows.unlock(program, "letter.txt")
        self.assertEqual(letter.read_text(), "content\n")
        self.assertEqual(notes.read_text(), "content\n")

    def test_a_taken_name_for_temporary_files_and_relative_places_do_not_prevent_a_start(self):
        taken = self.home.temporary / f"quillhaven-{os.geteuid()}"
        taken.write_text("theirs")
        program = self.start(XDG_DATA_HOME="data", XDG_CONFIG_HOME="config", HOME=str(self.home.path))
        flows.protect_with_password(program, self.file("letter.txt"))
        self.assertEqual(taken.read_text(), "theirs")
        self.assertTrue(self.home.catalogue())
        self.assertEqual(len(list(self.home.storage.iterdir())), 1)


class AStartThatFails(WindowTest):
    """The file that keeps a second process from running can be made nowhere."""

    starts = False
    exit_codes = (*WindowTest.exit_codes, 1)

    def setUp(self):
        super().setUp()
        private = self.home.temporary / f"quillhaven-{os.geteuid()}"
        self.obstacles = [folder / "quillhaven.lock" for folder in (self.home.config / "quillhaven", private)]
        for obstacle in self.obstacles:
            obstacle.mkdir(parents=True)

    def failing_start(self, *arguments):
        program = self.start(*arguments)
        program.says("Quillhaven cannot start.")
        place = re.escape(str(self.obstacles[0]))
        program.find(LABEL, re.compile(f"{place}.*items are where they were", re.DOTALL))
        return program

    def test_the_reason_is_shown_and_escape_quits(self):
        program = self.failing_start()
        program.wait_until_active()
        key("Escape")
        self.assertEqual(program.wait(), 1)
        self.assertIn("❌ Quillhaven cannot start: ", program.log)

    def test_a_start_at_login_shows_the_reason_too(self):
        program = self.failing_start("--login-item")
        program.press(BUTTON, "Quit")
        self.assertEqual(program.wait(), 1)

    def test_a_request_to_end_is_obeyed(self):
        program = self.failing_start()
        self.assertEqual(program.quit(), 1)

    def test_trying_again_starts_the_program_once_the_cause_is_gone(self):
        program = self.failing_start()
        program.press(BUTTON, "Try Again")
        program.wait_for(lambda: program.log.count("cannot start") == 2, "the second failure")
        program.says("Quillhaven cannot start.")
        for obstacle in self.obstacles:
            obstacle.rmdir()
        program.press(BUTTON, "Try Again")
        program.find(BUTTON, flows.PROTECT)


if __name__ == "__main__":
    main()
