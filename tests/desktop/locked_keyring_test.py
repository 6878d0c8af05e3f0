#!/usr/bin/python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""A locked keyring. In its own session, since a locked keyring remains locked until the session ends."""

import flows
from desktop_driver import BUTTON
from window_case import WindowTest, main


class LockedKeyring(WindowTest):
    starts = False

    def test_the_program_starts_and_reports_that_it_cannot_store_the_password(self):
        letter = self.file("letter.txt")
        self.keyring.lock()
        self.assertTrue(self.keyring.is_locked())
        program = self.start()
        program.find(BUTTON, "Set Master Password")
        flows.open_protection(program, letter)
        program.find(BUTTON, flows.re.compile(f"^{flows.PASSWORD_CARD}")).press()
        flows.enter_new_password(program, flows.ITEM_PASSWORD)
        flows.grant_access(program)
        program.says("Failed to save to keychain: -25308")
        # The data is in private storage without a record, as the README says, and must not be lost there.
        self.assertEqual([entry.read_text() for entry in self.home.storage.iterdir()], ["content\n"])
        self.assertEqual(self.home.catalogue(), [])


if __name__ == "__main__":
    main()
