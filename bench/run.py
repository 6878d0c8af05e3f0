#!/usr/bin/python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""Runs the benchmarks side by side in one run and prints ratios.

bench/run.py [--gib 1] [--rounds 5] [protect] [move] [catalogue] [backup] [recover] [shred] [bulk] [idle] [start] [menu] [sheet] [list]

The tools run in turns on the same bytes and the same file system, so that other load on the machine affects all of them
alike. The printed figures are medians; a ratio is the median of the per-round ratios.
"""
import argparse
import os
import re
import shutil
import statistics
import subprocess
import sys
import tempfile
import time

ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
BENCH = os.path.join(ROOT, 'build', 'bench', 'bench', 'engine_bench')
PROGRAM = os.path.join(ROOT, 'build', 'bench', 'src', 'quillhaven')
MENU_TOOL = os.path.join(ROOT, 'build', 'bench', 'src', 'extension', 'bundle', 'Contents', 'PlugIns',
                         'FinderSyncExtension.appex', 'quillhaven-menu')
LIST_BENCH = os.path.join(ROOT, 'build', 'bench', 'bench', 'list_bench')
SHEET_BENCH = os.path.join(ROOT, 'build', 'bench', 'bench', 'sheet_bench')
PASSWORD = 'Abcdefg1'


TOUCH_MEMORY = """
import mmap
with open('/proc/meminfo') as table:
    available = next(int(line.split()[1]) for line in table if line.startswith('MemAvailable')) * 1024
memory = mmap.mmap(-1, int(available * 0.85), flags=mmap.MAP_PRIVATE | mmap.MAP_ANONYMOUS)
memory.madvise(mmap.MADV_HUGEPAGE)
for offset in range(0, len(memory), mmap.PAGESIZE):
    memory[offset] = 1
