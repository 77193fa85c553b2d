# SPDX-License-Identifier: MIT
"""Checks the stubs with mypy and pyright: they are sound, accept the documentation's programs and
all examples, and refuse planted mistakes.

Usage: stubs.py BUILD, in the source folder; the stubs are in BUILD/python, pyright in BUILD/pyright
"""
import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile

PAGES = ['README.md'] + ['docs/%s.md' % page for page in (
    'callbacks', 'first_script', 'frames', 'nodes', 'renderers', 'testing', 'tiles')]
# They read Python 3 only.
PYTHON2 = 'xrange = range\nunicode = basestring = str\n'

CALLBACK = 'from OpenQuilRender import *\nclass C(ZRenderCallback):\n' \
    '    def renderCallback(self, data: ZRenderData) -> bool:\n        %s\n        return True\n'
# A mistake, and the kinds of error that mypy and pyright are to call it.
PLANTED = [
    ('from OpenQuil import DoubleBuffer\nfrom OpenQuilRender import ZRenderView\n'
     'ZRenderView.updatePixels(0, 1, 0, 1, DoubleBuffer(4))', 'arg-type', 'reportArgumentType'),
    ('from OpenQuilRender import ZRenderView\nZRenderView.startRender(320)', 'call-arg',
     'reportCallIssue'),
    (CALLBACK % 'data.rgbaArr.reed(0, 4)', 'attr-defined', 'reportAttributeAccessIssue'),
    (CALLBACK % 'data.xsize = "320"', 'assignment', 'reportAttributeAccessIssue'),
    ('from OpenQuil import ZImage\nprint(ZImage().depthMap()[0])', 'index',
     'reportOptionalSubscript'),
]
# What is always there in a callback is not to be asked for, and buffers stand for what they hold.
ACCEPTED = [
    CALLBACK % 'data.rgbaArr.write(0, data.depthArr.readBytes(0, 4))',
    'from OpenQuil import LayerBuffer, PixelBuffer\nfrom OpenQuilRender import ZRenderView\n'
    'ZRenderView.updatePixels(0, 1, 0, 1, PixelBuffer(4), False, 1, LayerBuffer(1))',
]
# In a stub, where the second one is never chosen.
OVERLOADS = 'from typing import overload\n@overload\ndef f(x: float) -> int: ...\n' \
    '@overload\ndef f(x: int) -> str: ...\n'


class Checker(object):
    """A type checker in a folder that has the stubs in `typings`."""

    def __init__(self, folder, command, error):
        self.folder = folder
        self.command = command
        self.error = error  # how it tells one, with its kind in brackets

    def errors(self, *files):
        """What it says of them: the kinds of the errors, and its output."""
        end = subprocess.run(self.command + list(files), cwd=self.folder, stdout=subprocess.PIPE,
                             stderr=subprocess.STDOUT, universal_newlines=True,
                             env=dict(os.environ, MYPYPATH='typings'))
        kinds = re.findall(self.error, end.stdout, re.MULTILINE)
        if bool(kinds) != bool(end.returncode):
            sys.exit('%s does not run:\n%s' % (self.command[0], end.stdout))
        return kinds, end.stdout


def checkers(build, folder):
    """In the order of the kinds in PLANTED."""
    return [
        Checker(folder, ['mypy', '--check-untyped-defs', '--no-error-summary',
                         '--show-error-codes', '--cache-dir', 'cache'],
                r' error: .*\[([\w-]+)\]$'),
        Checker(folder, [str(build.resolve() / 'pyright/node_modules/.bin/pyright'),
                         '--level', 'error'],
                r'^ .*\((report\w+)\)$')]


def for_python3(text):
    """The program with what Python 2 calls otherwise, behind its imports from the future."""
    future = re.search(r'^from __future__ .*\n', text, re.MULTILINE)
    at = future.end() if future else 0
    return text[:at] + PYTHON2 + text[at:]


def write_programs(folder):
    """Puts examples and printed programs into the folder; returns their names."""
    programs = {path.name: path.read_text(encoding='utf-8')
                for path in pathlib.Path('examples').glob('*.py')}
    for page in PAGES:
        text = pathlib.Path(page).read_text(encoding='utf-8')
        found = list(re.finditer(r'(?:`(\w+\.py)`[^`]*)?```python\n(.*?)```', text, re.DOTALL))
        if not found:
            sys.exit('%s has no program' % page)
        for match in found:
            name = match[1] or '%s_%d.py' % (pathlib.Path(page).stem, len(programs))
            programs[name] = match[2]
    for name, text in programs.items():
        (folder / name).write_text(for_python3(text), encoding='utf-8')
    return list(programs)


def main():
    build = pathlib.Path(sys.argv[1])
    failures = []
    with tempfile.TemporaryDirectory() as name:
        folder = pathlib.Path(name)
        # Without the modules beside them, which are written for Python 2.
        stubs = folder / 'typings'
        stubs.mkdir()
        for path in (build / 'python').glob('*.pyi'):
            shutil.copy(path, stubs)
        accepted = ['typings/' + path.name for path in stubs.glob('*.pyi')]
        accepted += write_programs(folder)
        for i, text in enumerate(ACCEPTED):
            accepted.append('accepted_%d.py' % i)
            (folder / accepted[-1]).write_text(text)
        (folder / 'overloads.pyi').write_text(OVERLOADS)
        for place, checker in enumerate(checkers(build, folder)):
            kinds, output = checker.errors(*accepted)
            if kinds:
                failures.append(output)
            for i, (text, *refusals) in enumerate(PLANTED):
                (folder / ('planted_%d.py' % i)).write_text(text)
                kinds, output = checker.errors('planted_%d.py' % i)
                if kinds != [refusals[place]]:
                    failures.append('not refused as %s:\n%s\n%s' % (refusals[place], text, output))
            if not re.search('never be (matched|used)', checker.errors('overloads.pyi')[1]):
                failures.append('an overload that is never chosen is not found\n')
    print(''.join(failures), end='')
    return 1 if failures else 0


if __name__ == '__main__':
    sys.exit(main())
