# SPDX-License-Identifier: GPL-3.0-or-later

"""What every window test starts from: a home of its own, an empty keyring, the real program."""

import os
import signal
import sys
import unittest
from pathlib import Path

from desktop_driver import Program, screenshot
from home_on_disk import ROOT, Home, Keyring

PROGRAM = Path(os.environ.get("QUILLHAVEN_PROGRAM", ROOT / "build" / "debug" / "src" / "quillhaven"))
FAILURES = ROOT / "build" / "window-failures"


class WindowTest(unittest.TestCase):
    """Starts the program before each test, unless `starts` is false, and ends it afterwards."""

    starts = True

    def setUp(self):
        self.home = Home()
        self.addCleanup(self.home.remove)
        self.keyring = Keyring()
        self.keyring.clear()
        self.started = []
        self.addCleanup(self._end_programs)
        self.program = self.start() if self.starts else None

    def start(self, *arguments):
        """One more process of the program in this test's home."""
        program = Program(PROGRAM, self.home, arguments)
        self.started.append(program)
        return program

    def file(self, name, content="content\n"):
        """A file in the home's Documents."""
        path = self.home.documents / name
        path.write_text(content)
        return path

    def _end_programs(self):
        if self._failed():
            FAILURES.mkdir(parents=True, exist_ok=True)
            picture = FAILURES / f"{self.id()}.png"
            screenshot(picture)
            print(f"What the display showed: {picture}", file=sys.stderr)
        for program in self.started:
            # One that broke off by itself, such as a sanitizer's finding, fails the test also when nobody looked for it.
            self.assertIn(program.kill(), (0, -signal.SIGKILL), program.log)

    def _failed(self):
        # unittest keeps what went wrong with the running outcome alone.
        result = self._outcome.result
        return any(test is self for test, _ in result.failures + result.errors) or not self._outcome.success


def main():
    # Brings the session's services up first, so that what they say of it does not stand amid the results.
    Program.greet_bus()
    unittest.main(verbosity=2, warnings="ignore")