"""


def touched(tool, *args, **kwargs):
    """Runs a tool after touching most of the free memory. A virtual machine gets a page from its host only at the first
    access, which takes up to 2 s for 1 GiB, and returns it within seconds; that would slow down the first tool only. The
    memory is touched in a separate process, so that it does not raise the peak of this one."""
    subprocess.run([sys.executable, '-c', TOUCH_MEMORY], check=True)
    return tool(*args, **kwargs)


def timed(command, **kwargs):
    """Returns the seconds, peak resident KiB and processor seconds of a command."""
    start = time.perf_counter()
    process = subprocess.Popen(command, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, **kwargs)
    _, status, usage = os.wait4(process.pid, 0)
    seconds = time.perf_counter() - start
    if status != 0:
        sys.exit('failed: %s' % ' '.join(command))
    return seconds, usage.ru_maxrss, usage.ru_utime + usage.ru_stime


def engine(home, mode, subject):
    """Returns the lines of engine_bench: name -> (seconds, peak KiB, processor seconds)."""
    out = subprocess.run([BENCH, home, mode, str(subject)], check=True, capture_output=True, text=True).stdout
    return {name: (float(seconds), int(peak), float(processor))
            for name, seconds, peak, processor in map(str.split, out.splitlines())}


def report(title, rounds, base):
    """Prints the median of each column and its ratio to the base column."""
    print('\n' + title)
    for name in rounds[0]:
        times = [r[name][0] for r in rounds]
        ratios = [r[name][0] / r[base][0] for r in rounds]
        print('  %-34s %9.4f s   %6.2f x %s   peak %7.1f MiB   processor %7.2f s' % (
            name, statistics.median(times), statistics.median(ratios), base,
            statistics.median(r[name][1] for r in rounds) / 1024, statistics.median(r[name][2] for r in rounds)))


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
        row['cp'] = touched(timed, ['cp', source, os.path.join(work, 'copy')])
        os.remove(os.path.join(work, 'copy'))
        home = tempfile.mkdtemp(dir=work)
        item = os.path.join(home, 'item.bin')
        os.rename(source, item)
        row['quillhaven protect'] = touched(engine, home, 'protect', item)['protect']
        stored = os.path.join(home, '.local', 'share', 'quillhaven')
        os.rename(os.path.join(stored, os.listdir(stored)[0]), source)
        shutil.rmtree(home)
        row['age to a key'] = touched(timed, ['age', '-r', recipient, '-o', os.path.join(work, 'age'), source])
        os.remove(os.path.join(work, 'age'))
        row['gpg --symmetric (AES256)'] = touched(
            timed, ['gpg', '--homedir', gnupg, '--batch', '--pinentry-mode', 'loopback', '--passphrase', PASSWORD,
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


def with_item(work, make, mode):
    """Runs one mode of engine_bench with a new home and a new item."""
    home = tempfile.mkdtemp(dir=work)
    item = make(os.path.join(home, 'item'))
    os.sync()
    result = touched(engine, home, mode, item)
    shutil.rmtree(home)
    return result[mode]


def files_in(count, size):
    """Returns a function that creates a folder of `count` files of random bytes."""
    def make(path):
        os.mkdir(path)
        chunk = os.urandom(1 << 20)
        for i in range(count):
            with open(os.path.join(path, '%05d' % i), 'wb') as file:
                for start in range(0, size, len(chunk)):
                    file.write(chunk[:size - start])
        return path
    return make


def pipeline(work, command):
    """Runs a shell command that writes to $OUT."""
    out = os.path.join(work, 'out')
    result = timed(['bash', '-o', 'pipefail', '-c', command], env=dict(os.environ, OUT=out))
    os.remove(out)
    return result


def keys(work):
    """Returns a gpg command with a password, and an age recipient."""
    gnupg = tempfile.mkdtemp(dir=work)
    os.chmod(gnupg, 0o700)
    gpg = ('gpg --homedir %s --batch --yes --pinentry-mode loopback --passphrase %s' % (gnupg, PASSWORD))
    identity = os.path.join(gnupg, 'age.key')
    subprocess.run(['age-keygen', '-o', identity], check=True, capture_output=True)
    recipient = subprocess.run(['age-keygen', '-y', identity], check=True, capture_output=True, text=True).stdout.strip()
    return gpg, recipient


def bench_backup(work, gib, rounds):
    gpg, recipient = keys(work)
    for title, make in (('10,000 files of 4 KiB', files_in(10000, 4096)),
                        ('%g GiB in 100 files' % gib, files_in(100, int(gib * 1024 ** 3 / 100)))):
        results = []
        folder = make(os.path.join(work, 'folder'))
        for _ in range(rounds):
            tar = 'tar -cf - -C %s folder | ' % work
            row = {'tar | age': touched(pipeline, work, tar + 'age -r %s > $OUT' % recipient)}
            row['quillhaven backup'] = with_item(work, make, 'backup')
            row['tar | gpg --symmetric'] = touched(
                pipeline, work, tar + gpg + ' --symmetric --cipher-algo AES256 --compress-algo none > $OUT')
            results.append(row)
        report('Recovery backup of a folder of ' + title, results, 'tar | age')
        shutil.rmtree(folder)


def bench_recover(work, gib, rounds):
    gpg, _ = keys(work)
    make = files_in(10, int(gib * 1024 ** 3 / 10))
    folder = make(os.path.join(work, 'folder'))
    for name in os.listdir(folder):
        subprocess.run('%s --symmetric --cipher-algo AES256 --compress-algo none %s/%s' % (gpg, folder, name), shell=True,
                       check=True, capture_output=True)
        os.remove(os.path.join(folder, name))
    results = []
    for _ in range(rounds):
        decrypt = 'for f in %s/*; do %s --decrypt -o ${f%%.gpg} $f; rm ${f%%.gpg}; done' % (folder, gpg)
        row = {'gpg --decrypt': touched(timed, ['bash', '-c', decrypt])}
        row['quillhaven recovery'] = with_item(work, make, 'recover')
        results.append(row)
    report('Recovery of %g GiB in 10 backups' % gib, results, 'gpg --decrypt')
    shutil.rmtree(folder)


def plain_shred(path):
    """Shreds in the simplest way: three passes, with a write and an fsync for each chunk of 64 KiB."""
    paths = [os.path.join(path, name) for name in sorted(os.listdir(path))] if os.path.isdir(path) else [path]
    for each in paths:
        size = os.path.getsize(each)
        for value in (b'\0', b'\xff', b'\x5a'):
            chunk = value * 65536
            with open(each, 'r+b', buffering=0) as file:
                for start in range(0, size, 65536):
                    file.write(chunk[:size - start])
                    os.fsync(file.fileno())
        os.rename(each, each + '.gone')
        os.remove(each + '.gone')
        os.sync()
    if os.path.isdir(path):
        os.rmdir(path)


def bench_shred(work, rounds):
    def one_file(path):
        with open(path, 'wb') as file:
            for _ in range(64):
                file.write(os.urandom(1 << 20))
        return path

    for title, make in (('64 MiB in one file', one_file), ('1,000 files of 4 KiB', files_in(1000, 4096))):
        results = []
        for _ in range(rounds):
            path = os.path.join(work, 'victim')
            make(path)
            os.sync()
            row = {'shred -n 3 -u': timed(['bash', '-c', 'find %s -type f -exec shred -n 3 -u {} +' % path])}
            shutil.rmtree(path, ignore_errors=True)
            row['quillhaven shred'] = with_item(work, make, 'shred')
            make(path)
            os.sync()
            row['write and fsync each chunk'] = timed([sys.executable, __file__, '--plain-shred', path])
            results.append(row)
        report('Shredding ' + title, results, 'shred -n 3 -u')


def bench_bulk(work, _):
    print('\nBulk runs')
    for count in (100, 1000, 10000):
        home = tempfile.mkdtemp(dir=work)
        result = engine(home, 'bulk', count)
        shutil.rmtree(home)
        for name in ('unlock', 'lock'):
            seconds, peak, processor = result[name]
            print('  %6d items %-7s %9.3f ms an item   peak %7.1f MiB   processor %7.2f s' % (
                count, name, seconds / count * 1000, peak / 1024, processor))


def bench_idle(work, rounds):
    """One idle period's end with 1,000 unlocked items, beside one mv of as many files to another folder."""
    count = 1000
    results, turns = [], []
    for _ in range(rounds):
        home = tempfile.mkdtemp(dir=work)
        files = files_in(count, 4096)(os.path.join(home, 'files'))
        target = os.path.join(home, 'target')
        os.mkdir(target)
        names = [os.path.join(files, name) for name in os.listdir(files)]
        row = {'mv': timed(['mv', '-t', target] + names)}
        result = engine(home, 'idle', count)
        turns.append(result.pop('turn')[0])
        row.update(result)
        results.append(row)
        shutil.rmtree(home)
    report('Locking 1,000 items at the end of an idle period', results, 'mv')
    print('  longest turn of the main thread %9.1f ms' % (statistics.median(turns) * 1000))


