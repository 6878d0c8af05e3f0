# SPDX-License-Identifier: GPL-3.0-or-later

"""What the session's bus starts when org.freedesktop.FileManager1 is called."""

import os
from pathlib import Path

import dbus

from desktop_driver import wait_for

NAME = "org.freedesktop.FileManager1"
PATH = "/org/freedesktop/FileManager1"


class FileManagerService:
    """Replaces the file manager that the bus starts: `command` is a line of a service file."""

    def __init__(self, command):
        self.bus = dbus.SessionBus(private=True)
        self.broker = dbus.Interface(self.bus.get_object("org.freedesktop.DBus", "/"), "org.freedesktop.DBus")
        # The bus reads this folder before those of the system.
        self.entry = Path(os.environ["XDG_RUNTIME_DIR"], "dbus-1", "services", f"{NAME}.service")
        self.entry.parent.mkdir(parents=True, exist_ok=True)
        self.entry.write_text(f"[D-BUS Service]\nName={NAME}\nExec={command}\n")
        self.broker.ReloadConfig()

    @property
    def pid(self):
        """That of the process which was started; None if there is none."""
        try:
            return int(self.broker.GetConnectionUnixProcessID(NAME))
        except dbus.DBusException as error:
            if error.get_dbus_name() != "org.freedesktop.DBus.Error.NameHasNoOwner":
                raise
            return None

    def remove(self):
        if pid := self.pid:
            os.kill(pid, 15)
            wait_for(lambda: not self.pid, "the file manager to leave the bus")
        self.entry.unlink()
        self.broker.ReloadConfig()
        self.bus.close()


class RecordedFileManager(FileManagerService):
    """One that shows nothing, and whose calls can be read."""

    def __init__(self):
        super().__init__(f"/usr/bin/python3 -m dbusmock --session {NAME} {PATH} {NAME}")
        self.broker.StartServiceByName(NAME, dbus.UInt32(0))
        wait_for(lambda: self.pid, "the file manager")
        self.mock = dbus.Interface(self.bus.get_object(NAME, PATH), "org.freedesktop.DBus.Mock")
        for method in ("ShowItems", "ShowFolders"):
            self.mock.AddMethod(NAME, method, "ass", "", "")

    def calls(self):
        """Each call's method and addresses."""
        return [(str(method), [str(address) for address in arguments[0]])
                for _, method, arguments in self.mock.GetCalls()]
