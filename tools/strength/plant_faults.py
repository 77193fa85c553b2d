# SPDX-License-Identifier: MIT
"""Measures the strength of the tests: plants the faults of faults.txt, and random operator flips,
one at a time in a private copy of the tree, builds, runs the tests and writes
docs/test_strength.md. Fails when a fault does not fit the sources or does not compile, and when
fewer than 90% of those of the binding, of the host or of the flips are caught."""

import argparse
import collections
import os
import pathlib
import re
import resource
import shutil
import subprocess
import sys
import time

import flips

ROOT = pathlib.Path(__file__).resolve().parents[2]
sys.path.insert(0, str(ROOT / 'tools' / 'lint'))
from layers import LAYERS  # noqa: E402: it says where the tests of each folder are

LEAST_CAUGHT = 0.90
AREA_LIMIT = 120  # seconds for the tests of the fault's own area; a hang is a catch
TEST_LIMIT = 300  # seconds for all others
SLOW = 2  # seconds: tests that take longer come last
SURVIVED = '**survived**'
# What tests run that are scripts, beside their area's own targets.
PROGRAMS = ['devhost/app/all', 'devhost/core_module/all', 'devhost/farm/all', 'module/all',
            'companion/all']
GROUPS = collections.OrderedDict([
    ('binding', 'Planted in the binding'), ('host', 'Planted in the development host'),
    ('flips', 'Random operator flips')])


class Fault(collections.namedtuple('Fault', 'name kind file old new')):
    @property
    def group(self):
        return 'host' if self.file.startswith(('devhost/', 'host/')) else 'binding'

    def planted(self, text):
        return text.replace(self.old, self.new)


def read_faults(path):
    faults = []
    for block in re.split(r'^= ', path.read_text(), flags=re.MULTILINE)[1:]:
        name, place, *change = block.rstrip('\n').split('\n')
        kind, file = place.rsplit(', ', 1)
        old, new = ('\n'.join(line[1:] for line in change if line[:1] == sign) for sign in '-+')
        faults.append(Fault(name, kind, file, old, new))
    return faults


def misfit_of(fault):
    """What is wrong with a fault for the sources as they are, or None."""
    path = ROOT / fault.file
    count = path.read_text().count(fault.old) if path.exists() else 0
    if count != 1:
        return '%s: %s has the text %d times' % (fault.name, fault.file, count)
    return None if area_of(fault.file) else '%s: %s has no tests' % (fault.name, fault.file)


def area_of(file):
    """The folder of the tests of a source file's folder."""
    return LAYERS[os.path.dirname(file)][1]


