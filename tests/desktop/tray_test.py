#!/usr/bin/python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""The status item in a real panel, its popover and its menu, and closing the main window into it."""

import subprocess

import flows
from accessible_screen import Screen
from bus_events import AppearedNotifications
from desktop_driver import BUTTON, DIALOG, LABEL, ROW, key, wait_for
from panel import Panel
from window_case import WindowTest, main

POPOVER = "Quillhaven Items"
MAIN = "Quillhaven"


def window_state():
    """"Normal", "Iconic", or nothing while the main window is hidden or does not exist."""
    answer = subprocess.run(["xprop", "-name", MAIN, "WM_STATE"], capture_output=True, text=True)
    states = [line.split(":")[1].strip() for line in answer.stdout.splitlines() if "window state" in line]
    return states[0] if states and states[0] != "Withdrawn" else None


class TrayTest(WindowTest):
    has_panel = True

    def setUp(self):
        self.panel = Panel()
        self.addCleanup(self.panel.stop)
        if self.has_panel:
            self.panel.start()
        super().setUp()

    def popover(self, program=None):
        """Waits for the popover."""
        program = program or self.program

        def look():
            return next((each for each in program.windows() if each.name == POPOVER and each.showing), None)

        return program.wait_for(look, "the popover")

    def popover_gone(self, program=None):
        program = program or self.program
        program.wait_for(lambda: not any(each.name == POPOVER and each.showing for each in program.windows()),
                         "the popover to close")

    def in_popover(self, role, name, program=None):
        program = program or self.program
        return program.wait_for(lambda: self.popover(program).find(role, name), f'"{name}" in the popover')

    def opened(self, program=None):
        """Opens the popover with a click on the icon, and waits until it has the keyboard."""
        self.panel.click()
        program = program or self.program
        program.wait_for(lambda: self.popover(program).has("active"), "the popover to become active")
        return self.popover(program)

    def close_main_window(self, program=None):
        program = program or self.program
        program.wait_for(lambda: any(each.name == MAIN and each.has("active") for each in program.windows()),
                         "the main window to become active")
        self.press_close()

    def press_close(self):
        def closed():
            # The window manager may miss a key while it moves the focus.
            if window_state() == "Normal":
                key("alt+F4")
            return window_state() != "Normal"

        wait_for(closed, "the main window to close")

    def wait_for_state(self, state):
        wait_for(lambda: window_state() == state, f"the main window to be {state or 'hidden'}")


