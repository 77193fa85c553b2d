# SPDX-License-Identifier: MIT
"""One type ring for the core module and the render module, whichever is imported first."""

import importlib
import sys
import unittest

FIRST = sys.argv[1] if len(sys.argv) > 1 else '_OpenQuil'
for name in sorted(['_OpenQuil', '_OpenQuilRender'], key=lambda n: n != FIRST):
    importlib.import_module(name)

import _OpenQuil
import _OpenQuilRender
from proxies import make_proxies

core = make_proxies(_OpenQuil)
render = make_proxies(_OpenQuilRender)


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

    def test_pixel_buffer_feeds_the_render_view(self):
        pixels = core['PixelBuffer'](6)
        pixels.setColors(0, core['ZColorArray']([(0.25, 0.5, 0.75, 1)] * 6))
        _OpenQuilRender.ZRenderView_startRender(3, 2)
        try:
            _OpenQuilRender.ZRenderView_updatePixels(0, 2, 0, 1, pixels)
            _OpenQuilRender.ZRenderView_updatePixels(2, 2, 1, 1, pixels.pixels(5))
        finally:
            _OpenQuilRender.ZRenderView_endRender()
        pixel = pixels.pixels(5)
        self.assertIs(type(pixel), render['RV_PIXEL'])
        self.assertFalse(pixel.this.own())
        self.assertEqual((pixel.r, pixel.g, pixel.b, pixel.a), (0.25, 0.5, 0.75, 1))


if __name__ == '__main__':
    unittest.main(argv=sys.argv[:1])
