# -*- coding: utf-8 -*-
# SPDX-License-Identifier: MIT
"""The module on a host of other layouts: conversions, messages and callbacks."""
import ctypes
import sys
import unittest

import _OpenQuilRender as m

host, pending = ctypes.CDLL(None), ctypes.pythonapi.PyErr_Occurred
relative, start = m.ZRenderUtil_relativeFileName, m.ZRenderView_startRender


class Callback(object):
    __swig_destroy__ = m.delete_ZRenderCallback

    def __init__(self, answer):
        self.answer, self.sizes = answer, []
        m.ZRenderCallback_swiginit(self, m.new_ZRenderCallback(self))

    def renderCallback(self, data):
        self.sizes.append((m.ZRenderData_xsize_get(data), m.ZRenderData_ysize_get(data)))
        return self.answer(self, data)


m.ZRenderCallback_swigregister(Callback)


def upcall(self, data):
    return m.ZRenderCallback_renderCallback(self, data)


def fail(self, data):
    raise KeyError('on purpose')


class SecondHost(unittest.TestCase):
    def tearDown(self):
        self.assertEqual(host.capturedLocks(), 0)

    def assert_raises(self, error, text, function, *arguments):
        with self.assertRaises(error) as caught:
            function(*arguments)
        self.assertEqual(str(caught.exception), text)

    def test_texts(self):
        for text in (u'', u'abc', u'a\0b', u'caf\xe9 \u20ac', u'\U0001f40d' * 3, u'x' * 1023 + u'y',
                     u'\u20ac' * 5000 + u'.', 'bytes', bytearray('buffer'), 52, 1.5, max):
            wanted = unicode(text)[::-1]
            self.assertEqual((relative(text), type(relative(text))), (wanted, unicode))
        self.assert_raises(TypeError, 'Expected a String or Unicode object for argument 1',
                           lambda: (relative(None), pending()))

    def test_lists_of_texts(self):
        names, renderer = [u'one', 'two', 3], m.ZHardwareRenderer_theRenderer()
        get = m.ZHardwareRenderer_getDrawProcedureListNames
        self.assertEqual(get(renderer, u'gl\xe9', 0, names), 0)
        self.assertEqual(names, [u'one', u'two', u'3', u'gl\xe9'])

    def test_numbers_and_messages(self):
        self.assertEqual((m.ZRenderUtil_noise1(3), m.ZRenderUtil_noise1(0.5)), (1.5, 0.25))
        self.assert_raises(OverflowError, "in method 'ZRenderUtil_noise1', argument 1 of type "
                           "'float'",
                           m.ZRenderUtil_noise1, 1e39)
        self.assert_raises(TypeError, "in method 'ZRenderView_startRender', argument 2 of type "
                           "'unsigned int'", start, 1, 'x')
        self.assert_raises(ValueError, "invalid null reference in method "
                           "'ZRenderCallback_renderCallback', argument 2 of type "
                           "'ZRenderData const &'",
                           m.ZRenderCallback_renderCallback, m.new_ZRenderCallback(None), None)

    def test_statuses(self):
        self.assertIs(start(1, 2), None)
        self.assert_raises(RuntimeError, 'no size', start, 0, 2)
        self.assert_raises(RuntimeError, 'no file “missing”', relative, u'missing')
        self.assertEqual(m.ZRenderView_endRender(), 'unknown')

    def test_callbacks(self):
        made = [Callback(answer) for answer in (lambda *_: 'yes', lambda *_: None, upcall, fail)]
        for priority, callback in enumerate(made):
            m.ZRenderCallback_addCallback(callback, priority)
        self.assertEqual(host.renderOnThread(), 2)
        self.assertIs(sys.last_report, KeyError)
        self.assertEqual([callback.sizes for callback in made], [[(7, 5)]] * 4)
        m.ZRenderCallback_removeCallback(made[0])
        del made[1:], callback  # which the host then forgets
        self.assertEqual(host.renderOnThread(), 0)


if __name__ == '__main__':
    unittest.main()
