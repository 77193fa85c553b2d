"""One type ring for the core module and the render module, whichever is imported first."""

import importlib
import sys
import unittest

FIRST = sys.argv[1] if len(sys.argv) > 1 else '_OpenQuil'
for name in sorted(['_OpenQuil', '_OpenQuilRender'], key=lambda n: n != FIRST):
    importlib.import_module(name)

import _OpenQuil
import _OpenQuilRender
from proxies import make_proxies, printed_by

core = make_proxies(_OpenQuil)
render = make_proxies(_OpenQuilRender)


class Ring(unittest.TestCase):
    def test_core_objects_convert_in_the_render_module(self):
        settings = render['ZCommonRenderSettingsData']()
        settings.name = core['ZString'](u'b\u00e9auty')
        settings.frameStart = core['ZTime'](2, _OpenQuil.ZTime_kSeconds)
        self.assertEqual(settings.name, u'b\u00e9auty')
        self.assertEqual(settings.frameStart.asUnits(_OpenQuil.ZTime_kFilm), 48)

    def test_render_results_come_back_as_core_proxies(self):
        settings, data = render['ZCommonRenderSettingsData'](), render['ZRenderData']()
        self.assertIs(type(settings.name), core['ZString'])
        self.assertIs(type(settings.frameStart), core['ZTime'])
        self.assertIs(type(data.eyePoint), core['ZFloatPoint'])
        self.assertIs(type(data.worldToEyeMatrix), core['ZFloatMatrix'])

    def test_other_classes_do_not_convert(self):
        data = render['ZRenderData']()
        with self.assertRaises(TypeError) as caught:
            data.viewDirection = core['ZVector'](1, 2, 3)
        self.assertEqual(str(caught.exception), "in method 'ZRenderData_viewDirection_set', "
                                                "argument 2 of type 'ZFloatVector *'")
        self.assertRaises(TypeError, _OpenQuil.ZFloatVector_length, render['ZRenderData']())

    def test_pixel_buffer_feeds_the_render_view(self):
        colors = core['ZColorArray']([(0.25, 0.5, 0.75, 1)] * 6)
        pixels = core['PixelBuffer'](6)
        pixels.setColors(0, colors)
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

    def test_destroying_prints_no_leak_message(self):
        made = []

        def make_and_drop():
            for proxies in (core, render):
                for name in sorted(proxies):
                    if name == 'ZRenderCallback':
                        continue
                    arguments = (2,) if name.endswith('Buffer') else ()
                    if not hasattr(proxies[name], '__swig_destroy__'):
                        continue
                    try:
                        proxies[name](*arguments)
                    except (TypeError, NotImplementedError):
                        continue  # cannot be made from nothing
                    made.append(name)
        self.assertEqual(printed_by(make_and_drop), '')
        self.assertGreater(len(made), 55)
        # The check itself works: an owned object without a class is reported.
        pointer = core['ZVector']().this
        _OpenQuil.ZVector_swigregister(type('Bare', (object,), {}))
        try:
            self.assertIn("memory leak of type 'ZVector *'",
                          printed_by(lambda: _OpenQuil.new_ZVector()))
        finally:
            _OpenQuil.ZVector_swigregister(core['ZVector'])
        del pointer


if __name__ == '__main__':
    unittest.main(argv=sys.argv[:1])
