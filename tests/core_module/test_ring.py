# SPDX-License-Identifier: MIT
"""One type ring for the core module and the render module, whichever is imported first."""

import importlib
import sys
import unittest

FIRST = sys.argv[1] if len(sys.argv) > 1 else '_OpenQuil'
for name in sorted(['_OpenQuil', '_OpenQuilRender'], key=lambda n: n != FIRST):
    importlib.import_module(name)

import _OpenQuil
import OpenQuil
import OpenQuilRender

core, render = vars(OpenQuil), vars(OpenQuilRender)


class Ring(unittest.TestCase):
    def test_core_objects_convert_in_the_render_module_and_come_back(self):
        settings, data = render['ZCommonRenderSettingsData'](), render['ZRenderData']()
        settings.name = core['ZString'](u'b\u00e9auty')
        settings.frameStart = core['ZTime'](2, _OpenQuil.ZTime_kSeconds)
        self.assertEqual(settings.name, u'b\u00e9auty')
        self.assertEqual(settings.frameStart.asUnits(_OpenQuil.ZTime_kFilm), 48)
        self.assertIs(type(settings.name), core['ZString'])
        self.assertIs(type(settings.frameStart), core['ZTime'])
        self.assertIs(type(data.eyePoint), core['ZFloatPoint'])
        self.assertIs(type(data.worldToEyeMatrix), core['ZFloatMatrix'])
        self.assertRaises(TypeError, _OpenQuil.ZFloatVector_length, data)


if __name__ == '__main__':
    unittest.main(argv=sys.argv[:1])
