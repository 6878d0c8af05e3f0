# SPDX-License-Identifier: GPL-3.0-or-later

"""The base of all window tests: a new home, an empty keyring, and the real program."""

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
    """Starts the program before each test, unless `starts` is false, and ends it afterwards. The user has read
    the introduction, unless `is_introduced` is false."""

    starts = True
    is_introduced = True
    exit_codes = (0, -signal.SIGKILL)

    def setUp(self):
        self.home = Home()
        self.addCleanup(self.home.remove)
        if self.is_introduced:
            self.home.mark_as_introduced()
        self.keyring = Keyring()
        self.keyring.clear()
        self.started = []
        self.addCleanup(self._end_programs)
        self.program = self.start() if self.starts else None

    def start(self, *arguments, **environment):
        """Starts another process of the program in this test's home, with these changes of the environment."""
        program = Program(PROGRAM, self.home, arguments, environment)
        self.started.append(program)
        return program

    def file(self, name, content="content\n"):
        """Creates a file in the home's Documents."""
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
            # A process that ended by itself, such as on a sanitizer's finding, fails the test even if nothing waits for it.
            self.assertIn(program.kill(), self.exit_codes, program.log)

    def _failed(self):
        # unittest records failures only in the outcome of the running test.
        result = self._outcome.result
        return any(test is self for test, _ in result.failures + result.errors) or not self._outcome.success


def main():
    # Starts the session's services first, so that their output does not appear among the results.
    Program.start_bus()
    unittest.main(verbosity=2, warnings="ignore")
