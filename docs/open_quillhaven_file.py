#!/usr/bin/python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""Decrypts a container or a recovery backup of Quillhaven with its password, without Quillhaven.

    open_quillhaven_file.py letter.txt.secured letter.txt
    open_quillhaven_file.py 3F2504E0.backup - | less
    open_quillhaven_file.py --unpack 3F2504E0.backup Recovered

A container (NAME.secured) is opened with the item's own password, which is empty for a file protected with Touch ID; a
backup (ID.backup) with the master password that was set when it was written. The password is asked for on the terminal,
or read with --password-file. Nothing is written before the whole file has been found authentic.

Needs Python 3.8 or later and its package "cryptography". The formats are described in formats.md.

Exit status: 0 if everything was written; 1 if the result cannot be written or unpacked; 2 for wrong arguments; 3 if the
file cannot be read, is not one of Quillhaven's, or is truncated; 4 if the password is wrong or a byte has been changed.
"""

import argparse
import getpass
import os
import shutil
import sys
import tarfile
import tempfile

from cryptography.exceptions import InvalidTag
from cryptography.hazmat.primitives import hashes
from cryptography.hazmat.primitives.ciphers import Cipher, algorithms, modes
from cryptography.hazmat.primitives.kdf.hkdf import HKDF

NOT_WRITTEN, NOT_OURS, NOT_OPENED = 1, 3, 4
SALT, NONCE, TAG = 32, 12, 16
CHUNK = 1 << 20


class Failure(Exception):
    def __init__(self, status, message):
        super().__init__(message)
        self.status = status


class SealedFile:
    """The parts of a container or a recovery backup. `metadata` is None for a container."""

    def __init__(self, stream):
        self.stream = stream
        size = os.fstat(stream.fileno()).st_size
        magic = stream.read(10)
        if magic == b"QUILLHAVEN":
            self.metadata = None
            self.salt = stream.read(SALT)
        elif magic[:8] == b"RECOVERY":
            stream.seek(8)
            self.salt = stream.read(SALT)
            length = int.from_bytes(stream.read(4), "little")
            if stream.tell() + length > size:
                raise Failure(NOT_OURS, "The backup is cut off, or its metadata was changed.")
            self.metadata = stream.read(length).decode(errors="replace")
        elif magic[:7] == b"FOLDER:":
            stream.seek(7)
            place = stream.read().decode(errors="replace")
            raise Failure(NOT_OURS, f"A folder's container contains no data. The folder itself is at {place!r}.")
        else:
            raise Failure(NOT_OURS, "This is neither a container nor a recovery backup.")
        self.nonce = stream.read(NONCE)
        self.start = stream.tell()
        self.length = size - self.start - TAG
        if self.length < 0:
            raise Failure(NOT_OURS, "The file is cut off.")
        stream.seek(-TAG, os.SEEK_END)
        self.tag = stream.read(TAG)

    def decrypt(self, password, write):
        """Passes the plaintext to `write` in pieces. They are authentic only if this returns normally."""
        key = HKDF(hashes.SHA256(), length=32, salt=self.salt, info=b"").derive(password)
        decryptor = Cipher(algorithms.AES(key), modes.GCM(self.nonce, self.tag)).decryptor()
        self.stream.seek(self.start)
        left = self.length
        while left > 0:
            piece = self.stream.read(min(CHUNK, left))
            if not piece:
                raise Failure(NOT_OURS, "The file was truncated while it was being read.")
            left -= len(piece)
            write(decryptor.update(piece))
        try:
            decryptor.finalize()
        except InvalidTag:
            raise Failure(NOT_OPENED, "The password is wrong, or the file has been changed.") from None


def plain_path(name):
    """Returns the parts of a path, and fails if it is not inside the folder into which the archive is unpacked."""
    parts = [part for part in name.split("/") if part not in ("", ".")]
    if name.startswith("/") or not parts or ".." in parts:
        raise Failure(NOT_WRITTEN, f"The archive has a path that leads out of its folder: {name!r}. Nothing is unpacked.")
    return parts


def leave_out(reason, name):
    print(f"Left out, since it {reason}: {name!r}", file=sys.stderr)


def restore_attributes(path, member):
    os.chmod(path, member.mode & 0o777)
    os.utime(path, (member.mtime, member.mtime))


def unpack(archive, folder):
    """Unpacks into a new folder. Links are created last, so that nothing is ever written through one."""
    members = archive.getmembers()
    places = {member: os.path.join(folder, *plain_path(member.name)) for member in members}
    originals = {member: plain_path(member.linkname) for member in members if member.islnk()}
    os.mkdir(folder, 0o700)
    for member, place in places.items():
        os.makedirs(place if member.isdir() else os.path.dirname(place), mode=0o700, exist_ok=True)
        if member.isfile():
            with open(place, "xb") as file:
                shutil.copyfileobj(archive.extractfile(member), file, CHUNK)
            restore_attributes(place, member)
        elif not (member.isdir() or member.issym() or member.islnk()):
            leave_out("is not a file, folder or link", member.name)
    for member, original in originals.items():
        os.link(os.path.join(folder, *original), places[member], follow_symlinks=False)
    links = {member.name: place for member, place in places.items() if member.issym()}
    for member in members:
        if member.issym():
            os.symlink(member.linkname, places[member])
    for name, place in links.items():
        if not os.path.realpath(place).startswith(os.path.realpath(folder) + os.sep):
            os.unlink(place)
            leave_out("leads out of the folder", name)
    for member in sorted(members, key=lambda item: len(places[item]), reverse=True):
        if member.isdir():
            restore_attributes(places[member], member)


def write_unpacked(sealed, password, folder):
    if os.path.lexists(folder):
        raise Failure(NOT_WRITTEN, f"{folder!r} already exists. Name a new folder.")
    with tempfile.TemporaryFile(dir=os.path.dirname(os.path.abspath(folder))) as plain:
        sealed.decrypt(password, plain.write)
        plain.seek(0)
        try:
            with tarfile.open(fileobj=plain, mode="r:") as archive:
                unpack(archive, folder)
        except (tarfile.TarError, ValueError, OverflowError):
            raise Failure(NOT_WRITTEN, "The file does not contain a folder's archive.") from None


def write_plain(sealed, password, output):
    sealed.decrypt(password, lambda piece: None)
    if output == "-":
        sealed.decrypt(password, sys.stdout.buffer.write)
        sys.stdout.buffer.flush()
        return
    descriptor = os.open(output, os.O_WRONLY | os.O_CREAT | os.O_EXCL, 0o600)
    with open(descriptor, "wb") as file:
        sealed.decrypt(password, file.write)


def read_password(path):
    if path is None:
        try:
            return getpass.getpass("Password: ").encode()
        except (EOFError, KeyboardInterrupt):
            raise Failure(NOT_OPENED, "No password was given.") from None
    with open(0 if path == "-" else path, "rb") as file:
        password = file.read()
    return password[:-1] if password.endswith(b"\n") else password


def main():
    words = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    words.add_argument("file", help="the container or the backup")
    words.add_argument("output", help='a new file to write, "-" for standard output, or with --unpack a new folder')
    words.add_argument("--unpack", action="store_true", help="unpack the archive in a folder's backup")
    words.add_argument("--password-file", metavar="PATH",
                       help='read the password from this file; a line end is removed; "-" is standard input')
    call = words.parse_args()
    try:
        stream = open(call.file, "rb")
    except OSError as error:
        raise Failure(NOT_OURS, str(error)) from None
    with stream:
        sealed = SealedFile(stream)
        if sealed.metadata is not None:
            print(f"The backup says that it is of {sealed.metadata!r}.", file=sys.stderr)
        (write_unpacked if call.unpack else write_plain)(sealed, read_password(call.password_file), call.output)


if __name__ == "__main__":
    try:
        main()
    except Failure as failure:
        print(failure, file=sys.stderr)
        sys.exit(failure.status)
    except OSError as error:
        print(error, file=sys.stderr)
        sys.exit(NOT_WRITTEN)
