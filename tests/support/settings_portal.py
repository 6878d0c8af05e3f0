# SPDX-License-Identifier: GPL-3.0-or-later
"""A template of python3-dbusmock: a settings portal that has the parameter `contrast` as its only setting. Unlike with a
method that is added later, it answers from the moment on that it has its name."""

BUS_NAME = "org.freedesktop.portal.Desktop"
MAIN_OBJ = "/org/freedesktop/portal/desktop"
MAIN_IFACE = "org.freedesktop.portal.Settings"
SYSTEM_BUS = False


def load(mock, parameters):
    answer = f"ret = {{'org.freedesktop.appearance': {{'contrast': dbus.UInt32({parameters['contrast']})}}}}"
    mock.AddMethod(MAIN_IFACE, "ReadAll", "as", "a{sa{sv}}", answer)
