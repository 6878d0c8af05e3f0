#!/usr/bin/python3
"""Runs the benchmarks side by side in one run and prints ratios.

bench/run.py [--gib 1] [--rounds 5] [protect] [move] [catalogue] [start]

Each tool works on the same bytes on the same file system, in turns, so that a noisy machine disturbs all of them alike.
The figures printed are medians; a ratio is the median of the per-round ratios.
"""
import argparse
import os
import shutil
import statistics
import subprocess
import sys
import tempfile
import time

ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
BENCH = os.path.join(ROOT, 'build', 'bench', 'bench', 'engine_bench')
PROGRAM = os.path.join(ROOT, 'build', 'bench', 'src', 'quillhaven')
PASSWORD = 'Abcdefg1'


TOUCH_MEMORY = """
import mmap
with open('/proc/meminfo') as table:
    available = next(int(line.split()[1]) for line in table if line.startswith('MemAvailable')) * 1024
memory = mmap.mmap(-1, int(available * 0.85))
for offset in range(0, len(memory), mmap.PAGESIZE):
    memory[offset] = 1
"""


def touch_memory():
    """Touches most of the free memory once: a virtual machine gets a page from its host only at the first touch, which
    would count against whichever tool comes first to it. In a process of its own, whose peak is not ours."""
    subprocess.run([sys.executable, '-c', TOUCH_MEMORY], check=True)


def timed(command, **kwargs):
    """Seconds and peak resident KiB of a command."""
    start = time.perf_counter()
    process = subprocess.Popen(command, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, **kwargs)
    _, status, usage = os.wait4(process.pid, 0)
    seconds = time.perf_counter() - start
    if status != 0:
        sys.exit('failed: %s' % ' '.join(command))
    return seconds, usage.ru_maxrss


def engine(home, mode, subject):
    """The lines of engine_bench: name -> (seconds, peak KiB)."""
    out = subprocess.run([BENCH, home, mode, str(subject)], check=True, capture_output=True, text=True).stdout
    return {name: (float(seconds), int(peak)) for name, seconds, peak in map(str.split, out.splitlines())}


def report(title, rounds, base):
    """Prints the median of each column and its ratio to the base column."""
    print('\n' + title)
    for name in rounds[0]:
        times = [r[name][0] for r in rounds]
        ratios = [r[name][0] / r[base][0] for r in rounds]
        print('  %-34s %9.4f s   %6.2f x %s   peak %7.1f MiB' % (
            name, statistics.median(times), statistics.median(ratios), base,
            statistics.median(r[name][1] for r in rounds) / 1024))


def bench_protect(work, gib, rounds):
    size = int(gib * 1024 ** 3)
    source = os.path.join(work, 'source.bin')
    with open(source, 'wb') as file:
        chunk = os.urandom(1 << 20)
        for _ in range(size >> 20):
            file.write(chunk)
    results = []
    identity = os.path.join(work, 'age.key')
    subprocess.run(['age-keygen', '-o', identity], check=True, capture_output=True)
    recipient = subprocess.run(['age-keygen', '-y', identity], check=True, capture_output=True, text=True).stdout.strip()
    gnupg = os.path.join(work, 'gnupg')
    os.mkdir(gnupg, 0o700)
    for _ in range(rounds):
        row = {}
        row['cp'] = timed(['cp', source, os.path.join(work, 'copy')])
        os.remove(os.path.join(work, 'copy'))
        home = tempfile.mkdtemp(dir=work)
        item = os.path.join(home, 'item.bin')
        os.rename(source, item)
        row['quillhaven protect'] = engine(home, 'protect', item)['protect']
        stored = os.path.join(home, 'data', 'quillhaven')
        os.rename(os.path.join(stored, os.listdir(stored)[0]), source)
        shutil.rmtree(home)
        row['age to a key'] = timed(['age', '-r', recipient, '-o', os.path.join(work, 'age'), source])
        os.remove(os.path.join(work, 'age'))
        row['gpg --symmetric (AES256)'] = timed(
            ['gpg', '--homedir', gnupg, '--batch', '--pinentry-mode', 'loopback', '--passphrase', PASSWORD,
             '--symmetric', '--cipher-algo', 'AES256', '--compress-algo', 'none', '-o', os.path.join(work, 'gpg'),
             source])
        os.remove(os.path.join(work, 'gpg'))
        results.append(row)
    report('Protecting a file of %g GiB' % gib, results, 'cp')
    os.remove(source)


def bench_move(work, gib, rounds):
    def file_item(home):
        path = os.path.join(home, 'item.bin')
        with open(path, 'wb') as file:
            for _ in range(int(gib * 1024)):
                file.write(os.urandom(1 << 10) * 1024)
        return path

    def folder_item(home):
        path = os.path.join(home, 'item')
        for i in range(100):
            os.makedirs(os.path.join(path, str(i)))
            for j in range(100):
                with open(os.path.join(path, str(i), str(j)), 'wb') as file:
                    file.write(b'x' * 4096)
        return path

    for title, make in (('a file of %g GiB' % gib, file_item), ('a folder of 10,000 files', folder_item)):
        results = []
        for _ in range(rounds):
            home = tempfile.mkdtemp(dir=work)
            path = make(home)
            row = {'mv': timed(['mv', path, path + '.moved'])}
            os.rename(path + '.moved', path)
            row.update(engine(home, 'cycle', path))
            results.append(row)
            shutil.rmtree(home)
        report('Unlock and lock of ' + title, results, 'mv')


def bench_catalogue(work, rounds):
    print('\nOne save of the catalogue')
    for count in (100, 1000, 10000):
        seconds = []
        for _ in range(rounds):
            home = tempfile.mkdtemp(dir=work)
            seconds.append(engine(home, 'catalogue', count)['save'][0])
            shutil.rmtree(home)
        print('  %6d records %9.3f ms' % (count, statistics.median(seconds) * 1000))


def bench_start(work, rounds):
    subprocess.run([os.path.join(ROOT, 'tests', 'support', 'with-display.sh'), '/usr/bin/python3',
                    os.path.join(ROOT, 'bench', 'start.py'), PROGRAM, work, str(rounds)], check=True)


def main():
    ask = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    ask.add_argument('what', nargs='*', default=['protect', 'move', 'catalogue', 'start'])
    ask.add_argument('--gib', type=float, default=1)
    ask.add_argument('--rounds', type=int, default=5)
    args = ask.parse_args()
    work = tempfile.mkdtemp(prefix='quillhaven-bench-', dir=os.environ.get('BENCH_DIR', os.path.expanduser('~')))
    touch_memory()
    try:
        if 'protect' in args.what:
            bench_protect(work, args.gib, args.rounds)
        if 'move' in args.what:
            bench_move(work, args.gib, args.rounds)
        if 'catalogue' in args.what:
            bench_catalogue(work, args.rounds)
        if 'start' in args.what:
            bench_start(work, args.rounds)
    finally:
        shutil.rmtree(work)


if __name__ == '__main__':
    main()
