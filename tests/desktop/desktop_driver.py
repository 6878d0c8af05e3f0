# SPDX-License-Identifier: GPL-3.0-or-later

"""Drives the real program over the accessibility bus, as a person with a screen reader does.

A Program is started in its own Home. Controls are found by their role and their accessible name, pressed, typed into and
read. Nothing here sleeps for a fixed time: every wait is for a condition and has a timeout, and a wait that times out
raises a DesktopError with what was on the screen at that moment.
"""

import os
import re
import signal
import subprocess
import time
from pathlib import Path

import gi

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi, GLib  # noqa: E402

WAIT_SECONDS = 20.0
POLL_SECONDS = 0.02

BUTTON = "push button"
CARD = BUTTON
DIALOG = "dialog"
FIELD = "text"
PASSWORD = "password text"
LABEL = "label"
MENU_ITEM = "menu item"
NOTICE = "alert"
ROW = "list item"
SPIN = "spin button"
SWITCH = "check box"
TAB = "page tab"


class DesktopError(AssertionError):
    """A condition on the screen or on disk that was not met in time."""


def wait_for(condition, what, seconds=WAIT_SECONDS, explain=None):
    """Returns the first true value of condition(); raises a DesktopError that names `what` if there is none in time."""
    end = time.monotonic() + seconds
    while True:
        value = condition()
        if value:
            return value
        if time.monotonic() > end:
            details = "\n" + explain() if explain else ""
            raise DesktopError(f"Waited {seconds:.0f} s for {what}.{details}")
        time.sleep(POLL_SECONDS)


def key(*names):
    """Presses keys on the keyboard, such as key("Tab") or key("shift+Tab")."""
    subprocess.run(["xdotool", "key", "--clearmodifiers", *names], check=True)


def type_text(text):
    """Types on the keyboard, into the control that has the focus."""
    subprocess.run(["xdotool", "type", "--clearmodifiers", "--delay", "2", "--", text], check=True)


def click(x, y, count=1):
    """Clicks with the pointer at a place on the display."""
    subprocess.run(["xdotool", "mousemove", str(x), str(y), "click", "--repeat", str(count), "1"], check=True)


def _pixels():
    return subprocess.run(["import", "-silent", "-window", "root", "png:-"], check=True, capture_output=True).stdout


def screenshot(path, seconds=2.0):
    """Saves the whole display as a PNG, when two pictures in a row are equal or the time is up."""
    end = time.monotonic() + seconds
    before, now = None, _pixels()
    while now != before and time.monotonic() < end:
        before, now = now, _pixels()
    Path(path).write_bytes(now)


