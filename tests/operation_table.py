# SPDX-License-Identifier: MIT
"""Tables of what operations come to, as tests; for Python 2.

    # a comment
    [The title of a section]           begins a test with names of its own
    v = ZVector(1, 2, 4)               a statement
    v.x + v.z => 5                     the value that must come out, evaluated behind the left one
    v[3] = 1 !> IndexError: no such    what must be raised, and a part of its text
    v.isEquivalent(ZVector(),          an indented line goes on with the one before it
                   9) => True

Numbers that are not both whole may differ by a millionth; all else has the type and the elements
that are named. In every section, `folder` is an empty folder of its own, and node(name) and
path(name) are those of the scene."""
import ast
import io
import os
import re
import shutil
import tempfile
import unittest

import OpenQuil

TITLE = re.compile(r'\[((?!.* [=!]> ).+)\]$')
TOLERANCE = 1e-6
PLAIN = int, type(1 << 64), str, type(u'')  # equal also where their types differ


def alike(found, named):
    """Whether both are one value. Order counts, and so does True not being 1."""
    if isinstance(found, bool) or isinstance(named, bool):
        return found is named
    if isinstance(found, float) or isinstance(named, float):
        return found == named or (found != found and named != named) or (
            abs(found - named) < TOLERANCE * max(1, abs(named)))
    if type(found) not in PLAIN and type(found) is not type(named):
        return False
    if type(found) in PLAIN + (dict,) or not hasattr(found, '__getitem__'):
        return found == named
    return len(found) == len(named) and all(alike(found[i], named[i]) for i in range(len(named)))


class Row(object):
    """A statement or an expectation, which knows its place in the table."""

    def __init__(self, path, line, text):
        self.path, self.line, self.text = path, line, text
        self.act, self.sign, self.named = [
            part.strip() for part in (re.split(r'\s(=>|!>)\s', text, 1) + ['', ''])[:3]]
        if self.sign == '=>':
            self.act, self.named = self.compiled(self.act), self.compiled(self.named)
        else:
            self.act = self.compiled(self.act, 'exec')
            self.error, _, self.message = self.named.encode('utf-8').partition(': ')
        if not self.sign:
            self.check_that_it_does_something()

    def compiled(self, text, mode='eval'):
        code = text if mode == 'exec' else '(%s\n)' % text
        return compile('\n' * (self.line - 1) + code, self.path, mode)

    def check_that_it_does_something(self):
        last = ast.parse(self.text).body[-1]
        if isinstance(last, ast.Expr) and not isinstance(last.value, ast.Call):
            raise ValueError('%s: a value that nothing looks at' % self)

    def run(self, test, names):
        if self.sign == '!>':
            self.expect_error(test, names)
        elif self.sign:
            found, named = eval(self.act, names), eval(self.named, names)
            if not alike(found, named):
                test.fail('%s: it is %r' % (self, found))
        else:
            exec(self.act, names)

    def expect_error(self, test, names):
        try:
            exec(self.act, names)
        except Exception as error:
            if type(error) is not eval(self.error, names) or self.message not in str(error):
                test.fail('%s: raised %s: %s' % (self, type(error).__name__, error))
        else:
            test.fail('%s: nothing was raised' % self)

    def __str__(self):
        return '%s:%d: %s' % (os.path.basename(self.path), self.line, self.text)


def sections(path):
    """The titles, in their order, and the rows of each."""
    lines, found = [], []
    with io.open(path, encoding='utf-8') as table:
        for number, line in enumerate(table, 1):
            line = line.rstrip()
            if line[:1] == ' ':
                lines[-1][1] += '\n' + line
            elif line and line[0] != '#':
                lines.append([number, line])
    for number, text in lines:
        title = TITLE.match(text)
        if title:
            found.append((title.group(1), []))
        else:
            found[-1][1].append(Row(path, number, text))
    return found


def node(name):
    found, selection = OpenQuil.ZObject(), OpenQuil.ZSelectionList()
    selection.add(name)
    selection.getDependNode(0, found)
    return found


def path(name):
    found = OpenQuil.ZDagPath()
    OpenQuil.ZDagPath.getAPathTo(node(name), found)
    return found


def test_case(table, names, clean_up=None):
    """A class of tests, one for each section of the table. `names` are those that all have;
    `clean_up` is called behind each."""

    class Operations(unittest.TestCase):
        def go_through(self, rows):
            folder = tempfile.mkdtemp()
            self.addCleanup(shutil.rmtree, folder)
            if clean_up:
                self.addCleanup(clean_up)
            own = dict(names, folder=folder, node=node, path=path)
            for row in rows:
                row.run(self, own)

    for title, rows in sections(table):
        name = 'test_' + re.sub(r'\W+', '_', title)
        if hasattr(Operations, name) or not any(row.sign for row in rows):
            raise ValueError('%s: [%s] is there twice, or expects nothing' % (table, title))
        setattr(Operations, name, lambda self, rows=rows: self.go_through(rows))
    return Operations