class Copy(object):
    """The tree, copied and built in a folder of its own."""

    def __init__(self, folder, jobs):
        self.tree = folder / 'tree'
        self.build = self.tree / 'build'
        self.jobs = '-j%d' % jobs
        self.environment = dict(os.environ, CCACHE_BASEDIR=str(self.tree), CCACHE_NOHASHDIR='1')
        self.slow = []

    def run(self, *command):
        return subprocess.run(command, cwd=self.tree, env=self.environment,
                              stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                              stderr=subprocess.STDOUT, text=True, errors='replace')

    def update(self):
        """Brings the sources up to date; files that are the same keep their time."""
        listed = subprocess.run(['git', 'ls-files', '-co', '--exclude-standard'], cwd=ROOT,
                                check=True, stdout=subprocess.PIPE, text=True).stdout.split('\n')
        listed.append('build/python2.path')  # the interpreter that was chosen for this tree
        names = {name for name in listed if (ROOT / name).is_file()}
        for name in names:
            source, target = ROOT / name, self.tree / name
            target.parent.mkdir(parents=True, exist_ok=True)
            if not target.exists() or source.read_bytes() != target.read_bytes():
                shutil.copy(source, target)
        for found in self.tree.rglob('*'):
            if found.is_file() and self.build not in found.parents and \
                    str(found.relative_to(self.tree)) not in names:
                found.unlink()

    def prepare(self, with_baseline):
        self.update()
        launcher = ['-DCMAKE_CXX_COMPILER_LAUNCHER=ccache'] if shutil.which('ccache') else []
        configured = self.run('cmake', '--preset', 'release', *launcher)
        if configured.returncode or not self.compiles():
            raise SystemExit('the copy does not build in ' + str(self.tree))
        failed = with_baseline and self.failed_test(2 * TEST_LIMIT)
        if failed:
            raise SystemExit('a test fails without any fault: ' + failed)
        passed = re.findall(r'Test +#\d+: (\S+) .*Passed +([\d.]+) sec', self.tests.stdout) \
            if with_baseline else []
        self.slow = [re.escape(name) for name, seconds in passed if float(seconds) > SLOW]
        # From now on the sound files come from there; those with faults would never be asked for.
        self.environment['CCACHE_READONLY'] = '1'

    def compiles(self, *targets):
        self.output = self.run('ninja', '-C', str(self.build), self.jobs, *targets)
        return self.output.returncode == 0

    def failed_test(self, limit, *choice):
        """The first of the chosen tests that fails, or None."""
        result = self.tests = self.run('timeout', '-k', '5', str(limit), 'ctest', '--test-dir',
                                       str(self.build),
                                       self.jobs, '--stop-on-failure', '--timeout', '60', *choice)
        if not result.returncode:
            return None
        # A parameter may follow the name: "# GetParam() = ...".
        found = re.search(r'^\s*\d+ - (\S+) .*\((?!Not Run)\w', result.stdout, re.MULTILINE)
        return found.group(1) if found else 'a time limit'

    def catcher(self, fault):
        """The test that catches the planted fault, or None. Those of its area come first, as they
        need the least to be built, and slow ones last."""
        area = area_of(fault.file)
        tests = '^%s[.]' % os.path.basename(area)
        programs = PROGRAMS if any((self.tree / area).glob('test_*.py')) else []
        if not self.compiles(area + '/all', *programs):
            raise ValueError(self.output.stdout[-3000:])
        failed = self.failed_test(AREA_LIMIT, '-R', tests)
        if failed:
            return failed
        if not self.compiles():
            raise ValueError(self.output.stdout[-3000:])
        slow = '^(%s)$' % '|'.join(self.slow) if self.slow else '^$'
        return self.failed_test(TEST_LIMIT, '-E', '%s|%s' % (tests, slow)) or (
            self.slow and self.failed_test(TEST_LIMIT, '-E', tests, '-R', slow)) or None

    def try_out(self, fault):
        """Raises ValueError when the fault does not compile."""
        path = self.tree / fault.file
        sound = path.read_text()
        path.write_text(fault.planted(sound))
        try:
            return self.catcher(fault)
        finally:
            path.write_text(sound)


def cell(text):
    return text.replace('|', '\\|')


def row(fault, caught_by):
    return '| %s | %s | %s | %s |' % (cell(fault.name), fault.kind, fault.file,
                                      caught_by or SURVIVED)


def key(fault):
    return cell(fault.name), fault.file


def earlier_outcomes(path):
    """What a table that was written before says, by key."""
    rows = re.findall(r'^\| (.+) \| [^|]+ \| ([^|]+) \| ([^|]+) \|$', path.read_text(),
                      re.MULTILINE)
    return {(name, file): None if caught_by == SURVIVED else caught_by
            for name, file, caught_by in rows}


def in_groups(tried):
    groups = collections.OrderedDict((group, []) for group in GROUPS)
    for fault, caught_by in tried:
        groups[fault.group].append((fault, caught_by))
    return groups


def summary(title, tried):
    caught = sum(1 for fault, caught_by in tried if caught_by)
    return '%s: %d of %d are caught (%.0f%%)' % (title, caught, len(tried),
                                                 100 * caught / max(len(tried), 1))


