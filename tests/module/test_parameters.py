# SPDX-License-Identifier: MIT
"""Shader parameters through the module: which constructor runs, and addresses as user data."""
import unittest

import harness
from harness import module

FLOAT, COLOR, TEXCOORD = 3, 9, 3


class Odd(object):
    def __nonzero__(self):
        raise KeyError('no truth value')


def of(parameter, class_name, *members):
    return [getattr(module, class_name + '_' + member)(parameter) for member in members]


class ParameterTest(harness.Test):
    def kept(self, class_name, made):
        """An object that Python owns, for the length of the test."""
        self.assertEqual(harness.PointerObject.from_address(id(made)).own, 1)
        self.addCleanup(getattr(module, 'delete_' + class_name), made)
        return made

    def new(self, class_name, *arguments):
        return self.kept(class_name, getattr(module, 'new_' + class_name)(*arguments))

    def uniform(self, *arguments):
        return self.new('ZUniformParameter', *arguments)

    def varying(self, *arguments):
        return self.new('ZVaryingParameter', *arguments)


class Constructors(ParameterTest):
    def test_uniform_by_count(self):
        members = 'name', 'type', 'semantic', 'numRows', 'numColumns', 'userData'
        for arguments, expected in (
                ((), [u'', 0, 0, 1, 1, None]), (('a', FLOAT, COLOR), [u'a', 3, 9, 1, 1, None]),
                ((u'\xe4', FLOAT, COLOR, 4, 2, None), [u'\xe4', 3, 9, 4, 2, None])):
            self.assertEqual(of(self.uniform(*arguments), 'ZUniformParameter', *members), expected)
        data = object()
        found, = of(self.uniform('a', FLOAT, COLOR, 1, 1, data), 'ZUniformParameter', 'userData')
        self.assertEqual((int(found), found.own()), (id(data), False))

    def test_varying_by_count_and_probe(self):
        members = 'name', 'type', 'dimension', 'semantic', 'destinationSet', 'semanticName'
        for arguments, expected in (
                ((), [u'', -1, 1, 0, u'', u'']), (('a', 1), [u'a', 1, 1, 0, u'', u'']),
                (('a', 1, 2, 4, 3), [u'a', 1, 4, 3, u'', u'']),
                (('a', 1, 2, 4, 3, True), [u'a', 1, 4, 3, u'', u'']),
                (('a', 1, 2, 4, 3, 0.5, 's'), [u'a', 1, 4, 3, u'', u's']),
                (('a', 1, 2, 4, 3, 10 ** 30, 's'), [u'a', 1, 4, 3, u'', u's']),
                (('a', 1, 2, 4, 3, 5, 'd', False), [u'a', 1, 3, 5, u'd', u'']),
                (('a', 1, 2, 4, 3, 5, 'd', True, 's'), [u'a', 1, 3, 5, u'd', u's'])):
            self.assertEqual(of(self.varying(*arguments), 'ZVaryingParameter', *members), expected,
                             arguments)
        # What is no number at argument 6 leads to the longer form, which wants an int there.
        for arguments in ('a', 1, 1, 1, 1, None, 's'), ('a', 1, 1, 1, 1, Odd()):
            self.assert_raises(TypeError, "in method 'new_ZVaryingParameter', argument 6 of type "
                               "'ZVaryingParameter::ZVaryingParameterSemantic'",
                               module.new_ZVaryingParameter, *arguments)


if __name__ == '__main__':
    unittest.main()
