# SPDX-License-Identifier: GPL-3.0-or-later

"""Drives a file manager in a folder: opens the context menu of what is selected, reads the program's entries in it, and
chooses one. The program is replaced by one that notes how it was started."""

import json
import os
import shlex
import shutil
import sqlite3
import subprocess
import tempfile
from pathlib import Path

import gi

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi, Gio, GLib  # noqa: E402

from desktop_driver import DesktopError, key, screenshot, wait_for  # noqa: E402

TITLE = "Quillhaven"
LABELS = ("Protect", "Unlock", "Lock", "Secure Shred")
# In the order of the manager's attempts to open; a slow machine needs more than one.
ATTEMPTS = 8
END = b"END\0"


class Home:
    """A user's home with the registered menus and a folder to look at."""

    def __init__(self, extension):
        self.path = Path(tempfile.mkdtemp(prefix="menus-"))
        self.folder = self.path / "folder"
        self.folder.mkdir()
        self.config = self.path / ".config"
        self.extension = extension
        self.started_path = self._program("program", "started")
        self.notified_path = self._program("bin/notify-send", "notified")

    def environment(self):
        # Nothing of the test's own session; GTK draws with the processor.
        return {**os.environ, "HOME": str(self.path), "XDG_CONFIG_HOME": str(self.config),
                "XDG_DATA_HOME": str(self.path / ".local/share"), "XDG_CACHE_HOME": str(self.path / ".cache"),
                "PATH": f"{self.path}/bin:{os.environ['PATH']}", "QUILLHAVEN_PROGRAM": str(self.path / "program"),
                "GSK_RENDERER": "cairo", "GDK_BACKEND": "x11", "GTK_A11Y": "atspi", "LC_ALL": "C.UTF-8"}

    def _program(self, name, notes):
        program, place = self.path / name, self.path / notes
        program.parent.mkdir(exist_ok=True)
        program.write_text(f"#!/bin/bash\nprintf '%s\\0' \"$@\" END >>{shlex.quote(str(place))}\n")
        program.chmod(0o755)
        return place

    def register(self):
        self._registry("-a", self.extension)

    def _registry(self, *arguments):
        return subprocess.run([self.extension / "quillhaven-pluginkit", *arguments], check=True, text=True,
                              stdout=subprocess.PIPE, env=self.environment()).stdout

    def reload(self):
        return self._registry("reload")

    def file(self, name):
        path = self.folder / name
        path.write_text("content\n")
        return path

    @property
    def _database(self):
        return self.config / "quillhaven/TQ4WZ81KDR.com.quillhaven.shared.db"

    def publish(self, *items):
        """Publishes items, each a path and whether it is unlocked, as the program does."""
        self._database.parent.mkdir(parents=True, exist_ok=True)
        with sqlite3.connect(self._database) as shared:
            shared.execute("CREATE TABLE IF NOT EXISTS defaults (key TEXT PRIMARY KEY, type TEXT NOT NULL, value BLOB)")
            shared.execute("CREATE TABLE IF NOT EXISTS elements (position INTEGER PRIMARY KEY, key TEXT NOT NULL, "
                           "id TEXT NOT NULL, value BLOB NOT NULL)")
            shared.execute("INSERT OR REPLACE INTO defaults VALUES ('ProtectedItems', 'array', ?)", (os.urandom(4),))
            shared.execute("DELETE FROM elements")
            for path, is_unlocked in items:
                summary = {"id": str(path), "originalName": path.name, "originalPath": str(path), "isFolder": False,
                           "isMounted": is_unlocked}
                shared.execute("INSERT INTO elements (key, id, value) VALUES ('ProtectedItems', ?, ?)",
                               (str(path), json.dumps(summary).encode()))
        shared.close()
        for path, _ in items:
            # The program puts another file into the place of an item. A manager keeps the entries of a selection until
            # it sees that.
            place = path.with_name(".new")
            place.write_text("content\n")
            place.replace(path)

    def take_notes(self, place):
        """Waits until the noting program has run, and returns its arguments."""
        wait_for(lambda: place.exists() and place.read_bytes().endswith(END), f"{place.name} to be written")
        arguments = place.read_bytes().removesuffix(END).split(b"\0")[:-1]
        place.unlink()
        return arguments

    def take_request(self):
        """The action and the path that the program is asked for, when it is started to look at the shared domain."""
        started = self.take_notes(self.started_path)
        if started != [b"quillhaven://show-main-window"]:
            raise DesktopError(f"The program was started with {started}")
        with sqlite3.connect(self._database) as shared:
            record = json.loads(shared.execute("SELECT value FROM defaults WHERE key = 'PendingAction'").fetchone()[0])
            shared.execute("DELETE FROM defaults WHERE key = 'PendingAction'")
        shared.close()
        return record["action"], record["path"]

    def remove(self):
        shutil.rmtree(self.path, ignore_errors=True)


