# SPDX-License-Identifier: GPL-3.0-or-later

"""A temporary home folder, and what a test reads in it: files with all their properties, settings, the keyring."""

import hashlib
import json
import os
import shutil
import sqlite3
import stat
import subprocess
import tempfile
from pathlib import Path

import gi

gi.require_version("Secret", "1")
from gi.repository import Gio, GLib, Secret  # noqa: E402

ROOT = Path(__file__).resolve().parents[2]
OWN_DOMAIN = "com.tarnwick.quillhaven"
SHARED_DOMAIN = "TQ4WZ81KDR.com.quillhaven.shared"
PLACEHOLDER = b"This file is protected by Quillhaven. Use the app to unlock it."


class Home:
    """A temporary home folder, on the disk of the build (which supports extended attributes and access lists)."""

    def __init__(self):
        parent = ROOT / "build" / "homes"
        parent.mkdir(parents=True, exist_ok=True)
        self.path = Path(tempfile.mkdtemp(dir=parent))
        self.documents = self.path / "Documents"
        self.data = self.path / ".local" / "share"
        self.config = self.path / ".config"
        self.temporary = self.path / "tmp"
        self.storage = self.data / "quillhaven"
        for folder in (self.documents, self.data, self.config, self.temporary):
            folder.mkdir(parents=True)

    def environment(self):
        """Returns the environment for a program with this home."""
        return {
            **os.environ,
            "HOME": str(self.path),
            "XDG_DATA_HOME": str(self.data),
            "XDG_CONFIG_HOME": str(self.config),
            "XDG_CACHE_HOME": str(self.path / ".cache"),
            "XDG_STATE_HOME": str(self.path / ".local" / "state"),
            "TMPDIR": str(self.temporary),
            "LANG": "C.UTF-8",
            "GIO_USE_VFS": "local",
        }

    def settings_file(self, domain):
        return self.config / "quillhaven" / f"{domain}.db"

    def settings(self, domain=OWN_DOMAIN):
        """Returns all keys and values of a settings domain; empty if it was never written."""
        file = self.settings_file(domain)
        if not file.exists():
            return {}
        connection = sqlite3.connect(file, timeout=10)
        try:
            values = dict(connection.execute("SELECT key, value FROM defaults"))
            # The elements of an array are stored separately.
            for key, in connection.execute("SELECT key FROM defaults WHERE type = 'array'").fetchall():
                elements = connection.execute("SELECT value FROM elements WHERE key = ? ORDER BY position", (key,))
                values[key] = b"[" + b",".join(value for value, in elements) + b"]"
            return values
        finally:
            connection.close()

    def change_setting(self, key, value, domain=OWN_DOMAIN):
        """Replaces the stored bytes of a key that was written before, and notifies the programs that watch the file."""
        connection = sqlite3.connect(self.settings_file(domain), timeout=10)
        try:
            with connection:
                connection.execute("UPDATE defaults SET value = ? WHERE key = ?", (value, key))
        finally:
            connection.close()
        Path(f"{self.settings_file(domain)}.changed").touch()

    def mark_as_introduced(self):
        """Makes the settings of a user who has read the introduction, before the program's first start."""
        file = self.settings_file(OWN_DOMAIN)
        file.parent.mkdir(mode=0o700)
        connection = sqlite3.connect(file)
        with connection:
            connection.execute("CREATE TABLE defaults (key TEXT PRIMARY KEY, type TEXT NOT NULL, value BLOB)")
            connection.execute("INSERT INTO defaults VALUES ('hasCompletedOnboarding', 'bool', CAST('1' AS BLOB))")
        connection.close()

    def catalogue(self, domain=OWN_DOMAIN):
        """Returns the stored list of items, as the program reads it at its next start."""
        stored = self.settings(domain).get("ProtectedItems")
        return json.loads(stored) if stored else []

    def item(self, path):
        """Returns the stored record of the item with this original path, or None."""
        return next((item for item in self.catalogue() if item["originalPath"] == str(path)), None)

    def forget(self, path):
        """Takes the record of an item out of the catalogue, as if the program had ended before it saved it."""
        identity = self.item(path)["id"]
        with sqlite3.connect(self.settings_file(OWN_DOMAIN)) as connection:
            connection.execute("DELETE FROM elements WHERE id = ?", (identity,))
        connection.close()

    def make_cloud_folder(self):
        """Makes the folder of the recovery backups, and returns its path."""
        folder = self.data / "cloud" / "iCloud~com~tarnwick~quillhaven"
        folder.mkdir(parents=True)
        return folder

    def remove(self):
        shutil.rmtree(self.path, ignore_errors=True)


