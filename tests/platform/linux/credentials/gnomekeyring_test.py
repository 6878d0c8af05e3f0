#!/usr/bin/python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""gnome-keyring, open, locked, and new, with the prompts of its desktop."""

import os
import subprocess

from keyring_session import (DECLINED, DUPLICATE, NO_COLLECTION, NOT_FOUND, SUCCESS, KeyringTest, key, main, type_text,
                             wait_for)

PASSWORD = "login password"


def prompt():
    """The window of the prompt, or None. Its title depends on the question."""
    found = subprocess.run(["xdotool", "search", "--onlyvisible", "--class", "gcr-prompter"], capture_output=True,
                           text=True)
    return found.stdout.split()[-1] if found.stdout.split() else None


class GnomeKeyring(KeyringTest):
    def open(self, password=PASSWORD):
        """Starts the daemon as a login does; with another password than before the keyring stays locked."""
        environment = {**os.environ, "XDG_DATA_HOME": str(self.folder / "data")}
        unlock = ["--unlock"] if password else []
        process = self.daemon("gnome-keyring-daemon", "--foreground", *unlock, "--components=secrets",
                              stdin=subprocess.PIPE, env=environment)
        process.stdin.write((password or "").encode())
        process.stdin.close()
        self.wait_for_name()
        return process

    def type_into_prompt(self, *texts):
        wait_for(prompt, "the keyring's prompt", 30)
        subprocess.run(["xdotool", "windowactivate", "--sync", prompt()], check=True)
        for number, text in enumerate(texts):
            if number:
                key("Tab")
            type_text(text)
        key("Return")
        wait_for(lambda: prompt() is None, "the keyring's prompt to close", 30)

    def dismiss_prompt(self):
        wait_for(prompt, "the keyring's prompt", 30)
        subprocess.run(["xdotool", "windowactivate", "--sync", prompt()], check=True)
        key("Escape")
        wait_for(lambda: prompt() is None, "the keyring's prompt to close", 30)

    def test_entries_are_stored_and_read_at_the_next_start(self):
        daemon = self.open()
        self.assertEqual(self.answers("prepare", "add one first", "add two second"), [SUCCESS] * 3)
        self.assertEqual(self.answers("read one", "update one changed", "read one", "add two again"),
                         [f"{SUCCESS} first", SUCCESS, f"{SUCCESS} changed", DUPLICATE])
        self.end_daemon(daemon)
        self.open()
        self.assertEqual(self.answers("read two", "remove one", "read one"), [f"{SUCCESS} second", SUCCESS, NOT_FOUND])

    def test_a_locked_keyring_is_unlocked_by_its_prompt(self):
        daemon = self.open()
        self.assertEqual(self.answers("add one first"), [SUCCESS])
        self.end_daemon(daemon)
        self.open("another password")
        declined = self.start("read one", "read one")
        self.dismiss_prompt()
        self.assertEqual(declined.answers(), [DECLINED, DECLINED])

        allowed = self.start("read one", "add two second")
        self.type_into_prompt(PASSWORD)
        self.assertEqual(allowed.answers(), [f"{SUCCESS} first", SUCCESS])

    def test_a_new_keyring_is_created_by_its_prompt(self):
        self.open(password=None)
        declined = self.start("prepare", "add one first")
        self.dismiss_prompt()
        self.assertEqual(declined.answers(), [NO_COLLECTION, NO_COLLECTION])

        created = self.start("prepare", "add one first")
        self.type_into_prompt(PASSWORD, PASSWORD)
        self.assertEqual(created.answers(), [SUCCESS, SUCCESS])
        self.assertEqual(self.answers("read one"), [f"{SUCCESS} first"])


if __name__ == "__main__":
    main()
