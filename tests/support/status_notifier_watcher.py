#!/usr/bin/python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""status_notifier_watcher.py [--without-host]: the part of a desktop's panel that status items talk to, on the session bus.

It writes "ready", then a line for each item that registers: its bus name and its object. On standard input it obeys
"host" and "no host": a host that shows the items comes or goes. It ends with its standard input.
"""

import sys

import dbus
import dbus.service
from dbus.mainloop.glib import DBusGMainLoop
from gi.repository import GLib

WATCHER = "org.kde.StatusNotifierWatcher"
PROPERTIES = f"""<interface name="{WATCHER}">
<property name="IsStatusNotifierHostRegistered" type="b" access="read"/>
<property name="ProtocolVersion" type="i" access="read"/>
<property name="RegisteredStatusNotifierItems" type="as" access="read"/>"""


class Watcher(dbus.service.Object):
    def __init__(self, bus, has_host):
        super().__init__(bus, "/StatusNotifierWatcher")
        self.has_host = has_host
        self.items = []

    @dbus.service.method(WATCHER, in_signature="s", sender_keyword="sender")
    def RegisterStatusNotifierItem(self, item, sender=None):
        name = sender + item if item.startswith("/") else item + "/StatusNotifierItem"
        self.items.append(name)
        print(name, flush=True)
        self.StatusNotifierItemRegistered(name)

    @dbus.service.signal(WATCHER, signature="s")
    def StatusNotifierItemRegistered(self, item):
        pass

    @dbus.service.signal(WATCHER, signature="")
    def StatusNotifierHostRegistered(self):
        pass

    @dbus.service.signal(WATCHER, signature="")
    def StatusNotifierHostUnregistered(self):
        pass

    @dbus.service.method(dbus.PROPERTIES_IFACE, in_signature="ss", out_signature="v")
    def Get(self, interface, name):
        return self.GetAll(interface)[name]

    @dbus.service.method(dbus.PROPERTIES_IFACE, in_signature="s", out_signature="a{sv}")
    def GetAll(self, interface):
        return {"IsStatusNotifierHostRegistered": self.has_host, "ProtocolVersion": 0,
                "RegisteredStatusNotifierItems": dbus.Array(self.items, signature="s")}

    # The toolkit reads a property only if the object describes it.
    @dbus.service.method(dbus.INTROSPECTABLE_IFACE, in_signature="", out_signature="s", path_keyword="path",
                         connection_keyword="connection")
    def Introspect(self, path, connection):
        description = dbus.service.Object.Introspect(self, path, connection)
        return description.replace(f'<interface name="{WATCHER}">', PROPERTIES)

    def set_host(self, has_host):
        self.has_host = has_host
        (self.StatusNotifierHostRegistered if has_host else self.StatusNotifierHostUnregistered)()


def main():
    DBusGMainLoop(set_as_default=True)
    bus = dbus.SessionBus()
    watcher = Watcher(bus, "--without-host" not in sys.argv[1:])
    name = dbus.service.BusName(WATCHER, bus, do_not_queue=True)
    loop = GLib.MainLoop()

    def obey(channel, condition):
        line = sys.stdin.readline()
        if not line:
            loop.quit()
            return False
        watcher.set_host(line.strip() == "host")
        return True

    GLib.io_add_watch(GLib.IOChannel.unix_new(0), GLib.PRIORITY_DEFAULT, GLib.IO_IN | GLib.IO_HUP, obey)
    print("ready", flush=True)
    loop.run()
    del name


main()