class ThePopover(TrayTest):
    def test_a_click_on_the_icon_opens_it_and_a_second_one_closes_it(self):
        self.program.find(BUTTON, flows.PROTECT)
        for _ in range(2):
            popover = self.opened()
            self.assertIsNotNone(popover.find(LABEL, "0 items"))
            self.assertIsNotNone(popover.find(LABEL, "No protected items"))
            self.assertEqual(popover.bounds[2:], (300, 400))
            self.assertGreaterEqual(popover.bounds[1], 32)
            self.panel.click()
            self.popover_gone()

    def test_a_screen_reader_finds_its_controls_in_their_order(self):
        flows.protect_with_password(self.program, self.file("letter.txt"))
        popover = self.opened()
        self.program.wait_for(lambda: self.popover().find("list", "Protected Items").has("focused"), "the focus on the list")
        shown = Screen(self.program, popover)
        self.assertEqual(shown.problems, [])
        self.assertEqual(shown.disabled, [])

    def test_escape_closes_it(self):
        self.program.find(BUTTON, flows.PROTECT)
        self.opened()
        key("Escape")
        self.popover_gone()
        self.assertTrue(self.program.is_running())

    def test_a_click_elsewhere_closes_it(self):
        self.program.find(BUTTON, flows.PROTECT)
        self.opened()
        self.program.find(LABEL, "Drag & Drop files or folders here to protect").click()
        self.popover_gone()

    def test_a_click_on_a_row_unlocks_and_locks_the_item(self):
        letter = self.file("letter.txt")
        flows.protect_with_password(self.program, letter)
        self.opened()
        self.in_popover(ROW, "letter.txt, locked").click()
        flows.enter_item_password(self.program, "letter.txt")
        flows.grant_access(self.program)
        flows.row(self.program, "letter.txt", "unlocked")
        self.assertEqual(letter.read_text(), "content\n")
        self.opened()
        self.in_popover(LABEL, "1 Active")
        self.in_popover(ROW, "letter.txt, unlocked").click()
        self.in_popover(ROW, "letter.txt, locked")
        self.in_popover(LABEL, "1 Secured")
        self.assertNotEqual(letter.read_bytes(), b"content\n")

    def test_the_keyboard_reaches_the_rows_and_the_buttons(self):
        letter = self.file("letter.txt")
        flows.protect_with_password(self.program, letter)
        flows.unlock(self.program, "letter.txt")
        self.opened()
        key("space")
        self.in_popover(ROW, "letter.txt, locked")
        key("Tab", "Tab")
        self.program.wait_for(lambda: self.popover().find(BUTTON, "About Quillhaven").has("focused"), "the focus on About")

    def unlocked(self):
        """Protects and unlocks an item, and returns what is announced."""
        heard = AppearedNotifications()
        self.addCleanup(heard.stop)
        flows.protect_with_password(self.program, self.file("letter.txt"))
        flows.unlock(self.program, "letter.txt")
        self.program.wait_for(lambda: "letter.txt, unlocked" in heard.texts(), "an announcement")
        return heard

    def check_lock_is_announced_once(self, heard):
        before = heard.texts()
        self.opened()
        key("space")
        self.program.wait_for(lambda: len(heard.texts()) > len(before), "an announcement")
        self.in_popover(LABEL, "1 Secured")
        self.assertEqual(heard.texts(), [*before, "letter.txt, locked"])

    def test_what_it_locks_is_announced_once_while_the_main_window_is_shown(self):
        self.check_lock_is_announced_once(self.unlocked())

    def test_what_it_locks_is_announced_while_the_main_window_is_hidden(self):
        heard = self.unlocked()
        self.close_main_window()
        self.wait_for_state(None)
        self.check_lock_is_announced_once(heard)

    def test_a_refused_master_password_changes_nothing(self):
        flows.protect_with_password(self.program, self.file("letter.txt"))
        flows.set_master_password(self.program)
        before = self.home.catalogue()
        self.opened()
        self.in_popover(ROW, "letter.txt, locked").press()
        self.in_popover(BUTTON, "Cancel").press()
        self.in_popover(ROW, "letter.txt, locked")
        self.assertEqual(self.home.catalogue(), before)

    def test_a_failure_is_shown(self):
        flows.protect_with_password(self.program, self.file("letter.txt"))
        for each in self.home.storage.iterdir():
            each.unlink()
        self.opened()
        self.in_popover(ROW, "letter.txt, locked").press()
        flows.enter_item_password(self.program, "letter.txt")
        self.in_popover(DIALOG, "Error")
        self.in_popover(BUTTON, "OK").press()
        self.in_popover(ROW, "letter.txt, locked")

    def test_quit_ends_the_program(self):
        self.program.find(BUTTON, flows.PROTECT)
        self.opened()
        self.in_popover(BUTTON, "Quit").click()
        self.assertEqual(self.program.wait(), 0)
        self.panel.item_gone()


class ClosingTheMainWindow(TrayTest):
    def test_it_is_hidden_and_the_popover_brings_it_back(self):
        self.program.find(BUTTON, flows.PROTECT)
        self.panel.item()
        self.close_main_window()
        self.wait_for_state(None)
        self.assertTrue(self.program.is_running())
        self.opened()
        self.in_popover(BUTTON, "Open Quillhaven").click()
        self.wait_for_state("Normal")
        self.popover_gone()
        self.program.wait_until_active()

    def test_a_second_start_brings_it_back(self):
        self.program.find(BUTTON, flows.PROTECT)
        self.panel.item()
        self.close_main_window()
        self.wait_for_state(None)
        self.assertEqual(self.start().wait(), 0)
        self.wait_for_state("Normal")

    def test_it_stays_hidden_when_it_is_closed_as_soon_as_it_appears(self):
        self.program.find(BUTTON, flows.PROTECT)
        self.panel.item()
        self.close_main_window()
        self.wait_for_state(None)
        second = self.start()
        self.wait_for_state("Normal")
        self.press_close()
        self.assertEqual(second.wait(), 0)
        self.opened()
        self.assertIsNone(window_state())

    def test_control_q_ends_the_program(self):
        self.program.find(BUTTON, flows.PROTECT)
        self.program.wait_until_active()
        key("ctrl+q")
        self.assertEqual(self.program.wait(), 0)

    def test_a_hidden_program_obeys_a_request_to_end(self):
        self.program.find(BUTTON, flows.PROTECT)
        self.panel.item()
        self.close_main_window()
        self.wait_for_state(None)
        self.assertEqual(self.program.quit(), 0)

    def test_it_comes_back_minimized_when_the_panel_has_gone(self):
        self.program.find(BUTTON, flows.PROTECT)
        self.panel.item()
        self.close_main_window()
        self.wait_for_state(None)
        self.panel.stop()
        self.wait_for_state("Iconic")
        self.assertEqual(self.start().wait(), 0)
        self.wait_for_state("Normal")


