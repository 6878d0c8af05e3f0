#!/usr/bin/python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""A locked keyring, which asks for its password, and one that does not answer at all."""

import signal

import flows
import keyring_prompt
from desktop_driver import BUTTON
from window_case import WindowTest, main


class LockedKeyring(WindowTest):
    starts = False
    REFUSED = "Failed to save to keychain: -25308"

    def choose_password_protection(self, program, path):
        flows.open_protection(program, path)
        program.find(BUTTON, flows.re.compile(f"^{flows.PASSWORD_CARD}")).press()
        flows.enter_new_password(program, flows.ITEM_PASSWORD)
        flows.grant_access(program)

    def test_a_file_stays_where_it_is_if_its_password_cannot_be_stored(self):
        letter = self.file("letter.txt")
        self.keyring.lock()
        program = self.start()
        keyring_prompt.dismiss()
        program.find(BUTTON, flows.PROTECT)
        self.choose_password_protection(program, letter)
        keyring_prompt.dismiss()
        program.says(self.REFUSED)
        self.assertEqual(letter.read_text(), "content\n")
        self.assertEqual(list(self.home.storage.iterdir()), [])
        self.assertEqual(self.home.catalogue(), [])

        # The prompt comes again at another attempt, though not at once after it was dismissed, and the program goes on
        # with what it was asked for.
        def prompts_again():
            program.press(BUTTON, "OK")
            self.choose_password_protection(program, letter)
            program.wait_for(lambda: keyring_prompt.window() or program.look(None, self.REFUSED), "an answer")
            return keyring_prompt.window()

        program.wait_for(prompts_again, "the keyring's prompt")
        keyring_prompt.unlock()
        flows.row(program, "letter.txt", "locked")
        self.assertEqual(list(self.keyring.entries().values()), [flows.ITEM_PASSWORD])

    def test_the_master_password_is_asked_for_as_soon_as_it_can_be_read(self):
        letter, notes = self.file("letter.txt"), self.file("notes.txt")
        program = self.start()
        flows.protect_with_password(program, letter)
        flows.set_master_password(program)
        self.assertEqual(program.quit(), 0)

        self.keyring.lock()
        again = self.start()
        keyring_prompt.dismiss()
        again.find(BUTTON, flows.PROTECT)
        self.choose_password_protection(again, notes)
        keyring_prompt.unlock()
        flows.wait_for_master_password(again)
        flows.row(again, "notes.txt", "locked")
        flows.unlock(again, "letter.txt", master_password=flows.MASTER_PASSWORD)


class SilentKeyring(WindowTest):
    starts = False

    def setUp(self):
        super().setUp()
        self.keyring.send(signal.SIGSTOP)
        self.addCleanup(self.keyring.send, signal.SIGCONT)
        self.silent = self.start()

    def test_the_window_says_that_it_waits_and_the_program_can_end(self):
        self.silent.find(None, flows.re.compile("^Waiting for the keyring."))
        self.assertEqual(self.silent.quit(), 0)

    def test_a_keyring_that_answers_later_is_used(self):
        letter = self.file("letter.txt")
        self.silent.find(None, flows.re.compile("^Waiting for the keyring."))
        self.keyring.send(signal.SIGCONT)
        self.silent.gone(None, flows.re.compile("^Waiting for the keyring."))
        flows.protect_with_password(self.silent, letter)
        self.assertEqual(list(self.keyring.entries().values()), [flows.ITEM_PASSWORD])


if __name__ == "__main__":
    main()
