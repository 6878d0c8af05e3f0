#!/usr/bin/python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""The entries in the context menus of the file managers, with the real managers."""

import os
import unittest
from pathlib import Path

from desktop_driver import key
from file_manager import AccessibleWindow, Home, KeyboardWindow, NautilusWindow
from home_on_disk import ROOT

EXTENSION = Path(os.environ["QUILLHAVEN_EXTENSION"])
PICTURES = ROOT / "build" / "window-failures"
ODD = "it's a \"plain\" 50% $file\nwith two lines"


class MenuTest(unittest.TestCase):
    def setUp(self):
        self.home = Home(EXTENSION)
        self.addCleanup(self.home.remove)
        self.home.register()

    def open(self, kind, window_class, *command):
        window = kind(self.home, window_class, [str(word) for word in command])
        self.addCleanup(self.close, window)
        return window

    def close(self, window):
        # unittest records failures only in the outcome of the running test.
        result = self._outcome.result
        failed = any(test is self for test, _ in result.failures + result.errors) or not self._outcome.success
        window.close(PICTURES / f"{self.id()}.png" if failed else None)


class DynamicMenus(MenuTest):
    """Managers that show only what fits."""

    def check(self, window, path):
        for items, entries, action in (((), ["Protect", "Secure Shred"], "protect"),
                                       (((path, False),), ["Unlock", "Secure Shred"], "unlock"),
                                       (((path, True),), ["Lock", "Secure Shred"], "lock")):
            with self.subTest(action=action):
                self.home.publish(*items)
                window.open_menu_with(entries)
                window.choose(entries[0])
                self.assertEqual(self.home.take_request(), (action, str(path)))
        window.open_menu()
        window.choose("Secure Shred")
        self.assertEqual(self.home.take_request(), ("shred", str(path)))

    def check_several(self, window, first, second):
        self.home.publish((first, True), (second, True))
        window.open_menu_with(["Lock", "Secure Shred"])
        window.choose("Lock")
        urls = sorted(self.home.take_notes(self.home.started_path))
        self.assertEqual([url.rsplit(b"/", 1)[1] for url in urls], [b"a%2520b.txt", b"c.txt"])
        self.home.publish((first, True))
        window.open_menu_with(["Secure Shred"])

    def test_nautilus(self):
        path = self.home.file(ODD)
        AccessibleWindow.enable()
        self.check(self.open(NautilusWindow, "nautilus", "nautilus", "--new-window", "--select", path), path)

    def test_nemo(self):
        path = self.home.file(ODD)
        AccessibleWindow.enable()
        self.check(self.open(AccessibleWindow, "nemo", "nemo", self.home.folder), path)

    def test_caja(self):
        path = self.home.file(ODD)
        AccessibleWindow.enable()
        self.check(self.open(AccessibleWindow, "caja", "caja", "--no-desktop", self.home.folder), path)

    def test_several_items_in_nemo(self):
        files = self.home.file("a b.txt"), self.home.file("c.txt")
        AccessibleWindow.enable()
        self.check_several(self.open(AccessibleWindow, "nemo", "nemo", self.home.folder), *files)

    def test_several_items_in_caja(self):
        files = self.home.file("a b.txt"), self.home.file("c.txt")
        AccessibleWindow.enable()
        self.check_several(self.open(AccessibleWindow, "caja", "caja", "--no-desktop", self.home.folder), *files)

    def test_pcmanfm_qt(self):
        path = self.home.file(ODD)
        window = self.open(KeyboardWindow, "pcmanfm-qt", "pcmanfm-qt", self.home.folder)

        def choose(position):
            window.open_menu()
            key("Up")
            key("Up")
            key("Up")  # past "Properties" and "Compress"
            window.open_popup("Right")
            for _ in range(position):
                key("Down")
            key("Return")
            action, chosen = self.home.take_request()
            window.wait_until_closed()
            self.assertEqual(chosen, str(path))
            return action

        for items, first in (((), "protect"), (((path, False),), "unlock"), (((path, True),), "lock")):
            with self.subTest(action=first):
                self.home.publish(*items)
                # The third is the first again: there are two.
                self.assertEqual([choose(position) for position in range(3)], [first, "shred", first])


class StaticMenus(MenuTest):
    """Managers that always show every entry: the tool does only what fits, and says the rest."""

    def check(self, choose, path):
        for items, label, action in (((), "Protect", "protect"), (((path, False),), "Unlock", "unlock"),
                                     (((path, True),), "Lock", "lock"), (((path, True),), "Secure Shred", "shred")):
            with self.subTest(action=action):
                self.home.publish(*items)
                choose(label)
                request = self.home.take_request()
                for _ in range(3):
                    if request[1] != str(self.home.folder):
                        break
                    choose(label)  # The key that selects the file was lost: it was the menu of the folder.
                    request = self.home.take_request()
                self.assertEqual(request, (action, str(path)))
        choose("Unlock")
        self.assertEqual(self.home.take_notes(self.home.notified_path)[-1], b"This item is not locked by Quillhaven.")
        self.assertFalse(self.home.started_path.exists())

    def test_thunar(self):
        path = self.home.file(ODD)
        AccessibleWindow.enable()
        window = self.open(AccessibleWindow, "thunar", "thunar", self.home.folder)

        def choose(label):
            window.open_menu()
            self.assertEqual(window.entries(), ["Protect", "Unlock", "Lock", "Secure Shred"])
            window.choose(label)

        self.check(choose, path)

    def test_dolphin(self):
        path = self.home.file(ODD)
        window = self.open(KeyboardWindow, "dolphin", "dolphin", self.home.folder)

        def choose(label):
            window.open_submenu("q")
            window.choose_by(label[0].lower())

        self.check(choose, path)


class Reloading(MenuTest):
    def test_no_window_is_closed_and_open_managers_are_named(self):
        self.home.file("a.txt")
        window = self.open(KeyboardWindow, "thunar", "thunar", self.home.folder)
        self.assertIn("Thunar", self.home.reload())
        self.assertIsNone(window.process.poll())
        self.assertEqual(len(window._windows()), 1)


if __name__ == "__main__":
    unittest.main()
