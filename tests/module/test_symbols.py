# SPDX-License-Identifier: MIT
"""What the built module leaves to others to define: the members that its rows name, the operations
in host_operations.txt, the interpreter's interface and the C and C++ runtime. Runs on Python 3."""
import json
import os
import re
import subprocess
import sys
import unittest

MODULE, DESCRIPTION = sys.argv.pop(1), sys.argv.pop(1)
INTERPRETER = re.compile(r'_?Py[A-Z_]\w*$')
RUNTIME = re.compile(r'@(GLIBC|GLIBCXX|CXXABI|GCC)_[\d.]+$|(_ITM_\w+TMCloneTable|__gmon_start__)$')


def listed():
    with open(os.path.join(os.path.dirname(__file__), 'host_operations.txt')) as lines:
        return {line.strip() for line in lines if line.strip() and line[0] != '#'}


def row_members():
    with open(DESCRIPTION) as description:
        rows = json.load(description)['functions']
    members = set()
    for row in rows:
        name = 'operator=' if row['member'] == 'assign' else row['member']
        members |= {'%s::%s' % (row['class'], member)
                    for member in (name, row['class'], '~' + row['class'])}
    return members


def imported():
    """Symbols with their versions, and what they stand for."""
    listing = subprocess.check_output(['nm', '-D', '--undefined-only', MODULE], text=True)
    symbols = [line.split()[-1] for line in listing.splitlines()]
    names = subprocess.check_output(['c++filt'], input='\n'.join(symbols), text=True)
    return dict(zip(symbols, names.splitlines()))


class Symbols(unittest.TestCase):
    def setUp(self):
        self.listed, self.members = listed(), row_members()

    def is_allowed(self, symbol, name):
        return bool(RUNTIME.search(symbol) or INTERPRETER.match(symbol) or name in self.listed or
                    name.split('(')[0] in self.members)

    def test_nothing_else_is_imported(self):
        symbols = imported()
        self.assertGreater(len(symbols), 1000)
        self.assertEqual([name for symbol, name in symbols.items()
                          if not self.is_allowed(symbol, name)], [])
        self.assertEqual(self.listed - set(symbols.values()), set(), 'not needed any more')


if __name__ == '__main__':
    unittest.main()
