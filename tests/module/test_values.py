"""Calls into the host, with the values that cross: results, strings, overloads, members."""
import ctypes
import struct
import unittest

import harness
from harness import call, module, placeholder

RAYTRACE = """Wrong number or type of arguments for overloaded function 'ZRenderUtil_raytrace'.
  Possible C/C++ prototypes are:
    raytrace(ZFloatVector const &,ZFloatVector const &,void const *,void const *,short const,\
ZFloatVector &,ZFloatVector &,bool const)
    ZRenderUtil::raytrace(ZFloatVectorArray const &,ZFloatVectorArray const &,void const *,\
void const *,short const,ZFloatVectorArray &,ZFloatVectorArray &,bool const)
"""
TEXTURE_NAME = """Wrong number or type of arguments for overloaded function \
'ZRenderUtil_exactFileTextureName'.
  Possible C/C++ prototypes are:
    exactFileTextureName(ZObject const &,ZStatus *)
    exactFileTextureName(ZString const &,bool,ZString const &,ZStatus *)
    ZRenderUtil::exactFileTextureName(ZString const &,bool,ZString const &,ZString const &,\
ZStatus *)
"""
IMAGE_NAME = """Wrong number or type of arguments for overloaded function \
'ZCommonRenderSettingsData_getImageName'.
  Possible C/C++ prototypes are:
    getImageName(ZCommonRenderSettingsData const *,ZCommonRenderSettingsData::ZpathType,double,\
ZString const &,ZString const &,ZString const &,ZObject const,bool const,ZStatus *)
    getImageName(ZCommonRenderSettingsData const *,ZCommonRenderSettingsData::ZpathType,double,\
ZString const &,ZString const &,ZString const &,ZObject const,ZString const &,bool const,ZStatus *)
"""


class HostTest(unittest.TestCase):
    def assert_raises(self, error, text, function, *arguments):
        with self.assertRaises(error) as caught:
            function(*arguments)
        self.assertEqual(str(caught.exception), text)

    def new(self, class_name):
        """A host object for the length of the test."""
        made = getattr(module, 'new_' + class_name)()
        self.addCleanup(getattr(module, 'delete_' + class_name), made)
        return made


def null_object():
    """A ZObject of no node."""
    null_object.bytes = ctypes.create_string_buffer(struct.pack('iI', -1, 0))
    return harness.pointer('ZObject', ctypes.addressof(null_object.bytes))


def floats(pointer_object, count):
    return (ctypes.c_float * count).from_address(int(pointer_object))


class Strings(HostTest):
    def expected(self, position):
        return 'Expected a String or Unicode object for argument %d' % position

    def test_result_and_complaint_come_together(self):
        self.assertEqual(call(module.ZRenderUtil_relativeFileName, None), (u'', self.expected(1)))
        self.assertEqual(call(module.ZRenderUtil_sendRenderProgressInfo, None, 5),
                         (None, self.expected(1)))
        settings = self.new('ZCommonRenderSettingsData')
        for name in 'setPassName', 'setFieldName':
            function = getattr(module, 'ZCommonRenderSettingsData_' + name)
            self.assertEqual(call(function, settings, None), (None, self.expected(2)))
        nothing = null_object()
        function = module.ZCommonRenderSettingsData_getBufferName
        self.assertEqual(call(function, settings, nothing, nothing, u'p', None),
                         (u'p', self.expected(5)))
        function = module.ZCommonRenderSettingsData_shouldRenderFrameAtTime
        for position in 4, 5, 6, 8:
            arguments = [settings, 0, 1.0, 's', 'c', 'f', nothing, 't']
            arguments[position - 1] = None
            self.assertEqual(call(function, *arguments)[1], self.expected(position))
        # A failure behind the string replaces the complaint.
        self.assert_raises(ValueError, "invalid null reference in method 'ZRenderUtil_"
                           "sampleShadingNetwork', argument 14 of type 'ZFloatVectorArray &'",
                           module.ZRenderUtil_sampleShadingNetwork, None, 1, 0, 0,
                           placeholder('ZFloatMatrix'), *([None] * 10))

    def test_texts(self):
        for given, text in (('name', u'name'), (u'n\u00e4\U0001F600', u'n\u00e4\U0001F600'),
                            (5, u'5')):
            result = module.ZRenderUtil_relativeFileName(given)
            self.assertEqual((type(result), result), (unicode, text))
        for name, class_name in (('ZRenderUtil', 'ZRenderUtil'), ('ZRenderView', 'ZRenderView'),
                                 ('ZCommonRenderSettingsData', 'ZCommonRenderSettingsData')):
            result = getattr(module, name + '_className')()
            self.assertEqual((type(result), result), (str, class_name))

    def test_absent_arguments(self):
        settings, nothing = self.new('ZCommonRenderSettingsData'), null_object()
        function = module.ZCommonRenderSettingsData_getBufferName
        self.assertEqual(function(settings, nothing, nothing, 'x'), u'x')
        with self.assertRaises(RuntimeError):  # the host refuses a name of nothing
            function(settings, nothing, nothing, '')


