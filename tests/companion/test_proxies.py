# SPDX-License-Identifier: MIT
"""Tests of the generated proxy classes against the native tables. Run by Python 2.7 with
NAME=DESCRIPTION for every module."""

import array
import gc
import importlib
import inspect
import json
import pickle
import pydoc
import random
import struct
import sys
import unittest
import weakref

import OpenQuil
import OpenQuilRender
import _OpenQuilRender

DESCRIPTIONS = dict(argument.split('=', 1) for argument in sys.argv[1:])
del sys.argv[1:]


class Described(object):
    """One module with its description."""

    def __init__(self, name, path):
        self.proxies = importlib.import_module(name)
        self.native = importlib.import_module('_' + name)
        with open(path) as stream:
            self.data = json.load(stream)

    def functions(self, *kinds):
        return [f for f in self.data['functions'] if f['kind'] in kinds]

    def proxy_class(self, function):
        return getattr(self.proxies, function['class'])


MODULES = [Described(*item) for item in sorted(DESCRIPTIONS.items())]


# Documentation by how it begins and ends: lines with names, types and defaults of the parameters,
# the header's text, what an extension adds.
DOCUMENTATION = (
    (OpenQuil.ZQuaternion.__init__, 'ZQuaternion()\nZQuaternion(other: ZQuaternion)\n',
     'Makes a quaternion from its components.\n\n`items` may be any sequence.'),
    (OpenQuilRender.ZRenderCallback.addCallback,
     'addCallback(callback: Optional[ZRenderCallback], priority: int) -> None\n\nRegisters a',
     '\n\nThe Python instance is kept alive until it is removed.'),
    (OpenQuilRender.ZCommonRenderSettingsData.getImageName,
     'getImageName(pathType: ZpathType, frameNumber: float, sceneName: unicode, cameraName: '
     'unicode,\n        format: unicode, layer: OpenQuil.ZObject, createDirectory: bool = True) -> '
     'unicode\ngetImageName(', '<RenderPass>\nand <Version>.'),
    (OpenQuilRender.ZHardwareRenderer.drawSwatchBackGroundQuads,
     'drawSwatchBackGroundQuads(color: OpenQuil.ZColor = OpenQuil.ZColor(0.5, 0.5, 0.5, 1.0),\n'
     '        textured: bool = False, numberOfRepeats: int = 8) -> None\n\nFills', ''),
    (OpenQuilRender.ZRenderShadowData.lightType, "lightType: LightType\n\nThe light's kind.", ''),
    (OpenQuilRender.ZRenderShadowData, 'The shadow depth maps of one light. Directional',
     '\n    kSpot: Shines from a point into a cone.'),
)


class DocumentationTest(unittest.TestCase):
    def test_heads_and_tails(self):
        for documented, head, tail in DOCUMENTATION:
            text = inspect.getdoc(documented)
            self.assertEqual((text[:len(head)], text[len(text) - len(tail):]), (head, tail))