class Node:
    """An accessible object. It may disappear at any time; then its properties are empty."""

    def __init__(self, accessible, program):
        self._accessible = accessible
        self._program = program

    def _read(self, read, otherwise):
        try:
            return read()
        except GLib.Error:
            return otherwise

    @property
    def role(self):
        return self._read(self._accessible.get_role_name, "")

    @property
    def name(self):
        name = self._read(self._accessible.get_name, "") or ""
        # The toolkit hides the name of a password field; its description is read out instead.
        return name or (self.description if self.role == PASSWORD else "")

    @property
    def description(self):
        return self._read(self._accessible.get_description, "") or ""

    @property
    def text(self):
        """The text that a screen reader reads out for a field; empty if it has none."""

        def read():
            field = self._accessible.get_text_iface()
            return Atspi.Text.get_text(field, 0, -1) if field else ""

        return self._read(read, "") or ""

    @property
    def value(self):
        """The number of a control that has one, such as a spin button."""
        return self._interface(self._accessible.get_value_iface).get_current_value()

    @property
    def range(self):
        """The least and the greatest number that the control can have."""
        numbers = self._interface(self._accessible.get_value_iface)
        return numbers.get_minimum_value(), numbers.get_maximum_value()

    def has(self, state):
        """Whether the object has a state, such as "focused" or "showing"."""
        wanted = getattr(Atspi.StateType, state.upper())
        return self._read(lambda: self._accessible.get_state_set().contains(wanted), False)

    @property
    def showing(self):
        return self.has("showing") and self.has("visible")

    def _interface(self, get):
        # The bus can be asked for a control's interfaces before the control has registered them.
        return self._program.wait_for(lambda: self._read(get, None), f"{self} to answer")

    @property
    def bounds(self):
        """x, y, width and height on the display."""
        extents = self._interface(self._accessible.get_component_iface).get_extents(Atspi.CoordType.SCREEN)
        return extents.x, extents.y, extents.width, extents.height

    @property
    def place(self):
        """Like bounds, but None if the object has no place or has disappeared."""

        def read():
            component = self._accessible.get_component_iface()
            return component and component.get_extents(Atspi.CoordType.SCREEN)

        extents = self._read(read, None)
        return extents and (extents.x, extents.y, extents.width, extents.height)

    def children(self):
        count = self._read(self._accessible.get_child_count, 0)
        for index in range(count):
            child = self._read(lambda: self._accessible.get_child_at_index(index), None)
            if child is not None:
                # An object that was not reachable when its parent's cache was cleared still has its old values.
                child.clear_cache()
                yield Node(child, self._program)

    def walk(self):
        """Yields this object and all objects below it, parents first."""
        yield self
        for child in self.children():
            yield from child.walk()

    def find(self, role, name):
        """Returns the visible control below this one, or None; see Program.find."""
        return next((node for node in self.walk() if node.matches(role, name)), None)

    def is_called(self, role, name):
        """Whether this is visible and has this role and name; see Program.look."""
        if role is not None and self.role != role and (role, self.role) != (FIELD, PASSWORD):
            return False
        own = self.name
        if isinstance(name, re.Pattern):
            if not name.search(own):
                return False
        elif name is not None and own != name:
            return False
        return self.showing

    def matches(self, role, name):
        """The same, and it is also enabled if it is a button or a field."""
        return self.is_called(role, name) and (self.role not in (BUTTON, FIELD, PASSWORD) or self.usable)

    @property
    def usable(self):
        """Whether it can be pressed or typed into: a dialog that is fading out still shows controls that cannot."""
        return self.has("enabled") and self.has("sensitive")

    def actions(self):
        def read():
            action = self._accessible.get_action_iface()
            if not action:
                return []
            return [Atspi.Action.get_action_name(action, index) for index in range(Atspi.Action.get_n_actions(action))]

        return self._read(read, [])

    def press(self):
        """Performs the action that a screen reader calls "activate"."""
        actions = self.actions()
        for wanted in ("Press", "Toggle"):
            if wanted in actions:
                Atspi.Action.do_action(self._accessible.get_action_iface(), actions.index(wanted))
                return
        raise DesktopError(f"{self} offers no press; it offers {actions}")

    def click(self, count=1):
        """Clicks with the pointer in the middle of the control."""
        x, y, width, height = self.bounds
        click(x + width // 2, y + height // 2, count)

    def focus(self):
        """Gives the keyboard focus to the control, and waits until it has it."""
        if not self.has("focused"):
            Atspi.Component.grab_focus(self._interface(self._accessible.get_component_iface))
        self._program.wait_for(lambda: self.has("focused"), f"the focus on {self}")

    def type(self, text):
        """Focuses the control and types into it."""
        self.focus()
        type_text(text)

    def set_text(self, text):
        """Replaces the text of a field that supports this over the bus (the toolkit's file panels do)."""
        Atspi.EditableText.set_text_contents(self._interface(self._accessible.get_editable_text_iface), text)
        self._program.wait_for(lambda: self.text == text, f"{self} to hold {text!r}")

    def __str__(self):
        return f'{self.role or "vanished object"} "{self.name}"'


def application_of(pid, program):
    """Returns a process's object on the bus without cached values, or None. `program` is what its controls wait with."""
    desktop = Atspi.get_desktop(0)
    desktop.clear_cache()
    for index in range(desktop.get_child_count()):
        try:
            application = desktop.get_child_at_index(index)
            if application is not None and application.get_process_id() == pid:
                return Node(application, program)
        except GLib.Error:
            continue
    return None


class Program:
    """A running process of the program in a Home."""

    def __init__(self, binary, home, arguments=(), changes=None):
        self.home = home
        self.log_path = home.path / "program.log"
        environment = {**home.environment(), "QT_LINUX_ACCESSIBILITY_ALWAYS_ON": "1", **(changes or {})}
        with open(self.log_path, "ab") as log:
            self.process = subprocess.Popen(
                [str(binary), *arguments],
                env=environment,
                stdin=subprocess.DEVNULL,
                stdout=log,
                stderr=subprocess.STDOUT,
            )

    @property
    def log(self):
        """Everything that the program has written since its first start in this home."""
        return self.log_path.read_text(errors="replace")

    def is_running(self):
        return self.process.poll() is None

    def quit(self):
        """Asks the process to end, waits for it, and returns its exit code."""
        if self.is_running():
            self.process.send_signal(signal.SIGTERM)
        return self.wait()

    def kill(self):
        """Ends the process immediately, as in a power cut."""
        if self.is_running():
            self.process.kill()
        return self.process.wait()

    def wait(self):
        try:
            return self.process.wait(WAIT_SECONDS)
        except subprocess.TimeoutExpired:
            self.process.kill()
            self.process.wait()
            raise DesktopError(f"The program did not end in {WAIT_SECONDS:.0f} s.\n{self.describe()}") from None

    @staticmethod
    def start_bus():
        """Starts the accessibility bus of the session, if it is not running yet."""
        Atspi.get_desktop(0).get_child_count()

    def root(self):
        """Returns the program's object on the bus without cached values, or None if there is none."""
        return application_of(self.process.pid, self)

    def walk(self):
        root = self.root()
        return root.walk() if root else iter(())

    def look(self, role, name):
        """Returns the first visible control with this role and name, or None; a button or a field must also be enabled.

        A name may be a compiled pattern; None matches any name or role."""
        return next((node for node in self.walk() if node.matches(role, name)), None)

    def find(self, role, name, seconds=WAIT_SECONDS):
        """Like look, but waits until there is one."""
        wanted = name.pattern if isinstance(name, re.Pattern) else name
        return self.wait_for(lambda: self.look(role, name), f'a {role or "control"} called "{wanted}"', seconds)

    def find_all(self, role, name=None):
        return [node for node in self.walk() if node.matches(role, name)]

    def find_disabled(self, role, name):
        """Waits until there is a visible control with this role and name that is disabled, and returns it."""
        return self.wait_for(
            lambda: next((node for node in self.walk() if node.is_called(role, name) and not node.usable), None),
            f'a disabled {role} called "{name}"')

    def shows(self, role, name):
        """Whether a visible control has this role and name, also if it is disabled."""
        return any(node.is_called(role, name) for node in self.walk())

    def gone(self, role, name):
        """Waits until no visible control has this role and name."""
        self.wait_for(lambda: not self.shows(role, name), f'the {role} "{name}" to disappear')

    def press(self, role, name):
        self.find(role, name).press()

    def press_in(self, window, role, name):
        """Presses a control in the window with this title: a sheet that is closing may have one with the same name."""

        def look():
            return next((node for each in self.windows() if each.name == window for node in each.walk()
                         if node.matches(role, name)), None)

        self.wait_for(look, f'a {role} called "{name}" in "{window}"').press()

    def says(self, text):
        """Waits until a label on the screen has exactly this text."""
        return self.wait_for(lambda: self.look(None, text), f'the text "{text}"')

    def focused(self):
        """Returns the innermost control that has the keyboard focus, or None."""
        found = None
        for node in self.walk():
            if node.has("focused") and node.showing and node.role not in ("frame", "window"):
                found = node
        return found

    def wait_until_active(self):
        """Waits until a window of the program receives keyboard input."""
        self.wait_for(lambda: any(node.has("active") for node in self.windows()), "a window to become active")

    def windows(self):
        root = self.root()
        return list(root.children()) if root else []

    def wait_for(self, condition, what, seconds=WAIT_SECONDS):
        def alive():
            if not self.is_running():
                raise DesktopError(f"The program ended with {self.process.returncode} before {what}.\n{self.describe()}")
            return condition()

        return wait_for(alive, what, seconds, self.describe)

    def wait_for_log(self, line):
        return self.wait_for(lambda: line in self.log, f'the log line "{line}"')

    def tree(self):
        """Returns the program's objects on the bus, one in each line."""
        lines = []

        def add(node, depth):
            states = [state for state in ("showing", "focused", "enabled", "checked") if node.has(state)]
            text = f" text={node.text!r}" if node.text else ""
            lines.append(f'{"  " * depth}{node} {" ".join(states)} {node.actions()}{text}')
            for child in node.children():
                add(child, depth + 1)

        root = self.root()
        if root is None:
            return "The program is not on the accessibility bus."
        add(root, 0)
        return "\n".join(lines)

    def describe(self):
        tail = "\n".join(self.log.splitlines()[-40:])
        tree = self.tree() if self.is_running() else "The program is not running."
        return f"--- on the screen\n{tree}\n--- the end of the log\n{tail}"
