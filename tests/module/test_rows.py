# SPDX-License-Identifier: MIT
"""The functions of the render families, each against the table of declared types in rows.tsv:
presence, calling flag, overloads. The complaints about arguments and counts are those of
tests/across/hostile."""
import unittest

import harness
from harness import module, O


NO_OVERLOAD = """Wrong number or type of arguments for overloaded function '%s'.
  Possible C/C++ prototypes are:
%s"""


class RowTest(harness.Test):
    def test_rows_are_those_of_the_table(self):
        declared = dict((row[0], row[1]) for row in harness.rows())
        declared['SWIG_PyInstanceMethod_New'] = O
        found = dict((name, harness.definition(value).flags) for name, value in vars(module).items()
                     if type(value) is type(len))
        self.assertEqual(found, declared)

    def test_constants(self):
        found = dict((name, value) for name, value in vars(module).items() if type(value) is int)
        own = dict((name, value) for name, value in found.items() if not name.startswith(
            ('ZGL_', 'kZGLext_')))  # tests/gl has the values
        extensions = [name for name in found if name.startswith('kZGLext_')]
        self.assertEqual((len(extensions), found['kZGLext_bgra']), (89, 0))
        self.assertEqual(found['kZGLext_NUMBER_OF_EXTENSIONS'], 88)
        self.assertEqual(own, dict((n, int(v)) for n, v in harness.table('constants.tsv')))

    def test_no_documentation(self):
        for name, _, _, _, _ in harness.rows():
            self.assertIsNone(harness.definition(getattr(module, name)).doc, name)

    def test_overloads(self):
        overloaded = [row[0] for row in harness.rows() if row[4] == ['overloaded']]
        table = harness.table('overloads.tsv')
        self.assertEqual([line[0] for line in table], overloaded)
        for name, counts, prototypes in table:
            text = NO_OVERLOAD % (name, ''.join('    %s\n' % p for p in prototypes.split('; ')))
            for count in counts.split():
                self.assert_raises(NotImplementedError, text, getattr(module, name),
                                   *[None] * int(count))


if __name__ == '__main__':
    unittest.main()