class InstanceTest(unittest.TestCase):
    def test_constructors(self):
        made = refused = 0
        for module in MODULES:
            constructors = {f['class']: f for f in module.functions('constructor')}
            for name in [f['class'] for f in module.functions('register')]:
                proxy = getattr(module.proxies, name)
                if name not in constructors:
                    with self.assertRaisesRegexp(AttributeError, '^No constructor defined$'):
                        proxy()
                    refused += 1
                elif proxy is OpenQuilRender.ZRenderCallback or \
                        min(o['min'] for o in constructors[name]['overloads']) == 0:
                    self.assertTrue(proxy().thisown)
                    made += 1
        self.assertTrue(made > 20 and refused > 0)

    def test_repr(self):
        view = OpenQuilRender.ZRenderView()
        self.assertEqual("<OpenQuilRender.ZRenderView; proxy of native 'ZRenderView *' at 0x%x>"
                         % int(view.this), repr(view))
        raw = OpenQuilRender.ZRenderView.__new__(OpenQuilRender.ZRenderView)
        self.assertEqual('<OpenQuilRender.ZRenderView; not initialised>', repr(raw))

    def test_texts_take_python_strings_and_native_ones(self):
        settings = OpenQuilRender.ZCommonRenderSettingsData()
        for value in ('plain', u'sch\xf6n \U0001f3a8', OpenQuil.ZString(u'native \xe9')):
            settings.name = value
            self.assertIsInstance(settings.name, OpenQuil.ZString)
            self.assertEqual(unicode(value), unicode(settings.name))
        with self.assertRaises(TypeError):
            settings.name = 5

    def test_a_part_keeps_the_whole_alive(self):
        def image():
            made = OpenQuil.ZImage()
            made.create(2, 2)
            return made
        for make, take in ((OpenQuilRender.ZCommonRenderSettingsData, lambda whole: whole.name),
                           (image, lambda whole: whole.pixels())):
            whole = make()
            gone = weakref.ref(whole)
            part = take(whole)
            del whole.this  # does not take the memory from the part
            str(part), make()
            del whole
            gc.collect()
            self.assertIsNotNone(gone())
            del part
            gc.collect()
            self.assertIsNone(gone())

    def test_a_missing_text_is_told_at_the_call(self):
        util, profile = OpenQuilRender.ZRenderUtil, OpenQuilRender.ZRenderProfile()
        for call in (lambda: util.relativeFileName(None), lambda: OpenQuil.ZString(None),
                     lambda: profile.addRenderer(None, 2.0)):
            with self.assertRaisesRegexp(TypeError, '^Expected a String or Unicode object for arg'):
                call()
                self.fail('the error came later')
        self.assertEqual(util.relativeFileName('a'), u'a')

    def test_values_are_not_hashed(self):
        with self.assertRaisesRegexp(TypeError, 'unhashable'):
            hash(OpenQuil.ZVector(1, 2, 3))

    def test_named_arguments_and_defaults(self):
        self.assertIsNone(OpenQuilRender.ZRenderView.startRender(height=2, width=4))
        try:
            pixel = OpenQuilRender.RV_PIXEL()
            OpenQuilRender.ZRenderView.updatePixels(3, 3, 1, 1, pixel, isHdr=False)
            with self.assertRaisesRegexp(RuntimeError, 'kInvalidParameter'):
                OpenQuilRender.ZRenderView.updatePixels(9, 9, 1, 1, pixel)
        finally:
            OpenQuilRender.ZRenderView.endRender()