def bench_menu(work, rounds):
    """What a file manager's menu waits for when it asks which entries an item has, with 100 items in the list."""
    home = tempfile.mkdtemp(dir=work)
    engine(home, 'catalogue', 100)
    environment = {'HOME': home, 'PATH': os.environ['PATH']}
    command = [MENU_TOOL, 'offers', '/home/somebody/Documents/project/a document of some length 50.pdf']
    offers = subprocess.run(command, env=environment, check=True, capture_output=True, text=True).stdout.split()
    if 'protect' in offers:
        sys.exit('the menu tool does not know the items: %s' % offers)
    commands = {'python3 -c pass': [sys.executable, '-c', 'pass'], 'bash -c true': ['bash', '-c', 'true'],
                'quillhaven-menu offers': command}
    results = [{name: timed(each, env=environment)[0] for name, each in commands.items()} for _ in range(20 * rounds)]
    print('\nThe entries of a menu, with 100 items')
    for name in commands:
        print('  %-34s %9.2f ms   %6.2f x bash -c true' % (
            name, statistics.median(row[name] for row in results) * 1000,
            statistics.median(row[name] / row['bash -c true'] for row in results)))
    shutil.rmtree(home)


def bench_sheet(rounds):
    """The time from the call that opens each sheet to the first frame that shows it."""
    times = {}
    for _ in range(rounds):
        out = subprocess.run([os.path.join(ROOT, 'tests', 'support', 'with-display.sh'), SHEET_BENCH], check=True,
                             stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True).stdout
        for name, kind, seconds in re.findall(r'^(\S+)-(first|again) ([\d.]+)$', out, re.MULTILINE):
            times.setdefault(name, {}).setdefault(kind, []).append(float(seconds))
    print('\nThe first frame of each sheet: when it is created, and when it is shown again')
    base = times['empty-dialog']
    for name, kinds in times.items():
        print('  %-16s' % name + '   '.join('%7.2f ms %5.2f x empty dialog, longest %7.2f' % (
            statistics.median(found) * 1000, statistics.median(found) / statistics.median(base[kind]), max(found) * 1000)
            for kind, found in kinds.items()))


