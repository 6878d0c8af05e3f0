# SPDX-License-Identifier: GPL-3.0-or-later

"""The base of the tests of the preferences: finds their controls, also where the sheet must be scrolled for them."""

import re
import subprocess

import flows
from desktop_driver import BUTTON, DIALOG, SWITCH, key
from window_case import WindowTest

CLOSE = "Close Settings"
PERIOD = re.compile("^Lock after")
STORED = {True: b"1", False: b"0"}


class PreferencesTest(WindowTest):
    def setUp(self):
        super().setUp()
        if self.program:
            self.wait_for_window()

    def wait_for_window(self):
        self.program.find(BUTTON, flows.PROTECT)
        self.program.wait_until_active()

    def open(self, section=None):
        """Opens the preferences, and waits until the focus has come to rest."""
        flows.open_preferences(self.program)
        self.wait_for_focus(CLOSE)
        if section is not None:
            self.program.press("page tab", f"Switch to {section} settings")
            self.program.find(None, f"{section} section")

    def start_again(self):
        self.assertEqual(self.program.quit(), 0, self.program.log)
        self.program = self.start()
        self.wait_for_window()

    def resize(self, width, height):
        """Gives the main window another size."""
        pid = str(self.program.process.pid)
        window = subprocess.run(["xdotool", "search", "--onlyvisible", "--pid", pid, "--name", "Quillhaven"], check=True,
                                capture_output=True, text=True).stdout.split()[0]
        subprocess.run(["xdotool", "windowsize", window, str(width), str(height)], check=True)
        self.program.wait_for(lambda: self.program.find("frame", None).bounds[2:] == (width, height), "the size")

    def wait_for_focus(self, name):
        self.program.wait_for(lambda: (focused := self.program.focused()) and focused.name == name,
                              f"the focus on {name}")

    def below(self, role, name):
        """Returns a control of the sheet, wherever the sheet is scrolled to, or None. The bus does not distinguish one that
        is out of view from one that is hidden."""
        for node in self.program.walk():
            if node.role == role and (name.search(node.name) if isinstance(name, re.Pattern) else node.name == name):
                return node
        return None

    def find_below(self, role, name):
        return self.program.wait_for(lambda: self.below(role, name), f"{role} {name} in the sheet")

    def reach(self, role, name):
        """Gives a control the focus, which scrolls it into view."""
        control = self.find_below(role, name)
        control.focus()
        self.program.wait_for(lambda: control.showing, f"{control} to be in view")
        return control

    def press(self, role, name):
        self.reach(role, name).press()

    def press_in_sheet(self, title, button):
        """Presses a button of the sheet with this title, which is above others."""
        self.program.wait_for(lambda: (sheet := self.program.look(DIALOG, title)) and sheet.find(BUTTON, button),
                              f'"{button}" in "{title}"').press()

    def stored(self, setting):
        """Returns the bytes of a setting in the file, None if it was never written."""
        value = self.home.settings().get(setting)
        return value.encode() if isinstance(value, str) else value

    def wait_for_stored(self, setting, value):
        self.program.wait_for(lambda: self.stored(setting) == value, f"{setting} to be stored as {value}")

    def wait_for_switch(self, name, is_on):
        self.program.wait_for(lambda: (box := self.below(SWITCH, name)) and box.has("checked") == is_on,
                              f"{name} to be {'on' if is_on else 'off'}")

    def switch(self, name, is_on):
        """Presses a switch, and waits until it shows the state."""
        self.wait_for_switch(name, not is_on)
        self.press(SWITCH, name)
        self.wait_for_switch(name, is_on)

    def escape(self):
        key("Escape")
        self.program.gone(DIALOG, flows.PREFERENCES)
