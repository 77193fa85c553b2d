# SPDX-License-Identifier: MIT
"""Render layers, passes and image sources of a scene, through the flat functions; what
the host itself makes of them is tested natively."""
import ctypes
import json
import os
import shutil
import tempfile
import unittest

import harness
from harness import module

import _OpenQuil as core
import OpenQuilRender  # noqa: F401 - its registered classes give results their destructors

FLOOR_AND_ROOF = '''v -9 0 9\nv 9 0 9\nv 9 0 -9\nv -1 1 1\nv 1 1 1\nv 1 1 -1
o floor\nf 1 2 3\no roof\nf 4 5 6\n'''
LAYERS = {
    'passes': [{'name': 'depths', 'implementation': 'depth', 'id': 'DEPTH', 'tokens': 'V=2',
                'objects': {'except': ['floor']}, 'lights': {'only': ['headlight']}},
               {'name': 'colors'}],
    'layers': [{'name': 'top', 'members': ['roof', 'floor', 'headlight', 'fillLight'],
                'passes': ['depths'],
                'adjustments': {'roof.visibility': False}},
               {'name': 'inner', 'parent': 'top'}],
    'imageSources': [{'name': 'fixed', 'layer': 'top', 'camera': 'persp',
                      'imageName': '<Scene>.<RenderLayer>.<Camera>'},
                     {'name': 'open', 'imageName': '<RenderLayer>'}]}


def bare(result):
    """The pointer object of a result."""
    return getattr(result, 'this', result)


def node(name):
    found, result = core.new_ZSelectionList(), core.new_ZObject()
    core.ZSelectionList_add(found, name)
    core.ZSelectionList_getDependNode(found, 0, result)
    return result


def path(name):
    result = core.new_ZDagPath()
    core.ZDagPath_getAPathTo(node(name), result)
    return result


def name_of(handle):
    names, result = core.new_ZSelectionList(), core.new_ZStringArray()
    core.ZSelectionList_add(names, handle)
    core.ZSelectionList_getSelectionStrings(names, result)
    return core.ZStringArray___getitem__(result, 0)


def names(fill):
    """The names in the array that the function fills."""
    found = core.new_ZObjectArray()
    assert fill(found) is None
    return [name_of(core.ZObjectArray___getitem__(found, i))
            for i in range(core.ZObjectArray_length(found))]


class LayersTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.folder = tempfile.mkdtemp()
        cls.scene = os.path.join(cls.folder, 'room.obj')
        with open(cls.scene, 'w') as file:
            file.write(FLOOR_AND_ROOF)
        with open(os.path.join(cls.folder, 'room.layers.json'), 'w') as file:
            json.dump(LAYERS, file)
        core.ZFileIO_open(cls.scene)

    @classmethod
    def tearDownClass(cls):
        shutil.rmtree(cls.folder)

    def test_passes(self):
        top = module.new_ZFnRenderLayer(node('top'))
        self.assertEqual(names(lambda a: module.ZFnRenderLayer_externalRenderPasses(top, a)),
                         ['depths'])
        has_object = module.ZFnRenderLayer_passHasObject
        self.assertEqual([has_object(top, node('depths'), path(name)) for name in
                          ('roof', 'floor', 'persp')], [True, False, False])
        self.assertEqual([module.ZFnRenderLayer_passHasLight(top, node('depths'), node(name))
                          for name in ('headlight', 'fillLight')], [True, False])
        depths = module.new_ZFnRenderPass(node('depths'))
        self.assertEqual(module.ZFnRenderPass_passID(depths), u'DEPTH')
        self.assertEqual(module.ZFnRenderPass_customTokenString(depths), u'V=2')
        self.assertEqual(module.ZFnRenderPass_frameBufferChannels(depths), 1)
        implementation = module.ZFnRenderPass_setImplementation(depths, 'depth')
        self.assertIn("'ZPxRenderPassImpl *'", repr(implementation))
        self.assertFalse(implementation.own())
        kind = bare(module.ZFnRenderPass_frameBufferType(depths))
        self.assertIn("'ZPxRenderPassImpl::PassTypeBit *'", repr(kind))
        self.assertTrue(kind.own())
        self.assertEqual(ctypes.c_int.from_address(int(kind)).value, 4)

    def test_image_sources(self):
        none = core.new_ZObject()
        get = module.ZFnImageSource_getImageName
        fixed, free = [module.new_ZFnImageSource(node(n)) for n in ('fixed', 'open')]
        self.assertEqual(get(fixed, 0, 1, '', none, none), u'room.top.persp.png')
        extension = core.new_ZString()
        self.assertEqual(get(fixed, 0, 1, 'other', none, node('inner'), extension),
                         u'other.top.persp.png')
        self.assertEqual(core.ZString_asChar(extension), 'png')
        self.assertEqual(get(free, 0, 1, '', none, node('inner'), None), u'inner.png')
        for function, own in ((module.ZFnImageSource_sourceLayer, 'top'),
                              (module.ZFnImageSource_sourceCamera, 'persp')):
            self.assertEqual(name_of(function(fixed, none)).strip('|').split('|')[-1], own)

    @unittest.skipUnless(os.path.basename(os.readlink('/proc/self/exe')) == 'quilhost',
                         'the layer is chosen by the host program')
    def test_layer_of_the_command_line(self):
        code = ('import sys; sys.path.insert(0, %r); from test_layers import *; '
                'print name_of(module.ZFnRenderLayer_currentLayer())' % os.path.dirname(
                    os.path.abspath(__file__)))
        for layer, outcome in (('top', (0, 'top\n', '')), (
                'roof', (2, '', "quilhost: there is no layer 'roof'; the scene has: "
                                'defaultRenderLayer, top, inner\n'))):
            self.assertEqual(harness.run(code, '--quiet', self.scene, '--layer', layer), outcome)


if __name__ == '__main__':
    unittest.main()
