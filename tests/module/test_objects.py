"""Ownership, the proxy protocol and directors, through the flat functions alone."""
import sys
import unittest

import harness
from harness import module

destroyed = []


class Pixel(object):
    def __init__(self):
        module.RV_PIXEL_swiginit(self, module.new_RV_PIXEL())

    @staticmethod
    def __swig_destroy__(pointer_object):
        destroyed.append(int(pointer_object))
        module.delete_RV_PIXEL(pointer_object)


class RenderData(object):
    __swig_destroy__ = module.delete_ZRenderData


class Callback(object):
    __swig_destroy__ = module.delete_ZRenderCallback

    def __init__(self):
        module.ZRenderCallback_swiginit(self, module.new_ZRenderCallback(self))


class Answering(Callback):
    NAMES = 'shadowCastCallback', 'renderCallback', 'postProcessCallback'

    def __init__(self, answer):
        Callback.__init__(self)
        self.calls, self.answer = [], answer
        for name in self.NAMES:
            setattr(self, name, lambda data, name=name: self.answered(name, data))

    def answered(self, name, data):
        self.calls.append((name, data))
        return self.answer()


module.RV_PIXEL_swigregister(Pixel)
module.ZRenderData_swigregister(RenderData)
module.ZRenderCallback_swigregister(Callback)


class Ownership(unittest.TestCase):
    def setUp(self):
        del destroyed[:]

    def test_delete_and_disown_give_ownership_up(self):
        pixel, kept = Pixel(), Pixel()
        self.assertIsNone(module.delete_RV_PIXEL(pixel))
        self.assertFalse(pixel.this.own())
        kept.this.disown()
        again = kept.this
        del pixel, kept
        self.assertEqual(destroyed, [])
        again.acquire()
        address = int(again)
        del again
        self.assertEqual(destroyed, [address])
        for name in 'RV_PIXEL', 'ZRenderView', 'ZRenderCallback':
            self.assertIsNone(getattr(module, 'delete_' + name)(None))

    def test_leak_is_reported(self):
        code = 'import _OpenQuilRender as m; m.new_RV_AOV(); m.new_ZRenderView().own(False)'
        status, shown, _ = harness.run(code)
        self.assertEqual((status, shown), (0, "swig/python detected a memory leak of type "
                                              "'RV_AOV *', no destructor found.\n"))


class Directors(unittest.TestCase):
    def setUp(self):
        self.data = RenderData()
        module.ZRenderData_swiginit(self.data, module.new_ZRenderData())
        self.shadow_data = module.new_ZRenderShadowData()
        self.addCleanup(module.delete_ZRenderShadowData, self.shadow_data)

    def test_virtual_calls_reach_the_method_of_their_name(self):
        callback = Answering(lambda: [1])
        for name in Answering.NAMES:
            data = self.shadow_data if name == 'shadowCastCallback' else self.data
            flat = getattr(module, 'ZRenderCallback_' + name)
            self.assertIs(flat(callback, data), False)
            self.assertEqual(callback.calls, [])
            self.assertIs(flat(callback.this, data), True)
            (called, given), = callback.calls
            self.assertEqual(called, name)
            expected = getattr(data, 'this', data)
            self.assertEqual(type(given), type(data))
            self.assertEqual((getattr(given, 'this', given), getattr(given, 'this', given).own()),
                             (expected, False))
            del callback.calls[:]

    def virtual_call(self, answer):
        callback = Answering(answer)
        return module.ZRenderCallback_renderCallback(callback.this, self.data)

    def test_answers(self):
        for answer, truth in (None, False), ('', False), ('x', True), (0.5, True):
            self.assertIs(self.virtual_call(lambda: answer), truth)

    def test_answer_without_a_truth_value(self):
        class Odd(object):
            def __nonzero__(self):
                raise KeyError('no truth value')
        with self.assertRaises(TypeError) as caught:
            self.virtual_call(Odd)
        self.assertEqual(str(caught.exception),
                         "SWIG director type mismatch in output value of type 'bool'")

    def test_plain_callbacks_never_enter_python(self):
        plain = module.new_ZRenderCallback(None)
        self.assertIs(module.ZRenderCallback_renderCallback(plain, self.data), False)
        self.assertIsNone(module.disown_ZRenderCallback(plain))
        self.assertIsNone(module.disown_ZRenderCallback(None))

    def test_disowned_instances_live_as_long_as_their_callback(self):
        callback = Answering(lambda: True)
        before = sys.getrefcount(callback)
        for _ in range(2):  # the second has no effect
            self.assertIsNone(module.disown_ZRenderCallback(callback))
            self.assertEqual(sys.getrefcount(callback), before + 1)
        module.delete_ZRenderCallback(callback)
        self.assertEqual(sys.getrefcount(callback), before)

    def test_director_takes_no_reference(self):
        instance = Callback.__new__(Callback)
        before = sys.getrefcount(instance)
        made = module.new_ZRenderCallback(instance)
        self.assertEqual(sys.getrefcount(instance), before)
        del made
        self.assertEqual(sys.getrefcount(instance), before)

    def test_registration_with_the_host(self):
        callback = Callback()
        self.assertIsNone(module.ZRenderCallback_addCallback(callback, -5))
        self.assertIsNone(module.ZRenderCallback_removeCallback(callback))
        self.assertIsNone(module.ZRenderCallback_addCallback(None, 5))
        self.assertIsNone(module.ZRenderCallback_removeCallback(None))


if __name__ == '__main__':
    unittest.main()