class Overloads(HostTest):
    def test_counts_without_a_candidate(self):
        for name, text, counts in (
                ('ZRenderUtil_raytrace', RAYTRACE, (0, 6, 9)),
                ('ZRenderUtil_exactFileTextureName', TEXTURE_NAME, (0, 2, 5)),
                ('ZCommonRenderSettingsData_getImageName', IMAGE_NAME, (0, 6, 10))):
            for count in counts:
                self.assert_raises(NotImplementedError, text, getattr(module, name),
                                   *([None] * count))

    def test_raytrace_by_its_four_vectors(self):
        name = "in method 'ZRenderUtil_raytrace', argument %d of type '%s'"
        vector, array = placeholder('ZFloatVector'), placeholder('ZFloatVectorArray')
        good = [vector, vector, object(), None, 1, vector, vector]
        function = module.ZRenderUtil_raytrace
        for position, value, error, shown in (
                (5, 40000, OverflowError, (5, 'short const')),
                (5, 'x', TypeError, (5, 'short const')),
                (1, array, TypeError, (2, 'ZFloatVectorArray const &')),
                (2, array, TypeError, (1, 'ZFloatVectorArray const &')),
                (6, array, TypeError, (1, 'ZFloatVectorArray const &')),
                (7, 5, TypeError, (1, 'ZFloatVectorArray const &'))):
            arguments = list(good)
            arguments[position - 1] = value
            self.assert_raises(error, name % shown, function, *arguments)
        arguments = [array, array, None, None, 1, array, array, type('T', (), {
            '__nonzero__': lambda self: 1 / 0})()]
        self.assert_raises(TypeError, name % (8, 'bool const'), function, *arguments)
        arguments[0] = None  # passes the probe, and is no reference
        self.assert_raises(ValueError, 'invalid null reference ' + name % (
            1, 'ZFloatVectorArray const &'), function, *arguments)

    def test_texture_names_by_count(self):
        function = module.ZRenderUtil_exactFileTextureName
        name = "in method 'ZRenderUtil_exactFileTextureName', argument 1 of type 'ZObject const &'"
        self.assert_raises(TypeError, name, function, 'x')
        self.assert_raises(ValueError, 'invalid null reference ' + name, function, None)
        with self.assertRaises(RuntimeError):  # converted, and refused by the host
            function(null_object())
        for arguments in ((__file__, False, ''), (__file__, False, '', '')):
            self.assertEqual(function(*arguments), unicode(__file__))

    def test_image_names_by_eighth_argument(self):
        function = module.ZCommonRenderSettingsData_getImageName
        settings = self.new('ZCommonRenderSettingsData')
        seven = [settings, 0, 1.0, 's', 'c', 'png', null_object()]
        for more in [], [0], [False], [0.5], ['tokens'], ['tokens', 0]:
            result = function(*(seven[:1] + seven[1:] + more))
            self.assertEqual(type(result), unicode)
            self.assertTrue(result)
        # Only a string is complained about as a string.
        self.assertEqual(call(function, *(seven + [None]))[1],
                         'Expected a String or Unicode object for argument 8')
        seven[6] = None
        self.assert_raises(ValueError, "invalid null reference in method 'ZCommonRenderSettingsData"
                           "_getImageName', argument 7 of type 'ZObject const'", function, *seven)


