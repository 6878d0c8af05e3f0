#!/usr/bin/python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""Measures the time from the start of the program to its first window, and its resident memory then, compared with
keepassxc.

bench/start.py PROGRAM WORK ROUNDS: run it under its own virtual display and session bus, as bench/run.py does. Each
program starts in its own home; the clock stops when a visible window with its title is mapped and drawn. Both programs
are checked in the same way.
"""
import os
import re
import shutil
import signal
import sqlite3
import statistics
import subprocess
import sys
import tempfile
import time

from Xlib import X, display, error


def resident_kib(pid):
    with open('/proc/%d/status' % pid) as status:
        return next(int(line.split()[1]) for line in status if line.startswith('VmRSS'))


def windows_below(window):
    for child in window.query_tree().children:
        yield child
        yield from windows_below(child)


def is_drawn(window, title):
    """Whether a visible window with this title has more than three colours; an undrawn window has only one."""
    if not re.search(title, window.get_wm_name() or '') or window.get_attributes().map_state != X.IsViewable:
        return False
    size = window.get_geometry()
    if size.width < 200 or size.height < 200:
        return False
    colours = set()
    for y in range(0, size.height, 16):
        row = window.get_image(0, y, size.width, 1, X.ZPixmap, 0xffffffff).data
        colours.update(row[i:i + 4] for i in range(0, len(row), 64))
    return len(colours) > 3


def start(command, title, home):
    """Returns the seconds until a window was drawn, and the resident KiB then."""
    env = dict(os.environ, HOME=home, XDG_CONFIG_HOME=home + '/.config', XDG_DATA_HOME=home + '/.local/share',
               XDG_CACHE_HOME=home + '/.cache')
    screen = display.Display()
    root = screen.screen().root
    begin = time.perf_counter()
    process = subprocess.Popen(command, env=env, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    while True:
        try:
            if any(is_drawn(window, title) for window in windows_below(root)):
                break
        except (error.BadWindow, error.BadDrawable, error.BadMatch):
            pass  # a window was destroyed meanwhile
        if process.poll() is not None or time.perf_counter() - begin > 60:
            sys.exit('no window of %s' % command[0])
        time.sleep(0.005)
    seconds = time.perf_counter() - begin
    memory = resident_kib(process.pid)
    process.send_signal(signal.SIGTERM)
    try:
        process.wait(timeout=10)
    except subprocess.TimeoutExpired:
        process.kill()
        process.wait()
    screen.close()
    return seconds, memory


def fill_catalogue(home, count):
    """Returns a catalogue of `count` records, and creates their private copies."""
    import json
    folder = os.path.join(home, '.config', 'quillhaven')
    os.makedirs(folder, mode=0o700)
    store = os.path.join(home, '.local/share/quillhaven')
    os.makedirs(store)
    items = []
    for i in range(count):
        identity = '%08X-0000-4000-8000-000000000000' % i
        copy = os.path.join(store, identity + '_original')
        open(copy, 'w').close()
        name = 'a document of some length %d.pdf' % i
        items.append(dict(id=identity, originalName=name, originalPath='/home/somebody/' + name,
                          containerPath='/home/somebody/Documents/%s.secured' % name, originalBackupPath=copy,
                          isFolder=False, useTouchID=False, isMounted=False, isProcessing=False))
    return json.dumps(items).encode()


def store_catalogue(program, home, json_bytes):
    """Lets the program create its database, then stores the list in it."""
    start([program], '^Quillhaven$', home)
    database = os.path.join(home, '.config', 'quillhaven', 'com.tarnwick.quillhaven.db')
    with sqlite3.connect(database) as connection:
        table = connection.execute("select name from sqlite_master where type = 'table'").fetchone()[0]
        connection.execute("insert or replace into %s (key, type, value) values ('ProtectedItems', 'data', ?)" % table,
                           (json_bytes,))
        connection.execute("insert or replace into %s (key, type, value) values ('hasCompletedOnboarding', 'bool', '1')"
                           % table)


def main():
    program, work, rounds = sys.argv[1], sys.argv[2], int(sys.argv[3])
    rows = {'keepassxc': [], 'quillhaven, 0 records': [], 'quillhaven, 1,000 records': []}
    for _ in range(rounds):
        for name in rows:
            home = tempfile.mkdtemp(dir=work)
            if name == 'keepassxc':
                rows[name].append(start(['keepassxc'], 'KeePassXC', home))
            else:
                if '1,000' in name:
                    store_catalogue(program, home, fill_catalogue(home, 1000))
                rows[name].append(start([program], '^Quillhaven$', home))
            shutil.rmtree(home, ignore_errors=True)
    print('\nStart to the first drawn window')
    base = statistics.median(seconds for seconds, _ in rows['keepassxc'])
    for name, results in rows.items():
        seconds = statistics.median(r[0] for r in results)
        print('  %-34s %8.3f s   %5.2f x keepassxc   resident %7.1f MiB' % (
            name, seconds, seconds / base, statistics.median(r[1] for r in results) / 1024))


if __name__ == '__main__':
    main()
