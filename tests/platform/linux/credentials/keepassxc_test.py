#!/usr/bin/python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""KeePassXC with its default access settings: every new client has to be allowed to read each entry."""

import os
import re
import subprocess
from pathlib import Path

from keyring_session import (DECLINED, DUPLICATE, NOT_FOUND, SUCCESS, KeyringTest, key, main, type_text,
                             wait_for_window, wait_until_gone)

PASSWORD = "database password"
REQUEST = "Access Request"

SETTINGS = """[General]
ConfigVersion=2
UpdateCheckMessageShown=true

[FdoSecrets]
Enabled=true
"""
# A database whose root group is offered to other programs.
DATABASE = """<?xml version="1.0" encoding="UTF-8" standalone="yes"?>
<KeePassFile>
  <Meta>
    <RecycleBinEnabled>True</RecycleBinEnabled>
    <CustomData>
      <Item>
        <Key>FDO_SECRETS_EXPOSED_GROUP</Key>
        <Value>{9a2f0a0e-5c3a-4b0e-8a52-6f0f5c8d1a01}</Value>
      </Item>
    </CustomData>
  </Meta>
  <Root><Group><UUID>mi8KDlw6Sw6KUm8PXI0aAQ==</UUID><Name>Root</Name></Group></Root>
</KeePassFile>
"""


class KeePassXC(KeyringTest):
    def setUp(self):
        super().setUp()
        settings = Path(os.environ["XDG_CONFIG_HOME"], "keepassxc", "keepassxc.ini")
        settings.parent.mkdir(parents=True, exist_ok=True)
        settings.write_text(SETTINGS)
        self.database = self.folder / "passwords.kdbx"
        (self.folder / "new.xml").write_text(DATABASE)
        subprocess.run(["keepassxc-cli", "import", "-p", self.folder / "new.xml", self.database], check=True, text=True,
                       input=f"{PASSWORD}\n{PASSWORD}\n", capture_output=True)
        self.keepassxc = self.open()

    def open(self):
        process = self.daemon("keepassxc", "--pw-stdin", str(self.database), stdin=subprocess.PIPE)
        process.stdin.write(f"{PASSWORD}\n".encode())
        process.stdin.close()
        self.wait_for_name()
        wait_for_window("^passwords.kdbx - KeePassXC")
        return process

    def press(self, button):
        wait_for_window(REQUEST)
        self.desktop.find("push button", re.compile(button)).press()
        wait_until_gone(REQUEST)

    def test_entries_are_stored_and_read_at_the_next_start_after_the_user_allows_it(self):
        self.assertEqual(self.answers("prepare", "add one first", "add two second", "read one"),
                         [SUCCESS, SUCCESS, SUCCESS, f"{SUCCESS} first"])
        second = self.start("read one", "update one changed", "read one", "add two again")
        self.press("Allow Selected")
        self.press("Allow Selected")
        self.assertEqual(second.answers(), [f"{SUCCESS} first", SUCCESS, f"{SUCCESS} changed", DUPLICATE])

        third = self.start("read two", "remove one", "read one")
        self.press("Allow Selected")
        self.press("Allow Selected")
        self.assertEqual(third.answers(), [f"{SUCCESS} second", SUCCESS, NOT_FOUND])

    def test_a_denied_request_is_a_refusal(self):
        self.assertEqual(self.answers("add one first"), [SUCCESS])
        second = self.start("read one", "read one")
        self.press("Deny All.*")
        self.assertEqual(second.answers(), [DECLINED, DECLINED])

    def test_a_locked_database_is_unlocked_at_its_own_prompt(self):
        self.assertEqual(self.answers("add one first"), [SUCCESS])
        self.end_daemon(self.keepassxc)
        self.keepassxc = self.daemon("keepassxc", str(self.database))
        self.wait_for_name()
        second = self.start("prepare", "read one")
        wait_for_window("Unlock Database")
        type_text(PASSWORD)
        key("Return")
        self.press("Allow Selected")
        self.assertEqual(second.answers(), [SUCCESS, f"{SUCCESS} first"])


if __name__ == "__main__":
    main()