def picture(path):
    """Returns everything that protecting a file or folder must preserve, by name: bytes, times, mode, owner, attributes."""
    path = Path(path)
    names = [path, *sorted(path.rglob("*"))] if path.is_dir() and not path.is_symlink() else [path]
    return {str(name.relative_to(path.parent)): _details(name) for name in names}


def _details(path):
    status = os.lstat(path)
    details = {
        "kind": stat.S_IFMT(status.st_mode),
        "mode": oct(stat.S_IMODE(status.st_mode)),
        "owner": (status.st_uid, status.st_gid),
        "modified at (ns)": status.st_mtime_ns,
        "links": status.st_nlink if stat.S_ISREG(status.st_mode) else None,
        "attributes": {
            name: os.getxattr(path, name, follow_symlinks=False).hex()
            for name in sorted(os.listxattr(path, follow_symlinks=False))
        },
    }
    if stat.S_ISREG(status.st_mode):
        details["bytes"] = hashlib.sha256(path.read_bytes()).hexdigest()
    elif stat.S_ISLNK(status.st_mode):
        details["points to"] = os.readlink(path)
    else:
        details["access list"] = _access_list(path)
    if stat.S_ISREG(status.st_mode):
        details["access list"] = _access_list(path)
    return details


def _access_list(path):
    listing = subprocess.run(["getfacl", "--omit-header", "--absolute-names", "--numeric", str(path)],
                             check=True, capture_output=True, text=True)
    return listing.stdout.split()


def differences(before, after):
    """Describes the differences between two pictures; empty if there are none."""
    found = []
    for name in sorted(before.keys() | after.keys()):
        if name not in after:
            found.append(f"{name} is missing")
        elif name not in before:
            found.append(f"{name} is new")
        else:
            found += [f"{name}: {detail} was {before[name].get(detail)} and is {value}"
                      for detail, value in after[name].items() if value != before[name].get(detail)]
    return found


class Keyring:
    """The session's Secret Service, accessed without the program."""

    def __init__(self):
        self._service = Secret.Service.get_sync(Secret.ServiceFlags.LOAD_COLLECTIONS, None)

    def _items(self, attributes=None):
        return self._service.search_sync(None, attributes or {}, Secret.SearchFlags.ALL | Secret.SearchFlags.LOAD_SECRETS, None)

    def entries(self):
        """Returns the program's secrets by their account."""
        found = {}
        for item in self._items({"service": OWN_DOMAIN}):
            secret = item.get_secret()
            account = item.get_attributes().get("account")
            if account is not None:
                found[account] = secret.get().decode("utf-8", "replace") if secret else None
        return found

    def clear(self):
        for item in self._items():
            item.delete_sync(None)

    def _collection(self):
        return Secret.Collection.for_alias_sync(
            self._service, Secret.COLLECTION_DEFAULT, Secret.CollectionFlags.NONE, None)

    def lock(self):
        """Locks the keyring in which new secrets are stored. The daemon asks for its password to unlock it again."""
        locked, _ = self._service.lock_sync([self._collection()], None)
        if not locked:
            raise AssertionError("The keyring could not be locked.")

    def send(self, number):
        """Sends a signal to the daemon, such as one that stops it."""
        bus = Gio.bus_get_sync(Gio.BusType.SESSION, None)
        pid = bus.call_sync("org.freedesktop.DBus", "/", "org.freedesktop.DBus", "GetConnectionUnixProcessID",
                            GLib.Variant("(s)", ("org.freedesktop.secrets",)), None, Gio.DBusCallFlags.NONE, -1, None)
        os.kill(pid.unpack()[0], number)


__all__ = ["Gio", "GLib", "Home", "Keyring", "OWN_DOMAIN", "PLACEHOLDER", "ROOT", "SHARED_DOMAIN", "differences",
           "picture"]