class Values(HostTest):
    def test_float_range(self):
        noise = module.ZRenderUtil_noise4
        self.assertEqual(type(noise(3.4028234663852886e38, 0, 0, 0, 0)), float)
        self.assert_raises(OverflowError, "in method 'ZRenderUtil_noise4', argument 1 of type "
                           "'float'", noise, 1e39, 0, 0, 0, 0)

    def test_order_of_arguments(self):
        noise = module.ZRenderUtil_noise4
        values = set(noise(*p) for p in ((.1, .2, .3, .4, 5), (.2, .1, .3, .4, 5),
                                         (.1, .3, .2, .4, 5), (.1, .2, .4, .3, 5)))
        self.assertEqual(len(values), 4)

    def test_unsigned_results(self):
        size, side = module.ZRenderUtil_noiseTableSize(), module.ZRenderUtil_noiseTableCubeSide()
        self.assertEqual((type(size), size), (int, side ** 3))

    def test_render_view_session(self):
        cells = [ctypes.c_uint() for _ in range(4)]
        pointers = [harness.pointer('unsigned int', ctypes.addressof(c)) for c in cells]
        pixels = (ctypes.c_float * 4)(.1, .2, .3, .4)
        block = harness.pointer('RV_PIXEL', ctypes.addressof(pixels))
        self.assertIsNone(module.ZRenderView_startRegionRender(64, 48, 10, 20, 30, 40))
        self.assertIsNone(module.ZRenderView_getRenderRegion(*pointers))
        self.assertEqual([c.value for c in cells], [10, 20, 30, 40])
        self.assertIsNone(module.ZRenderView_updatePixels(10, 10, 30, 30, block))
        self.assertIsNone(module.ZRenderView_updatePixels(10, 10, 30, 30, block, False, 0, None))
        with self.assertRaises(RuntimeError) as failure:  # outside the region
            module.ZRenderView_updatePixels(0, 0, 0, 0, block)
        self.assertTrue(str(failure.exception))
        self.assertIsNone(module.ZRenderView_endRender())
        self.assertIsNone(module.ZRenderView_startRender(640, 480))
        self.assertIsNone(module.ZRenderView_getRenderRegion(*pointers))
        self.assertEqual([c.value for c in cells], [0, 639, 0, 479])
        self.assertIsNone(module.ZRenderView_endRender())

    def test_opaque_and_by_value(self):
        data = self.new('ZRenderData')
        vector = module.ZRenderData_viewDirection_get(data)
        floats(vector, 3)[:] = (0, 0, 1)
        toward = module.ZRenderData_viewDirection_get(self.new('ZRenderData'))
        floats(toward, 3)[:] = (0, 0, -1)
        for blind in None, object():
            result = module.ZRenderUtil_maximumSpecularReflection(blind, vector, vector, vector,
                                                                  toward)
            this = getattr(result, 'this', result)
            self.assertTrue(this.own())
            self.assertEqual(tuple(floats(this, 3)), (0, 0, 1))
            this.disown()  # its class belongs to another module, which may be absent
        with self.assertRaises(RuntimeError):
            floats(vector, 3)[:] = (0, 0, 0)
            module.ZRenderUtil_maximumSpecularReflection(None, vector, vector, vector, toward)


