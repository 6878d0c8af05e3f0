# SPDX-License-Identifier: GPL-3.0-or-later

"""The virtual fingerprint reader of the session: enrols a finger with fprintd, and simulates scans."""

import contextlib
import os
import signal
import socket

import gi

gi.require_version("Gio", "2.0")
from gi.repository import Gio, GLib  # noqa: E402

from desktop_driver import wait_for  # noqa: E402

SERVICE = "net.reactivated.Fprint"
DEVICE = f"{SERVICE}.Device"


def lay_finger(finger):
    """Simulates one scan. The reader listens only while a client has claimed it, so this waits for that."""
    path = os.environ["FP_VIRTUAL_DEVICE"]

    def scan():
        try:
            with socket.socket(socket.AF_UNIX) as reader:
                reader.connect(path)
                reader.sendall(f"SCAN {finger}".encode())
            return True
        except (FileNotFoundError, ConnectionRefusedError):
            return False

    wait_for(scan, "a client to claim the fingerprint reader")


def _device():
    bus = Gio.bus_get_sync(Gio.BusType.SYSTEM, None)
    manager = Gio.DBusProxy.new_sync(bus, Gio.DBusProxyFlags.NONE, None, SERVICE, "/net/reactivated/Fprint/Manager",
                                     f"{SERVICE}.Manager", None)
    return Gio.DBusProxy.new_sync(bus, Gio.DBusProxyFlags.NONE, None, SERVICE, manager.GetDefaultDevice(), DEVICE, None)


@contextlib.contextmanager
def unresponsive():
    """Suspends fprintd for as long as the block runs."""
    bus = Gio.bus_get_sync(Gio.BusType.SYSTEM, None)
    reply = bus.call_sync("org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus",
                          "GetConnectionUnixProcessID", GLib.Variant("(s)", (SERVICE,)), None,
                          Gio.DBusCallFlags.NONE, -1, None)
    process = reply.unpack()[0]
    os.kill(process, signal.SIGSTOP)
    try:
        yield
    finally:
        os.kill(process, signal.SIGCONT)


def forget_all():
    """Deletes all enrolled fingers of the current user."""
    device = _device()
    try:
        device.ListEnrolledFingers("(s)", "")
    except GLib.Error:
        return
    device.Claim("(s)", "")
    try:
        device.DeleteEnrolledFingers2()
    finally:
        device.Release()


def enrol(finger):
    """Enrols a finger for the current user."""
    device = _device()
    answers = []
    device.connect("g-signal", lambda _proxy, _sender, name, values: name == "EnrollStatus" and answers.append(values[0]))
    device.Claim("(s)", "")
    try:
        device.EnrollStart("(s)", "right-index-finger")
        while not answers or answers[-1] == "enroll-stage-passed":
            known = len(answers)
            lay_finger(finger)
            wait_for(lambda: _drained(answers, known), "the reader to answer the scan")
        device.EnrollStop()
    finally:
        device.Release()
    if answers[-1] != "enroll-completed":
        raise AssertionError(f"The finger could not be enrolled: {answers}")


def _drained(answers, known):
    while GLib.MainContext.default().iteration(False):
        pass
    return len(answers) > known
