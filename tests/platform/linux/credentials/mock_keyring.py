#!/usr/bin/python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""A keyring whose prompts the test answers: for locked entries, refused deletions, and a keyring that falls silent.

Acquires org.freedesktop.secrets on the session bus, with one open collection without entries. The test controls it through
com.tarnwick.MockKeyring: Change(name, value) changes a setting below, AddEntry stores an entry, Count(name) returns how often
something happened.
"""
import dbus
import dbus.mainloop.glib
import dbus.service
from gi.repository import GLib

SERVICE = "org.freedesktop.Secret.Service"
COLLECTION = "org.freedesktop.Secret.Collection"
ITEM = "org.freedesktop.Secret.Item"
PROMPT = "org.freedesktop.Secret.Prompt"
CONTROL = "com.tarnwick.MockKeyring"
ROOT = "/org/freedesktop/secrets"
COLLECTION_PATH = ROOT + "/collection/login"
NO_OBJECT = dbus.ObjectPath("/")

settings = {
    "answer": "allow",  # what the user answers to a prompt: "allow", "dismiss", "nothing", or the keyring's "end"
    "collection": "open",  # or "locked", which hides the entries, or "missing"
    "deletion": "silent",  # or "asks"
    "creation": "silent",  # or "asks"
    "silent": "no",  # "yes": calls are answered when it is "no" again
}
counts = {"prompts": 0, "dismissals": 0}
entries = {}
unanswered = []


def call(interface, in_signature="", out_signature=""):
    """A method that is answered unless the keyring is silent."""

    def decorate(function):
        def method(self, *arguments):
            *arguments, reply, fail = arguments
            if settings["silent"] == "yes":
                unanswered.append(lambda: method(self, *arguments, reply, fail))
                return
            try:
                result = function(self, *arguments)
                several = isinstance(result, tuple) and not isinstance(result, dbus.Struct)
                reply(*(result if several else () if result is None else (result,)))
            except dbus.DBusException as error:
                fail(error)

        names = ["a%d" % number for number in range(function.__code__.co_argcount - 1)]
        # The library derives the number of arguments from the function itself.
        list_of_names = ", ".join(["self"] + names + ["reply", "fail"])
        source = "lambda %s: method(%s)" % (list_of_names, list_of_names)
        wrapper = eval(source, {"method": method})
        wrapper.__name__ = function.__name__
        return dbus.service.method(interface, in_signature=in_signature, out_signature=out_signature,
                                   async_callbacks=("reply", "fail"))(wrapper)

    return decorate


class WithProperties(dbus.service.Object):
    def properties(self):
        return {}

    @call(dbus.PROPERTIES_IFACE, "s", "a{sv}")
    def GetAll(self, _interface):
        return dbus.Dictionary(self.properties(), "sv")

    @call(dbus.PROPERTIES_IFACE, "ss", "v")
    def Get(self, _interface, name):
        return self.properties()[name]

    @call(dbus.PROPERTIES_IFACE, "ssv")
    def Set(self, _interface, _name, _value):
        return None


class Prompt(dbus.service.Object):
    number = 0

    def __init__(self, action, result):
        Prompt.number += 1
        self.path = dbus.ObjectPath("%s/prompt/%d" % (ROOT, Prompt.number))
        super().__init__(session_bus, self.path)
        self.action = action
        self.result = result

    @dbus.service.method(PROMPT, in_signature="s")
    def Prompt(self, _window):
        counts["prompts"] += 1
        if settings["answer"] == "allow":
            result = self.action()
            GLib.idle_add(self.Completed, False, self.result if result is None else result)
        elif settings["answer"] == "end":
            GLib.idle_add(loop.quit)
        elif settings["answer"] == "dismiss":
            GLib.idle_add(self.Completed, True, self.result)

    @dbus.service.method(PROMPT)
    def Dismiss(self):
        counts["dismissals"] += 1  # without an answer, as from a keyring that hangs

    @dbus.service.signal(PROMPT, signature="bv")
    def Completed(self, dismissed, result):
        pass


class Keyring(WithProperties):
    def properties(self):
        return {"Collections": dbus.Array([dbus.ObjectPath(COLLECTION_PATH)], "o")}

    @call(SERVICE, "sv", "vo")
    def OpenSession(self, algorithm, _input):
        if algorithm != "plain":
            raise dbus.DBusException("only plain", name="org.freedesktop.DBus.Error.NotSupported")
        return dbus.String("", variant_level=1), dbus.ObjectPath(ROOT + "/session/1")

    @call(SERVICE, "a{ss}", "aoao")
    def SearchItems(self, wanted):
        found = {True: [], False: []}
        if settings["collection"] == "open":
            for entry in entries.values():
                if wanted.items() <= entry.attributes.items():
                    found[entry.locked].append(entry.path)
        return dbus.Array(found[False], "o"), dbus.Array(found[True], "o")

    @call(SERVICE, "ao", "aoo")
    def Unlock(self, paths):
        def unlock():
            for path in paths:
                if path in entries:
                    entries[path].locked = False
                elif path == COLLECTION_PATH:
                    settings["collection"] = "open"

        result = dbus.Array(paths, "o", variant_level=1)
        return dbus.Array([], "o"), Prompt(unlock, result).path

    @call(SERVICE, "s", "o")
    def ReadAlias(self, _name):
        return NO_OBJECT if settings["collection"] == "missing" else dbus.ObjectPath(COLLECTION_PATH)

    @call(SERVICE, "a{sv}s", "oo")
    def CreateCollection(self, _properties, _alias):
        def create():
            settings["collection"] = "open"
            return dbus.ObjectPath(COLLECTION_PATH, variant_level=1)

        return NO_OBJECT, Prompt(create, dbus.ObjectPath(COLLECTION_PATH, variant_level=1)).path

    @dbus.service.method(CONTROL, in_signature="ss")
    def Change(self, name, value):
        settings[str(name)] = str(value)
        while unanswered and settings["silent"] == "no":
            unanswered.pop(0)()

    @dbus.service.method(CONTROL, in_signature="ssb")
    def AddEntry(self, service, account, locked):
        add_entry({"service": service, "account": account}, b"secret", bool(locked))

    @dbus.service.method(CONTROL, in_signature="s", out_signature="i")
    def Count(self, name):
        return {**counts, "entries": len(entries), "unanswered": len(unanswered)}[name]


class Collection(WithProperties):
    def properties(self):
        return {
            "Items": dbus.Array([entry.path for entry in entries.values()], "o"),
            "Label": "Login",
            "Locked": settings["collection"] == "locked",
            "Created": dbus.UInt64(0),
            "Modified": dbus.UInt64(0),
        }

    @call(COLLECTION, "a{sv}(oayays)b", "oo")
    def CreateItem(self, properties, secret, _replace):
        attributes = {str(name): str(value) for name, value in properties[ITEM + ".Attributes"].items()}

        def create():
            return dbus.ObjectPath(add_entry(attributes, bytes(secret[2]), False), variant_level=1)

        if settings["creation"] == "asks":
            return NO_OBJECT, Prompt(create, dbus.ObjectPath("/", variant_level=1)).path
        return create(), NO_OBJECT


class Item(WithProperties):
    def __init__(self, path, attributes, secret, locked):
        super().__init__(session_bus, path)
        self.path = dbus.ObjectPath(path)
        self.attributes = attributes
        self.secret = secret
        self.locked = locked

    def properties(self):
        return {
            "Locked": self.locked,
            "Attributes": dbus.Dictionary(self.attributes, "ss"),
            "Label": "Quillhaven",
            "Created": dbus.UInt64(0),
            "Modified": dbus.UInt64(0),
        }

    @call(ITEM, "o", "(oayays)")
    def GetSecret(self, session):
        if self.locked:
            raise dbus.DBusException("locked", name="org.freedesktop.Secret.Error.IsLocked")
        return dbus.Struct((session, dbus.ByteArray(b""), dbus.ByteArray(self.secret), "text/plain"), signature="oayays")

    @call(ITEM, "(oayays)")
    def SetSecret(self, secret):
        self.secret = bytes(secret[2])

    @call(ITEM, "", "o")
    def Delete(self):
        def delete():
            del entries[self.path]
            self.remove_from_connection()

        if settings["deletion"] == "asks":
            return Prompt(delete, dbus.String("", variant_level=1)).path
        delete()
        return NO_OBJECT


def add_entry(attributes, secret, locked):
    path = "%s/%d" % (COLLECTION_PATH, len(entries) + 1)
    entries[path] = Item(path, attributes, secret, locked)
    return path


dbus.mainloop.glib.DBusGMainLoop(set_as_default=True)
session_bus = dbus.SessionBus()
objects = [
    Keyring(session_bus, ROOT),
    Collection(session_bus, COLLECTION_PATH),
    Collection(session_bus, ROOT + "/aliases/default"),
]
name = dbus.service.BusName("org.freedesktop.secrets", session_bus, do_not_queue=True)
loop = GLib.MainLoop()
loop.run()
