# SPDX-License-Identifier: MIT
"""Geometry as scripts get it: owned handles over shared streams, and untyped memory. The host's
shapes serve as geometry that needs no scene."""
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


if __name__ == '__main__':
    unittest.main()
