# SPDX-License-Identifier: MIT
"""Tells which files do not belong into the repository, large ones, programs, libraries and dumps,
and which sources do not name their license.

Usage: tracked.py, in the source folder
"""
import pathlib
import re
import subprocess
import sys

MOST_BYTES = 1000000
# How programs, libraries and dumps begin; core dumps are ELF files too.
BINARIES = {b'\x7fELF': 'an ELF file', b'MZ': 'a Windows program', b'!<arch>\n': 'a library',
            b'\xcf\xfa\xed\xfe': 'a Mach-O file', b'MDMP': 'a dump'}
LICENSED = re.compile(r'(\.(h|cpp|inc|def|py|sh|cmake)|(^|/)CMakeLists\.txt)$')
LICENSE = re.compile(r'^(//|#) SPDX-License-Identifier: MIT$', re.MULTILINE)


def large(path, content):
    if len(content) > MOST_BYTES:
        return 'has %d bytes' % len(content)


def binary(path, content):
    kinds = [kind for start, kind in BINARIES.items() if content.startswith(start)]
    return 'is ' + kinds[0] if kinds else None


def unlicensed(path, content):
    begin = b'\n'.join(content.split(b'\n')[:3]).decode(errors='replace')
    if LICENSED.search(path) and not LICENSE.search(begin):
        return 'does not name its license in the first three lines'


CHECKS = large, binary, unlicensed


def main():
    listed = subprocess.run(['git', 'ls-files', '-z'], check=True, stdout=subprocess.PIPE,
                            universal_newlines=True).stdout.split('\0')
    found = 0
    for path in filter(None, listed):
        file = pathlib.Path(path)
        content = file.read_bytes() if file.is_file() else b''
        for complaint in filter(None, (check(path, content) for check in CHECKS)):
            print(path, complaint)
            found += 1
    return 1 if found else 0


if __name__ == '__main__':
    sys.exit(main())
