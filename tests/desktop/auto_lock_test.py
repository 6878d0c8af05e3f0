#!/usr/bin/python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""Locking by itself at the desktop's events, with doubles of logind, a screen saver and a notification server that speak
their protocols."""

import subprocess

import dbus
import flows
from desktop_driver import BUTTON, DIALOG, SWITCH, key
from window_case import WindowTest, main

MOCK = "org.freedesktop.DBus.Mock"
LOGIND = ("org.freedesktop.login1", "/org/freedesktop/login1")
NOTIFICATIONS = ("org.freedesktop.Notifications", "/org/freedesktop/Notifications")
SAVER = ("org.gnome.ScreenSaver", "/org/gnome/ScreenSaver")


class AutoLock(WindowTest):
    starts = False

    def setUp(self):
        super().setUp()
        self.double("--system", "logind", LOGIND[0])
        self.double("--session", "gnome_screensaver", SAVER[0])
        self.logind = dbus.SystemBus(private=True).get_object(*LOGIND)
        self.saver = dbus.SessionBus(private=True).get_object(*SAVER)
        path = self.logind.AddSession("c1", "seat0", dbus.UInt32(0), "me", True, dbus_interface=MOCK)
        self.session = dbus.SystemBus(private=True).get_object(LOGIND[0], path)
        self.program = self.start(XDG_SESSION_ID="c1")
        self.letter = self.file("letter.txt")
        flows.protect_with_password(self.program, self.letter)
        flows.unlock(self.program, "letter.txt")

    def double(self, bus, template, name):
        """Starts a double, and waits until it has its name."""
        process = subprocess.Popen(["/usr/bin/python3", "-m", "dbusmock", bus, "--template", template],
                                   stdout=subprocess.DEVNULL)
        self.addCleanup(process.wait)
        self.addCleanup(process.terminate)
        subprocess.run(["gdbus", "wait", bus, "--timeout", "20", name], check=True)

    def switch(self, *names):
        """Presses these switches in the preferences."""
        flows.open_preferences(self.program, "General")
        for name in names:
            self.program.press(SWITCH, name)
            self.program.wait_for(lambda: self.program.look(SWITCH, name).has("checked"), f'"{name}" to be on')
        key("Escape")
        self.program.gone(DIALOG, flows.PREFERENCES)

    def below(self, role, name):
        """Returns a part of the sheet, also when it has to be scrolled to."""
        self.program.find(DIALOG, flows.PREFERENCES)
        return next(node for node in self.program.walk() if node.role == role and node.name == name)

    def prepare_for_sleep(self, is_before):
        self.logind.EmitSignal("org.freedesktop.login1.Manager", "PrepareForSleep", "b", [is_before],
                               dbus_interface=MOCK)

    def lock_screen(self):
        self.session.SetLockedHint(True, dbus_interface="org.freedesktop.login1.Session")

    def start_saver(self):
        self.saver.SetActive(True, dbus_interface="org.gnome.ScreenSaver")

    def assert_nothing_is_locked(self, line):
        """After the program has handled the event."""
        self.program.wait_for_log(line)
        flows.row(self.program, "letter.txt", "unlocked")

    def test_sleep_locks_when_its_switch_is_on(self):
        self.prepare_for_sleep(True)
        self.assert_nothing_is_locked("Lock on sleep is disabled, skipping auto-lock")
        self.prepare_for_sleep(False)
        self.switch("Lock on sleep")
        self.prepare_for_sleep(True)
        flows.row(self.program, "letter.txt", "locked")

    def test_the_lock_of_the_screen_locks_when_the_rules_are_on(self):
        self.switch("Smart Auto-Lock")
        self.lock_screen()
        flows.row(self.program, "letter.txt", "locked")
        self.assertEqual(self.program.log.count("Screen lock detected"), 1)

    def test_a_lock_is_notified_while_the_window_is_away_and_a_click_brings_the_window_back(self):
        self.double("--session", "notification_daemon", NOTIFICATIONS[0])
        server = dbus.SessionBus(private=True).get_object(*NOTIFICATIONS)
        messages = lambda: [call[1] for call in server.GetMethodCalls("Notify", dbus_interface=MOCK)]
        self.switch("Smart Auto-Lock", "Lock on sleep")
        self.prepare_for_sleep(True)
        flows.row(self.program, "letter.txt", "locked")
        flows.unlock(self.program, "letter.txt")
        self.assertEqual(messages(), [], "the user has seen it in the window")
        is_active = lambda: any(window.has("active") for window in self.program.windows())
        subprocess.run(["xdotool", "getactivewindow", "windowminimize"], check=True)
        self.program.wait_for(lambda: not is_active(), "the window to be away")
        self.lock_screen()
        self.program.wait_for(messages, "a notification")
        (message,) = messages()
        self.assertEqual(message[3:5], ["Quillhaven", "1 item was locked because the screen was locked."])
        server.EmitSignal(NOTIFICATIONS[0], "ActionInvoked", "us", [dbus.UInt32(1), "default"], dbus_interface=MOCK)
        self.program.wait_until_active()
        flows.row(self.program, "letter.txt", "locked")

    def test_the_screen_saver_locks_when_its_rule_is_on(self):
        self.switch("Smart Auto-Lock", "Lock on screen saver")
        self.start_saver()
        flows.row(self.program, "letter.txt", "locked")

    def test_with_a_master_password_the_lock_waits_for_it_unless_that_is_allowed(self):
        flows.set_master_password(self.program)
        self.switch("Lock on sleep")
        self.prepare_for_sleep(True)
        flows.enter_master_password(self.program)
        flows.row(self.program, "letter.txt", "locked")
        flows.unlock(self.program, "letter.txt", master_password=flows.MASTER_PASSWORD)
        self.prepare_for_sleep(False)
        self.switch("Lock without asking for the master password")
        self.prepare_for_sleep(True)
        flows.row(self.program, "letter.txt", "locked")

    def test_the_preferences_say_what_is_watched_and_lock_everything(self):
        self.program.press(BUTTON, "Preferences")
        for name, words in (("Keyboard and pointer", "XInput"), ("Sleep", "logind"), ("Screen lock", "logind"),
                            ("Screen saver", "GNOME")):
            self.assertIn(words, self.below("panel", name).description)
        self.below(BUTTON, "Lock Everything Now").press()
        flows.row(self.program, "letter.txt", "locked")


if __name__ == "__main__":
    main()
