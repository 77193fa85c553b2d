# SPDX-License-Identifier: MIT
"""Geometry as scripts get it: owned handles over shared streams, untyped memory, overloads, and the
set-up flags. The host's shapes serve as geometry that needs no scene."""
import ctypes
import sys
import unittest

import harness
from harness import module as m


class GeometryTest(harness.Test):
    def setUp(self):
        self.required = m.new_ZGeometryRequirements()
        self.addCleanup(m.delete_ZGeometryRequirements, self.required)
        m.ZGeometryRequirements_addPosition(self.required)
        m.ZGeometryRequirements_addTangent(self.required, 'uv')
        self.plane = m.ZGeometryManager_referenceDefaultGeometry(
            m.ZGeometryManager_kDefaultPlane, self.required)
        self.addCleanup(m.ZGeometryManager_dereferenceDefaultGeometry, self.plane)
        self.geometry = m.ZGeometryList_geometry(self.plane)

    def owned(self, result, class_name):
        """Checks that the result owns its object, and lets the test own it."""
        self.assertTrue(result.own())
        self.assertTrue(str(result).endswith('_p_' + class_name))
        self.addCleanup(getattr(m, 'delete_' + class_name), result)
        return result


class Data(GeometryTest):
    def test_untyped_memory(self):
        position = self.owned(m.ZGeometry_position(self.geometry), 'ZGeometryData')
        data = m.ZGeometryData_data(position)
        self.assertTrue(str(data).endswith('_p_void'))
        self.assertFalse(data.own())
        self.assertEqual(list((ctypes.c_float * 12).from_address(int(data))),
                         [-1, -1, 0, 1, -1, 0, -1, 1, 0, 1, 1, 0])
        color = self.owned(m.ZGeometry_color(self.geometry, 'none'), 'ZGeometryData')
        self.assertIsNone(m.ZGeometryData_data(color))

    def test_own_data(self):
        holder, cell = object(), m.new_RV_PIXEL()
        self.addCleanup(m.delete_RV_PIXEL, cell)
        for arguments, address, owns in (
                ((), None, True), ((None, False), None, False),
                ((holder,), id(holder), True), ((cell, 0), id(cell), False)):
            data = self.owned(m.new_ZGeometryData('n', 1, 0, 3, 10, *arguments), 'ZGeometryData')
            found = m.ZGeometryData_data(data)
            self.assertEqual(found and int(found), address)
            self.assertIs(m.ZGeometryData_objectOwnsData(data), owns)
            self.assertEqual([getattr(m, 'ZGeometryData_' + what)(data) for what in (
                'objectName', 'dataType', 'elementType', 'elementTypeSize', 'elementSize',
                'elementCount')], ['n', 1, 0, 4, 3, 10])
        self.assertEqual(sys.getrefcount(holder), 2)  # the host frees nothing and keeps nothing


class Lists(GeometryTest):
    def test_overloads_are_probed(self):
        add, matrix = m.ZGeometryList_addLast, m.ZGeometryList_objectToWorldMatrix(self.plane)
        sphere = m.ZGeometryManager_referenceDefaultGeometry(0, self.required)
        self.addCleanup(m.ZGeometryManager_dereferenceDefaultGeometry, sphere)
        self.assertIs(add(sphere, self.geometry, matrix), True)
        self.assertEqual(m.ZGeometryList_length(sphere), 2)
        text = "invalid null reference in method 'ZGeometryList_addLast', argument %d of type '%s'"
        self.assert_raises(ValueError, text % (2, 'ZDagPath const &'), add, sphere, None, None)
        self.assert_raises(ValueError, text % (3, 'ZMatrix const &'), add, sphere, self.geometry,
                           None)
        m.ZGeometryList_ZSetupFlags_set(sphere, 5)
        self.assertEqual(m.ZGeometryList_ZSetupFlags_get(sphere), 5)

    def test_shapes_are_borrowed(self):
        again = m.ZGeometryManager_referenceDefaultGeometry(1, self.required)
        self.assertEqual((again, again.own()), (self.plane, False))
        self.assertIsNone(m.ZGeometryManager_dereferenceDefaultGeometry(again))


if __name__ == '__main__':
    unittest.main()
