#!/usr/bin/python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""A program that keeps its passwords in KeePassXC, over several starts."""

from keepassxc_session import PASSWORD, KeePassXCTest
from keyring_session import DECLINED, DUPLICATE, NOT_FOUND, SUCCESS, key, main, type_text, wait_for_window


class KeePassXC(KeePassXCTest):
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
