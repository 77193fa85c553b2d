# SPDX-License-Identifier: MIT
"""The proxy protocol and directors, through the flat functions alone."""
import unittest

import harness
from harness import module


class RenderData(object):
    __swig_destroy__ = module.delete_ZRenderData


class Callback(object):
    NAMES = 'shadowCastCallback', 'renderCallback', 'postProcessCallback'
    __swig_destroy__ = module.delete_ZRenderCallback

    def __init__(self, answer):
        module.ZRenderCallback_swiginit(self, module.new_ZRenderCallback(self))
        self.calls, self.answer = [], answer
        for name in self.NAMES:
            setattr(self, name, lambda data, name=name: self.called(name, data))

    def called(self, name, data):
        self.calls.append((name, data))
        return self.answer


module.ZRenderData_swigregister(RenderData)
module.ZRenderCallback_swigregister(Callback)


class Objects(unittest.TestCase):
    def test_virtual_calls_reach_the_method_of_their_name(self):
        callback, data, shadow_data = Callback([1]), RenderData(), module.new_ZRenderShadowData()
        module.ZRenderData_swiginit(data, module.new_ZRenderData())
        self.addCleanup(module.delete_ZRenderShadowData, shadow_data)
        for name in Callback.NAMES:
            passed = shadow_data if name == 'shadowCastCallback' else data
            flat = getattr(module, 'ZRenderCallback_' + name)
            self.assertIs(flat(callback, passed), False)  # an upcall
            self.assertEqual(callback.calls, [])
            self.assertIs(flat(callback.this, passed), True)
            (called, given), = callback.calls
            self.assertEqual((called, type(given)), (name, type(passed)))
            given = getattr(given, 'this', given)
            self.assertEqual((given, given.own()), (getattr(passed, 'this', passed), False))
            del callback.calls[:]
        for answer, truth in (None, False), ('', False), ('x', True), (0.5, True):
            self.assertIs(module.ZRenderCallback_renderCallback(Callback(answer).this, data), truth)

    def test_leak_is_reported(self):
        code = 'import _OpenQuilRender as m; m.new_RV_AOV(); m.new_ZRenderView().own(False)'
        status, shown, _ = harness.run(code)
        self.assertEqual((status, shown), (0, "swig/python detected a memory leak of type "
                                              "'RV_AOV *', no destructor found.\n"))


if __name__ == '__main__':
    unittest.main()
