#!/usr/bin/python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""Files that are dragged into the window with the pointer, from real file managers."""

import os

import flows
from desktop_driver import BUTTON, DIALOG
from dragging import DropTarget, OwnSource, PcmanfmFolder, ThunarFolder
from home_on_disk import PLACEHOLDER
from window_case import WindowTest, main

ODD = "a%41 #1 & ü'\".txt"
PICTURES = os.environ.get("DRAG_PICTURES")


def uri(path):
    return path.as_uri()


class FromFileManager:
    """What every file manager does alike."""

    def setUp(self):
        super().setUp()
        self.target = DropTarget(self.program)
        self.folder = self.home.path / "From"
        self.folder.mkdir()

    def put(self, *names):
        for name in names:
            (self.folder / name).write_text("content\n")

    def drag(self, *names):
        manager = self.manager(self.home, self.folder)
        self.addCleanup(manager.close)
        picture = f"{PICTURES}/{self.id()}.png" if PICTURES else None
        self.target.take(manager.select(*names), picture)

    def test_a_file_is_protected(self):
        self.put(ODD)
        self.drag(ODD)
        self.program.says(f"Protect {ODD}")
        self.program.press(BUTTON, flows.re.compile(f"^{flows.PASSWORD_CARD}"))
        # The window has the keyboard now, though the drag began in another one.
        flows.enter_new_password(self.program, flows.ITEM_PASSWORD)
        flows.grant_access(self.program)
        flows.row(self.program, ODD, "locked")
        self.assertEqual((self.folder / ODD).read_bytes(), PLACEHOLDER)
        self.assertEqual([path.name for path in self.folder.iterdir()], [ODD], "the file manager has moved nothing")

    def test_a_folder_is_offered_for_protection(self):
        (self.folder / "papers").mkdir()
        (self.folder / "papers" / "one.txt").write_text("1")
        self.drag("papers")
        self.program.says("Protect papers")
        self.assertEqual((self.folder / "papers" / "one.txt").read_text(), "1")

    def test_a_file_that_cannot_be_protected_is_refused_with_the_reason(self):
        os.mkfifo(self.folder / "pipe")
        self.drag("pipe")
        self.program.says('Could not protect "pipe" because it is neither a file nor a folder.')
        self.assertIsNone(self.program.look(None, "Protect pipe"))

    def test_several_files_are_protected_together(self):
        self.put("a.txt", "b.txt", "c.txt")
        self.drag("a.txt", "b.txt", "c.txt")
        self.program.says("Protect 3 Items")

    def test_of_a_mixture_only_those_that_can_be_protected_count(self):
        self.put("a.txt", "b.txt")
        os.mkfifo(self.folder / "c.pipe")
        self.drag("a.txt", "b.txt", "c.pipe")
        self.program.says("Protect 2 Items")


class DropFromThunar(FromFileManager, WindowTest):
    manager = ThunarFolder


class DropFromPcmanfm(FromFileManager, WindowTest):
    manager = PcmanfmFolder


class DropFromAnyProgram(WindowTest):
    def setUp(self):
        super().setUp()
        self.target = DropTarget(self.program)
        self.letter = self.file("letter.txt")

    def source(self, kind, data):
        source = OwnSource(self.home, kind, data)
        self.addCleanup(source.close)
        return source

    def expect_nothing(self):
        self.assertFalse(self.target.is_targeted())
        self.assertIsNone(self.program.look(DIALOG, None))
        self.assertTrue(self.letter.exists())

    def test_what_is_no_local_file_is_refused_and_nothing_is_said(self):
        for kind, data in (("text/plain", "some words"), ("text/plain", uri(self.letter)),
                           ("text/uri-list", "https://example.org/letter.txt\r\n"),
                           ("text/uri-list", "sftp://example.org/letter.txt\r\n"), ("text/uri-list", "\r\n")):
            with self.subTest(kind=kind, data=data):
                source = self.source(kind, data)
                self.assertEqual(source.drag_to(self.target.point), "no-target")
                source.close()
                self.expect_nothing()

    def test_a_local_file_among_links_is_taken(self):
        source = self.source("text/uri-list", f"https://example.org/a.txt\r\n{uri(self.letter)}\r\n")
        self.assertEqual(source.drag_to(self.target.point), "dropped")
        self.program.says("Protect letter.txt")

    def test_the_source_keeps_its_file(self):
        source = self.source("text/uri-list", uri(self.letter) + "\r\n")
        self.assertEqual(source.drag_to(self.target.point), "dropped")
        self.program.says("Protect letter.txt")
        self.assertNotIn("deleted", source.notes.read_text())

    def test_a_drop_while_a_sheet_is_open_does_nothing(self):
        other = self.file("other.txt")
        flows.open_protection(self.program, self.letter)
        source = self.source("text/uri-list", uri(other) + "\r\n")
        self.assertEqual(source.drag_to(self.target.point), "no-target")
        self.program.says("Protect letter.txt")
        self.assertIsNone(self.program.look(None, "Protect other.txt"))
        flows.dialog_button(self.program, "Cancel").press()
        self.program.gone(None, "Protect letter.txt")
        self.assertEqual(source.drag_to(self.target.point), "dropped")
        self.program.says("Protect other.txt")


if __name__ == "__main__":
    main()