def bench_list():
    """How long actions on a list of 10,000 items hold the main thread, also with the accessibility bus."""
    for title, before in (('', ['env', '-u', 'QT_LINUX_ACCESSIBILITY_ALWAYS_ON']), (', with the accessibility bus', [])):
        out = subprocess.run([os.path.join(ROOT, 'tests', 'support', 'with-display.sh')] + before + [LIST_BENCH],
                             check=True, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True).stdout
        rows = {}
        for name, action, *figures in re.findall(r'^(dashboard|plain) (\S+) ([\d.]+) ([\d.]+) ([\d.]+)$', out, re.MULTILINE):
            rows.setdefault(action, {}).setdefault(name, []).append([float(figure) for figure in figures])
        print('\nThe longest turn of the main thread in a list of 10,000 items%s: median, longest (processor time, '
              'interval between frames)' % title)
        for action, lists in rows.items():
            print('  %-22s' % action + '    '.join('%-9s %s' % (name, list_figures(found)) for name, found in lists.items()))


def list_figures(found):
    turns, processor, frames = zip(*found)
    return '%7.1f %7.1f ms (%6.1f, %6.1f)' % (statistics.median(turns), max(turns), max(processor), max(frames))


def main():
    if sys.argv[1:2] == ['--plain-shred']:
        plain_shred(sys.argv[2])
        return
    ask = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    ask.add_argument('what', nargs='*', default=['protect', 'move', 'catalogue', 'backup', 'recover', 'shred', 'bulk', 'idle', 'start', 'menu', 'sheet', 'list'])
    ask.add_argument('--gib', type=float, default=1)
    ask.add_argument('--rounds', type=int, default=5)
    args = ask.parse_args()
    work = tempfile.mkdtemp(prefix='quillhaven-bench-', dir=os.environ.get('BENCH_DIR', os.path.expanduser('~')))
    try:
        if 'protect' in args.what:
            bench_protect(work, args.gib, args.rounds)
        if 'move' in args.what:
            bench_move(work, args.gib, args.rounds)
        if 'catalogue' in args.what:
            bench_catalogue(work, args.rounds)
        if 'backup' in args.what:
            bench_backup(work, args.gib, args.rounds)
        if 'recover' in args.what:
            bench_recover(work, args.gib, args.rounds)
        if 'shred' in args.what:
            bench_shred(work, args.rounds)
        if 'bulk' in args.what:
            bench_bulk(work, args.rounds)
        if 'idle' in args.what:
            bench_idle(work, args.rounds)
        if 'start' in args.what:
            bench_start(work, args.rounds)
        if 'sheet' in args.what:
            bench_sheet(args.rounds)
        if 'list' in args.what:
            bench_list()
        if 'menu' in args.what:
            bench_menu(work, args.rounds)
    finally:
        shutil.rmtree(work, ignore_errors=True)  # a gpg agent that is ending removes its sockets meanwhile


if __name__ == '__main__':
    main()
