#!/usr/bin/python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""The look of the window follows the settings portal of the desktop while the program runs."""

import json
import subprocess

import dbus

from desktop_driver import wait_for
from home_on_disk import ROOT
from window_case import WindowTest, main

PORTAL = ("org.freedesktop.portal.Desktop", "/org/freedesktop/portal/desktop")
SETTINGS = "org.freedesktop.portal.Settings"
MOCK = "org.freedesktop.DBus.Mock"
USUAL = "050D1D"
HIGH_CONTRAST = "000000"


class DisplayTest(WindowTest):
    starts = False

    def start_portal(self, contrast):
        """A double with this contrast. There is no desktop here whose portal could be told to change."""
        template = ROOT / "tests" / "support" / "settings_portal.py"
        process = subprocess.Popen(["/usr/bin/python3", "-m", "dbusmock", "--session", "--template", str(template),
                                    "--parameters", json.dumps({"contrast": contrast})],
                                   stdout=subprocess.DEVNULL)
        self.addCleanup(process.wait)
        self.addCleanup(process.terminate)
        subprocess.run(["gdbus", "wait", "--session", "--timeout", "20", PORTAL[0]], check=True)
        self.portal = dbus.SessionBus(private=True).get_object(*PORTAL)

    def set_contrast(self, contrast):
        self.portal.EmitSignal(SETTINGS, "SettingChanged", "ssv",
                               ["org.freedesktop.appearance", "contrast", dbus.UInt32(contrast)], dbus_interface=MOCK)

    def expect_background(self, color):
        """Waits until the edge of the main window has this colour."""
        self.program.wait_until_active()
        x, y, _, height = next(each for each in self.program.windows() if each.name == "Quillhaven").bounds

        def look():
            place = f"1x1+{x + 4}+{y + height - 4}"
            command = ["import", "-silent", "-window", "root", "-crop", place, "+repage", "-depth", "8", "rgb:-"]
            return subprocess.run(command, check=True, capture_output=True).stdout.hex().upper() == color

        wait_for(look, f"the background to be {color}")

    def test_a_portal_that_comes_while_the_window_is_open_is_followed(self):
        self.program = self.start()
        self.expect_background(USUAL)
        self.start_portal(contrast=1)
        self.expect_background(HIGH_CONTRAST)
        self.set_contrast(0)
        self.expect_background(USUAL)
        self.set_contrast(1)
        self.expect_background(HIGH_CONTRAST)

    def test_a_wish_from_before_the_start_counts(self):
        self.start_portal(contrast=1)
        self.program = self.start()
        self.expect_background(HIGH_CONTRAST)


if __name__ == "__main__":
    main()
