#!/usr/bin/python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""KWallet through its Secret Service interface: a new wallet, and one that is closed at the next start."""

import os
import re
import subprocess

from keyring_session import (DECLINED, DUPLICATE, NO_COLLECTION, NOT_FOUND, SUCCESS, KeyringTest, key, main, type_text,
                             wait_for)

PASSWORD = "wallet password"


class KWallet(KeyringTest):
    def setUp(self):
        super().setUp()
        self.kwalletd = self.open()

    def open(self):
        environment = {**os.environ, "XDG_DATA_HOME": str(self.folder / "data"),
                       "XDG_CONFIG_HOME": str(self.folder / "config"), "HOME": str(self.folder)}
        process = self.daemon("kwalletd5", env=environment)
        self.wait_for_name()
        return process

    def reopen(self):
        """A new session: the wallet is closed. KWallet writes it some seconds after the last change."""
        wallet = self.folder / "data" / "kwalletd" / "Default keyring.kwl"
        before = wallet.stat().st_mtime_ns
        wait_for(lambda: wallet.stat().st_mtime_ns > before, "KWallet to write the wallet", 30)
        self.end_daemon(self.kwalletd)
        self.kwalletd = self.open()
        # KWallet has its name before it offers the wallet.
        wait_for(self.offers_wallet, "KWallet to offer the wallet", 30)

    @staticmethod
    def offers_wallet():
        answer = subprocess.run(["gdbus", "call", "--session", "-d", "org.freedesktop.secrets", "-o",
                                 "/org/freedesktop/secrets", "-m", "org.freedesktop.DBus.Properties.Get",
                                 "org.freedesktop.Secret.Service", "Collections"], capture_output=True, text=True)
        return "/collection/" in answer.stdout

    def press(self, button, role="push button"):
        self.desktop.find(role, re.compile(button)).press()

    def create_wallet(self):
        self.press("^Classic", "radio button")
        self.press("^Finish$")
        self.desktop.find("label", "Verify:")
        self.wait_for_focus()
        type_text(PASSWORD)
        key("Tab")
        type_text(PASSWORD)
        self.press("^OK$")

    def enter_password(self):
        self.desktop.find("label", "Password:")
        self.wait_for_focus()
        type_text(PASSWORD)
        self.press("^OK$")

    def wait_for_focus(self):
        self.desktop.wait_for(lambda: any(node.has("focused") for node in self.desktop.find_all("password text")),
                              "the focus on the password")

    def test_entries_are_stored_in_a_new_wallet_and_read_at_the_next_start(self):
        first = self.start("prepare", "add one first", "add two second", "read one")
        self.create_wallet()
        self.assertEqual(first.answers(), [SUCCESS, SUCCESS, SUCCESS, f"{SUCCESS} first"])
        self.reopen()

        second = self.start("read one", "update one changed", "read one", "add two again")
        self.enter_password()
        self.assertEqual(second.answers(), [f"{SUCCESS} first", SUCCESS, f"{SUCCESS} changed", DUPLICATE])
        self.reopen()

        third = self.start("read one", "remove two", "read two")
        self.enter_password()
        self.assertEqual(third.answers(), [f"{SUCCESS} changed", SUCCESS, NOT_FOUND])

    def test_a_wallet_that_the_user_does_not_open_is_a_refusal(self):
        declined = self.start("prepare")
        self.press("^Cancel$")
        self.assertEqual(declined.answers(), [NO_COLLECTION])
        first = self.start("prepare", "add one first")
        self.create_wallet()
        self.assertEqual(first.answers(), [SUCCESS, SUCCESS])
        self.reopen()
        second = self.start("read one", "read one")
        self.press("^Cancel$")
        self.assertEqual(second.answers(), [DECLINED, DECLINED])


if __name__ == "__main__":
    main()
