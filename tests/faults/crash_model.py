# SPDX-License-Identifier: GPL-3.0-or-later
"""Models what a power cut may leave of the file system calls of a program.

`record` runs a program under strace and returns its changes in order: changes of names (created, renamed, removed) and of
bytes (written, truncated), and what was flushed to the device. `Disk` is a simple model of the files below some folders.
`Crash` constructs what a disk may contain if the power fails after some of the changes:

- Everything that was flushed is on the disk: bytes by fsync of their file, names by fsync of a folder that contains them,
  both by a flush of the whole file system.
- Of everything else, any part may be on the disk, also half of the bytes of a write. A rename is atomic, and a change of a
  name is on the disk only with the earlier changes of the same names, as with a journal and as POSIX requires. A name may
  be on the disk without its bytes.
"""

import dataclasses
import os
import pathlib
import re
import subprocess

CALLS = (
    "open,openat,creat,write,writev,pwrite64,pwritev,pwritev2,truncate,ftruncate,fallocate,rename,renameat,renameat2,link,"
    "linkat,symlink,symlinkat,unlink,unlinkat,rmdir,mkdir,mkdirat,fsync,fdatasync,sync_file_range,syncfs,sync,"
    "copy_file_range,sendfile,splice,ioctl,access"
)
START = "/the operation begins here"  # the program calls access() with these paths as markers
END = "/the operation ends here"


def unhexed(text):
    return bytes.fromhex(text.replace("\\x", ""))


@dataclasses.dataclass(frozen=True)
class Call:
    """One line of strace: the call, its arguments and its result."""

    name: str
    arguments: str
    result: int
    opened: str = ""  # the path of a file that the call opened

    def strings(self):
        return [unhexed(each) for each in re.findall(r'"((?:\\x[0-9a-f]{2})*)"', self.arguments)]

    def descriptors(self):
        """The paths of the open files among the arguments, including that of the current folder."""
        found = re.findall(r"(?:\b\d+|AT_FDCWD)<((?:\\x[0-9a-f]{2})*)>", self.arguments)
        return [os.fsdecode(unhexed(each)) for each in found]

    def numbers(self):
        bare = re.sub(r'"[^"]*"|<[^>]*>', "", self.arguments)
        return [int(each) for each in re.findall(r"(?<![\w.])\d+(?!\w)", bare)]

    def paths(self):
        """The path arguments, joined with the folders that they are relative to, if any."""
        folders = self.descriptors()
        names = [os.fsdecode(each) for each in self.strings()]
        if not folders:
            return names
        return [os.path.normpath(os.path.join(folder, name)) for folder, name in zip(folders, names)]


def record(command, log):
    """Runs the program to its end and returns its successful calls."""
    subprocess.run(
        ["strace", "-f", "-y", "-xx", "-s", "300000", "-e", "trace=" + CALLS, "-e", "signal=none", "-o", log, *command],
        check=True,
        stdout=subprocess.DEVNULL,
    )
    calls = parsed(pathlib.Path(log).read_text(encoding="ascii").splitlines())
    return [call for call in calls if call.result >= 0 or call.name == "access"]


def parsed(lines):
    unfinished = {}
    for line in lines:
        thread, _, rest = line.partition(" ")
        rest = rest.strip()
        if rest.endswith("<unfinished ...>"):
            unfinished[thread] = rest[: -len("<unfinished ...>")]
            continue
        resumed = re.match(r"<\.\.\. \w+ resumed>(.*)", rest)
        if resumed:
            rest = unfinished.pop(thread) + resumed.group(1)
        whole = re.match(r"(\w+)\((.*)\)\s+= (-?\d+)(?:<([^>]*)>)?", rest)
        if whole:
            yield Call(whole.group(1), whole.group(2), int(whole.group(3)), os.fsdecode(unhexed(whole.group(4) or "")))


# Changes. Files have numbers, which correspond to inodes.


@dataclasses.dataclass(frozen=True)
class Names:
    """Names that appear and disappear in one step: {path: file or None}, and the folders that contain them."""

    entries: tuple
    made: int | None = None  # a file or folder that this change creates
    is_folder: bool = False

    def paths(self):
        return {path for path, _ in self.entries}

    def folders(self):
        return {os.path.dirname(path) for path in self.paths()}


