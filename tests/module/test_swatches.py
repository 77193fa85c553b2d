# SPDX-License-Identifier: MIT
"""Creator pointers in their two forms, the registry, and swatches that native creators begin."""
import ctypes
import unittest

import harness
from harness import module

import _OpenQuil as core

CREATOR = '_p_f_ZObject_ZObject_int__p_ZSwatchRenderBase'
REFUSED = ("in method 'ZSwatchRenderRegister_registerSwatchRender', argument 2 of type "
           "'ZSwatchRenderCreatorFnPtr'")
register = module.ZSwatchRenderRegister_registerSwatchRender
unregister = module.ZSwatchRenderRegister_unregisterSwatchRender

_kept = []


def builtin(doc):
    """A built-in function with the documentation; it is never called."""
    definition = harness.MethodDef('f', ctypes.cast(ctypes.pythonapi.Py_IncRef, ctypes.c_void_p),
                                   harness.O, doc)
    make = ctypes.pythonapi.PyCFunction_NewEx
    make.restype, make.argtypes = ctypes.py_object, [ctypes.c_void_p] * 3
    _kept.append(definition)
    return make(ctypes.addressof(definition), None, None)


def digits(address):
    return '_' + ''.join('%02x' % ord(c) for c in ctypes.string_at(
        ctypes.byref(ctypes.c_void_p(address)), ctypes.sizeof(ctypes.c_void_p)))


def registered(creator):
    """The address that the host has after the creator was registered; None for null."""
    register('test', creator)
    try:
        found = core.Swatches_creator('test')
        return found and int(found)
    finally:
        unregister('test')


class CreatorTest(unittest.TestCase):
    def test_forms_that_are_accepted(self):
        own = core.Swatches_creator('materialBall')
        address = 0xfedcba9876543210
        self.assertEqual(registered(own), int(own))
        self.assertIsNone(registered(None))
        self.assertIsNone(registered(builtin('f(x)\nswig_ptr: NULL')))
        self.assertEqual(registered(builtin('swig_ptr: ' + digits(address) + CREATOR)), address)

    def test_everything_else_is_refused(self):
        good = digits(0xab54a98ceb1f0ad2)
        docs = [None, 'swig_ptr: ', 'swig_ptr: NULL ', good + CREATOR, 'swig_ptr: ' + good,
                'swig_ptr: ' + good[:-1] + CREATOR, 'swig_ptr: ' + good.upper() + CREATOR,
                'swig_ptr: ' + good + '_p_void', 'swig_ptr: ' + good + CREATOR + ' ']
        for creator in [builtin(doc) for doc in docs] + [
                lambda swatch_node, node, resolution: None, 'NULL', 0,
                harness.placeholder('ZObject')]:
            try:
                register('refused', creator)
            except TypeError as error:
                self.assertEqual(str(error), REFUSED)
            else:
                self.fail('accepted: %r %r' % (creator, getattr(creator, '__doc__', None)))
        self.assertRaises(RuntimeError, unregister, 'refused')

    def test_the_host_calls_the_creator(self):
        null, calls, swatches = core.new_ZObject(), [], []
        self.addCleanup(core.delete_ZObject, null)

        @ctypes.CFUNCTYPE(ctypes.c_void_p, ctypes.c_int64, ctypes.c_int64, ctypes.c_int)
        def creator(swatch_node, node, resolution):
            calls.append((swatch_node, node, resolution))
            swatches.append(module.new_ZSwatchRenderBase(null, null, resolution))
            swatches[0].disown()
            return int(swatches[0])

        address = ctypes.cast(creator, ctypes.c_void_p).value
        register('script', builtin('swig_ptr: ' + digits(address) + CREATOR))
        swatch = core.Swatches_begin('script', null, 7)
        unregister('script')
        node, = set(sum([call[:2] for call in calls], ()))
        self.assertEqual(node, ctypes.c_int64.from_address(int(null)).value)
        self.assertEqual((calls[0][2], int(swatch)), (7, int(swatches[0])))
        self.assertEqual(module.ZSwatchRenderBase_resolution(swatch), 7)
        module.delete_ZSwatchRenderBase(swatch)


if __name__ == '__main__':
    unittest.main()