class Members(HostTest):
    # Class: a value for each member that is a number.
    NUMBERS = {
        'RV_PIXEL': dict(r=.25, g=.5, b=.75, a=1.5),
        'RV_AOV': dict(numberOfChannels=4000000000),
        'ZCommonRenderSettingsData': dict(
            namingScheme=4000000001, framePadding=4000000002, imageFormat=4000000003, frameBy=.25,
            skipExistingFrames=True, renderAll=False, useCustomExt=True, renumberFrames=True,
            renumberStart=.5, renumberBy=.75, width=4000000004, height=4000000005,
            deviceAspectRatio=1.25, pixelAspectRatio=1.5, dotPerInch=1.75,
            enableDefaultLight=False),
        'ZRenderData': dict(
            perspective=True, resX=65535, resY=65534, left=65533, bottom=65532, right=65531,
            top=65530, bytesPerChannel=65529, xsize=65528, ysize=65527, fieldOfView=.25,
            aspectRatio=.5),
        'ZRenderShadowData': dict(perspective=True, useMidDistMap=False, lightType=-3,
                                  shadowResX=65535, shadowResY=65534),
    }
    OBJECTS = {  # member: class and size in floats; those of unknown inside are compared by place
        'ZRenderData': dict(viewDirection=('ZFloatVector', 3), eyePoint=('ZFloatPoint', 4),
                            worldToEyeMatrix=('ZFloatMatrix', 16)),
        'ZRenderShadowData': dict(lightPosition=('ZFloatPoint', 4),
                                  projectionMatrix=('ZFloatMatrix', 16),
                                  perspectiveMatrix=('ZFloatMatrix', 16)),
    }
    POINTERS = {'RV_AOV': dict(pPixels='float'),
                'ZRenderData': dict(rgbaArr='unsigned char', depthArr='float'),
                'ZRenderShadowData': dict(depthMaps='float', midDistMaps='float')}

    def accessors(self, class_name, member):
        prefix = '%s_%s_' % (class_name, member)
        return getattr(module, prefix + 'get'), getattr(module, prefix + 'set')

    def test_numbers_each_in_its_place(self):
        for class_name, members in self.NUMBERS.items():
            record = self.new(class_name)
            for member, value in members.items():
                self.assertIsNone(self.accessors(class_name, member)[1](record, value))
                self.assertIsNone(self.accessors(class_name, member)[1](None, value))
            for member, value in members.items():
                found = self.accessors(class_name, member)[0](record)
                self.assertEqual((type(found), found), (type(value), value), member)

    def test_embedded_objects_are_copied_in_and_lent_out(self):
        for class_name, members in self.OBJECTS.items():
            record = self.new(class_name)
            for member, (object_class, count) in members.items():
                get, set = self.accessors(class_name, member)
                source = (ctypes.c_float * count)(*[len(member) + i for i in range(count)])
                set(record, harness.pointer(object_class, ctypes.addressof(source)))
                lent = get(record)
                this = getattr(lent, 'this', lent)
                self.assertFalse(this.own())
                self.assertNotEqual(int(this), ctypes.addressof(source))
                self.assertEqual(list(floats(this, count)), list(source), member)
                floats(this, count)[0] = -1
                again = get(record)
                self.assertEqual(floats(getattr(again, 'this', again), count)[0], -1)

    def test_pointers_are_taken_over(self):
        for class_name, members in self.POINTERS.items():
            record = self.new(class_name)
            for member, native in members.items():
                get, set = self.accessors(class_name, member)
                self.assertIsNone(get(record))
                block = placeholder(native)
                block.acquire()
                set(record, block)
                self.assertFalse(block.own())
                self.assertEqual((get(record), get(record).own()), (block, False))
                set(record, None)
                self.assertIsNone(get(record))

    def test_opaque_members_hold_the_address(self):
        for class_name in 'ZRenderData', 'ZRenderShadowData':
            get, set = self.accessors(class_name, 'internalData')
            record, anything = self.new(class_name), object()
            set(record, anything)
            self.assertEqual(int(get(record)), id(anything))
            self.assertTrue(str(get(record)).endswith('_p_void'))
            set(record, None)
            self.assertIsNone(get(record))

    def test_strings_are_pointer_objects(self):
        settings, aov = self.new('ZCommonRenderSettingsData'), self.new('RV_AOV')
        name = module.ZCommonRenderSettingsData_name_get(settings)
        self.assertEqual(name, module.ZCommonRenderSettingsData_name_get(settings))
        self.assertIsNone(module.RV_AOV_name_set(aov, name))
        self.assertNotEqual(module.RV_AOV_name_get(aov), name)
        for value in 'text', u'text':
            self.assert_raises(TypeError, "in method 'ZCommonRenderSettingsData_name_set', "
                               "argument 2 of type 'ZString *'",
                               module.ZCommonRenderSettingsData_name_set, settings, value)
        self.assertEqual(module.RV_AOV_numberOfChannels_get(aov), 0)


if __name__ == '__main__':
    unittest.main()
