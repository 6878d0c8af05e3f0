#!/usr/bin/python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""Measures what the program costs while nobody uses it, with its window closed into a panel and auto-lock on.

tests/desktop/in-session.sh bench/idle.py PROGRAM [SECONDS]

Prints the processor time and the voluntary context switches, each of which is a wake-up, of all its threads: with the
pointer moving all the time, and untouched. Beside it is xfce4-panel, which shows its icon meanwhile. The program's own
look at the shared settings, once a second, is among its wake-ups.
"""
import os
import subprocess
import sys
import time

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), '..', 'tests', 'desktop'))

from desktop_driver import Program  # noqa: E402
from home_on_disk import Home  # noqa: E402
from panel import Panel  # noqa: E402


def cost(pid):
    """Returns processor seconds and wake-ups of each thread of a process since its start."""
    threads = {}
    for task in os.listdir('/proc/%d/task' % pid):
        with open('/proc/%d/task/%s/schedstat' % (pid, task)) as file:
            seconds = int(file.read().split()[0]) / 1e9
        with open('/proc/%d/task/%s/status' % (pid, task)) as file:
            wake_ups = next(int(line.split()[1]) for line in file if line.startswith('voluntary_ctxt_switches'))
        threads[task] = seconds, wake_ups
    return threads


def spent(before, after):
    """Returns processor seconds and wake-ups between two costs. A thread that has ended meanwhile is left out."""
    nothing = 0, 0
    return [sum(now[i] - before.get(task, nothing)[i] for task, now in after.items()) for i in range(2)]


def memory(pid):
    """Returns the proportional and the private resident memory in MiB."""
    with open('/proc/%d/smaps_rollup' % pid) as file:
        values = {line.split()[0]: int(line.split()[1]) for line in file if line.endswith('kB\n')}
    return values['Pss:'] / 1024, (values['Private_Clean:'] + values['Private_Dirty:']) / 1024


def measure(title, pids, seconds, during=lambda: None):
    before = {name: cost(pid) for name, pid in pids.items()}
    end = time.monotonic() + seconds
    while time.monotonic() < end:
        during()
        time.sleep(0.02)
    for name, pid in pids.items():
        print('%-24s %-12s %8.4f s processor   %6d wake-ups in %d s' % (
            title, name, *spent(before[name], cost(pid)), seconds), flush=True)


def main():
    seconds = int(sys.argv[2]) if len(sys.argv) > 2 else 60
    home = Home()
    home.mark_as_introduced()
    panel = Panel().start()
    program = Program(os.path.abspath(sys.argv[1]), home, ['--login-item'])
    try:
        panel.item()
        program.wait_for(lambda: home.settings_file('com.tarnwick.quillhaven').exists(), 'the settings')
        time.sleep(5)  # The jobs of the launch end.
        program.quit()
        subprocess.run(['sqlite3', str(home.settings_file('com.tarnwick.quillhaven')),
                        "INSERT OR REPLACE INTO defaults VALUES ('isAutoLockEnabled', 'bool', '1')"], check=True)
        program = Program(os.path.abspath(sys.argv[1]), home, ['--login-item'])
        panel.item()
        time.sleep(10)
        pids = {'quillhaven': program.process.pid, 'xfce4-panel': panel.pid}
        print('living in the tray       %-12s %8.1f MiB Pss   %8.1f MiB private' % (('quillhaven',) + memory(pids['quillhaven'])))
        measure('pointer moving', pids, seconds,
                lambda: subprocess.run(['xdotool', 'mousemove_relative', '--', '1', '0'], check=True))
        time.sleep(12)  # The activity of the pointer is over.
        measure('untouched', pids, seconds)
    finally:
        program.kill()
        panel.stop()
        home.remove()


if __name__ == '__main__':
    main()
