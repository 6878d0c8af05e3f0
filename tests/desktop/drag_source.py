#!/usr/bin/python3
# SPDX-License-Identifier: GPL-3.0-or-later

"""drag_source.py TYPE DATA: a window from which DATA can be dragged, and that says how each drag begins and ends."""

import sys

import gi

gi.require_version("Gdk", "3.0")
gi.require_version("Gtk", "3.0")
from gi.repository import Gdk, Gtk  # noqa: E402

KIND, DATA = sys.argv[1:3]


def say(word):
    print(word, flush=True)


def deliver(_widget, _context, selection, _info, _time):
    selection.set(selection.get_target(), 8, DATA.encode("utf-8", "surrogateescape"))


def main():
    window = Gtk.Window(title="Source")
    area = Gtk.EventBox()
    area.add(Gtk.Label(label=DATA))
    area.drag_source_set(Gdk.ModifierType.BUTTON1_MASK, [Gtk.TargetEntry.new(KIND, 0, 0)],
                         Gdk.DragAction.COPY | Gdk.DragAction.MOVE)
    state = {}

    def fail(_widget, _context, result):
        state["result"] = result.value_nick
        return True  # no animation back to the start

    def end(_widget, _context):
        say("ended " + state.pop("result", "dropped"))

    area.connect("drag-begin", lambda *_: say("began"))
    area.connect("drag-data-get", deliver)
    area.connect("drag-data-delete", lambda *_: say("deleted"))
    area.connect("drag-failed", fail)
    area.connect("drag-end", end)
    window.add(area)
    window.connect("destroy", Gtk.main_quit)
    window.show_all()
    Gtk.main()


main()