class NativeMethodTest(unittest.TestCase):
    """To a script they are functions of a Python class."""

    def test_signatures_and_names(self):
        start, length = OpenQuilRender.ZRenderView.startRender, OpenQuil.ZVector.length
        self.assertEqual(inspect.getargspec(start), (
            ['width', 'height', 'doNotClearBackground', 'immediateFeedback'], None, None,
            (False, False)))
        self.assertEqual(inspect.getargspec(length).args, ['self'])
        self.assertEqual(inspect.getargspec(OpenQuil.ZVector.__init__), (['self'], 'args', None,
                                                                         None))
        self.assertEqual((length.__name__, length.__module__, length.im_class),
                         ('length', 'OpenQuil', OpenQuil.ZVector))
        text = pydoc.plain(pydoc.render_doc(OpenQuilRender.RV_PIXEL))
        for shown in '__init__(self)', 'Data descriptors defined here', 'r: float':
            self.assertIn(shown, text)
        self.assertIn('startRender(width, height, doNotClearBackground=False, immediateF',
                      pydoc.plain(pydoc.render_doc(start)))

    def test_wrong_arguments(self):
        start, v = OpenQuilRender.ZRenderView.startRender, OpenQuil.ZVector(1, 2, 2)
        for words, call in (
                (r'startRender\(\) takes at least 2 arguments \(1 given\)', lambda: start(1)),
                (r'startRender\(\) takes at most 4 arguments \(5 given\)',
                 lambda: start(1, 2, 3, 4, 5)),
                (r'startRender\(\) got multiple values .* \'width\'', lambda: start(1, width=2)),
                (r'startRender\(\) got an unexpected .* \'wide\'', lambda: start(1, 2, wide=2)),
                (r'at least 2 arguments', lambda: start(height=2)),
                (r'length\(\) takes exactly 1 argument \(2 given\)', lambda: v.length(1)),
                (r'set\(\) takes no keyword', lambda: OpenQuil.ZString().set(text='a')),
                (r'must be called with ZVector instance', lambda: OpenQuil.ZVector.length(5)),
                (r'unsupported operand', lambda: 5 + v), (r'argument 2 of type', lambda: v + 5),
                (r'__getitem__', lambda: OpenQuil.ZVector.__getitem__(v)),
                (r'pickle', lambda: pickle.dumps(v, 2))):
            self.assertRaisesRegexp(TypeError, words, call)
        with self.assertRaises(AttributeError):
            del v[0]

    def test_classes_may_be_changed_and_derived_from(self):
        class Loud(OpenQuil.ZVector):
            def length(self):
                return 10 * super(Loud, self).length()

            def __add__(self, other):
                return 'added'

            def __getitem__(self, index):
                return index

        loud, plain = Loud(0, 3, 4), OpenQuil.ZVector(0, 3, 4)
        self.assertEqual((loud.length(), loud + plain, loud['a'], loud.y), (50, 'added', 'a', 3))
        self.assertEqual(((plain + loud).y, plain[1], len(plain), -plain),
                         (6, 3, 3, OpenQuil.ZVector(0, -3, -4)))
        self.assertEqual((plain * loud, loud * plain, (loud * 2).y, (2 * loud).z, (2 * plain).y),
                         (25, 25, 6, 8, 6))
        self.assertIs(plain.__rmul__('2'), NotImplemented)
        self.assertRaises(TypeError, lambda: 'x' * plain)
        matrix = OpenQuil.ZMatrix()
        self.assertEqual((loud * matrix, plain * (2 * matrix)),
                         (plain, OpenQuil.ZVector(0, 6, 8)))

        class Product(Loud):
            def __rmul__(self, other):
                return 'reflected'
        self.assertEqual((plain * Product(), loud * Product(), 2 * Product()), ('reflected',) * 3)
        own = vars(OpenQuil.ZVector)['__add__'], vars(OpenQuil.ZVector)['__init__']
        OpenQuil.ZVector.__add__ = lambda a, b: 'patched'
        OpenQuil.ZVector.__init__ = lambda self: own[1](self, 7, 0, 0)
        try:
            self.assertEqual((plain + plain, OpenQuil.ZVector().x), ('patched', 7))
        finally:
            OpenQuil.ZVector.__add__, OpenQuil.ZVector.__init__ = own
        self.assertEqual((plain + plain).y, 6)
        again = plain.this
        plain.__init__(1, 2, 3)  # chains the second object behind the first
        self.assertTrue(plain.this is again and again.next() is not None)

    def test_properties(self):
        pixel = OpenQuilRender.RV_PIXEL()
        self.assertRaises(TypeError, setattr, pixel, 'r', 'red')
        self.assertRaises(AttributeError, delattr, pixel, 'r')
        self.assertRaises(TypeError, OpenQuilRender.RV_PIXEL.r.__get__, 5)

        class Doubled(OpenQuilRender.RV_PIXEL):
            r = OpenQuilRender.RV_PIXEL.r.getter(lambda self: 2 * self.g)
        doubled = Doubled()
        doubled.g = 0.25
        doubled.r = 3
        self.assertEqual((doubled.r, OpenQuilRender.RV_PIXEL.r.fget(doubled)), (0.5, 3))


