# SPDX-License-Identifier: GPL-3.0-or-later

"""Drags with the pointer, from file managers and from a window of this test, into the program's window."""

import subprocess
from pathlib import Path

from desktop_driver import DesktopError, application_of, click, key, screenshot, wait_for
from file_manager import ATTEMPTS, AccessibleWindow, FileManagerWindow

WORDS = "Drag & Drop files or folders here to protect"
STEPS = 12
# The pointer's way is from the left half of the display to the right one.
LEFT = (0, 0, 700, 700)
RIGHT = (740, 0, 840, 1000)


def xdotool(*arguments):
    done = subprocess.run(["xdotool", *map(str, arguments)], check=True, capture_output=True, text=True)
    return done.stdout.split()


def windows_of(process):
    found = subprocess.run(["xdotool", "search", "--all", "--onlyvisible", "--pid", str(process.pid), "--name", "."],
                           capture_output=True, text=True, check=False)
    return found.stdout.split()


def place_window(window, place):
    """Moves a window to x and y, and makes it so wide and high."""
    x, y, width, height = place
    xdotool("windowsize", "--sync", window, width, height)
    xdotool("windowmove", window, x, y, "windowactivate", "--sync", window)


def color_at(point):
    crop = f"1x1+{point[0]}+{point[1]}"
    done = subprocess.run(["import", "-silent", "-window", "root", "-crop", crop, "-depth", "8", "rgb:-"], check=True,
                          capture_output=True)
    return done.stdout.hex()


def middle(bounds):
    x, y, width, height = bounds
    return x + width // 2, y + height // 2


class Drag:
    """A drag that has begun: the button is pressed, and the pointer is over the target."""

    def __init__(self, start, end):
        self.end = end
        xdotool("mousemove", *start, "mousedown", 1)
        for step in range(1, STEPS + 1):
            xdotool("mousemove", *(a + (b - a) * step // STEPS for a, b in zip(start, end)))

    def move_until(self, condition, what):
        """Moves the pointer to and fro over the target: the source and the target speak to each other as it moves."""
        offsets = iter(range(1_000_000))

        def look():
            xdotool("mousemove", self.end[0] + next(offsets) % 2, self.end[1])
            return condition()

        wait_for(look, what)

    def release(self):
        xdotool("mouseup", 1)


class DropTarget:
    """The program's window, at the right of the display."""

    def __init__(self, program):
        self.program = program
        window = program.wait_for(lambda: windows_of(program.process), "the window")[-1]
        place_window(window, RIGHT)
        self.area = program.find(None, WORDS)
        program.wait_for(lambda: self.area.bounds[0] > RIGHT[0] and self.area.bounds[1] > RIGHT[3] // 2,
                         "the window to be at the right")
        self.usual = self._color()

    def _color(self):
        """That of the drop area's ground, beside its words."""
        x, y, _, height = self.area.bounds
        return color_at((x + 20, y + height // 2))

    def is_targeted(self):
        return self._color() != self.usual

    @property
    def point(self):
        """A point over the list: the whole window takes drops."""
        x, y, width, _ = self.area.bounds
        return x + width // 2, y - 60

    def take(self, start, picture=None):
        """Drags what is at `start` here, and releases it when the window shows that it takes it."""
        drag = Drag(start, self.point)
        try:
            drag.move_until(self.is_targeted, "the drop area to be targeted")
            if picture:
                screenshot(picture)
        finally:
            drag.release()


class FolderWindow(FileManagerWindow):
    """A file manager's window at the left of the display, from which the files of a folder can be dragged."""

    def __init__(self, home, folder):
        AccessibleWindow.enable()
        super().__init__(home, self.name, [self.name.lower(), str(folder)])
        place_window(self._windows()[-1], LEFT)

    def wait_for(self, condition, what):
        return wait_for(condition, what, explain=self.log)

    def look(self, role, text):
        """The first visible control with this text in its name, if the manager is on the accessibility bus yet."""
        root = application_of(self.process.pid, self)
        nodes = root.walk() if root else ()
        return next((node for node in nodes if node.role == role and node.showing and text in node.name), None)

    def select(self, *names):
        """Selects these, which must be all that the folder has, and returns where the first is."""
        for _ in range(ATTEMPTS):
            place = self.place_of(names[0])
            click(*place)
            if len(names) > 1:
                key("ctrl+a")
            try:
                wait_for(lambda: self.has_selected(names), f"{names} to be selected", seconds=3)
                # Not where the click was, since a press there would be the second one of a double click.
                return place[0] + 12, place[1] - 12
            except DesktopError:
                continue
        bar = self.look("status bar", "")
        raise DesktopError(f"{names} could not be selected: {bar}\n{self.log()}")


class ThunarFolder(FolderWindow):
    """Its icons are not on the accessibility bus, but the status bar says what is selected."""

    name = "Thunar"

    def place_of(self, _first):
        x, y, _, _ = self.wait_for(lambda: self.look("directory pane", ""), "the files").bounds
        return x + 54, y + 40

    def has_selected(self, names):
        return self.look("status bar", f'"{names[0]}"' if len(names) == 1 else f"{len(names)} ")


class PcmanfmFolder(FolderWindow):
    name = "pcmanfm-qt"

    def place_of(self, first):
        return middle(self.wait_for(lambda: self.look("list item", first), first).bounds)

    def has_selected(self, names):
        return all((item := self.look("list item", name)) and item.has("selected") for name in names)


class OwnSource:
    """A window of this test, from which data of any type can be dragged."""

    def __init__(self, home, kind, data):
        self.notes = home.path / "source.notes"
        script = Path(__file__).with_name("drag_source.py")
        with open(self.notes, "wb") as notes:
            self.process = subprocess.Popen(["/usr/bin/python3", "-B", str(script), kind, data], env=home.environment(),
                                            stdin=subprocess.DEVNULL, stdout=notes)
        self.window = wait_for(lambda: windows_of(self.process), "the source's window")[-1]
        place_window(self.window, LEFT)
        self.start = middle(LEFT)

    def drag_to(self, point, picture=None):
        """Drags the data to a place and releases it there. Returns how the drag ended, as the source saw it."""
        before = self._noted("ended")
        drag = Drag(self.start, point)
        try:
            drag.move_until(lambda: self._noted("began") > before, "the drag to begin")
            if picture:
                screenshot(picture)
        finally:
            drag.release()
        wait_for(lambda: self._noted("ended") > before, "the drag to end")
        return self.notes.read_text().split()[-1]

    def _noted(self, word):
        return self.notes.read_text().count(word)

    def close(self):
        self.process.terminate()
        self.process.wait()
