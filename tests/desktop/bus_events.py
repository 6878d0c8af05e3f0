# SPDX-License-Identifier: GPL-3.0-or-later

"""What happens on the accessibility bus while a test does something else: every message, or events of a kind."""

import subprocess

import gi

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi, Gio, GLib  # noqa: E402

from desktop_driver import wait_for  # noqa: E402


class BusMonitor:
    """Records every message on the accessibility bus while it is entered."""

    def __init__(self, path):
        self._path = path
        self._process = None

    def __enter__(self):
        session = Gio.bus_get_sync(Gio.BusType.SESSION)
        address = session.call_sync("org.a11y.Bus", "/org/a11y/bus", "org.a11y.Bus", "GetAddress", None, None,
                                    Gio.DBusCallFlags.NONE, -1, None).unpack()[0]
        with open(self._path, "wb") as log:
            self._process = subprocess.Popen(["dbus-monitor", "--address", address], stdout=log)
        wait_for(lambda: "NameLost" in self.text(), "the monitor to begin")
        return self

    def __exit__(self, *_):
        self._process.terminate()
        self._process.wait()

    def text(self):
        """The messages so far."""
        return self._path.read_text(errors="replace")


class StateChanges:
    """The changes of one state of all objects with a role, as events on the accessibility bus since it was created."""

    def __init__(self, state, role):
        self._event = f"object:state-changed:{state}"
        self._role = role
        self._changes = []
        self._listener = Atspi.EventListener.new(self._note)
        self._listener.register(self._event)

    def _note(self, event):
        try:
            if event.source.get_role_name() == self._role:
                self._changes.append((event.source.get_name(), bool(event.detail1)))
        except GLib.Error:
            pass  # it has disappeared

    def changes(self):
        """The names of the objects and their new states so far, in their order."""
        while GLib.MainContext.default().iteration(False):
            pass
        return list(self._changes)

    def stop(self):
        self._listener.deregister(self._event)


class AppearedNotifications(StateChanges):
    """The texts of the notifications that have appeared on the accessibility bus since it was created."""

    def __init__(self):
        super().__init__("showing", "notification")

    def texts(self):
        """The texts so far, in their order."""
        return [name for name, is_showing in self.changes() if is_showing]
