# SPDX-License-Identifier: MIT
"""The hardware renderer: lists of native draw procedures, the list that is rewritten in place,
out-arguments. Nothing here needs OpenGL."""
import ctypes
import os
import unittest

import harness
from harness import call, module

native = ctypes.CDLL(os.environ['NATIVE_PROCEDURES'])
native.make_procedure.restype = ctypes.c_void_p
native.take_calls.restype = ctypes.c_char_p

SUCCESS, FAILURE, EXISTS, NOT_FOUND, NO_LOCATION = range(5)
PRE_RENDERING, PRE_EXPOSURE, POST_EXPOSURE, POST_RENDERING = range(4)
EXPECTED_LIST = 'Expected a list of Strings or Unicode objects for argument 4'

renderer = module.ZHardwareRenderer_theRenderer()


def of(function, *arguments):
    return getattr(module, 'ZHardwareRenderer_' + function)(renderer, *arguments)


class Textless(object):
    def __unicode__(self):
        raise KeyError('no text')


class HardwareTest(harness.Test):
    def procedure(self, name, *locations):
        made = harness.pointer('ZDrawProcedureBase', native.make_procedure(name))
        self.addCleanup(native.take_calls)
        self.addCleanup(module.delete_ZDrawProcedureBase, made)
        for location in locations:
            self.assertEqual(of('addDrawProcedure', '', made, location), SUCCESS)
        return made

    def names(self, location, given=None):
        given = [] if given is None else given
        self.assertEqual(of('getDrawProcedureListNames', 'OpenGL', location, given), SUCCESS)
        return given


class Lists(HardwareTest):
    def test_codes(self):
        a, unknown = self.procedure('a', POST_EXPOSURE), self.procedure('b')
        count = ctypes.c_uint(7)
        cell = harness.pointer('unsigned int', ctypes.addressof(count))
        for result, function, arguments in (
                (EXISTS, 'addDrawProcedure', ('', a, POST_EXPOSURE)),
                (NOT_FOUND, 'insertDrawProcedure', ('', unknown, POST_EXPOSURE, 2 ** 32 - 1, True)),
                (NOT_FOUND, 'removeDrawProcedure', ('', a, PRE_EXPOSURE)),
                (FAILURE, 'addDrawProcedure', ('', None, POST_EXPOSURE)),
                (FAILURE, 'addDrawProcedure', ('Other', unknown, POST_EXPOSURE)),
                (NO_LOCATION, 'removeDrawProcedure', ('', a, -1)),
                (NO_LOCATION, 'getDrawProcedureCount', ('', 2 ** 31 - 1, cell)),
                (SUCCESS, 'getDrawProcedureCount', ('', POST_EXPOSURE, cell)),
                (SUCCESS, 'removeDrawProcedure', ('OpenGL', a, POST_EXPOSURE))):
            code = of(function, *arguments)
            self.assertEqual((type(code), code), (int, result), (function, arguments))
        self.assertEqual(count.value, 1)

    def test_order_search_and_deletion(self):
        self.procedure('first', 0)
        last = self.procedure('last', 0)
        for name, place, after in ('before', 1, False), ('behind', 0, True), ('end', 4, True):
            self.assertEqual(of('insertDrawProcedure', '', self.procedure(name), 0, place, after),
                             SUCCESS)
        self.assertEqual(self.names(0), [u'first', u'behind', u'before', u'last', u'end'])
        found = of('findDrawProcedure', '', 0, u'last')
        self.assertEqual((int(found), found.own()), (int(last), False))
        for location, name in (0, 'none'), (1, 'last'):
            self.assertIsNone(of('findDrawProcedure', '', location, name))
        module.delete_ZDrawProcedureBase(harness.pointer(
            'ZDrawProcedureBase', native.make_procedure('gone')))
        self.assertEqual(native.take_calls(), '~gone ')
        self.assertNotIn('gone', self.names(0))

    def test_list_is_rewritten_in_place(self):
        self.procedure('a', 1), self.procedure(u'\u00e4\U0001F600'.encode('utf-8'), 1)
        for given in ([], [1, 'y'], ['x', 'y', 'z'] * 3):
            self.assertEqual(self.names(1, given), [u'a', u'\u00e4\U0001F600'])
            self.assertEqual(map(type, given), [unicode, unicode])
        self.assertEqual(self.names(2, ['x', 'y']), [])

    def test_failures_of_the_list(self):
        self.procedure('a', 1)
        function = module.ZHardwareRenderer_getDrawProcedureListNames
        given = ['x', Textless()]
        self.assertEqual(call(function, renderer, '', 1, given), (SUCCESS, EXPECTED_LIST))
        self.assertEqual(given, [u'a'])
        given = [1, 'x']  # no names come from the host: the list's own go back
        self.assertEqual((function(renderer, 'Other', 1, given), given), (FAILURE, [u'1', u'x']))

        class Stubborn(list):
            def __delslice__(self, start, end):
                raise KeyError('stays')
        self.assert_raises(TypeError, 'Unable to modify argument 4 to return results', function,
                           renderer, '', 1, Stubborn('xyz'))


class Drawing(HardwareTest):
    def test_procedures_are_executed_at_their_locations(self):
        self.procedure('a', PRE_RENDERING, POST_RENDERING)
        self.procedure('b', PRE_EXPOSURE)
        off = self.procedure('c', PRE_EXPOSURE)
        self.procedure('d', POST_EXPOSURE)
        module.ZDrawProcedureBase_setEnabled(off, [])
        self.assertIs(module.ZDrawProcedureBase_enabled(off), False)
        self.assertEqual(native.draw(2), 0)
        self.assertEqual(native.take_calls(), 'a0/2 b0/2 d0/2 b1/2 d1/2 a1/2 ')
        self.assertIs(module.ZDrawProcedureBase_execute(off), True)
        self.assertEqual(native.take_calls(), 'c0/1 ')
        self.assertEqual(native.draw(0), 3)


if __name__ == '__main__':
    unittest.main()
