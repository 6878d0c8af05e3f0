#!/usr/bin/python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""A session with another keyring than the one that has the passwords."""

import json

import flows
from desktop_driver import BUTTON
from window_case import WindowTest, main

NOTICE = flows.re.compile("^The passwords are in another keyring than the one of this session.")


class MissingKeyring(WindowTest):
    starts = False

    def setUp(self):
        super().setUp()
        self.letter, self.notes = self.file("letter.txt"), self.file("notes.txt")
        program = self.start()
        flows.protect_with_password(program, self.letter)
        self.assertEqual(program.quit(), 0)
        # The mark that the program looks for in the keyring; none has this one.
        self.note = self.home.config / "quillhaven" / "credential-store.json"
        self.right = self.note.read_text()
        self.note.write_text(json.dumps({**json.loads(self.right), "keyring": "another"}))
        self.again = self.start()
        self.again.find(None, NOTICE)

    def test_nothing_is_stored_elsewhere_and_it_can_be_tried_again(self):
        flows.open_protection(self.again, self.notes)
        self.again.find(BUTTON, flows.re.compile(f"^{flows.PASSWORD_CARD}")).press()
        flows.enter_new_password(self.again, flows.ITEM_PASSWORD)
        flows.grant_access(self.again)
        self.again.says("Failed to save to keychain: -25291")
        self.assertEqual(self.notes.read_text(), "content\n")
        self.assertEqual(len(self.keyring.entries()), 1)
        self.again.press(BUTTON, "OK")
        self.again.press(BUTTON, "Try Again")
        self.again.find(None, NOTICE)

    def test_the_user_can_use_the_keyring_of_this_session(self):
        self.again.press(BUTTON, "Use Another Store...")
        flows.dialog_button(self.again, "Use Another Store").press()
        self.again.gone(None, NOTICE)
        flows.protect_with_password(self.again, self.notes)
        self.assertEqual(json.loads(self.note.read_text()), json.loads(self.right))
        self.assertEqual(self.again.quit(), 0)
        flows.unlock(self.start(), "letter.txt")


if __name__ == "__main__":
    main()
