# SPDX-License-Identifier: GPL-3.0-or-later

"""The panel of a desktop, which shows the program's status item: the real one of Xfce."""

import os
import subprocess
from pathlib import Path

import gi

gi.require_version("Gdk", "3.0")
gi.require_version("Gio", "2.0")
from gi.repository import Gdk, Gio, GLib  # noqa: E402

from desktop_driver import wait_for  # noqa: E402

WATCHER = "org.kde.StatusNotifierWatcher"
ITEM = "org.kde.StatusNotifierItem"
MENU = "com.canonical.dbusmenu"
HEIGHT = 32
ICON_CENTER = (HEIGHT // 2 + 4, HEIGHT // 2)
ICON_SIZE = 16
# A panel that is being laid out may show the edges of its parts; the smooth edges of the icon have far more shades.
SURFACE_COLORS = 8
EQUAL_LOOKS = 15
CONFIGURATION = """<?xml version="1.0" encoding="UTF-8"?>
<channel name="xfce4-panel" version="1.0">
  <property name="configver" type="int" value="2"/>
  <property name="panels" type="array"><value type="int" value="1"/>
    <property name="panel-1" type="empty">
      <property name="position" type="string" value="p=6;x=0;y=0"/>
      <property name="length" type="uint" value="100"/>
      <property name="position-locked" type="bool" value="true"/>
      <property name="size" type="uint" value="{height}"/>
      <property name="plugin-ids" type="array"><value type="int" value="1"/></property>
    </property>
  </property>
  <property name="plugins" type="empty">
    <property name="plugin-1" type="string" value="systray"><property name="square-icons" type="bool" value="true"/>
      <property name="known-legacy-items" type="empty"/></property>
  </property>
</channel>
"""


class Panel:
    """Xfce's panel at the top of the display, with nothing but the status items."""

    def __init__(self):
        folder = Path(os.environ["XDG_CONFIG_HOME"]) / "xfce4/xfconf/xfce-perchannel-xml"
        folder.mkdir(parents=True, exist_ok=True)
        (folder / "xfce4-panel.xml").write_text(CONFIGURATION.format(height=HEIGHT))
        self._bus = Gio.bus_get_sync(Gio.BusType.SESSION)
        self._process = None

    def start(self):
        self._process = subprocess.Popen(["xfce4-panel", "--disable-wm-check"], stdout=subprocess.DEVNULL,
                                         stderr=subprocess.DEVNULL)
        wait_for(lambda: self._property(WATCHER, "/StatusNotifierWatcher", WATCHER, "IsStatusNotifierHostRegistered"),
                 "the panel to show status items")
        return self

    @property
    def pid(self):
        return self._process.pid

    def stop(self):
        if self._process:
            self._process.terminate()
            self._process.wait()
            self._process = None

    def _call(self, service, path, interface, method, arguments=None):
        return self._bus.call_sync(service, path, interface, method, arguments, None, Gio.DBusCallFlags.NO_AUTO_START,
                                   5000, None)

    def _property(self, service, path, interface, name):
        try:
            reply = self._call(service, path, "org.freedesktop.DBus.Properties", "Get",
                               GLib.Variant("(ss)", (interface, name)))
            return reply.unpack()[0]
        except GLib.Error:
            return None

    def _items(self):
        """The bus name and the object of each item in the panel."""
        names = self._property(WATCHER, "/StatusNotifierWatcher", WATCHER, "RegisteredStatusNotifierItems") or []
        return [(service, "/" + path) for service, _, path in (name.partition("/") for name in names)]

    def item(self):
        """Waits until the panel shows the one item."""
        return wait_for(lambda: next(iter(self._items()), None), "the status item")

    def item_gone(self):
        wait_for(lambda: not self._items(), "the status item to disappear")

    def item_property(self, name):
        service, path = self.item()
        return self._property(service, path, ITEM, name)

    def _icon(self):
        """The pixels where the icon of the one item belongs; None while they are only the panel's plain surface."""
        left, top = (each - ICON_SIZE // 2 for each in ICON_CENTER)
        picture = Gdk.pixbuf_get_from_window(Gdk.get_default_root_window(), left, top, ICON_SIZE, ICON_SIZE)
        pixels, stride, depth = picture.get_pixels(), picture.get_rowstride(), picture.get_n_channels()
        colors = [pixels[row * stride + column * depth:][:depth]
                  for row in range(ICON_SIZE) for column in range(ICON_SIZE)]
        return colors if len(set(colors)) > SURFACE_COLORS else None

    def _icon_rests(self, looks):
        """Whether the latest looks at the icon, with this one, have all seen the same."""
        looks.append(self._icon())
        latest = looks[-EQUAL_LOOKS:]
        return len(latest) == EQUAL_LOOKS and latest[0] and all(each == latest[0] for each in latest)

    def click(self):
        """Clicks on the item's icon with the pointer, once it is on the screen and does not move: the panel draws it some
        time after the item has registered, and a click before its layout is done hits nothing."""
        self.item()
        looks = []
        wait_for(lambda: self._icon_rests(looks), "the panel to draw the icon")
        # Not with --sync, which waits 15 s if the pointer is there already; the display keeps the order anyway.
        subprocess.run(["xdotool", "mousemove", *map(str, ICON_CENTER), "click", "1"], check=True)

    def _menu(self):
        service, _ = self.item()
        return service, self.item_property("Menu")

    def menu_entries(self):
        """The ids of the entries of the item's menu, by their texts, in order."""
        service, path = self._menu()
        reply = self._call(service, path, MENU, "GetLayout", GLib.Variant("(iias)", (0, -1, [])))
        children = reply.unpack()[1][2]
        return {properties["label"].replace("_", ""): number for number, properties, _ in children}

    def choose(self, entry):
        """Chooses an entry of the item's menu, as a desktop that only shows the menu does."""
        service, path = self._menu()
        number = wait_for(lambda: self.menu_entries().get(entry), f'the entry "{entry}" of the menu')
        self._call(service, path, MENU, "Event",
                   GLib.Variant("(isvu)", (number, "clicked", GLib.Variant("i", 0), 0)))
