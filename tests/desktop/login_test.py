#!/usr/bin/python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""The start at login: its switch in the window, and what a session then starts."""

import os
import signal
import subprocess
from pathlib import Path

import flows
from desktop_driver import BUTTON, DIALOG, SWITCH, Program, key, wait_for
from window_case import PROGRAM, WindowTest, main

AT_LOGIN = "Launch at login"
HIDDEN = "Start hidden, in the tray"
# Two independent readers of autostart entries: that of the Openbox session, and a generic one.
SESSIONS = (["/usr/lib/x86_64-linux-gnu/openbox-xdg-autostart", "TEST"], ["dex", "--autostart", "--environment", "TEST"])


class StartedBySession:
    """A process that somebody else has started, with the operations of subprocess.Popen that the driver uses."""

    returncode = 0

    def __init__(self, pid):
        self.pid = pid

    def poll(self):
        try:
            state = Path(f"/proc/{self.pid}/stat").read_text().rsplit(")", 1)[1].split()[0]
        except OSError:
            return 0
        return 0 if state == "Z" else None

    def send_signal(self, number):
        os.kill(self.pid, number)

    def kill(self):
        self.send_signal(signal.SIGKILL)

    def wait(self, seconds=20):
        wait_for(lambda: self.poll() is not None, f"process {self.pid} to end", seconds)
        return self.returncode


class ProgramOfSession(Program):
    """The program as a session starts it from the entries of a home; `process` is None if it was not started."""

    def __init__(self, home, command):
        self.home = home
        self.log_path = home.path / "session.log"
        nothing = home.path / "no-system-entries"
        environment = {**home.environment(), "QT_LINUX_ACCESSIBILITY_ALWAYS_ON": "1", "XDG_CONFIG_DIRS": str(nothing),
                       "XDG_CURRENT_DESKTOP": "TEST"}
        with open(self.log_path, "ab") as log:
            session = subprocess.Popen(command, env=environment, stdin=subprocess.DEVNULL, stdout=log, stderr=log,
                                       start_new_session=True)
        session.wait(20)
        pids = [int(path.name) for path in Path("/proc").glob("[0-9]*") if self._is_ours(path, session.pid)]
        # Without the tools that the program itself runs at its start.
        pids = [pid for pid in pids if self._parent(pid) not in pids]
        assert len(pids) <= 1, pids
        self.process = StartedBySession(pids[0]) if pids else None

    @staticmethod
    def _parent(pid):
        try:
            return int(Path(f"/proc/{pid}/stat").read_text().rsplit(")", 1)[1].split()[1])
        except OSError:
            return None

    @staticmethod
    def _is_ours(path, session):
        try:
            # The shell of a session tool may not have replaced itself by the program yet.
            return os.getsid(int(path.name)) == session and (path / "cmdline").read_bytes() != b""
        except OSError:
            return False


class LoginTest(WindowTest):
    def setUp(self):
        super().setUp()
        self.entry = self.home.config / "autostart" / "com.tarnwick.quillhaven.desktop"

    def open_preferences(self, program=None):
        program = program or self.program
        program.find(BUTTON, flows.PROTECT)
        program.wait_until_active()
        key("ctrl+comma")
        program.find(DIALOG, flows.PREFERENCES)

    def switch(self, name, expected):
        """Presses a switch, and waits until it shows the state."""
        self.program.find(SWITCH, name).press()
        self.program.wait_for(lambda: (box := self.program.look(SWITCH, name)) and box.has("checked") == expected
                              and box.usable, f"{name} to be {expected}")

    def keys_of_entry(self):
        return dict(line.split("=", 1) for line in self.entry.read_text().splitlines() if "=" in line)

    def setting(self, name):
        """Returns whether a Boolean setting is stored as true."""
        return self.home.settings().get(name) in ("1", b"1")

    def session_starts(self, command):
        program = ProgramOfSession(self.home, command)
        if program.process:
            self.addCleanup(program.kill)
        return program


