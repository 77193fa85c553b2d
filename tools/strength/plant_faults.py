# SPDX-License-Identifier: MIT
"""Measures the strength of the tests: plants the faults of faults.txt one at a time in a private
copy of the tree, builds, runs the tests and writes docs/test_strength.md. Fails when a fault does
not fit the sources or does not compile, and when fewer than 95% are caught."""

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

ROOT = pathlib.Path(__file__).resolve().parents[2]
LEAST_CAUGHT = 0.95
TEST_LIMIT = 240  # seconds for the tests of one fault; a hang is a catch
SURVIVED = '**survived**'
LONG_TESTS = r'^(app\.cli|setup\.script)$'  # left for the end: a run that has failed waits for them

Fault = collections.namedtuple('Fault', 'name kind file old new')
Outcome = collections.namedtuple('Outcome', 'fault caught_by seconds')


def read_faults(path):
    faults = []
    for block in re.split(r'^= ', path.read_text(), flags=re.MULTILINE)[1:]:
        name, place, *change = block.rstrip('\n').split('\n')
        kind, file = place.rsplit(', ', 1)
        old, new = ('\n'.join(line[1:] for line in change if line[:1] == sign) for sign in '-+')
        faults.append(Fault(name, kind, file, old, new))
    return faults


def planted(fault, text):
    if text.count(fault.old) != 1:
        raise SystemExit('%s: %s has the text %d times' % (fault.name, fault.file,
                                                           text.count(fault.old)))
    return text.replace(fault.old, fault.new)


class Copy(object):
    """The tree, copied and built in a folder of its own."""

    def __init__(self, folder, jobs):
        self.tree = folder / 'tree'
        self.build = self.tree / 'build'
        self.jobs = '-j%d' % jobs
        self.environment = dict(os.environ, CCACHE_BASEDIR=str(self.tree), CCACHE_NOHASHDIR='1')

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

    def prepare(self):
        self.update()
        launcher = ['-DCMAKE_CXX_COMPILER_LAUNCHER=ccache'] if shutil.which('ccache') else []
        configured = self.run('cmake', '--preset', 'release', *launcher)
        if configured.returncode or not self.compiles():
            raise SystemExit('the copy does not build in ' + str(self.tree))
        failed = self.failed_test()
        if failed:
            raise SystemExit('a test fails without any fault: ' + failed)

    def compiles(self):
        self.output = self.run('ninja', '-C', str(self.build), self.jobs)
        return self.output.returncode == 0

    def failed_test(self):
        """The first test that fails, or None."""
        for choice in ('-E', '-R'):
            result = self.run('timeout', '-k', '5', str(TEST_LIMIT), 'ctest', choice, LONG_TESTS,
                              '--test-dir', str(self.build), self.jobs, '--stop-on-failure',
                              '--timeout', '60')
            if result.returncode:
                found = re.search(r'^\s*\d+ - (\S+) \((?!Not Run)', result.stdout, re.MULTILINE)
                return found.group(1) if found else 'no test ended in %d s' % TEST_LIMIT
        return None

    def outcome(self, fault):
        path = self.tree / fault.file
        sound = path.read_text()
        start = time.monotonic()
        path.write_text(planted(fault, sound))
        try:
            if not self.compiles():
                raise SystemExit('%s: does not compile\n%s' % (fault.name,
                                                               self.output.stdout[-3000:]))
            return Outcome(fault, self.failed_test(), time.monotonic() - start)
        finally:
            path.write_text(sound)


def earlier_outcomes(path, faults):
    """What a table that was written before says, by fault."""
    known = {fault.name: fault for fault in faults}
    rows = re.findall(r'^\| (.+?) \| .+? \| .+? \| (.+?) \| (\d+) \|$', path.read_text(),
                      re.MULTILINE)
    return {name: Outcome(known[name], None if caught_by == SURVIVED else caught_by, int(seconds))
            for name, caught_by, seconds in rows if name in known}


def report(outcomes):
    caught = sum(1 for outcome in outcomes if outcome.caught_by)
    lines = ['# Strength of the tests', '',
             'Faults planted one at a time in a copy of the tree, and the first test that failed; '
             'written by `make strength` (`tools/strength/plant_faults.py`).', '',
             '**%d of %d faults are caught (%.0f%%).**' % (caught, len(outcomes),
                                                           100 * caught / len(outcomes)), '',
             '| Fault | Kind | File | Caught by | Seconds |', '|---|---|---|---|---:|']
    lines += ['| %s | %s | %s | %s | %.0f |' % (o.fault.name, o.fault.kind, o.fault.file,
                                                o.caught_by or SURVIVED, o.seconds)
              for o in outcomes]
    return '\n'.join(lines) + '\n'


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument('--folder', type=pathlib.Path, required=True, help='for the copy')
    parser.add_argument('--only', default='', help='regular expression for names of faults; the '
                        'other rows of the table stay')
    parser.add_argument('--jobs', type=int, default=2)
    parser.add_argument('--output', type=pathlib.Path, help='where the table goes')
    options = parser.parse_args()
    resource.setrlimit(resource.RLIMIT_CORE, (0, 0))  # planted faults crash
    faults = read_faults(pathlib.Path(__file__).with_name('faults.txt'))
    for fault in faults:
        planted(fault, (ROOT / fault.file).read_text())
    copy = Copy(options.folder.resolve(), options.jobs)
    copy.prepare()
    output, outcomes = options.output, {}
    if options.only and output and output.exists():
        outcomes = earlier_outcomes(output, faults)
    for fault in faults:
        if re.search(options.only, fault.name):
            found = outcomes[fault.name] = copy.outcome(fault)
            print('%5.0f s  %s: %s' % (found.seconds, fault.name, found.caught_by or 'SURVIVED'),
                  flush=True)
            if output:
                output.write_text(report([outcomes[f.name] for f in faults if f.name in outcomes]))
    caught = sum(1 for outcome in outcomes.values() if outcome.caught_by)
    print('%d of %d faults are caught' % (caught, len(outcomes)))
    return caught < LEAST_CAUGHT * len(outcomes)


if __name__ == '__main__':
    sys.exit(main())