class TheMenu(TrayTest):
    def test_it_has_four_entries(self):
        self.program.find(BUTTON, flows.PROTECT)
        self.assertEqual(set(self.panel.menu_entries()), {"Open", "Lock All", "Preferences", "Quit"})

    def test_open_brings_the_main_window_back(self):
        self.program.find(BUTTON, flows.PROTECT)
        self.panel.item()
        self.close_main_window()
        self.wait_for_state(None)
        self.panel.choose("Open")
        self.wait_for_state("Normal")

    def test_lock_all_locks_every_item(self):
        letter, notes = self.file("letter.txt"), self.file("notes.txt")
        for each in (letter, notes):
            flows.protect_with_password(self.program, each)
            flows.unlock(self.program, each.name)
        self.panel.choose("Lock All")
        for each in (letter, notes):
            flows.row(self.program, each.name, "locked")

    def test_preferences_opens_them_in_the_main_window(self):
        self.program.find(BUTTON, flows.PROTECT)
        self.panel.item()
        self.close_main_window()
        self.wait_for_state(None)
        self.panel.choose("Preferences")
        self.wait_for_state("Normal")
        self.program.find(DIALOG, flows.PREFERENCES)

    def test_quit_ends_the_program(self):
        self.program.find(BUTTON, flows.PROTECT)
        self.panel.choose("Quit")
        self.assertEqual(self.program.wait(), 0)


class StartingAtLogin(TrayTest):
    starts = False

    def test_the_icon_opens_the_popover_and_no_window_is_shown(self):
        program = self.start("--login-item")
        self.opened(program)
        self.in_popover(LABEL, "0 items", program)
        self.assertIsNone(window_state())
        self.in_popover(BUTTON, "About Quillhaven", program).click()
        self.wait_for_state("Normal")

    def test_what_the_popover_locks_is_announced_without_a_main_window(self):
        first = self.start()
        flows.protect_with_password(first, self.file("letter.txt"))
        flows.unlock(first, "letter.txt")
        self.assertEqual(first.quit(), 0)
        self.panel.item_gone()
        program = self.start("--login-item")
        self.opened(program)
        heard = AppearedNotifications()
        self.addCleanup(heard.stop)
        key("space")
        self.in_popover(ROW, "letter.txt, locked", program)
        program.wait_for(heard.texts, "an announcement")
        self.assertEqual(heard.texts(), ["letter.txt, locked"])

    def test_a_question_finds_a_window_that_was_never_shown(self):
        first = self.start()
        flows.protect_with_password(first, self.file("letter.txt"))
        flows.unlock(first, "letter.txt")
        flows.set_master_password(first)
        self.assertEqual(first.quit(), 0)
        self.panel.item_gone()
        program = self.start("--login-item")
        self.panel.choose("Lock All")
        flows.enter_master_password(program)
        flows.row(program, "letter.txt", "locked")


class WithoutAPanel(TrayTest):
    has_panel = False

    def test_closing_the_window_minimizes_it_and_a_second_start_brings_it_back(self):
        self.program.find(BUTTON, flows.PROTECT)
        self.close_main_window()
        self.wait_for_state("Iconic")
        self.assertTrue(self.program.is_running())
        self.assertEqual(self.start().wait(), 0)
        self.wait_for_state("Normal")
        self.program.wait_until_active()

    def test_a_panel_that_starts_later_gets_the_icon(self):
        self.program.find(BUTTON, flows.PROTECT)
        self.panel.start()
        self.opened()
        self.panel.click()
        self.popover_gone()
        self.close_main_window()
        self.wait_for_state(None)


if __name__ == "__main__":
    main()
