#!/usr/bin/python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""The controls of the preferences: what they are called, what they store, and what they show after a restart."""

import json

import flows
from desktop_driver import SPIN, SWITCH, click, key, type_text
from preferences_case import PERIOD, STORED, PreferencesTest
from window_case import main

# Each switch of a section: its name, what a screen reader adds to it, its key, and its state in an empty home.
GENERAL = (
    ("Launch at login", "When enabled, Quillhaven will start automatically when you sign into your Mac", "startAtLogin", False),
    ("Start hidden, in the tray", "Quillhaven shows no window when it starts at login", "startHiddenAtLogin", False),
    ("Auto-Lock", None, "isAutoLockEnabled", False),
    ("Lock on sleep", "Starts to lock every item when the computer goes to sleep", "lockOnSleep", False),
    ("Smart Auto-Lock", "Advanced auto-lock rules for system events", "smartAutoLockEnabled", False),
)
SECURITY = (
    ("Touch ID for unlocking", "When enabled, you can use Touch ID to unlock protected files and folders",
     "enableTouchID", True),
    ("Enforce strong passwords", "When enabled, strong passwords will be required for all protected items",
     "enforceStrongPasswords", True),
    ("iCloud Backup", "iCloud is not available. Please sign in to iCloud in System Preferences.", "enableiCloudBackup", False),
)
RULES = {"Lock on screen saver": "lockOnScreenSaver", "Lock on screen lock": "lockOnSystemLock",
         "Lock on user logout/switch": "lockOnUserSwitch"}


def minutes(count):
    return f"Lock after {count} minute{'' if count == 1 else 's'} of inactivity"


class Switches(PreferencesTest):
    def check(self, section, switches):
        """Turns each switch of a section over, starts the program again, and turns it back."""
        self.open(section)
        for name, description, setting, initial in switches:
            with self.subTest(name):
                if description is not None:
                    self.assertEqual(self.find_below(SWITCH, name).description, description)
                self.switch(name, not initial)
                self.wait_for_stored(setting, STORED[not initial])
        self.start_again()
        self.open(section)
        for name, _, setting, initial in switches:
            with self.subTest(f"{name} after a restart"):
                self.switch(name, initial)
                self.wait_for_stored(setting, STORED[initial])

    def test_each_switch_of_general_is_stored_and_shown_again_after_a_restart(self):
        self.check("General", GENERAL)

    def test_each_switch_of_security_is_stored_and_shown_again_after_a_restart(self):
        # Without a folder for backups they may still be switched on.
        self.check("Security", SECURITY)

    def test_a_press_with_the_space_bar_and_with_return_switches(self):
        self.open("Security")
        box = self.reach(SWITCH, "Enforce strong passwords")
        key("space")
        self.wait_for_switch(box.name, False)
        key("Return")
        self.wait_for_switch(box.name, True)
        self.wait_for_stored("enforceStrongPasswords", STORED[True])

    def test_a_second_process_changes_what_is_shown(self):
        self.open("Security")
        for name, _, setting, initial in SECURITY:
            self.switch(name, not initial)
            self.home.change_setting(setting, STORED[initial])
            self.wait_for_switch(name, initial)
        self.program.press("page tab", "Switch to General settings")
        self.switch("Lock on sleep", True)
        self.home.change_setting("lockOnSleep", STORED[False])
        self.wait_for_switch("Lock on sleep", False)
        self.switch("Start hidden, in the tray", True)
        self.home.change_setting("startHiddenAtLogin", STORED[False])
        self.wait_for_switch("Start hidden, in the tray", False)

    def test_the_switch_of_auto_lock_without_the_master_password_appears_with_one(self):
        name = "Lock without asking for the master password"
        self.open("General")
        self.reach(SWITCH, "Lock on sleep")
        self.assertIsNone(self.program.look(SWITCH, name))
        self.escape()
        flows.set_master_password(self.program)
        self.open("General")
        self.switch(name, True)
        self.wait_for_stored("autoLockWithoutMasterPassword", STORED[True])
        self.assertEqual(self.find_below(SWITCH, name).description,
                         "Items are locked at once, also while nobody is there.")


