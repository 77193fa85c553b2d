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

        data = render['ZRenderData']()
        data.viewDirection = core['ZFloatVector'](0, 0.5, -1)
        self.assertEqual(list(data.viewDirection), [0, 0.5, -1])

    def test_render_results_come_back_as_core_proxies(self):
        settings, data = render['ZCommonRenderSettingsData'](), render['ZRenderData']()
        self.assertIs(type(settings.name), core['ZString'])
        self.assertIs(type(settings.frameStart), core['ZTime'])
        self.assertIs(type(data.eyePoint), core['ZFloatPoint'])
        self.assertIs(type(data.worldToEyeMatrix), core['ZFloatMatrix'])
        # A borrowed part reaches into the whole.
        data.eyePoint.x = 3.5
        self.assertEqual(data.eyePoint.x, 3.5)

    def test_other_classes_do_not_convert(self):
        data = render['ZRenderData']()
        with self.assertRaises(TypeError) as caught:
            data.viewDirection = core['ZVector'](1, 2, 3)
        self.assertEqual(str(caught.exception), "in method 'ZRenderData_viewDirection_set', "
                                                "argument 2 of type 'ZFloatVector *'")
        self.assertRaises(TypeError, _OpenQuil.ZFloatVector_length, render['ZRenderData']())

    def test_out_arguments_are_filled(self):
        cells = [core['UnsignedIntBuffer'](1) for _ in range(4)]
        for cell in cells:
            cell[0] = 77
        _OpenQuilRender.ZRenderView_getRenderRegion(*cells)
        left, right, bottom, top = [cell[0] for cell in cells]
        self.assertEqual((left, bottom), (0, 0))
        self.assertNotIn(77, (right, top))

    def test_a_buffer_passes_to_a_record_and_comes_back(self):
        data = render['ZRenderData']()
        depths = core['FloatBuffer']([1, 2.5, 4])
        data.depthArr = depths
        self.assertFalse(depths.this.own())
        again = data.depthArr
        self.assertIs(type(again), core['FloatBuffer'])
        self.assertEqual(again.length(), 3)
        self.assertEqual(again.read(0, 3), [1, 2.5, 4])
        again.this.acquire()

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
        pixel.g = 0
        self.assertEqual(list(pixels[5]), [0.25, 0, 0.75, 1])

    def test_arrays_of_rays(self):
        vectors = core['ZFloatVectorArray']
        origins, directions = vectors([(0, 0, 5)] * 3), vectors([(0, 1, 0)] * 3)
        points, normals = vectors(), vectors()
        # Rays into the sky hit nothing, whatever the scene; what matters is that all four convert.
        _OpenQuilRender.ZRenderUtil_raytrace(origins, directions, None, None, 0, points, normals)
        self.assertEqual(len(points), len(normals))

    def test_destroying_prints_no_leak_message(self):
        def make_and_drop():
            for proxies in (core, render):
                for name in sorted(proxies):
                    if name == 'ZRenderCallback':
                        continue
                    arguments = (2,) if name.endswith('Buffer') else ()
                    if hasattr(proxies[name], '__swig_destroy__'):
                        proxies[name](*arguments)
        self.assertEqual(printed_by(make_and_drop), '')
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
