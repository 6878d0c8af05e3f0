#!/usr/bin/python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""The power fails at each change that an operation makes on the disk, and any part of what was not flushed is lost. After
that, at every start, the item's bytes are complete at the original place or in private storage, and removing its
protection restores the item.

A run tries only some of the states: TEST_SHARE sets the percentage (by default 10), and TEST_SEED repeats a run.
"""

import json
import os
import pathlib
import random
import re
import shutil
import subprocess
import sys
import tempfile
import unittest

import crash_model

OPERATION = os.environ["INTERRUPTED_OPERATION"]
RESTART = os.environ["RESTARTED_HOME"]
SEED = int(os.environ.get("TEST_SEED") or random.SystemRandom().randrange(1 << 31))
SHARE = int(os.environ.get("TEST_SHARE") or 10)
MINE = b"these are the bytes that must not be lost" * 300
PLACEHOLDER = b"This file is protected by Quillhaven. Use the app to unlock it."


class Home:
    """A home folder with one item, and private storage on the same file system or on a separate one."""

    def __init__(self, is_folder, is_across):
        self.path = tempfile.mkdtemp(prefix="power-cut-")
        self.is_folder = is_folder
        self.place = self.path + "/Desktop/item"
        self.storage = self.path + "/.local/share/quillhaven"
        for folder in ("Documents", "Desktop", ".config/quillhaven", ".local/share/quillhaven", "tmp"):
            os.makedirs(f"{self.path}/{folder}")
        self.volumes = [self.path]
        if is_across:
            subprocess.run(["mount", "-t", "tmpfs", "-o", "size=8m", "tmpfs", self.storage], check=True)
            self.volumes.append(self.storage)
        data = pathlib.Path(self.place + "/inner.txt" if is_folder else self.place)
        data.parent.mkdir(exist_ok=True)
        data.write_bytes(MINE)

    def remove(self):
        for volume in self.volumes[1:]:
            subprocess.run(["umount", "--lazy", volume], check=True)
        shutil.rmtree(self.path)

    def run(self, operation):
        subprocess.run([OPERATION, self.path, operation, "call", "0"], check=True, stdout=subprocess.DEVNULL)

    def disk(self):
        disk = crash_model.Disk(self.volumes)
        return disk.read()

    def record(self, operation):
        """Returns the disk before the operation, and a recorder with its changes."""
        before = self.disk()
        recorder = crash_model.Recorder(before.copy(), self.volumes)
        calls = crash_model.record([OPERATION, self.path, operation, "call", "0"], self.path + ".log")
        os.unlink(self.path + ".log")
        recorder.follow(calls)
        return before, recorder

    def is_whole(self, path):
        data = pathlib.Path(path + "/inner.txt" if self.is_folder else path)
        return data.is_file() and data.read_bytes() == MINE

    def whole_places(self):
        stored = [f"{self.storage}/{name}" for name in os.listdir(self.storage) if not name.startswith(".")]
        return [path for path in [self.place, *stored] if self.is_whole(path)]


class Restarter:
    """A program that starts the engine with one home after another."""

    def __init__(self):
        self.process = subprocess.Popen([RESTART], stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True)

    def restart(self, home):
        self.process.stdin.write(home + "\n")
        self.process.stdin.flush()
        return json.loads(self.process.stdout.readline())

    def end(self):
        self.process.stdin.close()
        self.process.stdout.close()
        self.process.wait()


def is_database(file, disk):
    return any(number == file and re.search(r"\.db(-wal)?$", path) for path, number in disk.entries.items())


class PowerCut(unittest.TestCase):
    longMessage = True

    def setUp(self):
        self.random = random.Random(SEED)
        self.restarter = Restarter()
        self.addCleanup(self.restarter.end)

    def every_state(self, before, recorder):
        """Yields (crash, what is on the disk) without duplicates."""
        seen = set()
        for count in range(recorder.start, len(recorder.changes) + 1):
            crash = crash_model.Crash(before, recorder.changes, count, recorder.volume)
            for part in crash.parts(self.random, samples=8):
                if part not in seen:
                    seen.add(part)
                    yield crash, part

    def detects_loss(self, home, operation, flushes):
        """Whether the check of some state fails if the operation does not make these flushes."""
        before, recorder = home.record(operation)
        nothing = crash_model.Flush(file=-1)
        recorder.changes = [
            nothing if isinstance(each, crash_model.Flush) and flushes(each, recorder.disk) else each
            for each in recorder.changes
        ]
        states = list(self.every_state(before, recorder))
        self.random.shuffle(states)
        for crash, part in states:
            crash.disk(part).write()
            try:
                self.check(home, operation, crash.count, recorder.end)
            except AssertionError:
                return True
        return False

    def check_detected_without(self, flushes):
        home = Home(is_folder=False, is_across=True)
        self.addCleanup(home.remove)
        for step in ("protect", "unlock"):
            home.run(step)
        self.assertTrue(self.detects_loss(home, "lock", flushes), "the model does not detect the missing flush")

    def test_a_missing_flush_of_the_copy_is_detected(self):
        self.check_detected_without(lambda flush, disk: flush.file is not None and not is_database(flush.file, disk))

    def test_a_missing_flush_of_the_folder_is_detected(self):
        self.check_detected_without(lambda flush, disk: flush.folder is not None)

    def test_a_missing_flush_of_the_catalogue_is_detected(self):
        self.check_detected_without(lambda flush, disk: flush.file is not None and is_database(flush.file, disk))

    def drawn(self, states, end):
        """Returns a sample of the states from before the operation returned, and of those from after it."""
        before = [each for each in states if each[0].count < end]
        after = [each for each in states if each[0].count >= end]
        return [each for part in (before, after) for each in self.random.sample(part, -(-len(part) * SHARE // 100))]

    def check(self, home, operation, count, end):
        where = f"{operation}, after change {count} ({end} until it returns), seed {SEED}"
        self.assertTrue(home.whole_places(), "the data was lost: " + where)
        found = self.restarter.restart(home.path)
        records = found["records"]
        self.assertTrue(home.whole_places(), "the start lost the data: " + where)
        if operation in ("lock", "unlock"):
            self.assertEqual(len(records), 1, "the record was lost: " + where)
        if records:
            # Removing the protection has restored the data, or reports that it was already at its place.
            self.assertTrue(home.is_whole(home.place), f"not restored ({found['error']}): {where}")
        if count >= end:
            self.check_returned(operation, records, where)

    def check_returned(self, operation, records, where):
        """After the operation has returned, its effect must be on the device."""
        states = [each["isMounted"] for each in records]
        expected = {"protect": [False], "lock": [False], "unlock": [True], "remove": []}[operation]
        self.assertEqual(states, expected, "the catalogue does not contain the operation: " + where)

    def try_operation(self, operation, preparation, is_folder, is_across):
        home = Home(is_folder, is_across)
        try:
            for step in preparation:
                home.run(step)
            before, recorder = home.record(operation)
            unknown = recorder.disk.state() ^ home.disk().state()
            self.assertEqual({path for path, _, _ in unknown}, set(), "the model did not follow every change")
            states = list(self.every_state(before, recorder))
            drawn = self.drawn(states, recorder.end)
            for crash, part in drawn:
                crash.disk(part).write()
                self.check(home, operation, crash.count, recorder.end)
            name = f"{operation}{'Folder' if is_folder else 'File'}{'AcrossFileSystems' if is_across else ''}"
            print(f"{name}: {recorder.end - recorder.start} changes and flushes, {len(drawn)} of {len(states)} states")
        finally:
            home.remove()


def add_test(operation, preparation, is_folder, is_across):
    kind = "folder" if is_folder else "file"
    place = "_across_file_systems" if is_across else ""

    def test(self):
        self.try_operation(operation, preparation, is_folder, is_across)

    setattr(PowerCut, f"test_{operation}_{kind}{place}_never_loses_the_data", test)


for is_folder in (False, True):
    for is_across in (False, True):
        add_test("protect", [], is_folder, is_across)
        add_test("lock", ["protect", "unlock"], is_folder, is_across)
        add_test("unlock", ["protect"], is_folder, is_across)
        add_test("remove", ["protect"], is_folder, is_across)


if __name__ == "__main__":
    print(f"TEST_SEED={SEED} TEST_SHARE={SHARE}", flush=True)
    unittest.main(verbosity=1)
