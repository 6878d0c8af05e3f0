# SPDX-License-Identifier: GPL-3.0-or-later

"""The prompt of the session's keyring, answered by the keyboard."""

import subprocess

from desktop_driver import key, type_text, wait_for

KEYRING_PASSWORD = "test-password"


def window():
    """Returns the prompt's window, or None. Its title depends on the question."""
    found = subprocess.run(["xdotool", "search", "--onlyvisible", "--class", "gcr-prompter"], capture_output=True,
                           text=True)
    return found.stdout.split()[-1] if found.stdout.split() else None


def _answer(answer):
    wait_for(window, "the keyring's prompt")
    subprocess.run(["xdotool", "windowactivate", "--sync", window()], check=True)
    answer()
    wait_for(lambda: window() is None, "the keyring's prompt to close")


def dismiss():
    _answer(lambda: key("Escape"))


def unlock(*passwords):
    """Types the passwords into the fields of the prompt, and confirms it."""

    def enter():
        for number, password in enumerate(passwords or [KEYRING_PASSWORD]):
            if number:
                key("Tab")
            type_text(password)
        key("Return")

    _answer(enter)
