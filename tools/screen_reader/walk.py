# SPDX-License-Identifier: GPL-3.0-or-later

"""Goes through the program by keyboard, and prints what Orca says at each step. Its argument is Orca's debug log."""

import re
import sys
import time
from contextlib import contextmanager
from pathlib import Path

import flows
from desktop_driver import BUTTON, Program, key, type_text, wait_for
from home_on_disk import Home
from window_case import PROGRAM

QUIET_SECONDS = 1.5


class Listener:
    """Reads what Orca has said from its debug log."""

    def __init__(self, log):
        self._log = log
        self._seen = 0

    def _spoken(self):
        return re.findall(r"SPEECH OUTPUT: '(.*?)'(?:\{| *$)", self._log.read_text(errors="replace"), re.MULTILINE)

    @contextmanager
    def step(self, title):
        """Prints the title, and after the step what was said until Orca was silent."""
        print(f"\n{title}", flush=True)
        yield
        count, since = len(self._spoken()), time.monotonic()
        while time.monotonic() - since < QUIET_SECONDS:
            time.sleep(0.1)
            if len(self._spoken()) != count:
                count, since = len(self._spoken()), time.monotonic()
        for line in self._spoken()[self._seen:]:
            print(f"    {line}", flush=True)
        self._seen = count


def walk(program, home, listener):
    letter = home.documents / "letter.txt"
    letter.write_text("content\n")
    with listener.step("The window"):
        program.wait_until_active()
    for _ in range(5):
        with listener.step("Tab"):
            key("Tab")
    with listener.step("Protect letter.txt"):
        flows.protect_with_password(program, letter)
    with listener.step("Ctrl+F, and a search"):
        key("ctrl+f")
        type_text("let")
    with listener.step("Escape"):
        key("Escape")
    for _ in range(8):
        with listener.step("Tab"):
            key("Tab")
    program.find(BUTTON, "Unlock Item").focus()
    for keys in ("Menu", "Down", "Escape"):
        with listener.step(keys):
            key(keys)
    with listener.step("The question before an item is deleted"):
        flows.press_in_row(program, "letter.txt", "Secure Shred")
    with listener.step("Escape"):
        key("Escape")
    with listener.step("Unlock letter.txt: the question for its password"):
        flows.press_in_row(program, "letter.txt", "Unlock Item")
    with listener.step("A password is typed"):
        type_text(flows.ITEM_PASSWORD)
    with listener.step("Return, and the access panel"):
        key("Return")
        flows.grant_access(program)
        flows.row(program, "letter.txt", "unlocked")
    with listener.step("Ctrl+L"):
        key("ctrl+l")
        flows.row(program, "letter.txt", "locked")
    with listener.step("Ctrl+, for the preferences"):
        key("ctrl+comma")
    for _ in range(8):
        with listener.step("Tab"):
            key("Tab")


def main():
    log = Path(sys.argv[1])
    wait_for(lambda: "Screen reader on" in log.read_text(errors="replace"), "Orca to start")
    home = Home()
    home.mark_as_introduced()
    program = Program(PROGRAM, home)
    try:
        walk(program, home, Listener(log))
    finally:
        program.kill()
        home.remove()


main()