def report(tried):
    lines = ['# Strength of the tests', '',
             'Faults planted one at a time in a copy of the tree, and the first test that failed: '
             'those of the', 'folder\'s own tests are run first. The flips are the first %d that '
             'compile of all operators in a' % len([f for f, c in tried if f.group == 'flips']),
             'fixed random order. Written by `make strength` '
             '(`tools/strength/plant_faults.py`).', '']
    groups = in_groups(tried)
    lines += ['- %s' % summary(GROUPS[group], members) for group, members in groups.items()]
    for group, members in groups.items():
        lines += ['', '## ' + GROUPS[group], '', '| Fault | Kind | File | Caught by |',
                  '|---|---|---|---|']
        members.sort(key=lambda tried: tried[1] is not None)  # what was missed comes first
        lines += [row(fault, caught_by) for fault, caught_by in members]
    return '\n'.join(lines) + '\n'


class Run(object):
    def __init__(self, options, copy, earlier):
        self.options = options
        self.copy = copy
        self.earlier = earlier
        self.tried = []

    def take(self, fault):
        """Adds the outcome of a fault, if it has any. Raises ValueError when it does not
        compile."""
        known = key(fault) in self.earlier
        wanted = re.search(self.options.only, fault.name)
        if wanted and not (known and self.options.resume):
            start = time.monotonic()
            caught_by = self.copy.try_out(fault)
            print('%4.0f s  %s: %s: %s' % (time.monotonic() - start, fault.file, fault.name,
                                           caught_by or 'SURVIVED'), flush=True)
        elif known:
            caught_by = self.earlier[key(fault)]
        else:
            return
        self.tried.append((fault, caught_by))

    def write(self):
        if self.options.output:
            self.options.output.write_text(report(self.tried))


def read_options():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument('--check', action='store_true',
                        help='only look whether every fault fits the sources')
    parser.add_argument('--folder', type=pathlib.Path, help='for the copy',
                        default=ROOT / 'build' / 'strength')
    parser.add_argument('--only', default='', help='regular expression for names of faults; the '
                        'other rows of the table stay')
    parser.add_argument('--resume', action='store_true', help='those in the table stay')
    parser.add_argument('--flips', type=int, default=100, help='how many operators to flip')
    parser.add_argument('--no-baseline', action='store_true',
                        help='believe that all tests pass without a fault')
    parser.add_argument('--jobs', type=int, default=2)
    parser.add_argument('--output', type=pathlib.Path, help='where the table goes')
    return parser.parse_args()


def main():
    options = read_options()
    faults = read_faults(pathlib.Path(__file__).with_name('faults.txt'))
    misfits = [str(misfit) for misfit in map(misfit_of, faults) if misfit]
    if misfits:
        raise SystemExit('\n'.join(misfits))
    candidates = flips.find(ROOT)
    if options.check:
        in_host = sum(1 for fault in faults if fault.group == 'host')
        print('%d faults, %d of them in the host, and %d operators that can be flipped' %
              (len(faults), in_host, len(candidates)))
        return 0
    resource.setrlimit(resource.RLIMIT_CORE, (0, 0))  # planted faults crash
    copy = Copy(options.folder.resolve(), options.jobs)
    copy.prepare(not options.no_baseline)
    keep = (options.only or options.resume) and options.output and options.output.exists()
    run = Run(options, copy, earlier_outcomes(options.output) if keep else {})
    broken = []
    for fault in faults:
        try:
            run.take(fault)
        except ValueError as error:
            broken.append(fault.name)
            print('%s: does not compile\n%s' % (fault.name, error), flush=True)
        run.write()
    last = len(run.tried) + options.flips
    for flip in candidates:
        if len(run.tried) == last:
            break
        try:
            run.take(flip)
        except ValueError:
            continue
        run.write()
    print(''.join('does not compile: %s\n' % name for name in broken), end='')
    weak = bool(broken)
    for group, members in in_groups(run.tried).items():
        print(summary(GROUPS[group], members))
        weak |= sum(1 for fault, caught_by in members if caught_by) < LEAST_CAUGHT * len(members)
    return weak


if __name__ == '__main__':
    sys.exit(main())
