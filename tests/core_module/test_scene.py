# -*- coding: utf-8 -*-
# SPDX-License-Identifier: MIT
"""Texts, images, and the scene's nodes, paths and plugs as scripts see them."""

import os
import shutil
import sys
import tempfile
import unittest

import _OpenQuil
import OpenQuil

core = vars(OpenQuil)
globals().update({name: core[name] for name in OpenQuil.__all__})

TRIANGLE = 'o shape\nv 0 0 0\nv 1 0 0\nv 0 1 0\nf 1 2 3\n'


class Texts(unittest.TestCase):
    def test_constructors_and_conversions(self):
        for given in (u'h\u00e9llo \U0001f600', 'héllo 😀'):
            text = ZString(given)
            self.assertEqual(text.asUnicode(), u'h\u00e9llo \U0001f600')
            self.assertEqual((text.asChar(), str(text), unicode(text)),
                             ('héllo 😀', 'héllo 😀', u'h\u00e9llo \U0001f600'))
            self.assertEqual((len(text), text.length(), text.numBytes()), (7, 7, 11))
        self.assertEqual(ZString().asUnicode(), u'')
        for call in (ZString, ZString('a').append, ZString('a').set, ZString('a').index):
            self.assertRaises(TypeError, call, None)
        self.assertEqual(repr(ZString(u'a')), "ZString(u'a')")


class Images(unittest.TestCase):
    def test_pixels_in_and_out(self):
        image = ZImage()
        image.create(2, 2)
        pixels = ''.join(map(chr, range(16)))
        image.writePixels(pixels)
        self.assertEqual(image.readPixels(), pixels)
        self.assertRaises(ValueError, image.writePixels, 'short')
        self.assertRaises(TypeError, image.writePixels, u'x' * 16)

    def test_short_buffers_are_refused(self):
        image = ZImage()
        self.assertRaises(ValueError, image.setPixels, UnsignedCharBuffer(15), 2, 2)
        self.assertRaises(ValueError, image.setDepthMap, FloatBuffer(3), 2, 2)
        self.assertRaises(RuntimeError, image.setPixels, UnsignedCharBuffer(15), 2 ** 31, 2 ** 31)
        self.assertEqual((image.width(), image.readPixels()), (0, ''))
        image.setDepthMap(FloatBuffer([1, 2, 3, 4]), 2, 2)
        self.assertEqual(image.depthMap().read(0, 4), [1, 2, 3, 4])


class Scene(unittest.TestCase):
    def setUp(self):
        self.folder = tempfile.mkdtemp()
        self.file = os.path.join(self.folder, 'scene.obj')
        with open(self.file, 'w') as stream:
            stream.write(TRIANGLE)
        _OpenQuil.ZFileIO_open(self.file)

    def tearDown(self):
        _OpenQuil.ZFileIO_newScene()
        shutil.rmtree(self.folder)

    def test_paths_and_nodes(self):
        self.assertEqual(_OpenQuil.ZFileIO_currentFile(), os.path.realpath(self.file))
        selection, path, node = ZSelectionList(), ZDagPath(), ZObject()
        selection.add('shape')
        selection.getDagPath(0, path)
        selection.getDependNode(0, node)
        self.assertTrue(path.isValid() and path.fullPathName().endswith(u'|shape'))
        self.assertTrue(path.node() == node and not node.isNull())
        again = ZDagPath()
        _OpenQuil.ZDagPath_getAPathTo(node, again)
        self.assertEqual(again, path)
        self.assertRaisesRegexp(RuntimeError, 'kNotFound', selection.add, 'nothing')
        # A handle outlives its node and then reads as null.
        _OpenQuil.ZFileIO_newScene()
        self.assertTrue(node.isNull() and not path.isValid())
        self.assertRaisesRegexp(RuntimeError, 'kNotFound', _OpenQuil.ZFileIO_open, '/no/such.obj')


if __name__ == '__main__':
    unittest.main(argv=sys.argv[:1])