class Rules(PreferencesTest):
    def rules(self):
        stored = self.stored("smartAutoLockRules")
        return json.loads(stored) if stored else {}

    def press_without_effect(self):
        """Presses each rule, and then another switch, which is stored after them."""
        shown = self.shown()
        for name in RULES:
            self.find_below(SWITCH, name).press()
        self.switch("Lock on sleep", not self.find_below(SWITCH, "Lock on sleep").has("checked"))
        self.assertEqual(self.shown(), shown)

    def shown(self):
        return {name: self.find_below(SWITCH, name).has("checked") for name in RULES}

    def test_the_rules_can_be_switched_only_while_smart_auto_lock_is_on(self):
        self.open("General")
        self.press_without_effect()
        self.assertEqual(self.rules(), {})
        self.switch("Smart Auto-Lock", True)
        for name, rule in RULES.items():
            with self.subTest(name):
                before = self.find_below(SWITCH, name).has("checked")
                self.switch(name, not before)
                self.program.wait_for(lambda: self.rules().get(rule) == (not before), f"{rule} to be stored")
        shown = self.shown()
        stored = self.rules()
        self.start_again()
        self.open("General")
        self.assertEqual(self.shown(), shown)
        self.switch("Smart Auto-Lock", False)
        self.press_without_effect()
        self.assertEqual(self.rules(), stored)

    def test_the_keyboard_passes_over_them_while_it_is_off(self):
        self.open("General")
        self.reach(SWITCH, "Smart Auto-Lock")
        key("Tab")
        self.wait_for_focus("Repair: File manager menus")
        self.switch("Smart Auto-Lock", True)
        for name in RULES:
            key("Tab")
            self.wait_for_focus(name)


class Period(PreferencesTest):
    def setUp(self):
        super().setUp()
        self.open("General")

    def wait_for_minutes(self, count):
        self.program.wait_for(lambda: self.program.look(SPIN, minutes(count)), f"the label of {count} minutes")
        self.program.wait_for(lambda: self.program.look(SPIN, minutes(count)).value == count, f"the value {count}")
        self.wait_for_stored("autoLockMinutes", str(count).encode())

    def enter(self, number):
        """Types a number over the one that is there."""
        self.reach(SPIN, PERIOD)
        key("ctrl+a")
        type_text(number)
        key("Return")

    def test_the_keys_change_it_by_one_minute_and_the_label_says_minute_for_one(self):
        self.assertEqual(self.reach(SPIN, PERIOD).value, 5)
        key("Up")
        self.wait_for_minutes(6)
        for count in (5, 4, 3, 2, 1):
            key("Down")
            self.wait_for_minutes(count)

    def test_it_stops_at_one_and_at_120(self):
        self.enter("2")
        self.wait_for_minutes(2)
        key("Down", "Down", "Down")
        self.wait_for_minutes(1)
        key("Up")
        self.wait_for_minutes(2)
        self.enter("119")
        self.wait_for_minutes(119)
        key("Up", "Up", "Up")
        self.wait_for_minutes(120)
        key("Down")
        self.wait_for_minutes(119)
        spin = self.find_below(SPIN, PERIOD)
        self.assertEqual(spin.range, (1, 120))

    def test_a_number_outside_is_never_stored(self):
        for number in ("0", "121", "500", "-3"):
            self.enter(number)
            key("Tab")
            spin = self.find_below(SPIN, PERIOD)
            self.assertIn(int(spin.value), range(1, 121), number)
            stored = int(self.stored("autoLockMinutes") or 5)
            self.assertEqual(stored, spin.value, number)
        self.enter("30")
        self.wait_for_minutes(30)

    def test_a_typed_number_counts_when_the_focus_leaves_and_after_a_restart(self):
        self.reach(SPIN, PERIOD)
        key("ctrl+a")
        type_text("17")
        key("Tab")
        self.wait_for_minutes(17)
        self.start_again()
        self.open("General")
        self.program.wait_for(lambda: self.find_below(SPIN, minutes(17)).value == 17, "the stored period")

    def test_a_number_that_was_typed_before_escape_is_stored(self):
        self.reach(SPIN, PERIOD)
        key("ctrl+a")
        type_text("23")
        self.escape()
        self.wait_for_stored("autoLockMinutes", b"23")

    def test_a_second_process_changes_the_number(self):
        self.enter("8")
        self.wait_for_minutes(8)
        self.home.change_setting("autoLockMinutes", b"41")
        self.wait_for_minutes(41)

    def test_its_buttons_are_pressed_with_the_pointer(self):
        x, y, width, height = self.reach(SPIN, PERIOD).bounds
        click(x + width - height // 2, y + height // 2)
        self.wait_for_minutes(6)
        click(x + height // 2, y + height // 2)
        self.wait_for_minutes(5)


if __name__ == "__main__":
    main()