class MemoryTest(unittest.TestCase):
    """Whatever is memory, beside lists and array.array with the same items: each class with the
    code of its numbers and how many of them an item has."""
    BUFFERS = {'SignedChar': 'b', 'UnsignedChar': 'B', 'Short': 'h', 'UnsignedShort': 'H',
               'Int': 'i', 'UnsignedInt': 'I', 'Long': 'l', 'UnsignedLong': 'L', 'Float': 'f',
               'Double': 'd'}
    ARRAYS = {'Float': 'f', 'Double': 'd', 'Int': 'i', 'Uint': 'I', 'Uint64': 'L',
              'FloatVector': 'fff', 'Vector': 'ddd', 'FloatPoint': 'ffff', 'Point': 'dddd',
              'Color': 'ffff', 'Matrix': 'd' * 16}
    KINDS = {name + 'Buffer': codes for name, codes in BUFFERS.items()}
    KINDS.update(('Z%sArray' % name, codes) for name, codes in ARRAYS.items())
    KINDS['PixelBuffer'] = 'ffff'

    def setUp(self):
        self.chance = random.Random(7)

    def kinds(self):
        for name, codes in sorted(self.KINDS.items()):
            yield getattr(OpenQuil, name), codes[0], len(codes)

    def some(self, count, width):
        """So many items, as a list of numbers or tuples."""
        rows = [tuple(self.chance.randrange(100) for _ in range(width)) for _ in range(count)]
        return [row[0] for row in rows] if width == 1 else rows

    @staticmethod
    def packed(code, items):
        return array.array(code, [n for item in items for n in
                                  (item if isinstance(item, tuple) else (item,))])

    def made(self, kind, code, items):
        if kind is not OpenQuil.PixelBuffer:
            return kind(self.packed(code, items))
        pixels = kind(len(items))
        pixels.write(0, items)
        return pixels

    def sources(self, kind, code, items):
        """All that can be written as these items."""
        packed = self.packed(code, items)
        raw, native = packed.tostring(), self.made(kind, code, items)
        return [packed, raw, bytearray(raw), buffer(raw), native, native[:], memoryview(native),
                memoryview(raw)]

    @staticmethod
    def outcome(operation, *arguments):
        try:
            return operation(*arguments)
        except (IndexError, ValueError) as error:
            return type(error)

    def change(self, items, model, kind, code, width):
        """One operation on both; what it yields of each."""
        chance = self.chance
        index, count = chance.randrange(-14, 14), chance.randrange(4)
        part = slice(*[chance.choice([None] + range(-11, 11)) for _ in range(2)] +
                     [chance.choice((None, 1, 2, 3, -1, -2))])
        whole = slice(max(index, 0), max(index, 0) + count)
        given = self.some(len(model[part]), width)
        others = self.some(count, width)
        inside = index >= 0 and index + count <= len(model)
        what = chance.randrange(6)
        if what == 0:
            return list(map(self.plain(width), items[part])), model[part]
        if what == 1:
            items[part] = chance.choice(self.sources(kind, code, given))
            model[part] = given
        elif what == 2:
            found = self.outcome(items.read, index, count)
            return found, self.read_back(code, model[whole]) if inside else IndexError
        elif what == 3:
            source = chance.choice(self.sources(kind, code, others))
            found = self.outcome(items.write, index, source)
            if inside:
                model[whole] = others
            return found, None if inside else IndexError
        elif what == 4:
            found = self.outcome(items.__getitem__, index)
            expected = self.outcome(model.__getitem__, index)
            return found if found is IndexError else self.plain(width)(found), expected
        else:
            value = self.some(1, width)[0]
            return self.outcome(items.__setitem__, index, value), \
                self.outcome(model.__setitem__, index, value)
        return None, None

    @staticmethod
    def plain(width):
        """An item of a str, an object or a tuple as what the model has."""
        return (lambda item: ord(item) if isinstance(item, str) else item) if width == 1 else tuple

    @staticmethod
    def read_back(code, items):
        return ''.join(map(chr, items)) if code == 'B' else items

    def test_random_operations(self):
        for kind, code, width in self.kinds():
            if width == 16:
                continue  # slices have objects
            model = self.some(9, width)
            items = self.made(kind, code, model)
            for _ in range(150):
                found, expected = self.change(items, model, kind, code, width)
                self.assertEqual(found, expected, kind)
                raw = self.packed(code, model).tostring()
                self.assertEqual((items.readBytes(0, len(model)), str(buffer(items))), (raw, raw))

    def test_views(self):
        for kind, code, width in self.kinds():
            model = self.packed(code, self.some(9, width))
            items = OpenQuil.PixelBuffer(9) if kind is OpenQuil.PixelBuffer else kind(model)
            items.write(0, model)
            view = memoryview(items)
            inner = {1: (), 16: (4, 4)}.get(width, (width,))
            self.assertEqual((view.format, view.itemsize, view.shape, view.readonly, len(view)),
                             (code, model.itemsize, (9,) + inner, False, 9))
            self.assertEqual(view.strides[-1], model.itemsize)
            self.assertEqual(view.strides[0], model.itemsize * width)
            self.assertEqual(view.tobytes(), model.tostring())
            struct.pack_into('=' + code, items, model.itemsize, 9)
            self.assertEqual(struct.unpack_from(code, view.tobytes(), model.itemsize), (9,))
            items.write(0, '\0' * len(view.tobytes()))
            self.assertEqual(set(view.tobytes()), {'\0'})

    def test_a_viewed_array_keeps_its_length(self):
        for name, codes in sorted(self.ARRAYS.items()):
            kind = getattr(OpenQuil, 'Z%sArray' % name)
            packed = array.array(codes[0], range(3 * len(codes)))
            items, other = kind(packed), kind(packed)
            view = memoryview(items)
            for change in (lambda: items.append(other[0]), lambda: items.insert(other[0], 1),
                           lambda: items.remove(0), items.clear, lambda: items.setLength(9),
                           lambda: items.copy(kind(1)), lambda: items.__delitem__(0)):
                self.assertRaisesRegexp(BufferError, '^the length cannot change while', change)
            items.setLength(3)
            other.write(0, '\0' * len(packed.tostring()))
            items.copy(other)  # to the same place
            self.assertEqual(set(view.tobytes()), {'\0'})
            items.write(0, packed)
            del view
            items.append(other[0])
            view = memoryview(items)
            getattr(OpenQuil._native, 'delete_Z%sArray' % name)(items)
            others = [kind(packed) for _ in range(50)]  # would take the place of freed memory
            self.assertEqual(view.tobytes()[:-len(view.tobytes()) // 4], packed.tostring())
            del others

    def test_a_viewed_array_is_filled_by_the_host(self):
        origins = OpenQuil.ZFloatVectorArray([(0, 0, 9)] * 2)
        points, colors = (OpenQuil.ZFloatVectorArray([(7, 7, 7)] * 2) for _ in range(2))
        same, other = memoryview(points), memoryview(origins)
        trace = OpenQuilRender.ZRenderUtil.raytrace
        trace(origins, origins, None, None, 1, points, colors)  # nothing is hit
        self.assertEqual(same.tobytes(), struct.pack('6f', *[0] * 6))
        trace(colors, origins, None, None, 1, origins, points)
        short = OpenQuil.ZFloatVectorArray([(1, 1, 1)])
        seen = memoryview(short)
        trace(OpenQuil.ZFloatVectorArray([(0, 0, 9)] * 2),
              OpenQuil.ZFloatVectorArray([(0, 0, 9)] * 2), None, None, 1, short, points)
        self.assertEqual((len(short), seen.tobytes()), (2, struct.pack('3f', 1, 1, 1)))
        self.assertEqual(other.tobytes(), struct.pack('6f', *[0] * 6))

    def test_a_script_within_a_slice_may_change_the_array(self):
        items = OpenQuil.ZFloatArray(range(1000))

        class Vandal(object):
            def __index__(self):
                items.clear()
                return 900
        self.assertEqual(items[Vandal():], [])
        self.assertRaises(ValueError, items.__setitem__, slice(Vandal(), None), [1.0])

    def test_wrong_memory(self):
        one = OpenQuil.ZFloatVectorArray([(1, 2, 3)])
        four = OpenQuil.ZFloatVectorArray(4)
        for kind, wrong, error in (
                (OpenQuil.FloatBuffer, memoryview(OpenQuil.DoubleBuffer(2)), TypeError),
                (OpenQuil.FloatBuffer, memoryview(OpenQuil.ShortBuffer(2)), TypeError),
                (OpenQuil.ZVectorArray, memoryview(one), TypeError),
                (OpenQuil.ZFloatPointArray, memoryview(four), TypeError),
                (OpenQuil.ZFloatVectorArray, array.array('d', range(3)), TypeError),
                (OpenQuil.ZFloatVectorArray, array.array('f', range(4)), ValueError),
                (OpenQuil.ZIntArray, 'abcde', ValueError), (OpenQuil.IntBuffer, 'abc', ValueError),
                (OpenQuil.ZTimeArray, 'abcd', TypeError)):
            self.assertRaises(error, kind, wrong)
        self.assertRaises(TypeError, memoryview, OpenQuil.ZTimeArray(2))
        # Other classes' values and numbers are converted, as those of any sequence.
        self.assertEqual(OpenQuil.ZFloatPointArray(four)[3].w, 1)
        self.assertEqual(OpenQuil.ZVectorArray(one)[:], [(1, 2, 3)])
        self.assertEqual(list(OpenQuil.FloatBuffer(array.array('d', [1, 2]))), [1, 2])
        self.assertEqual(OpenQuil.ZFloatArray(one)[:], [1, 2, 3])
        pixels = OpenQuil.PixelBuffer(3)
        for start, data, error in ((2, array.array('f', range(8)), IndexError),
                                   (0, 'a' * 15, ValueError), (0, None, TypeError),
                                   (0, array.array('d', [1, 2]), TypeError),
                                   (0, memoryview(four), TypeError)):
            self.assertRaises(error, pixels.write, start, data)
        for items in pixels, four, OpenQuil.IntBuffer(3):
            self.assertRaises(TypeError, items.__setitem__, 'a', items[0])
            self.assertRaises(ValueError, items.__setitem__, slice(1), items[:2])

    def test_a_view_keeps_the_memory_and_the_host_s_is_not_viewed(self):
        view = memoryview(OpenQuil.IntBuffer([5, 6]))
        others = [OpenQuil.IntBuffer(2) for _ in range(100)]
        self.assertEqual(struct.unpack('2i', view.tobytes()), (5, 6))
        lent = OpenQuil.IntBuffer([7])
        lent.thisown = False
        seen = buffer(lent)
        self.assertRaisesRegexp(BufferError, 'lends', memoryview, lent)
        self.assertRaisesRegexp(BufferError, 'lends', OpenQuil.FloatBuffer, lent)
        self.assertEqual(list(OpenQuil.IntBuffer(lent)), [7])
        self.assertEqual(str(seen), struct.pack('i', 7))
        lent.thisown = True
        OpenQuil._native.delete_IntBuffer(lent)
        self.assertRaises(TypeError, str, seen)
        self.assertRaises(BufferError, memoryview, OpenQuil.VoidPointerBuffer(others[:2]))


class Recorder(OpenQuilRender.ZRenderCallback):
    """Overrides one of the three callbacks, on top of the base's."""

    def __init__(self):
        super(Recorder, self).__init__()
        self.seen = []

    def renderCallback(self, data):
        self.seen.append(data.resX)
        return super(Recorder, self).renderCallback(data) or 'changed'


def call_as_host(name, callback, data):
    """A virtual call: the pointer object is not the instance itself, so this is no upcall."""
    return getattr(_OpenQuilRender, 'ZRenderCallback_' + name)(callback.this, data)


class DirectorTest(unittest.TestCase):
    def setUp(self):
        self.data = OpenQuilRender.ZRenderData()
        self.data.resX = 64

    def assert_gone(self, instance, gone=True):
        gc.collect()
        self.assertEqual(instance() is None, gone)

    def test_overrides_are_called_and_may_call_the_base(self):
        recorder, plain = Recorder(), OpenQuilRender.ZRenderCallback()
        self.assertIs(True, call_as_host('renderCallback', recorder, self.data))
        self.assertEqual([64], recorder.seen)
        self.assertIs(False, call_as_host('postProcessCallback', recorder, self.data))
        self.assertIs(False, call_as_host('renderCallback', plain, self.data))

    def test_the_base_class_itself_is_no_director(self):
        plain = OpenQuilRender.ZRenderCallback()
        gone = weakref.ref(plain)
        _OpenQuilRender.disown_ZRenderCallback(plain)  # would keep the instance of a director
        del plain
        self.assert_gone(gone)

    def test_a_forgotten_init_is_told(self):
        class Forgetful(OpenQuilRender.ZRenderCallback):
            def __init__(self):
                pass
        message = "^'self' uninitialized, maybe you forgot to call ZRenderCallback.__init__.$"
        for use in (lambda c: OpenQuilRender.ZRenderCallback.addCallback(c, 0),
                    OpenQuilRender.ZRenderCallback.removeCallback,
                    lambda c: c.renderCallback(self.data), lambda c: c.__disown__()):
            with self.assertRaisesRegexp(RuntimeError, message):
                use(Forgetful())

    def test_a_registered_callback_is_kept_until_it_is_removed(self):
        recorder = Recorder()
        gone = weakref.ref(recorder)
        OpenQuilRender.ZRenderCallback.addCallback(recorder, 3)
        OpenQuilRender.ZRenderCallback.addCallback(recorder, 1)
        del recorder
        self.assert_gone(gone, False)
        OpenQuilRender.ZRenderCallback.removeCallback(gone())
        self.assert_gone(gone)

    def test_a_callback_that_was_refused_is_not_kept(self):
        recorder = Recorder()
        gone = weakref.ref(recorder)
        with self.assertRaises(TypeError):
            OpenQuilRender.ZRenderCallback.addCallback(recorder, 'first')
        sys.exc_clear()  # its traceback holds the arguments
        del recorder
        self.assert_gone(gone)


class Layers(unittest.TestCase):
    """Extra layers of the render view: who owns their values, and how many there must be."""

    def test_the_layer_s_proxy_owns_the_values_as_long_as_it_has_them(self):
        for make in lambda: OpenQuil.LayerBuffer(2), lambda: [OpenQuilRender.RV_AOV()] * 2:
            layers, values = make(), OpenQuil.FloatBuffer([1, 2, 3])
            gone = weakref.ref(values)
            layers[1].pPixels = values
            self.assertFalse(values.thisown)
            self.assertRaises(TypeError, setattr, layers[1], 'pPixels', 'text')
            del values
            kept = layers[1].pPixels
            del layers
            gc.collect()
            self.assertEqual((len(kept), kept.read(0, 3)), (3, [1, 2, 3]))
            kept._whole.pPixels = None
            self.assertIsNone(gone())

            one, other, values = make(), make(), OpenQuil.FloatBuffer([4])
            one[0].pPixels = other[0].pPixels = values
            del one
            self.assertEqual(other[0].pPixels.read(0, 1), [4])
            del other
            gc.collect()
            self.assertTrue(values.thisown)
            self.assertEqual(values[0], 4)

    def test_layers_of_a_buffer_are_copies(self):
        layers, values = OpenQuil.LayerBuffer(2), OpenQuil.FloatBuffer([1, 2, 3, 4])
        layers.set(1, u'depth', 2, values)
        values[0] = 9
        del values
        layer = layers[1]
        self.assertEqual((layer.name.asUnicode(), layer.numberOfChannels, layer.pPixels.read(0, 4)),
                         (u'depth', 2, [1, 2, 3, 4]))
        for index in -3, 2, 2 ** 62:
            self.assertRaises(IndexError, layers.__getitem__, index)
            self.assertRaises(IndexError, layers.set, index, 'a', 1, OpenQuil.FloatBuffer(1))
        image = OpenQuil.ZImage()
        image.create(1, 1, 4, OpenQuil.ZImage.kFloat)
        for unknown in None, image.floatPixels():
            self.assertRaises(ValueError, layers.set, 0, 'a', 1, unknown)

    def test_what_is_shorter_than_promised_is_refused(self):
        view = OpenQuilRender.ZRenderView
        view.startRender(4, 4)
        self.addCleanup(view.endRender)
        pixels, layers = OpenQuil.PixelBuffer(17), OpenQuil.LayerBuffer(2)
        one = OpenQuilRender.RV_AOV()
        layers.set(0, 'a', 1, OpenQuil.FloatBuffer(16))
        layers.set(1, 'b', 3, OpenQuil.FloatBuffer(48))
        one.name, one.numberOfChannels, one.pPixels = 'c', 1, OpenQuil.FloatBuffer(16)
        for arguments in ((pixels.pixels(1), False, 2, layers), (pixels, False, 1, one),
                          (pixels, False, 1, layers[1])):
            self.assertIsNone(view.updatePixels(0, 3, 0, 3, *arguments))
        short = OpenQuil.LayerBuffer(1)
        short.set(0, 'd', 1, OpenQuil.FloatBuffer(15))
        for words, arguments in (('fewer pixels', (pixels.pixels(2),)),
                                 ('fewer pixels', (OpenQuil.PixelBuffer(15),)),
                                 ('fewer extra layers', (pixels, False, 3, layers)),
                                 ('fewer extra layers', (pixels, False, 2, one)),
                                 ('fewer values', (pixels, False, 1, short))):
            self.assertRaisesRegexp(RuntimeError, words, view.updatePixels, 0, 3, 0, 3, *arguments)


if __name__ == '__main__':
    unittest.main()