@dataclasses.dataclass(frozen=True)
class Bytes:
    """Bytes at an offset, or with `cut` a new size."""

    file: int
    offset: int
    data: bytes = b""
    cut: bool = False


@dataclasses.dataclass(frozen=True)
class Flush:
    """What was flushed to the device: the bytes of a file, the entries of a folder, or everything below `volume`."""

    file: int | None = None
    folder: str | None = None
    volume: str | None = None


def clear(folder):
    """Empties a folder, except for mount points."""
    for each in os.scandir(folder):
        if not each.is_dir(follow_symlinks=False):
            os.unlink(each.path)
            continue
        clear(each.path)
        if not os.path.ismount(each.path) and not os.listdir(each.path):
            os.rmdir(each.path)


class Disk:
    """The files below some folders: paths to numbers, and the contents of each number (None for a folder)."""

    def __init__(self, roots):
        self.roots = list(roots)
        self.entries = {}
        self.content = {}
        self.links = {}

    def copy(self):
        other = Disk(self.roots)
        other.entries = dict(self.entries)
        other.content = {number: None if data is None else bytearray(data) for number, data in self.content.items()}
        other.links = dict(self.links)
        return other

    def holds(self, path):
        return any(path == root or path.startswith(root + "/") for root in self.roots)

    def read(self):
        """Reads the current files into the model."""
        known = {}
        for root in self.roots:
            for folder, folders, files in os.walk(root):
                for name in folders + files:
                    path = os.path.join(folder, name)
                    status = os.lstat(path)
                    number = known.setdefault((status.st_dev, status.st_ino), len(known))
                    self.entries[path] = number
                    if os.path.islink(path):
                        self.content[number] = bytearray()
                        self.links[number] = os.readlink(path)
                    elif os.path.isdir(path):
                        self.content[number] = None
                    else:
                        self.content[number] = bytearray(pathlib.Path(path).read_bytes())
        return self

    def apply(self, change, half=False):
        if isinstance(change, Names):
            self.apply_names(change)
        elif isinstance(change, Bytes):
            data = self.content.setdefault(change.file, bytearray())
            if change.cut:
                data[change.offset :] = bytes(max(0, change.offset - len(data)))
                return
            written = change.data[: len(change.data) // 2] if half else change.data
            if len(data) < change.offset:
                data.extend(bytes(change.offset - len(data)))
            data[change.offset : change.offset + len(written)] = written

    def apply_names(self, change):
        if change.made is not None:
            self.content.setdefault(change.made, None if change.is_folder else bytearray())
        below = {}
        for path, number in change.entries:
            if number is None:
                for each in [each for each in self.entries if each.startswith(path + "/")]:
                    below[each[len(path) :]] = self.entries.pop(each)
        for path, number in change.entries:
            self.entries.pop(path, None)
            if number is not None:
                self.entries[path] = number
                if self.content.get(number) is None:  # the contents of a folder move with it
                    for rest, inner in below.items():
                        self.entries[path + rest] = inner

    def write(self):
        """Writes the contents of this model to the folders, and removes everything else."""
        for root in self.roots:
            clear(root)
        written = {}
        for path in sorted(self.entries):
            number = self.entries[path]
            if not os.path.isdir(os.path.dirname(path)):
                continue  # its folder does not exist
            if number in self.links:
                os.symlink(self.links[number], path)
            elif self.content[number] is None:
                os.makedirs(path, mode=0o700, exist_ok=True)
            elif number in written:
                os.link(written[number], path)
            else:
                written[number] = path
                with open(path, "wb", opener=lambda name, flags: os.open(name, flags, 0o600)) as file:
                    file.write(self.content[number])

    def state(self):
        """A value that is equal for two disks with the same contents."""
        return frozenset(
            (path, None if self.content[number] is None else bytes(self.content[number]), self.links.get(number))
            for path, number in self.entries.items()
        )


class Recorder:
    """Converts calls into changes, and applies them to a disk."""

    def __init__(self, disk, volumes):
        self.disk = disk
        self.volumes = sorted(volumes, key=len, reverse=True)  # the deepest first
        self.position = {}  # of the next sequential write to a file
        self.unnamed = {}  # files without a name, by the name that strace shows for them
        self.changes = []
        self.start = self.end = None  # the number of changes at START and at END

    def volume(self, path):
        return next(each for each in self.volumes if path == each or path.startswith(each + "/"))

    def add(self, change):
        self.changes.append(change)
        self.disk.apply(change)

    def names(self, *entries, **more):
        self.add(Names(tuple(entries), **more))

    def make(self, path, is_folder=False):
        number = max([*self.disk.content, -1]) + 1
        self.names((path, number), made=number, is_folder=is_folder)
        return number

    def follow(self, calls):
        for call in calls:
            handler = getattr(self, "on_" + call.name, None)
            if handler is None:
                raise NotImplementedError(f"a change that the model does not know: {call.name}({call.arguments[:200]})")
            handler(call)
        return self.changes

    def file_of(self, call, index=0):
        """The file that is open under a descriptor argument; None outside the disk."""
        path = call.descriptors()[index]
        return self.disk.entries.get(path, self.unnamed.get(path))

    # Names

    def on_openat(self, call):
        path = call.paths()[0]
        if not self.disk.holds(path):
            return
        if "O_TMPFILE" in call.arguments:
            number = max([*self.disk.content, -1]) + 1
            self.names(made=number)
            self.unnamed[call.opened] = self.unnamed[f"/proc/self/fd/{call.result}"] = number
            return
        if "O_CREAT" in call.arguments and path not in self.disk.entries:
            self.make(path)
        number = self.disk.entries.get(path)
        if number is None:
            return
        writes = "O_WRONLY" in call.arguments or "O_RDWR" in call.arguments
        if writes and "O_TRUNC" in call.arguments and self.disk.content[number]:
            self.add(Bytes(number, 0, cut=True))
        if writes:
            self.position[number] = len(self.disk.content[number]) if "O_APPEND" in call.arguments else 0

    on_open = on_creat = on_openat

    def on_mkdir(self, call):
        path = call.paths()[0]
        if self.disk.holds(path):
            self.make(path, is_folder=True)

    on_mkdirat = on_mkdir

    def on_rename(self, call):
        source, target = call.paths()
        if self.disk.holds(source) or self.disk.holds(target):
            assert "RENAME_EXCHANGE" not in call.arguments
            self.names((source, None), (target, self.disk.entries[source]))

    on_renameat = on_renameat2 = on_rename

    def on_link(self, call):
        source, target = call.paths()
        if self.disk.holds(target):
            self.names((target, self.disk.entries.get(source, self.unnamed.get(source))))

    on_linkat = on_link

    def on_unlink(self, call):
        path = call.paths()[0]
        if self.disk.holds(path):
            self.names((path, None))

    on_unlinkat = on_rmdir = on_unlink

    def on_symlink(self, call):
        path = call.paths()[-1]
        if self.disk.holds(path):
            raise NotImplementedError("a link is made: " + path)

    on_symlinkat = on_symlink

    # Bytes

    def put(self, number, offset, data, is_flushed=False):
        self.add(Bytes(number, offset, bytes(data)))
        if is_flushed:
            self.changes.append(Flush(file=number))

    def on_write(self, call):
        number = self.file_of(call)
        if number is not None:
            offset = self.position.get(number, 0)
            self.put(number, offset, call.strings()[0][: call.result])
            self.position[number] = offset + call.result

    def on_pwrite64(self, call):
        number = self.file_of(call)
        if number is not None:
            self.put(number, call.numbers()[-1], call.strings()[0][: call.result])

    def on_pwritev2(self, call):
        number = self.file_of(call)
        if number is not None:
            self.put(number, call.numbers()[-1], b"".join(call.strings())[: call.result], "RWF_DSYNC" in call.arguments)

    def on_ftruncate(self, call):
        number = self.file_of(call)
        if number is not None:
            self.add(Bytes(number, call.numbers()[-1], cut=True))

    def on_copy_file_range(self, call):
        if call.result == 0:
            return
        source, target = self.file_of(call, 0), self.file_of(call, 1)
        if target is not None:
            offset = self.position.get(target, 0)
            data = self.disk.content[source][offset : offset + call.result]
            self.put(target, offset, data)
            self.position[target] = offset + call.result

    def on_ioctl(self, call):
        assert "FICLONE" not in call.arguments, "a clone succeeded, which the model does not know"

    def on_access(self, call):
        if START.encode() in call.strings():
            self.start = len(self.changes)
        elif END.encode() in call.strings():
            self.end = len(self.changes)

    def on_fallocate(self, call):
        pass  # the allocated space is not read before it is written

    # Flushes

    def on_fsync(self, call):
        path = call.descriptors()[0]
        if path in self.disk.roots or self.disk.content.get(self.disk.entries.get(path), b"") is None:
            self.changes.append(Flush(folder=path))
        elif self.file_of(call) is not None:
            self.changes.append(Flush(file=self.file_of(call)))

    on_fdatasync = on_fsync

    def on_syncfs(self, call):
        self.changes.append(Flush(volume=self.volume(call.descriptors()[0])))

    def on_sync(self, call):
        for volume in self.volumes:
            self.changes.append(Flush(volume=volume))


class Crash:
    """The possible states of the disk if the power fails after the first `count` changes."""

    def __init__(self, before, changes, count, volume_of):
        self.before = before
        self.count = count
        self.changes = changes[:count]
        self.flushed = set()
        for i, change in enumerate(self.changes):
            if isinstance(change, Flush):
                self.flushed |= {j for j in range(i) if self.reaches(change, j, volume_of)}
        self.flushed = self.with_needed(self.flushed)
        self.pending = [
            i for i, each in enumerate(self.changes) if not isinstance(each, Flush) and i not in self.flushed
        ]

    def reaches(self, flush, index, volume_of):
        change = self.changes[index]
        if flush.volume is not None:
            if isinstance(change, Names):
                return any(volume_of(path) == flush.volume for path in change.paths())
            return isinstance(change, Bytes) and flush.volume in self.volumes_of(change.file, index, volume_of)
        if flush.file is not None:
            return isinstance(change, Bytes) and change.file == flush.file
        return isinstance(change, Names) and flush.folder in change.folders()

    def volumes_of(self, number, index, volume_of):
        """The volumes on which a file has names, as far as is known."""
        named = [path for path, file in self.before.entries.items() if file == number]
        for change in self.changes[: index + 1]:
            if isinstance(change, Names):
                named += [path for path, file in change.entries if file == number]
        return {volume_of(path) for path in named}

    def with_needed(self, chosen):
        """Adds the earlier changes that these depend on: those of the same names, and the creation of the named files."""
        chosen = set(chosen)
        for i in sorted(chosen, reverse=True):
            self.add_needed(i, chosen)
        return chosen

    def add_needed(self, index, chosen):
        change = self.changes[index]
        if not isinstance(change, Names):
            return
        touched = change.paths()
        numbers = {number for _, number in change.entries if number is not None}
        for j in range(index - 1, -1, -1):
            earlier = self.changes[j]
            if j in chosen or not isinstance(earlier, Names):
                continue
            above = any(path.startswith(each + "/") for path in touched for each in earlier.paths())
            if above or earlier.paths() & touched or earlier.made in numbers:
                chosen.add(j)
                self.add_needed(j, chosen)

    def part(self, chosen, halves=frozenset()):
        """What is on the disk if these changes are: all changes, and those of which only half is."""
        return frozenset(self.with_needed(self.flushed | set(chosen))), frozenset(halves)

    def parts(self, random, samples):
        """No further change, all changes, each change alone, all but each change, all up to each change, and random sets."""
        pending = self.pending
        yield self.part(())
        yield self.part(pending)
        for i in pending:
            yield self.part({i})
            yield self.part(set(pending) - {i})
            yield self.part({j for j in pending if j <= i})
        for _ in range(samples if len(pending) > 1 else 0):
            chosen = {i for i in pending if random.random() < 0.5}
            halves = {i for i in chosen if isinstance(self.changes[i], Bytes) and random.random() < 0.3}
            yield self.part(chosen, halves)

    def disk(self, part):
        """The disk with the changes of a part."""
        chosen, halves = part
        disk = self.before.copy()
        for i in sorted(chosen):
            disk.apply(self.changes[i], half=i in halves)
        return disk
