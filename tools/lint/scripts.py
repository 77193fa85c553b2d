# SPDX-License-Identifier: MIT
"""Lints the scripts of the tree: flake8 for Python, the interpreter of the build for what Python 2
runs, and shellcheck.

Usage: scripts.py BUILD_DIR, in the source folder
"""
import fnmatch
import pathlib
import re
import subprocess
import sys

# Run by Python 3; the rest is for Python 2.
PYTHON3 = ('tools/*', 'docs/site/*', 'bench/run.py', 'companion/generate.py',
           'companion/headers.py', 'companion/signatures.py', 'tests/app/*', 'tests/farm/*',
           'tests/house/*', 'tests/setup/*', 'tests/companion/test_stubs.py',
           'tests/across/hostile/null_host.py', 'tests/across/lifetimes/test_leak_check.py')
# flake8 reads Python 3. It complains of what is not (E999: the interpreter is to judge that), of
# these names, of those that a test puts into itself or takes with a star (F821, F403, F405), and of
# imports that wait for a search path (E402).
PYTHON2_OPTIONS = ['--extend-ignore=E402,E999,F403,F405,F821',
                   '--builtins=basestring,buffer,long,reload,unichr,unicode,xrange']
COMPILE = 'import sys\nfor path in sys.argv[1:]: compile(open(path).read(), path, "exec")'


def passes(*command):
    return subprocess.run(command).returncode == 0


def is_shell(path):
    with open(path, 'rb') as file:
        return path.endswith('.sh') or bool(re.match(rb'#!.*\bb?a?sh$', file.readline().rstrip()))


def main():
    listed = subprocess.run(['git', 'ls-files', '-co', '--exclude-standard'], check=True,
                            stdout=subprocess.PIPE, universal_newlines=True).stdout.splitlines()
    paths = [path for path in listed if pathlib.Path(path).is_file()]
    python = {path: any(fnmatch.fnmatch(path, pattern) for pattern in PYTHON3)
              for path in paths if path.endswith('.py')}
    python3 = [path for path in python if python[path]]
    python2 = [path for path in python if not python[path]]
    interpreter = pathlib.Path(sys.argv[1], 'python2.path').read_text().strip()
    passed = [passes('flake8', *python3), passes('flake8', *PYTHON2_OPTIONS, *python2),
              passes(interpreter, '-B', '-c', COMPILE, *python2),
              passes('shellcheck', *filter(is_shell, paths))]
    return 0 if all(passed) else 1


sys.exit(main())
