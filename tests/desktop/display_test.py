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
        bus = dbus.SessionBus(private=True)
        broker = dbus.Interface(bus.get_object("org.freedesktop.DBus", "/"), "org.freedesktop.DBus")

        def has_name():  # which the portal of the machine may have before
            return bus.name_has_owner(PORTAL[0]) and broker.GetConnectionUnixProcessID(PORTAL[0]) == process.pid

        wait_for(has_name, "the double of the portal")
        self.portal = bus.get_object(*PORTAL)

    def change(self, space, key, value):
        values = dbus.Array([space, key, value], signature="v")
        self.portal.EmitSignal(SETTINGS, "SettingChanged", "ssv", values, dbus_interface=MOCK)

    def set_contrast(self, contrast):
        self.change("org.freedesktop.appearance", "contrast", dbus.UInt32(contrast))

    def set_text_scale(self, scale):
        self.change("org.gnome.desktop.interface", "text-scaling-factor", dbus.Double(scale))

    def bounds(self, name):
        return self.program.find("push button", name).bounds

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

    def test_the_texts_grow_and_shrink_while_the_window_is_open(self):
        self.start_portal(contrast=0)
        self.program = self.start()
        usual = self.bounds("Protect New Item")
        self.set_text_scale(2.0)
        wait_for(lambda: self.bounds("Protect New Item")[3] > usual[3] and self.bounds("Protect New Item")[2] > usual[2],
                 "a larger button")
        self.set_text_scale(1.0)
        wait_for(lambda: self.bounds("Protect New Item") == usual, "the usual size")

    def test_the_text_is_not_enlarged_where_the_display_enlarges_everything(self):
        subprocess.run(["xrdb", "-merge"], input=b"Xft.dpi: 192\n", check=True)
        self.addCleanup(subprocess.run, ["xrdb", "-merge"], input=b"Xft.dpi: 96\n", check=True)
        self.start_portal(contrast=0)
        self.program = self.start()
        enlarged = self.bounds("Protect New Item")
        self.set_text_scale(2.0)
        self.set_contrast(1) # seen after the scale
        self.expect_background(HIGH_CONTRAST)
        self.assertEqual(self.bounds("Protect New Item"), enlarged)

    def test_the_layout_runs_from_right_to_left_where_the_language_does(self):
        self.start_portal(contrast=0)
        for language, is_mirrored in (("ar_EG.UTF-8", True), ("he_IL.UTF-8", True), ("de_DE.UTF-8", False)):
            with self.subTest(language):
                self.program = self.start(LC_ALL="", LANG=language)
                self.program.wait_until_active()
                self.assertEqual(self.bounds("Preferences")[0] < self.bounds("Protect New Item")[0], is_mirrored)
                self.program.quit()
                self.program.wait()


if __name__ == "__main__":
    main()
