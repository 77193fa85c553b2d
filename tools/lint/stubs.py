# SPDX-License-Identifier: MIT
"""Checks the stubs with mypy: they are sound, accept the documentation's programs and all examples,
and refuse planted mistakes.

Usage: stubs.py FOLDER, in the source folder; FOLDER has the stubs
"""
import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile

PAGES = 'README.md', 'docs/testing.md', 'docs/nodes.md'
# mypy reads Python 3 only; what Python 2 calls otherwise is put into the first line.
PYTHON2 = 'xrange = range; unicode = basestring = str; '

CALLBACK = 'from OpenQuilRender import *\nclass C(ZRenderCallback):\n' \
    '    def renderCallback(self, data: ZRenderData) -> bool:\n        %s\n        return True\n'
# A mistake, and the kind of error that mypy is to call it.
PLANTED = [
    ('from OpenQuil import DoubleBuffer\nfrom OpenQuilRender import ZRenderView\n'
     'ZRenderView.updatePixels(0, 1, 0, 1, DoubleBuffer(4))', 'arg-type'),
    ('from OpenQuilRender import ZRenderView\nZRenderView.startRender(320)', 'call-arg'),
    (CALLBACK % 'data.rgbaArr.reed(0, 4)', 'attr-defined'),
    (CALLBACK % 'data.xsize = "320"', 'assignment'),
    ('from OpenQuil import ZImage\nprint(ZImage().depthMap()[0])', 'index'),
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


def mypy(folder, stubs, *files):
    """The errors by file: the lines and what mypy says."""
    command = ['mypy', '--check-untyped-defs', '--no-error-summary',
               '--show-error-codes', '--cache-dir', os.path.join(folder, 'cache'), *files]
    end = subprocess.run(command, cwd=folder, env=dict(os.environ, MYPYPATH=stubs),
                         stdout=subprocess.PIPE, stderr=subprocess.STDOUT, universal_newlines=True)
    return end.stdout


def write_programs(folder):
    """Puts examples and printed programs into the folder; returns their names."""
    names = []
    for path in pathlib.Path('examples').glob('*.py'):
        text = path.read_text(encoding='utf-8')
        (folder / path.name).write_text(re.sub('^.*', PYTHON2, text, count=1), encoding='utf-8')
        names.append(path.name)
    for page in PAGES:
        text = pathlib.Path(page).read_text(encoding='utf-8')
        found = list(re.finditer(r'(?:`(\w+\.py)`[^`]*)?```python\n(.*?)```', text, re.DOTALL))
        if not found:
            sys.exit('%s has no program' % page)
        for match in found:
            name = match[1] or '%s_%d.py' % (pathlib.Path(page).stem, len(names))
            (folder / name).write_text(PYTHON2 + match[2], encoding='utf-8')
            names.append(name)
    return names


def main():
    stubs = os.path.abspath(sys.argv[1])
    failures = []
    with tempfile.TemporaryDirectory() as name:
        folder = pathlib.Path(name)
        # Without the modules beside them, which are written for Python 2.
        only = folder / 'stubs'
        only.mkdir()
        for path in pathlib.Path(stubs).glob('*.pyi'):
            shutil.copy(path, only)
        failures.append(mypy(name, str(only), *map(str, only.glob('*.pyi'))))
        failures.append(mypy(name, str(only), *write_programs(folder)))
        for i, text in enumerate(ACCEPTED):
            (folder / ('accepted_%d.py' % i)).write_text(text)
            failures.append(mypy(name, str(only), 'accepted_%d.py' % i))
        for i, (text, kind) in enumerate(PLANTED):
            (folder / ('planted_%d.py' % i)).write_text(text)
            found = mypy(name, str(only), 'planted_%d.py' % i)
            if re.findall(r'\[([\w-]+)\]$', found, re.MULTILINE) != [kind]:
                failures.append('not refused as [%s]:\n%s\n%s' % (kind, text, found))
        (folder / 'overloads.pyi').write_text(OVERLOADS)
        if 'never be matched' not in mypy(name, str(only), 'overloads.pyi'):
            failures.append('an overload that is never chosen is not found\n')
    print(''.join(failures), end='')
    return 1 if any(failures) else 0


if __name__ == '__main__':
    sys.exit(main())
