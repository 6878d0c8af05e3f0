# SPDX-License-Identifier: GPL-3.0-or-later

"""KeePassXC with its default access settings: every new client has to be allowed to read each entry."""

import os
import re
import subprocess
from pathlib import Path

from keyring_session import KeyringTest, wait_for_window, wait_until_replaced

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


class KeePassXCTest(KeyringTest):
    """Starts KeePassXC with a new database that is open."""

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
        request = wait_for_window(REQUEST)
        self.desktop.find("push button", re.compile(button)).press()
        wait_until_replaced(REQUEST, request)
