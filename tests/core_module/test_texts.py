# -*- coding: utf-8 -*-
# SPDX-License-Identifier: MIT
"""Texts, images and what a scene consists of, as scripts see them."""

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

    def test_what_there_is(self):
        selection, node, plug = ZSelectionList(), ZObject(), ZPlug()
        selection.add('shape')
        selection.getDependNode(0, node)
        names = [u'visibility', u'matrix', u'worldMatrix']
        self.assertEqual(list(node.attributeNames()), names)
        self.assertEqual([each['name'] for each in _OpenQuil.NodeTypes_attributes('mesh')], names)
        self.assertRaises(ValueError, _OpenQuil.NodeTypes_attributes, 'meshes')
        visible = ZPlug(node, 'visibility')
        self.assertEqual([str(each) for each in (
            node, ZObject(), visible, plug, selection, ZDagPath(), ZImage(), FloatBuffer([1, 2]),
            UnsignedCharBuffer(9), PixelBuffer(3))], [
                "<ZObject mesh u'shape'>", '<ZObject: null>', "<ZPlug u'shape.visibility': True>",
                '<ZPlug: no attribute>', "<ZSelectionList [u'|shape']>", '<ZDagPath: no node>',
                '<ZImage: no pixels>', '<FloatBuffer [1.0, 2.0]>',
                '<UnsignedCharBuffer of 9 items, the first are [0, 0, 0, 0, 0, 0, 0, 0]>',
                '<PixelBuffer of 3 pixels>'])
        self.assertRaisesRegexp(
            RuntimeError, 'shape.size; it is a mesh and has visibility, matrix, worldMatrix$',
            ZPlug, node, 'size')


if __name__ == '__main__':
    unittest.main(argv=sys.argv[:1])