class FileManagerWindow:
    """A window of a file manager that shows the folder of a Home."""

    def __init__(self, home, window_class, command):
        self.log_path = home.path / "manager.log"
        with open(self.log_path, "wb") as log:
            self.process = subprocess.Popen(command, env=home.environment(), stdin=subprocess.DEVNULL, stdout=log,
                                            stderr=subprocess.STDOUT)
        self.window_class = window_class
        wait_for(self._windows, f"a window of {command[0]}", explain=self.log)
        subprocess.run(["xdotool", "windowactivate", "--sync", self._windows()[-1]], check=True)

    def _windows(self):
        found = subprocess.run(["xdotool", "search", "--onlyvisible", "--class", self.window_class],
                               capture_output=True, text=True, check=False)
        return found.stdout.split()

    def log(self):
        return self.log_path.read_text(errors="replace")[-2000:]

    def close(self, failure_picture=None):
        if failure_picture:
            Path(failure_picture).parent.mkdir(parents=True, exist_ok=True)
            screenshot(failure_picture)
        self.process.terminate()
        try:
            self.process.wait(10)
        except subprocess.TimeoutExpired:
            self.process.kill()
            self.process.wait()

    def select_all(self):
        key("ctrl+a")


class AccessibleWindow(FileManagerWindow):
    """One whose menus are on the accessibility bus (GTK)."""

    @staticmethod
    def enable():
        bus = Gio.bus_get_sync(Gio.BusType.SESSION)
        enabled = GLib.Variant("(ssv)", ("org.a11y.Status", "IsEnabled", GLib.Variant("b", True)))
        bus.call_sync("org.a11y.Bus", "/org/a11y/bus", "org.freedesktop.DBus.Properties", "Set", enabled, None,
                      Gio.DBusCallFlags.NONE, -1, None)

    def _menu_items(self):
        """The visible items and submenus of menus, each with its name."""
        desktop = Atspi.get_desktop(0)
        desktop.clear_cache()
        for index in range(desktop.get_child_count()):
            try:
                application = desktop.get_child_at_index(index)
                if application and application.get_process_id() == self.process.pid:
                    yield from self._walk(application)
            except GLib.Error:
                continue

    def _walk(self, node):
        try:
            node.clear_cache()
            states = node.get_state_set()
            if node.get_role_name() in ("menu", "menu item") and self._counts(states):
                yield node.get_name() or "", node, states.contains(Atspi.StateType.SHOWING)
            for index in range(node.get_child_count()):
                child = node.get_child_at_index(index)
                if child:
                    yield from self._walk(child)
        except GLib.Error:
            return

    @staticmethod
    def _counts(states):
        """An entry that does not fit is there too, but invisible."""
        return states.contains(Atspi.StateType.VISIBLE)

    def _is_open(self):
        return any(showing and name.startswith(TITLE) for name, _, showing in self._menu_items())

    def open_menu_with(self, entries):
        """Opens the menu until it has these entries of the program: a manager hears of a change a moment later."""
        for _ in range(ATTEMPTS):
            self.open_menu()
            found = self.entries()
            if found == entries:
                return
            self.close_menu()
        raise DesktopError(f"The entries are {found}, not {entries}.\n{self.log()}")

    def close_menu(self):
        key("Escape")
        key("Escape")

    def open_menu(self):
        """Opens the context menu of the selection with the keyboard, until it has entries of the program."""
        for _ in range(ATTEMPTS):
            self.select_all()
            key("shift+F10")
            try:
                wait_for(self._is_open, "the menu", seconds=3)
                return
            except DesktopError:
                key("Escape")
        raise DesktopError(f"The menu has no {TITLE}.\n{self.log()}")

    def entries(self):
        """The program's entries in the open menu."""
        names = [name.removeprefix(TITLE + ": ") for name, _, _ in self._menu_items()]
        return list(dict.fromkeys(name for name in names if name in LABELS))

    def choose(self, label):
        for name, node, _ in self._menu_items():
            if name.removeprefix(TITLE + ": ") == label:
                Atspi.Action.do_action(node.get_action_iface(), 0)
                break
        else:
            raise DesktopError(f"There is no entry {label}")
        self.close_menu()


class NautilusWindow(AccessibleWindow):
    """It is opened with a file selected, which gives the focus to the files."""

    # GTK 4 says of no item in a menu that it is shown, and has those of an open menu only.
    @staticmethod
    def _counts(_states):
        return True

    def _is_open(self):
        return any(name == TITLE for name, _, _ in self._menu_items())


class KeyboardWindow(FileManagerWindow):
    """One whose popup menus are not on the accessibility bus (Qt 5)."""

    def open_popup(self, *keys):
        """Presses the keys, and waits for one more window of the manager."""
        before = len(self._windows())
        key(*keys)
        wait_for(lambda: len(self._windows()) > before, f"a menu after {keys}", seconds=4)

    def open_menu(self):
        for _ in range(ATTEMPTS):
            self.select_all()
            try:
                self.open_popup("Menu")
                return
            except DesktopError:
                key("Escape")
        raise DesktopError(f"There is no menu.\n{self.log()}")

    def open_submenu(self, mnemonic):
        """Opens the context menu, and in it a submenu. The menu may not have the keyboard yet when the key comes."""
        for _ in range(ATTEMPTS):
            self.open_menu()
            try:
                self.open_popup(mnemonic)
                return
            except DesktopError:
                key("Escape")
        raise DesktopError(f"There is no submenu for {mnemonic}.\n{self.log()}")

    def wait_until_closed(self):
        wait_for(lambda: len(self._windows()) == 1, "the menus to close")

    def choose_by(self, mnemonic):
        """Presses the key of an entry until the menus close: a submenu may not have the keyboard yet."""
        for _ in range(ATTEMPTS):
            key(mnemonic)
            try:
                wait_for(lambda: len(self._windows()) == 1, "the menus to close", seconds=4)
                return
            except DesktopError:
                continue
        raise DesktopError(f"The menus stay open.\n{self.log()}")
