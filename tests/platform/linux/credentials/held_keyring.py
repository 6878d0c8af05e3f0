#!/usr/bin/python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""A keyring that answers only on request, to test that its client does not block.

Acquires org.freedesktop.secrets on the session bus, with one unlocked collection and one entry: the master password, which
is the last argument. Every search for a password is held until Release is called on com.tarnwick.HeldKeyring; Held returns the number of
held searches. With --answer-at-once as the first argument no search is held.
"""
import sys

import dbus
import dbus.mainloop.glib
import dbus.service
from gi.repository import GLib

SERVICE = "org.freedesktop.Secret.Service"
COLLECTION = "org.freedesktop.Secret.Collection"
ITEM = "org.freedesktop.Secret.Item"
CONTROL = "com.tarnwick.HeldKeyring"
COLLECTION_PATH = "/org/freedesktop/secrets/collection/login"
ITEM_PATH = COLLECTION_PATH + "/1"
SESSION_PATH = "/org/freedesktop/secrets/session/1"
ATTRIBUTES = {"service": "com.tarnwick.quillhaven", "account": "master_password"}


class WithProperties(dbus.service.Object):
    properties = {}

    @dbus.service.method(dbus.PROPERTIES_IFACE, in_signature="s", out_signature="a{sv}")
    def GetAll(self, interface):
        return self.properties.get(interface, {})

    @dbus.service.method(dbus.PROPERTIES_IFACE, in_signature="ss", out_signature="v")
    def Get(self, interface, name):
        return self.properties[interface][name]


class Keyring(WithProperties):
    properties = {SERVICE: {"Collections": dbus.Array([dbus.ObjectPath(COLLECTION_PATH)], "o")}}

    def __init__(self, bus):
        super().__init__(bus, "/org/freedesktop/secrets")
        self.held = []

    @dbus.service.method(SERVICE, in_signature="sv", out_signature="vo")
    def OpenSession(self, algorithm, _input):
        if algorithm != "plain":
            raise dbus.DBusException("only plain", name="org.freedesktop.DBus.Error.NotSupported")
        return dbus.String("", variant_level=1), dbus.ObjectPath(SESSION_PATH)

    @dbus.service.method(SERVICE, in_signature="a{ss}", out_signature="aoao", async_callbacks=("reply", "fail"))
    def SearchItems(self, attributes, reply, fail):
        wanted = {name: value for name, value in attributes.items() if name != "xdg:schema"}
        found = [ITEM_PATH] if wanted == ATTRIBUTES else []
        answer = lambda: reply(dbus.Array(found, "o"), dbus.Array([], "o"))
        if "--answer-at-once" in sys.argv or wanted.get("service") != ATTRIBUTES["service"]:
            answer()
        else:
            self.held.append(answer)

    @dbus.service.method(SERVICE, in_signature="s", out_signature="o")
    def ReadAlias(self, _name):
        return dbus.ObjectPath(COLLECTION_PATH)

    @dbus.service.method(CONTROL, out_signature="i")
    def Held(self):
        return len(self.held)

    @dbus.service.method(CONTROL)
    def Release(self):
        while self.held:
            self.held.pop(0)()


class Collection(WithProperties):
    properties = {
        COLLECTION: {
            "Items": dbus.Array([dbus.ObjectPath(ITEM_PATH)], "o"),
            "Label": "Login",
            "Locked": False,
            "Created": dbus.UInt64(0),
            "Modified": dbus.UInt64(0),
        }
    }


class Item(WithProperties):
    properties = {
        ITEM: {
            "Locked": False,
            "Attributes": dbus.Dictionary(ATTRIBUTES, "ss"),
            "Label": "Quillhaven",
            "Created": dbus.UInt64(0),
            "Modified": dbus.UInt64(0),
        }
    }

    def __init__(self, bus, secret):
        super().__init__(bus, ITEM_PATH)
        self.secret = secret

    @dbus.service.method(ITEM, in_signature="o", out_signature="(oayays)")
    def GetSecret(self, session):
        return session, dbus.ByteArray(b""), dbus.ByteArray(self.secret), "text/plain"


dbus.mainloop.glib.DBusGMainLoop(set_as_default=True)
session_bus = dbus.SessionBus()
objects = [
    Keyring(session_bus),
    Collection(session_bus, COLLECTION_PATH),
    Item(session_bus, sys.argv[-1].encode()),
]
name = dbus.service.BusName("org.freedesktop.secrets", session_bus, do_not_queue=True)
GLib.MainLoop().run()
