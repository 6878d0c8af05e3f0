#!/usr/bin/python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""What other programs hand over: the menus of the file managers by a record, the desktop by an address."""

import json
import re
import subprocess
import time
from urllib.parse import quote

import flows
from desktop_driver import BUTTON, DIALOG, ROW, Program, wait_for
from home_on_disk import PLACEHOLDER, SHARED_DOMAIN
from login_test import StartedBySession
from window_case import PROGRAM, WindowTest, main

MENU_TOOL = PROGRAM.parent / "extension/bundle/Contents/PlugIns/FinderSyncExtension.appex/quillhaven-menu"


def address(action, path):
    """Returns the address of an action; the receiver decodes the path twice."""
    return f"quillhaven://{action}?path={quote(quote(str(path)))}"


class HandOver(WindowTest):
    """What both kinds of tests use."""

    def open(self, *urls):
        """Starts the program a second time, with addresses."""
        self.assertEqual(self.start(*urls).wait(), 0)

    def choose_in_menu(self, action, path, program=PROGRAM):
        """Runs the tool of the file managers' menus, which outlives its caller."""
        environment = {**self.home.environment(), "QUILLHAVEN_PROGRAM": str(program)}
        subprocess.run([MENU_TOOL, action, path], env=environment, check=True, timeout=60)


class HandOverToAWindow(HandOver):
    def test_an_address_locks_an_unlocked_item(self):
        letter = self.file("100% sure & \"quoted\".txt")
        flows.protect_with_password(self.program, letter)
        flows.unlock(self.program, letter.name)
        self.open(address("lock", letter))
        flows.row(self.program, letter.name, "locked")
        self.assertEqual(letter.read_bytes(), PLACEHOLDER)

    def test_an_address_unlocks_after_the_password_was_entered(self):
        letter = self.file("letter.txt", "mine\n")
        flows.protect_with_password(self.program, letter)
        self.open(address("unlock", letter))
        flows.enter_item_password(self.program, "letter.txt")
        flows.grant_access(self.program)
        flows.row(self.program, "letter.txt", "unlocked")
        self.assertEqual(letter.read_text(), "mine\n")

    def test_the_desktop_opens_an_address_with_the_program(self):
        letter = self.file("letter.txt")
        flows.protect_with_password(self.program, letter)
        flows.unlock(self.program, "letter.txt")
        entry = self.home.data / "applications" / "com.tarnwick.quillhaven.desktop"
        self.program.wait_for(entry.exists, "the desktop entry")
        subprocess.run(["gio", "open", address("lock", letter)], env=self.home.environment(), check=True, timeout=60)
        flows.row(self.program, "letter.txt", "locked")

    def test_a_choice_in_a_menu_protects_a_file(self):
        letter = self.file("letter.txt")
        self.program.find(BUTTON, flows.PROTECT)
        self.choose_in_menu("protect", letter)
        self.program.says("Protect letter.txt")
        self.program.press(BUTTON, re.compile(f"^{flows.PASSWORD_CARD}"))
        flows.enter_new_password(self.program, flows.ITEM_PASSWORD)
        flows.grant_access(self.program)
        flows.row(self.program, "letter.txt", "locked")
        self.assertNotIn("PendingAction", self.home.settings(SHARED_DOMAIN))

    def test_a_choice_in_a_menu_asks_before_it_shreds(self):
        letter = self.file("letter.txt", "mine\n")
        self.program.find(BUTTON, flows.PROTECT)
        self.choose_in_menu("shred", letter)
        self.program.says("letter.txt")
        self.assertEqual(letter.read_text(), "mine\n")

    def test_a_record_that_nobody_took_for_thirty_seconds_is_thrown_away(self):
        letter = self.file("letter.txt")
        self.program.find(BUTTON, flows.PROTECT)
        self.program.kill()
        self.choose_in_menu("protect", letter, program="/bin/true")
        record = json.loads(self.home.settings(SHARED_DOMAIN)["PendingAction"])
        record["timestamp"] = time.time() - 31
        self.home.change_setting("PendingAction", json.dumps(record).encode(), SHARED_DOMAIN)
        again = self.start()
        again.find(BUTTON, flows.PROTECT)
        again.wait_for(lambda: "PendingAction" not in self.home.settings(SHARED_DOMAIN), "the end of the record")
        self.assertFalse(again.look(DIALOG, re.compile(".*")))
        self.assertNotIn("Processing pending action", again.log)

    def test_an_address_that_starts_the_program_is_carried_out(self):
        letter = self.file("letter.txt")
        self.program.find(BUTTON, flows.PROTECT)
        self.assertEqual(self.program.quit(), 0)
        again = self.start(address("protect", letter))
        again.says("Protect letter.txt")

    def test_a_hundred_addresses_leave_one_question_and_a_program_that_answers(self):
        letter = self.file("letter.txt")
        self.program.find(BUTTON, flows.PROTECT)
        self.open(*(address("protect", f"/home/nobody/{number}") for number in range(99)), address("protect", letter))
        self.program.says("Protect letter.txt")
        self.program.press(BUTTON, "Cancel")
        self.program.gone(DIALOG, "Protect letter.txt")
        flows.protect_with_password(self.program, letter)

    def test_an_address_of_an_unknown_item_or_word_changes_nothing(self):
        letter = self.file("letter.txt", "mine\n")
        self.program.find(BUTTON, flows.PROTECT)
        self.open(address("unlock", letter), address("lock", letter), address("erase", letter), "quillhaven://lock")
        self.program.find(BUTTON, flows.PROTECT)
        self.assertFalse(self.program.look(DIALOG, re.compile(".*")))
        self.assertEqual(letter.read_text(), "mine\n")
        self.assertEqual(self.program.find_all(ROW, re.compile(".*locked$")), [])


class Attached(Program):
    """A process of the program that somebody else has started."""

    def __init__(self, home, pid):
        self.home = home
        self.log_path = home.path / "program.log"
        self.process = StartedBySession(pid)


class HandOverToAHiddenProgram(HandOver):
    starts = False

    def test_a_choice_in_a_menu_brings_a_program_without_a_window_forward(self):
        letter = self.file("letter.txt")
        self.program = self.start("--login-item")
        self.program.wait_for_log("App launched in background mode")
        self.choose_in_menu("protect", letter)
        self.program.says("Protect letter.txt")

    def test_a_choice_in_a_menu_starts_a_program_that_does_not_run(self):
        letter = self.file("letter.txt")
        starter, identity = self.home.path / "starter", self.home.path / "pid"
        starter.write_text(f'#!/bin/sh\necho $$ >"{identity}.new"\nmv "{identity}.new" "{identity}"\n'
                           f'exec "{PROGRAM}" "$@" >>"{self.home.path}/program.log" 2>&1\n')
        starter.chmod(0o755)
        self.choose_in_menu("protect", letter, starter)
        wait_for(identity.exists, "the program to start")
        self.program = Attached(self.home, int(identity.read_text()))
        self.started.append(self.program)
        self.program.says("Protect letter.txt")


if __name__ == "__main__":
    main()