class TheSwitch(LoginTest):
    def test_the_switch_writes_and_removes_the_entry_and_the_setting(self):
        self.open_preferences()
        self.switch(AT_LOGIN, True)
        self.program.says("Launch at login enabled")
        self.assertEqual(self.keys_of_entry()["Exec"], str(PROGRAM))
        self.program.wait_for(lambda: self.setting("startAtLogin"), "the setting to be stored")
        self.switch(AT_LOGIN, False)
        self.assertFalse(self.entry.exists())
        self.program.wait_for(lambda: not self.setting("startAtLogin"), "the setting to be stored")

    def test_the_hidden_start_is_an_argument_of_the_entry(self):
        self.open_preferences()
        self.switch(AT_LOGIN, True)
        self.switch(HIDDEN, True)
        self.program.wait_for(lambda: self.keys_of_entry()["Exec"] == f"{PROGRAM} --login-item", "the entry to change")
        self.assertTrue(self.setting("startHiddenAtLogin"))
        self.switch(HIDDEN, False)
        self.program.wait_for(lambda: self.keys_of_entry()["Exec"] == str(PROGRAM), "the entry to change")

    def test_a_start_without_the_wish_removes_an_entry_and_one_with_it_writes_it_again(self):
        self.open_preferences()
        self.switch(AT_LOGIN, True)
        self.program.wait_for(lambda: self.setting("startAtLogin"), "the setting to be stored")
        self.assertEqual(self.program.quit(), 0)
        self.entry.unlink()
        self.program = self.start()
        self.program.wait_for(self.entry.exists, "the entry to be written again")
        self.open_preferences()
        self.program.wait_for(lambda: self.program.find(SWITCH, AT_LOGIN).has("checked"), "the switch to be on")

    def test_an_entry_of_another_program_is_left_and_the_error_offers_its_actions(self):
        self.entry.parent.mkdir()
        other = "[Desktop Entry]\nType=Application\nName=Other\nExec=/bin/true\n"
        self.entry.write_text(other)
        self.open_preferences()
        self.program.find(SWITCH, AT_LOGIN).press()
        self.program.says(f'Failed to register app for launch at login: The file "{self.entry}" starts another program, '
                          "so it was left as it is.")
        self.program.says("Failed to set launch at login: Failed to register app for launch at login: The file "
                          f'"{self.entry}" starts another program, so it was left as it is.')
        self.program.press(BUTTON, "OK")
        self.program.says("Error occurred")
        self.assertFalse(self.program.find(SWITCH, AT_LOGIN).has("checked"))
        self.assertEqual(self.entry.read_text(), other)
        self.program.press(BUTTON, "Retry in 2s")
        self.program.says("Ready to retry")
        self.program.gone(BUTTON, "Retry in 2s")

    def test_the_keyboard_alone_switches_it_on(self):
        self.open_preferences()
        for name in ("Close Settings", "Switch to General settings", "Switch to Security settings", AT_LOGIN):
            self.program.wait_for(lambda: (focused := self.program.focused()) and focused.name == name,
                                  f"the focus on {name}")
            if name != AT_LOGIN:
                key("Tab")
        key("space")
        self.program.wait_for(lambda: self.program.look(SWITCH, AT_LOGIN).has("checked"), "the switch to be on")
        self.assertTrue(self.entry.exists())
        self.program.wait_for(lambda: (focused := self.program.focused()) and focused.name == AT_LOGIN,
                              "the focus to stay on the switch")
        key("space")
        self.program.wait_for(lambda: not self.entry.exists(), "the entry to be removed")
        key("Escape")
        self.program.gone(DIALOG, flows.PREFERENCES)

    def test_a_restart_ends_this_process_and_starts_the_next(self):
        self.entry.parent.mkdir()
        self.entry.write_text("[Desktop Entry]\nType=Application\nExec=/bin/true\n")
        self.open_preferences()
        self.program.find(SWITCH, AT_LOGIN).press()
        self.program.press(BUTTON, "OK")
        self.program.press(BUTTON, "Restart app")
        self.program.says("Restart Required")
        known = {self.program.process.pid}
        self.program.press(BUTTON, "Restart Now")
        self.assertEqual(self.program.wait(), 0)
        again = self.find_program(known)
        self.addCleanup(again.kill)
        again.find(BUTTON, flows.PROTECT)

    def find_program(self, known):
        """Returns the program that has been started in place of the known processes."""
        found = Program.__new__(Program)
        found.home, found.log_path = self.home, self.program.log_path

        def look():
            for path in Path("/proc").glob("[0-9]*"):
                try:
                    if (int(path.name) not in known
                            and (path / "cmdline").read_bytes().split(b"\0")[0] == str(PROGRAM).encode()
                            and f"HOME={self.home.path}".encode() in (path / "environ").read_bytes().split(b"\0")):
                        return int(path.name)
                except OSError:
                    continue
            return None

        found.process = StartedBySession(wait_for(look, "the next process"))
        return found


class TheSession(LoginTest):
    """What a session starts from the entry that the switch has written."""

    def prepare(self, hidden):
        self.open_preferences()
        self.switch(AT_LOGIN, True)
        if hidden:
            self.switch(HIDDEN, True)
            self.program.wait_for(lambda: "--login-item" in self.keys_of_entry()["Exec"], "the entry to change")
        self.program.wait_for(lambda: self.setting("startAtLogin"), "the setting to be stored")
        self.assertEqual(self.program.quit(), 0)

    def test_the_window_appears_at_login(self):
        self.prepare(hidden=False)
        for command in SESSIONS:
            with self.subTest(command[0]):
                program = self.session_starts(command)
                program.find(BUTTON, flows.PROTECT)
                self.assertEqual(program.quit(), 0)

    def test_no_window_appears_at_login_with_the_hidden_start_until_the_program_is_started(self):
        self.prepare(hidden=True)
        for command in SESSIONS:
            with self.subTest(command[0]):
                program = self.session_starts(command)
                program.wait_for(program.root, "the program to be on the accessibility bus")
                program.wait_for(lambda: "App launched in background mode (login item)" in program.log, "the launch")
                self.assertFalse(program.shows(BUTTON, flows.PROTECT))
                self.assertEqual(self.start().wait(), 0)
                program.find(BUTTON, flows.PROTECT)
                self.assertEqual(program.quit(), 0)
                program.log_path.unlink()

    def test_nothing_starts_when_the_switch_is_off_again(self):
        self.open_preferences()
        self.switch(AT_LOGIN, True)
        self.switch(AT_LOGIN, False)
        self.assertEqual(self.program.quit(), 0)
        for command in SESSIONS:
            with self.subTest(command[0]):
                self.assertIsNone(self.session_starts(command).process)


if __name__ == "__main__":
    main()
