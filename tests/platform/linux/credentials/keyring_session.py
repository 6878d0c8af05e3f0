# SPDX-License-Identifier: GPL-3.0-or-later

"""Real keyrings in a session of their own, and their prompts, driven over the accessibility bus and the keyboard."""

import os
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[3] / "desktop"))
from desktop_driver import Atspi, GLib, Node, key, screenshot, type_text, wait_for  # noqa: E402,F401

ROOT = Path(__file__).resolve().parents[4]
FAILURES = ROOT / "build" / "keyring-failures"

SUCCESS = "0"
NOT_FOUND = "-25300"
DUPLICATE = "-25299"
DECLINED = "-25308"
NO_COLLECTION = "-25294"


class Desktop:
    """All windows of the session."""

    def walk(self):
        desktop = Atspi.get_desktop(0)
        desktop.clear_cache()
        for index in range(desktop.get_child_count()):
            try:
                application = desktop.get_child_at_index(index)
            except GLib.Error:
                continue
            if application is not None:
                application.clear_cache()
                yield from Node(application, self).walk()

    def wait_for(self, condition, what, seconds=30):
        return wait_for(condition, what, seconds, self.describe)

    def find(self, role, name):
        """Waits for a visible control in any window."""
        return self.wait_for(lambda: next((node for node in self.walk() if node.matches(role, name)), None),
                             f'a {role} called "{name}"')

    def find_all(self, role):
        return [node for node in self.walk() if node.matches(role, None)]

    def describe(self):
        return "\n".join(f"{node} {node.actions()}" for node in self.walk() if node.showing)


def window(title):
    """The X11 window with this title, or None."""
    found = subprocess.run(["xdotool", "search", "--onlyvisible", "--name", title], capture_output=True, text=True)
    return found.stdout.split()[-1] if found.stdout.split() else None


def wait_for_window(title):
    return wait_for(lambda: window(title), f'the window "{title}"', 30)


def wait_until_replaced(title, shown):
    """Waits until this window is gone. Another one with its title may appear at once."""
    wait_for(lambda: window(title) != shown, f'the window "{title}" to disappear', 30)


class Start:
    """One start of a program that keeps passwords. It runs while the test answers its prompts."""

    def __init__(self, folder, *commands):
        self.process = subprocess.Popen([os.environ["CREDENTIAL_STORE_CLIENT"], str(folder), *commands], stdout=subprocess.PIPE, text=True)

    def answers(self):
        """Waits for the end, and returns what each command answered."""
        output, _ = self.process.communicate(timeout=60)
        if self.process.returncode != 0:
            raise AssertionError(f"The program ended with {self.process.returncode}.")
        return [line.removeprefix("= ") for line in output.splitlines() if line.startswith("= ")]


class KeyringTest(unittest.TestCase):
    def setUp(self):
        self.desktop = Desktop()
        self.folder = Path(tempfile.mkdtemp())
        self.starts = []
        self.daemons = []
        self.addCleanup(self._end)

    def start(self, *commands):
        start = Start(self.folder, *commands)
        self.starts.append(start)
        return start

    def answers(self, *commands):
        """The answers of a start that needs none of ours."""
        return self.start(*commands).answers()

    def daemon(self, *command, **options):
        process = subprocess.Popen(command, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, **options)
        self.daemons.append(process)
        return process

    def end_daemon(self, process):
        process.terminate()
        process.wait(20)
        self.wait_for_name(False)

    def wait_for_name(self, owned=True):
        def is_owned():
            answer = subprocess.run(["gdbus", "call", "--session", "-d", "org.freedesktop.DBus", "-o", "/", "-m",
                                     "org.freedesktop.DBus.NameHasOwner", "org.freedesktop.secrets"],
                                    capture_output=True, text=True)
            return ("true" in answer.stdout) == owned

        wait_for(is_owned, "the keyring on the bus" if owned else "the keyring to leave the bus", 30)

    def _end(self):
        result = self._outcome.result
        if any(test is self for test, _ in result.failures + result.errors):
            FAILURES.mkdir(parents=True, exist_ok=True)
            screenshot(FAILURES / f"{self.id()}.png")
            print(self.desktop.describe(), file=sys.stderr)
        for process in [start.process for start in self.starts] + self.daemons[::-1]:
            if process.poll() is None:
                process.kill()
                process.wait()


def main():
    Atspi.get_desktop(0).get_child_count()
    unittest.main(verbosity=2, warnings="ignore")
