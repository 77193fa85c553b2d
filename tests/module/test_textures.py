# SPDX-License-Identifier: MIT
"""Textures as scripts use them: the forms of binding."""
import os
import shutil
import tempfile
import unittest

import _OpenQuil as core
from harness import module

SQUARE = '''mtllib square.mtl
v -1 -1 0\nv 1 -1 0\nv 1 1 0\nv -1 1 0\nusemtl painted\nf 1 2 3 4\n'''


def image(width, height, pixel):
    made = core.new_ZImage()
    core.ZImage_create(made, width, height)
    core.ZImage_writePixels(made, pixel * (width * height))
    return made


class Textures(unittest.TestCase):
    bind = staticmethod(module.ZHwTextureManager_glBind)

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
    unittest.main()
