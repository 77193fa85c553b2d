# SPDX-License-Identifier: MIT
"""Viewport renderers and textures as scripts use them: virtual calls reach a native subclass, the
host's rendering information and target, and the forms of binding."""
import ctypes
import os
import shutil
import sys
import tempfile
import unittest

import _OpenQuil as core
import harness
from harness import module

plugin = ctypes.PyDLL(sys.argv[1])
plugin.make_renderer.restype = ctypes.c_void_p
SQUARE = '''mtllib square.mtl
v -1 -1 0\nv 1 -1 0\nv 1 1 0\nv -1 1 0\nusemtl painted\nf 1 2 3 4\n'''


def image(width, height, pixel):
    made = core.new_ZImage()
    core.ZImage_create(made, width, height)
    core.ZImage_writePixels(made, pixel * (width * height))
    return made


class SceneTest(unittest.TestCase):
    def setUp(self):
        self.folder = tempfile.mkdtemp()
        core.ZImage_writeToFile(image(2, 2, b'\x20\x40\x80\xff'), self.path('paint.png'))
        for name, text in (('square.mtl', 'newmtl painted\nKd 1 1 1\nmap_Kd paint.png\n'),
                           ('square.obj', SQUARE)):
            with open(self.path(name), 'w') as written:
                written.write(text)
        core.ZFileIO_open(self.path('square.obj'))

    def tearDown(self):
        core.ZFileIO_newScene()
        shutil.rmtree(self.folder)

    def path(self, name):
        return os.path.join(self.folder, name)


class Viewports(SceneTest):
    def setUp(self):
        SceneTest.setUp(self)
        # Kept: the plug-in holds its address only.
        self.draw = ctypes.CFUNCTYPE(ctypes.c_bool, ctypes.c_void_p)(self.called)
        self.renderer = harness.pointer('ZViewportRenderer', plugin.make_renderer(self.draw))
        module.ZViewportRenderer_registerRenderer(self.renderer)
        module.ZViewportRenderer_setRenderingOverride(
            self.renderer, module.ZViewportRenderer_kOverrideAllDrawing)

    def tearDown(self):
        harness.PointerObject.from_address(id(self.renderer)).own = 1
        module.delete_ZViewportRenderer(self.renderer)
        self.assertRaisesRegexp(RuntimeError, 'kNotFound', core.Viewports_renderer, 'paint')
        SceneTest.tearDown(self)

    def called(self, address):
        self.failure = None
        try:
            self.script(harness.pointer('ZRenderingInfo', address))
        except Exception as error:
            self.failure = error
        return not self.failure

    def test_virtual_calls_reach_the_subclass(self):
        r, m = self.renderer, module
        supports = m.ZViewportRenderer_nativelySupports
        self.assertEqual([supports(r, m.ZViewportRenderer_kSoftware, number) for number in (1, 2)],
                         [True, False])
        self.assertEqual([m.ZViewportRenderer_override(r, mode) for mode in range(4)],
                         [True, True, True, False])
        self.assertEqual(m.ZViewportRenderer_overrideThenStandardExclusion(r),
                         m.ZViewportRenderer_kExcludePluginShapes)

    def test_a_script_draws(self):
        m = module

        def script(info):
            target = m.ZRenderingInfo_renderTarget(info)
            camera, view = m.ZRenderingInfo_cameraPath(info), m.ZRenderingInfo_viewMatrix(info)
            self.assertTrue(core.ZMatrix_isEquivalent(
                core.ZMatrix_inverse(view), core.ZDagPath_inclusiveMatrix(camera), 1e-9))
            for borrowed in (target, camera, view):
                self.assertFalse(borrowed.own())
            write = m.ZRenderTarget_writeColorBuffer
            self.assertIs(write(target, image(32, 16, b'\x00\x00\x80\xff')), None)
            write(target, image(4, 4, b'\xff\xff\xff\xff'), -2L, 14, [])
        self.script = script
        core.Viewports_render('paint', 32, 16, self.path('out.png'))
        self.assertIs(self.failure, None)
        picture = core.new_ZImage()
        core.ZImage_readFromFile(picture, self.path('out.png'))
        pixels = core.ZImage_readPixels(picture)
        self.assertEqual(pixels, b'\x00\x00\x80\xff' * (32 * 14) + 2 * (
            b'\xff' * 8 + b'\x00\x00\x80\xff' * 30))


class Textures(SceneTest):
    bind = staticmethod(module.ZHwTextureManager_glBind)

    def test_each_form_is_found_by_its_argument(self):
        """Without OpenGL every form gets as far as the texture's kind."""
        handle, kind = core.new_IntBuffer(1), core.new_ZHwTextureTypeBuffer(1)
        module.ZHwTextureManager_registerTextureFile(self.path('paint.png'), handle)
        number = core.IntBuffer_get(handle, 0)
        nodes, material = core.new_ZSelectionList(), core.new_ZObject()
        core.ZSelectionList_add(nodes, 'painted')
        core.ZSelectionList_getDependNode(nodes, 0, material)
        for source in (material, core.new_ZPlug(material, 'diffuse'), number, long(number)):
            for image_type in ((), (2,)):
                core.ZHwTextureTypeBuffer_set(kind, 0, 0)
                self.assertRaisesRegexp(RuntimeError, 'no OpenGL', self.bind, source, kind,
                                        *image_type)
                self.assertEqual(core.ZHwTextureTypeBuffer_get(kind, 0),
                                 core.ZImageFileInfo_kHwTexture2D)
        module.ZHwTextureManager_deregisterTextureFile(number)
        self.assertRaisesRegexp(RuntimeError, 'handle', self.bind, number, kind)


if __name__ == '__main__':
    del sys.argv[1:]
    unittest.main()
