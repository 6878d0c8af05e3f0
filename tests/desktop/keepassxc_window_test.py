#!/usr/bin/python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""The program with KeePassXC as its keyring: at the second start every entry is locked until the user allows the access."""

import sys
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[1] / "platform" / "linux" / "credentials"))

import flows  # noqa: E402
from desktop_driver import BUTTON, Program  # noqa: E402
from home_on_disk import Home  # noqa: E402
from keepassxc_session import KeePassXCTest  # noqa: E402
from keyring_session import main  # noqa: E402
from window_case import PROGRAM  # noqa: E402


class ProgramWithKeePassXC(KeePassXCTest):
    def setUp(self):
        super().setUp()
        self.home = Home()
        self.addCleanup(self.home.remove)
        self.home.mark_as_introduced()

    def start_program(self):
        program = Program(PROGRAM, self.home)
        self.addCleanup(program.kill)
        return program

    def test_the_master_password_and_the_items_password_are_known_at_the_second_start(self):
        letter = self.home.documents / "letter.txt"
        letter.write_text("content\n")
        first = self.start_program()
        flows.protect_with_password(first, letter)
        flows.set_master_password(first)
        self.assertEqual(first.quit(), 0)

        second = self.start_program()
        self.press("Allow Selected")
        flows.wait_for_master_password(second)
        flows.press_in_row(second, "letter.txt", "Unlock Item")
        flows.enter_master_password(second)
        flows.enter_item_password(second, "letter.txt")
        self.press("Allow Selected")
        flows.grant_access(second)
        flows.row(second, "letter.txt", "unlocked")
        self.assertEqual(letter.read_text(), "content\n")
        self.assertEqual(second.quit(), 0)


if __name__ == "__main__":
    main()
