"""Render layers, passes, image sources and light links of a scene, through the flat functions; what
the host itself makes of them is tested natively."""
import ctypes
import json
import os
import shutil
import subprocess
import sys
import tempfile
import unittest

import harness
from harness import module

import _OpenQuil as core
import OpenQuilRender  # its registered classes give results their destructors

FLOOR_AND_ROOF = '''v -9 0 9\nv 9 0 9\nv 9 0 -9\nv -1 1 1\nv 1 1 1\nv 1 1 -1
o floor\nf 1 2 3\no roof\nf 4 5 6\n'''
LAYERS = {
    'passes': [{'name': 'depths', 'implementation': 'depth', 'id': 'DEPTH', 'tokens': 'V=2',
                'objects': {'except': ['floor']}, 'lights': {'only': []}},
               {'name': 'colors'}],
    'layers': [{'name': 'top', 'members': ['roof', 'floor'], 'passes': ['depths'],
                'adjustments': {'roof.visibility': False}},
               {'name': 'inner', 'parent': 'top'}],
    'imageSources': [{'name': 'fixed', 'layer': 'top', 'camera': 'persp',
                      'imageName': '<Scene>.<RenderLayer>.<Camera>'},
                     {'name': 'open', 'imageName': '<RenderLayer>'}],
    'lightLinks': [{'light': 'headlight', 'illuminates': {'only': ['roof']}}]}


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

    def assert_fails(self, error, text, function, *arguments):
        with self.assertRaises(error) as caught:
            function(*arguments)
        self.assertIn(text, str(caught.exception))

    def test_constructors_attach(self):
        for name, good, bad in (('ZFnRenderLayer', 'top', 'depths'),
                                ('ZFnRenderPass', 'depths', 'top'),
                                ('ZFnImageSource', 'fixed', 'roof')):
            make = getattr(module, 'new_' + name)
            self.assertTrue(make(node(good)).own())
            self.assertEqual(getattr(module, name + '_className')(), name)
            self.assert_fails(RuntimeError, '(kInvalidParameter)', make, node(bad))
            self.assert_fails(RuntimeError, '(kInvalidParameter)', make, core.new_ZObject())
            self.assert_fails(ValueError, "invalid null reference in method 'new_%s', argument 1 "
                              "of type 'ZObject &'" % name, make, None)
            self.assert_fails(
                NotImplementedError, "Wrong number or type of arguments for overloaded function "
                "'new_%s'.\n  Possible C/C++ prototypes are:\n    %s()\n    "
                "%s(ZObject &,ZStatus *)\n" % (name, name, name), make, node(good), node(good))
        empty = module.new_ZFnRenderLayer()
        self.assert_fails(RuntimeError, '(kFailure)', module.ZFnRenderLayer_inLayer, empty,
                          node('roof'))
        self.assertTrue(module.ZFnRenderLayer_inCurrentRenderLayer(empty, path('roof')))

    def test_layers_of_the_scene(self):
        self.assertEqual(names(module.ZFnRenderLayer_listAllRenderLayers),
                         ['defaultRenderLayer', 'top', 'inner'])
        for found in (module.ZFnRenderLayer_defaultRenderLayer(),
                      module.ZFnRenderLayer_currentLayer(),
                      module.ZFnRenderLayer_findLayerByName('defaultRenderLayer')):
            self.assertTrue(bare(found).own())
            self.assertEqual(name_of(found), 'defaultRenderLayer')
        self.assert_fails(RuntimeError, 'there is no render layer roof',
                          module.ZFnRenderLayer_findLayerByName, 'roof')

    def test_layer(self):
        top = module.new_ZFnRenderLayer(node('top'))
        self.assertEqual(names(lambda a: module.ZFnRenderLayer_listMembers(top, a)),
                         ['|roof', '|floor'])
        self.assertEqual(names(lambda a: module.ZFnRenderLayer_layerChildren(top, a)), ['inner'])
        self.assertEqual(names(lambda a: module.ZFnRenderLayer_layerChildren(top, a, [1])),
                         ['inner'])
        self.assertIs(module.ZFnRenderLayer_inLayer(top, node('roof')), True)
        self.assertIs(module.ZFnRenderLayer_inLayer(top, node('persp')), False)
        plug = core.new_ZPlug(node('roof'), 'visibility')
        self.assertIs(module.ZFnRenderLayer_isPlugAdjusted(top, plug), True)
        adjusted = module.ZFnRenderLayer_adjustmentPlug(top, plug)
        self.assertTrue(bare(adjusted).own())
        self.assertEqual([core.ZPlug_asBool(each) for each in (adjusted, plug)], [False, True])

    def test_passes(self):
        top = module.new_ZFnRenderLayer(node('top'))
        self.assertEqual(names(lambda a: module.ZFnRenderLayer_externalRenderPasses(top, a)),
                         ['depths'])
        has_object = module.ZFnRenderLayer_passHasObject
        self.assertEqual([has_object(top, node('depths'), path(name)) for name in
                          ('roof', 'floor', 'persp')], [True, False, False])
        self.assertIs(has_object(top, node('colors'), path('roof')), False)  # not of this layer
        self.assertIs(module.ZFnRenderLayer_passHasLight(top, node('depths'), node('headlight')),
                      False)
        self.assert_fails(RuntimeError, '(kInvalidParameter)', has_object, top, node('roof'),
                          path('roof'))

        depths = module.new_ZFnRenderPass(node('depths'))
        self.assertEqual(module.ZFnRenderPass_passID(depths), u'DEPTH')
        self.assertEqual(module.ZFnRenderPass_customTokenString(depths), u'V=2')
        self.assertEqual(module.ZFnRenderPass_frameBufferChannels(depths), 1)
        self.assertIs(module.ZFnRenderPass_usesFiltering(depths), False)
        for implementation in (module.ZFnRenderPass_getImplementation(depths),
                               module.ZFnRenderPass_setImplementation(depths, 'depth')):
            self.assertIn("'ZPxRenderPassImpl *'", repr(implementation))
            self.assertFalse(implementation.own())
        self.assert_fails(RuntimeError, '(kNotFound)', module.ZFnRenderPass_setImplementation,
                          depths, 'sound')
        self.assertEqual(module.ZFnRenderPass_frameBufferChannels(depths), 1)

    def test_frame_buffer_type_is_a_pointer_object(self):
        for name, value in (('depths', 4), ('colors', 1)):
            made = bare(module.ZFnRenderPass_frameBufferType(module.new_ZFnRenderPass(node(name))))
            self.assertIn("'ZPxRenderPassImpl::PassTypeBit *'", repr(made))
            self.assertTrue(made.own())
            address = harness.PointerObject.from_address(id(made)).ptr
            self.assertEqual(ctypes.c_int.from_address(address).value, value)

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
        self.assertEqual(get(free, 0, 1, '', none, none), u'defaultRenderLayer.png')
        self.assert_fails(RuntimeError, '(kInvalidParameter)', get, free, 0, 1, '', node('roof'),
                          none)
        self.assert_fails(ValueError, "invalid null reference in method 'ZFnImageSource_"
                          "getImageName', argument 5 of type 'ZObject const'", get, fixed, 0, 1,
                          '', None, none)
        self.assertEqual(harness.call(get, fixed, 0, 1, None, none, none),
                         (u'room.top.persp.png',
                          'Expected a String or Unicode object for argument 4'))
        for function, own in ((module.ZFnImageSource_sourceLayer, 'top'),
                              (module.ZFnImageSource_sourceCamera, 'persp')):
            self.assertEqual(name_of(function(fixed, none)).strip('|').split('|')[-1], own)
            self.assertTrue(core.ZObject_isNull(function(free, none)))

    def test_light_links(self):
        links = module.new_ZLightLinks()
        lit = core.new_ZSelectionList()
        self.assert_fails(RuntimeError, 'parseLinks', module.ZLightLinks_getLinkedObjects, links,
                          path('headlight'), lit)
        for arguments in ((), (core.new_ZObject(),), (node('roof'), 0, None, 0, 1)):
            self.assertIsNone(module.ZLightLinks_parseLinks(links, *arguments))
            for function, target in ((module.ZLightLinks_getLinkedObjects, 'roof'),
                                     (module.ZLightLinks_getShadowLinkedObjects, 'roof')):
                self.assertIsNone(function(links, path('headlight'), lit))
                self.assertTrue(core.ZSelectionList_hasItem(lit, path(target)))
        module.ZLightLinks_parseLinks(links)
        module.ZLightLinks_getIgnoredObjects(links, path('headlight'), lit)
        self.assertTrue(core.ZSelectionList_hasItem(lit, path('floor')))
        for name, count in (('getLinkedLights', 0), ('getIgnoredLights', 1),
                            ('getShadowLinkedLights', 1), ('getShadowIgnoredLights', 0)):
            lights = core.new_ZDagPathArray()
            getattr(module, 'ZLightLinks_' + name)(links, path('floor'), core.new_ZObject(), lights)
            self.assertEqual(core.ZDagPathArray_length(lights), count, name)
        self.assert_fails(TypeError, "argument 4 of type 'std::ostream *'",
                          module.ZLightLinks_parseLinks, links, node('roof'), True, sys.stdout)

    def run_host(self, *arguments):
        child = subprocess.Popen([os.readlink('/proc/self/exe'), '--quiet', self.scene] +
                                 list(arguments), stdout=subprocess.PIPE, stderr=subprocess.PIPE)
        output, errors = child.communicate()
        return child.returncode, output, errors

    @unittest.skipUnless(os.path.basename(os.readlink('/proc/self/exe')) == 'quilhost',
                         'the layer is chosen by the host program')
    def test_layer_of_the_command_line(self):
        code = ('from OpenQuilRender import ZFnRenderLayer; import _OpenQuil as c; '
                'n = c.new_ZSelectionList(); '
                'c.ZSelectionList_add(n, ZFnRenderLayer.currentLayer()); '
                's = c.new_ZStringArray(); c.ZSelectionList_getSelectionStrings(n, s); '
                'print c.ZStringArray___getitem__(s, 0)')
        self.assertEqual(self.run_host('--layer', 'top', '--python-expr', code), (0, 'top\n', ''))
        self.assertEqual(self.run_host('--layer', 'roof', '--python-expr', code)[0::2],
                         (2, "quilhost: there is no layer 'roof'; the scene has: "
                             "defaultRenderLayer, top, inner\n"))


if __name__ == '__main__':
    unittest.main()
