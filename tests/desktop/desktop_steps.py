# SPDX-License-Identifier: GPL-3.0-or-later

"""The steps of the tour outside the main window: the tray, a file manager, an idle period and a start at login."""

import re

import flows
from desktop_driver import BUTTON, DIALOG, ROW, SPIN, SWITCH, DesktopError, key
from file_manager import AccessibleWindow
from login_test import SESSIONS, ProgramOfSession
from panel import Panel

POPOVER = "Quillhaven Items"
IDLE_SECONDS = 90


class DesktopSteps:
    """The steps; the class of the tour has the rest."""

    def in_the_tray(self):
        self.step("Start a panel, and use the icon in it")
        self.panel = Panel()
        self.panel.start()
        self.panel.item()
        self.did("the icon appeared, though the panel came after the program")
        self.click_icon()
        self.shot("popover")
        self.in_popover(flows.re.compile("^letter.txt")).press()
        self.program.says("Enter the password for 'letter.txt':")
        self.shot("popover-password")
        flows.enter_item_password(self.program, "letter.txt")
        flows.grant_access(self.program)
        flows.row(self.program, "letter.txt", "unlocked")
        self.did("a press on the row unlocked the file")
        self.check_unchanged(self.letter)
        if not self.popover():
            self.click_icon()
        self.in_popover(flows.re.compile("^letter.txt.*unlocked")).press()
        flows.row(self.program, "letter.txt", "locked")
        self.did("another press locked it")
        self.shot("popover-locked")
        if self.popover():
            self.panel.click()

    def click_icon(self):
        self.panel.click()
        self.program.wait_for(self.popover, "the popover")

    def popover(self):
        return next((each for each in self.program.windows() if each.name == POPOVER and each.showing), None)

    def in_popover(self, name):
        return self.program.wait_for(lambda: (shown := self.popover()) and shown.find(ROW, name), f"{name} in the popover")

    def in_a_file_manager(self):
        self.step("Protect a file from Thunar's menu")
        folder = self.home.path / "Work"
        folder.mkdir()
        self.plan = folder / "plan.txt"
        self.plan.write_text("the plan\n")
        self.program.wait_for(lambda: (self.home.config / "Thunar" / "uca.xml").exists(), "the menu's entries")
        self.found("the program has registered its entries in Thunar's list of actions")
        AccessibleWindow.enable()
        manager = AccessibleWindow(self.home, "Thunar", ["thunar", str(folder)])
        try:
            manager.open_menu()
            self.shot("thunar-menu")
            manager.choose("Protect")
            self.did('chose "Quillhaven" and "Protect" in the menu')
            self.program.says("Protect plan.txt")
            self.shot("handed-over")
        finally:
            manager.close()
        self.program.press(BUTTON, flows.re.compile(f"^{flows.PASSWORD_CARD}"))
        flows.enter_new_password(self.program, flows.ITEM_PASSWORD)
        flows.grant_access(self.program)
        flows.row(self.program, "plan.txt", "locked")
        self.did('the list reads "plan.txt, locked"')

    def when_idle(self):
        self.step("Switch auto-lock on, and wait for a minute without input")
        flows.unlock(self.program, "plan.txt")
        self.open_preferences()
        self.program.press(SWITCH, "Auto-Lock")
        self.program.find(SPIN, re.compile("^Lock after 5")).focus()
        for _ in range(4):
            key("Down")
        self.program.wait_for(lambda: self.program.look("panel", "Lock after 1 minute of inactivity"), "the period")
        self.shot("auto-lock")
        key("Escape")
        self.program.gone(DIALOG, flows.PREFERENCES)
        self.program.find(ROW, "plan.txt, locked", seconds=IDLE_SECONDS)
        self.did("it was locked by itself")
        self.shot("locked-when-idle")
        self.open_preferences()
        self.program.press(SWITCH, "Auto-Lock")
        key("Escape")
        self.program.gone(DIALOG, flows.PREFERENCES)
        flows.remove_protection(self.program, "plan.txt")
        self.check(self.plan.read_text() == "the plan\n", "plan.txt is back, as it was")

    def open_preferences(self):
        flows.open_preferences(self.program, "General")

    def at_login(self):
        self.step("Switch the start at login on, hidden, and log in")
        self.open_preferences()
        for name in ("Launch at login", "Start hidden, in the tray"):
            self.program.press(SWITCH, name)
            self.program.wait_for(lambda: (box := self.program.look(SWITCH, name)) and box.has("checked"), name)
        entry = self.home.config / "autostart" / "com.tarnwick.quillhaven.desktop"
        self.program.wait_for(lambda: "--login-item" in entry.read_text(), "the entry")
        self.shot("launch-at-login")
        key("Escape")
        self.end_program()
        self.program = ProgramOfSession(self.home, SESSIONS[0])
        if not self.program.process:
            raise DesktopError(f"The session did not start the program.\n{self.program.log}")
        self.did("a session that reads the autostart entries has started the program")
        self.panel.item()
        self.check(not any(each.showing for each in self.program.windows()), "no window is shown")
        self.shot("after-login")
        self.click_icon()
        self.shot("popover-after-login")
        self.program.process.send_signal(15)
        self.program.process.wait()
        self.panel.stop()
        self.found("the program has ended")
