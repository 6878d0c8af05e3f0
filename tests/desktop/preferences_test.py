#!/usr/bin/python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""The sheet with the preferences: how it opens and closes."""

import flows
from desktop_driver import BUTTON, DIALOG, key
from window_case import WindowTest, main


class Preferences(WindowTest):
    def setUp(self):
        super().setUp()
        self.program.find(BUTTON, flows.PROTECT)
        self.program.wait_until_active()

    def test_the_button_of_the_toolbar_opens_the_sheet_and_close_closes_it(self):
        self.program.press(BUTTON, "Preferences")
        self.program.find(DIALOG, "Preferences")
        self.program.press(BUTTON, "Close")
        self.program.gone(DIALOG, "Preferences")

    def test_control_comma_opens_the_sheet_and_escape_closes_it(self):
        key("ctrl+comma")
        self.program.find(DIALOG, "Preferences")
        key("Escape")
        self.program.gone(DIALOG, "Preferences")
        self.program.find(BUTTON, flows.PROTECT)


if __name__ == "__main__":
    main()
