# SPDX-License-Identifier: MIT
"""Every kind of ownership, created, used and dropped again and again: afterwards the host's objects,
Python's objects, reference counts and the memory are what they were. The number of cycles is the
argument; it runs in quilhost --leak-check with the scene of layers."""
import ctypes
import gc
import os
import sys
import unittest
import weakref

import quilhost
import OpenQuil as c
import OpenQuilRender as r

CYCLES = int(sys.argv[1])
n, m = r._native, c._native

pending = ctypes.pythonapi.PyErr_Occurred
seen, long_text = [], u'\u20ac' * 3000
vector, matrix, data, profile, pixel = (c.ZVector(1, 2, 3), c.ZMatrix(), r.ZRenderData(),
                                        r.ZRenderProfile(), n.new_RV_PIXEL())
floats, texts = c.FloatBuffer([1, 2, 3]), c.ZStringArray([u'a', u'b'])
array, selection = c.ZFloatVectorArray([(1, 2, 3)] * 3), c.ZSelectionList()
add, remove = r.ZRenderCallback.addCallback, r.ZRenderCallback.removeCallback


def first_node(name):
    found, list_ = c.ZObject(), c.ZSelectionList()
    list_.add(name)
    list_.getDependNode(0, found)
    return found


node, material = first_node(u'floor'), first_node(u'ballPaint')
selection.add(node)
render_pass, layer = r.ZFnRenderPass(first_node(u'depthPass')), r.ZFnRenderLayer(first_node(u'hero'))


def attempt(function, *arguments):
    try:
        function(*arguments)
        pending()  # an unreadable text raises, and the call goes on
    except Exception as error:
        del error
        sys.exc_clear()
    else:
        raise AssertionError('%s%r does not fail' % (function, arguments))


class Answering(r.ZRenderCallback):
    def renderCallback(self, data):
        return data.xsize == 0


class Upcalling(r.ZRenderCallback):
    def renderCallback(self, data):
        return r.ZRenderCallback.renderCallback(self, data)


class Odd(r.ZRenderCallback):
    def renderCallback(self, data):
        return self

    def __nonzero__(self):
        raise KeyError('no truth value')


class Finalised(c.ZVector):
    def __del__(self):
        seen.append((self + vector, n.new_RV_PIXEL()))


class Aov(object):
    """Takes the place of the proxy class: destroys in Python, and does more than that."""
    @staticmethod
    def __swig_destroy__(pointer):
        attempt(n.RV_PIXEL_r_set, pointer, 1.0)
        seen.append((vector + vector, int(pointer)))
        n.delete_RV_AOV(pointer)


class Memory(ctypes.Structure):
    _fields_ = [(name, ctypes.c_size_t) for name in 'a b c d mapped e f used g h'.split()]


mallinfo = ctypes.CDLL(None).mallinfo2
mallinfo.restype = Memory

# What cycles pass around: a reference that is lost or gained shows here.
WATCHED = [None, True, False, NotImplemented, type(pixel), type(iter([])), seen, long_text, vector,
           matrix, data, profile, pixel, floats, texts, array, selection, node, Answering, Upcalling,
           r.RV_PIXEL, r.RV_AOV, c.ZVector, c.ZString, (), TypeError, RuntimeError]
WATCHED += [item.this for item in WATCHED if hasattr(item, '__dict__') and 'this' in vars(item)]


def anonymous():
    """Bytes of memory that the process has written to."""
    with open('/proc/self/smaps_rollup') as rollup:
        return sum(int(line.split()[1]) << 10 for line in rollup if line.startswith('Anonymous'))


def memory():
    """Nothing in few cycles, where what is made once is more than what leaks. (Sanitizers, which
    keep what is freed, are given few.)"""
    if CYCLES < 1000:
        return []
    heap = mallinfo()
    return [heap.used + heap.mapped, anonymous()]


def state():
    gc.collect()
    return quilhost.live_objects(), [len(gc.get_objects())] + map(sys.getrefcount, WATCHED), memory()


class Cycles(unittest.TestCase):
    def check(self, statement):
        scope = dict(globals())
        exec 'def run():\n    for _ in xrange(CYCLES):\n        ' + statement in scope
        scope['run']()
        rounds = []
        for _ in range(4):
            before = state()
            scope['run']()
            now = state()
            self.assertEqual(now[0], before[0], statement)
            rounds.append([b - a for a, b in zip(before[1] + before[2], now[1] + now[2])])
        # What grows for another reason does not grow in every round, and what is made in every
        # cycle and stays takes more than eight bytes of it.
        columns = zip(*rounds)
        for column in columns[:len(now[1])]:
            self.assertLess(min(map(abs, column)), CYCLES // 2, (statement, columns))
        for column in columns[len(now[1]):]:
            self.assertLess(min(column), 8 * CYCLES, (statement, columns))

    def test_every_class_is_counted(self):
        # Constructed with more than a number or None, or by the host alone.
        others = ['ZDrawProcedureBase', 'ZGeometry', 'ZGeometryData', 'ZGeometryList',
                  'ZGeometryPrimitive', 'ZSwatchRenderBase', 'ZViewportRenderer']
        for native in n, m:
            for name in [x[7:] for x in dir(native) if x.startswith('delete_')]:
                if name in others:
                    continue
                new, counted = getattr(native, 'new_' + name), quilhost.live_objects
                own = not name.endswith('Buffer') or name in ('LayerBuffer', 'PixelBuffer')
                key = name if own else 'buffer'
                made, before = None, counted().get(key, 0)
                for arguments in (), (1,), (None,):
                    try:
                        made = made or new(*arguments)
                    except (TypeError, NotImplementedError):
                        pass
                self.assertEqual(counted()[key], before + 1, name)
                getattr(native, 'delete_' + name)(made)
                self.assertEqual(counted()[key], before, name)


def add_test(line):
    name, statement = line.split(': ', 1)

    def test(self):
        if name.startswith('destroyer'):
            n.RV_AOV_swigregister(Aov)
            self.addCleanup(n.RV_AOV_swigregister, r.RV_AOV)
        self.check(statement)
    setattr(Cycles, 'test ' + name, test)


with open(os.path.join(os.path.dirname(os.path.abspath(__file__)), 'cycles.txt')) as listed:
    for line in listed.read().splitlines()[1:]:
        add_test(line)

if __name__ == '__main__':
    unittest.main(argv=sys.argv[:1])
