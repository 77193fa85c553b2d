# SPDX-License-Identifier: MIT
"""Tells how many lines of tests there are to a line of code, and fails when they are too many: they
cost upkeep as well, so a new test had better replace a weaker one. The lines of C++ and Python that
are not blank count, those of tests/ against all others; those of lists and data do not.

Usage: test_ratio.py, in the source folder
"""
import pathlib
import subprocess
import sys

MOST = 0.33
LANGUAGES = '.h', '.cpp', '.inc', '.py'


def lines(path):
    return sum(not line.isspace() for line in path.read_text().splitlines(keepends=True))


def main():
    listed = subprocess.run(['git', 'ls-files', '-co', '--exclude-standard'], check=True,
                            stdout=subprocess.PIPE, universal_newlines=True).stdout.splitlines()
    paths = [path for path in map(pathlib.Path, listed)
             if path.suffix in LANGUAGES and path.is_file()]
    tests = sum(lines(path) for path in paths if path.parts[0] == 'tests')
    code = sum(lines(path) for path in paths if path.parts[0] != 'tests')
    print('%d lines of tests, %d of code: %.3f (at most %.2f)' % (tests, code, tests / code, MOST))
    return tests > MOST * code


if __name__ == '__main__':
    sys.exit(main())
