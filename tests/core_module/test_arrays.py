# SPDX-License-Identifier: MIT
"""All array classes behave alike; each is given items of its own."""

import sys
import unittest

import _OpenQuil
import OpenQuil

core = vars(OpenQuil)


def selected(name):
    selection, node = core['ZSelectionList'](), core['ZObject']()
    selection.add(name)
    selection.getDependNode(0, node)
    return node


def path_to(name):
    selection, path = core['ZSelectionList'](), core['ZDagPath']()
    selection.add(name)
    selection.getDagPath(0, path)
    return path


_OpenQuil.ZFileIO_newScene()
CAMERA = 'persp'

# Three items for each class of array, and something that is none.
ITEMS = {
    'ZFloatArray': ([0.5, 1.5, -2], 'x'),
    'ZDoubleArray': ([0.1, 1e300, -2], 'x'),
    'ZIntArray': ([1, -2, 2 ** 31 - 1], 1.5),
    'ZUintArray': ([1, 2, 2 ** 32 - 1], -1),
    'ZUint64Array': ([1, 2 ** 63 - 1, 2 ** 64 - 1], 2 ** 64),
    'ZFloatVectorArray': ([core['ZFloatVector'](i, 1, 2) for i in range(3)], 3),
    'ZVectorArray': ([core['ZVector'](i, 1, 2) for i in range(3)], 3),
    'ZFloatPointArray': ([core['ZFloatPoint'](i, 1, 2) for i in range(3)], 3),
    'ZPointArray': ([core['ZPoint'](i, 1, 2) for i in range(3)], 3),
    'ZColorArray': ([core['ZColor'](i, 1, 2) for i in range(3)], 3),
    'ZMatrixArray': ([core['ZMatrix']() * (i + 1) for i in range(3)], 3),
    'ZTimeArray': ([core['ZTime'](i) for i in range(3)], 3),
    'ZObjectArray': ([core['ZObject'](), selected(CAMERA), path_to(CAMERA).node()], 3),
    'ZDagPathArray': ([core['ZDagPath'](), path_to(CAMERA), core['ZDagPath']()], 3),
    'ZPlugArray': ([core['ZPlug']() for _ in range(3)], 3),
    'ZStringArray': ([u'a', u'b\u00e9', u''], None),
}


class Arrays(unittest.TestCase):
    def test_every_array_class_is_covered(self):
        self.assertEqual(sorted(ITEMS), sorted(n for n in core if n.endswith('Array')))

    def test_items_go_in_and_come_out(self):
        for name, (items, _) in ITEMS.items():
            cls = core[name]
            array = cls()
            for item in items:
                array.append(item)
            self.assertEqual(list(array), items, name)
            self.assertEqual([array[i] for i in range(-3, 3)], items + items, name)
            self.assertEqual(cls(items), array)
            self.assertEqual(cls(array), array)
            self.assertEqual(list(cls(2, items[1])), [items[1]] * 2)
            other = cls()
            other.copy(array)
            other[-1] = items[0]
            self.assertEqual(list(other), items[:2] + items[:1])
            other.insert(items[1], 0)
            other.remove(1)
            del other[-1]
            other.set(items[2], 1)
            self.assertEqual(list(other), [items[1], items[2]])
            other.clear()
            self.assertEqual(list(other), [])
            self.assertEqual(list(array), items)
            self.assertTrue(repr(array).startswith(name + '(['))

    def test_out_of_range(self):
        for name, (items, _) in ITEMS.items():
            array = core[name](items)
            for index in (3, -4, 2 ** 33):
                self.assertRaises(IndexError, lambda: array[index])
                self.assertRaises(IndexError, array.__setitem__, index, items[0])
                self.assertRaises(IndexError, array.__delitem__, index)
            for refused in ((array.set, items[0], 3), (array.insert, items[0], 4),
                            (array.remove, 3)):
                self.assertRaisesRegexp(RuntimeError, 'kInvalidParameter', *refused)
            self.assertEqual(list(array), items)

    def test_wrong_types(self):
        for name, (items, wrong) in ITEMS.items():
            array = core[name](items)
            for sequence in ([items[0], wrong], 5.5):
                self.assertRaises((TypeError, OverflowError), core[name], sequence)
            self.assertRaises((TypeError, OverflowError), array.append, wrong)
            self.assertRaises((TypeError, OverflowError), array.__setitem__, 0, wrong)
            self.assertEqual(list(array), items)
            self.assertTrue(array != items)
        self.assertRaisesRegexp(TypeError, 'item 1 ', core['ZIntArray'], [1, 'x'])

    def test_values_from_tuples(self):
        vectors = core['ZFloatVectorArray']([(1, 2, 3), core['ZFloatVector'](4, 5, 6)])
        self.assertEqual([tuple(v) for v in vectors], [(1, 2, 3), (4, 5, 6)])
        self.assertEqual(tuple(core['ZColorArray']([(1, 0.5, 0)])[0]), (1, 0.5, 0, 1))
        self.assertRaises(TypeError, core['ZFloatVectorArray'], [(1, 2)])
        self.assertRaises(OverflowError, core['ZFloatVectorArray'], [(1, 2, 1e39)])

    def test_sequence_that_changes_itself(self):
        items = [u'a', None, u'c']

        class Vandal(object):
            def __unicode__(self):
                del items[:]
                return u'b'
        items[1] = Vandal()
        self.assertEqual(list(core['ZStringArray'](items)), [u'a', u'b', u'c'])

    def test_array_that_changes_while_its_items_are_made(self):
        array = core['ZVectorArray']([(i, 1, 2) for i in range(3)])

        class Vandal(object):
            __swig_destroy__ = _OpenQuil.delete_ZVector

            def __new__(cls):
                array[2] = made
                return object.__new__(cls)
        made = core['ZVector'](9, 9, 9)
        _OpenQuil.ZVector_swigregister(Vandal)
        try:
            found = list(array)
        finally:
            _OpenQuil.ZVector_swigregister(core['ZVector'])
        self.assertEqual([_OpenQuil.ZVector_x_get(vector) for vector in found], [0, 1, 2])
        self.assertEqual(array[2], made)


if __name__ == '__main__':
    unittest.main(argv=sys.argv[:1])
