"""Tests of the generated proxy classes against the native tables. Run by Python 2.7 with
NAME=DESCRIPTION for every module."""

import gc
import importlib
import inspect
import json
import sys
import unittest
import weakref

import openquil_proxy
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


class TableTest(unittest.TestCase):
    """Everything that the tables list is there."""

    def test_every_class_has_a_documented_proxy(self):
        for module in MODULES:
            classes = module.functions('register')
            self.assertTrue(classes)
            for function in classes:
                proxy = module.proxy_class(function)
                self.assertTrue(issubclass(proxy, openquil_proxy.Proxy), proxy)
                self.assertIn(function['class'], module.proxies.__all__)
                self.assertGreater(len(proxy.__doc__), 15, proxy)

    def test_every_function_is_documented(self):
        for module in MODULES:
            for function in module.functions('static', 'method'):
                member = getattr(module.proxy_class(function), function['member'])
                self.assert_documented(member, function['member'], len(function['overloads']))
                is_static = function['kind'] == 'static'
                self.assertEqual(is_static, inspect.isfunction(member), function['name'])

    def test_every_constructor_is_documented(self):
        for module in MODULES:
            for function in module.functions('constructor'):
                self.assert_documented(module.proxy_class(function).__init__, function['class'],
                                       len(function['overloads']))

    def assert_documented(self, member, name, overload_count):
        signatures, _, text = inspect.getdoc(member).partition('\n\n')
        lines = [line for line in signatures.split('\n') if not line.startswith(' ')]
        self.assertEqual(overload_count, len(lines), name)
        for line in lines:
            self.assertTrue(line.startswith(name + '('), line)
        self.assertGreater(len(text.split()), 1, 'no documentation of ' + name)

    def test_every_data_member_is_a_documented_property(self):
        for module in MODULES:
            for function in module.functions('getter'):
                member = getattr(module.proxy_class(function), function['member'])
                self.assertIsInstance(member, property)
                head, _, text = inspect.getdoc(member).partition('\n\n')
                self.assertTrue(head.startswith(function['member'] + ': '), head)
                self.assertTrue(text, function['name'])
            for function in module.functions('setter'):
                member = getattr(module.proxy_class(function), function['member'])
                self.assertTrue(member.fset, function['name'])

    def test_constants_are_class_attributes(self):
        for module in MODULES:
            names = [f['class'] for f in module.functions('register')]
            self.assertTrue(module.data['constants'])
            for constant in module.data['constants']:
                owner = max((n for n in names if constant['name'].startswith(n + '_')), key=len)
                value = getattr(getattr(module.proxies, owner), constant['name'][len(owner) + 1:])
                self.assertEqual(constant['value'], value)
                self.assertEqual(getattr(module.native, constant['name']), value)


class InstanceTest(unittest.TestCase):
    def test_default_constructors(self):
        made = 0
        for module in MODULES:
            for function in module.functions('constructor'):
                proxy = module.proxy_class(function)
                if min(o['min'] for o in function['overloads']) == 0 or \
                        proxy is OpenQuilRender.ZRenderCallback:
                    self.assertTrue(proxy().thisown)
                    made += 1
        self.assertGreater(made, 20)

    def test_classes_without_constructor(self):
        refused = 0
        for module in MODULES:
            constructed = [f['class'] for f in module.functions('constructor')]
            for function in module.functions('register'):
                if function['class'] not in constructed:
                    with self.assertRaisesRegexp(AttributeError, '^No constructor defined$'):
                        module.proxy_class(function)()
                    refused += 1
        self.assertGreater(refused, 0)

    def test_repr(self):
        view = OpenQuilRender.ZRenderView()
        self.assertEqual("<OpenQuilRender.ZRenderView; proxy of native 'ZRenderView *' at 0x%x>"
                         % int(view.this), repr(view))
        raw = OpenQuilRender.ZRenderView.__new__(OpenQuilRender.ZRenderView)
        self.assertEqual('<OpenQuilRender.ZRenderView; not initialised>', repr(raw))

    def test_numbers(self):
        settings = OpenQuilRender.ZCommonRenderSettingsData()
        settings.width = 1920
        settings.renumberBy = 0.5
        settings.renderAll = False
        self.assertEqual((1920, 0.5, False),
                         (settings.width, settings.renumberBy, settings.renderAll))
        with self.assertRaises(TypeError):
            settings.width = 'wide'

    def test_texts_take_python_strings_and_native_ones(self):
        settings = OpenQuilRender.ZCommonRenderSettingsData()
        for value in ('plain', u'sch\xf6n \U0001f3a8', OpenQuil.ZString(u'native \xe9')):
            settings.name = value
            self.assertIsInstance(settings.name, OpenQuil.ZString)
            self.assertEqual(unicode(value), unicode(settings.name))
        with self.assertRaises(TypeError):
            settings.name = 5

    def test_a_text_member_is_the_members_own_string(self):
        settings = OpenQuilRender.ZCommonRenderSettingsData()
        name = settings.name
        settings.name = 'later'
        self.assertEqual(u'later', unicode(name))
        self.assertFalse(name.thisown)

    def test_a_part_keeps_the_whole_alive(self):
        settings = OpenQuilRender.ZCommonRenderSettingsData()
        settings.name = 'kept'
        gone = weakref.ref(settings)
        name = settings.name
        del settings
        gc.collect()
        self.assertIsNotNone(gone())
        self.assertEqual(u'kept', unicode(name))
        del name
        gc.collect()
        self.assertIsNone(gone())

    def test_a_buffer_member(self):
        data = OpenQuilRender.ZRenderData()
        self.assertIsNone(data.rgbaArr)
        buffer = OpenQuil.UnsignedCharBuffer('\1\2\3\4')
        data.rgbaArr = buffer
        self.assertFalse(buffer.thisown)
        pixels = data.rgbaArr
        buffer.thisown = True
        self.assertIsInstance(pixels, OpenQuil.UnsignedCharBuffer)
        self.assertEqual('\2\3', pixels.read(1, 2))
        self.assertEqual(int(buffer.this), int(pixels.this))
        data.rgbaArr = None
        self.assertIsNone(data.rgbaArr)

    def test_what_lies_in_an_object_keeps_it_alive(self):
        image = OpenQuil.ZImage()
        image.create(2, 2)
        gone = weakref.ref(image)
        pixels = image.pixels()
        del image
        gc.collect()
        self.assertIsNotNone(gone())
        del pixels
        gc.collect()
        self.assertIsNone(gone())

    def test_object_members_are_copied_in(self):
        settings = OpenQuilRender.ZCommonRenderSettingsData()
        end = OpenQuil.ZTime(12.0, OpenQuil.ZTime.kFilm)
        settings.frameEnd = end
        end.setValue(99.0)
        self.assertEqual(12.0, settings.frameEnd.value())
        settings.frameEnd.setValue(24.0)
        self.assertEqual(24.0, settings.frameEnd.value())

    def test_equality_and_hash(self):
        vector = OpenQuil.ZVector(1, 2, 3)
        self.assertTrue(vector == OpenQuil.ZVector((1, 2, 3)))
        self.assertFalse(vector != OpenQuil.ZVector((1, 2, 3)))
        self.assertTrue(vector != 'text')
        with self.assertRaisesRegexp(TypeError, 'unhashable'):
            hash(vector)
        self.assertIsInstance(hash(OpenQuilRender.RV_PIXEL()), int)

    def test_special_methods(self):
        array = OpenQuil.ZFloatArray([1, 2, 4])
        self.assertEqual((3, 4.0, [1.0, 2.0, 4.0]), (len(array), array[-1], list(array)))
        array[0] = 8
        self.assertEqual('ZFloatArray([8.0, 2.0, 4.0])', repr(array))
        half = OpenQuil.ZVector(2, 4, 6) / 2
        self.assertEqual((1.0, 2.0, 3.0), (half.x, half.y, half.z))
        self.assertEqual(14.0, half * half)

    def test_named_arguments_and_defaults(self):
        self.assertIsNone(OpenQuilRender.ZRenderView.startRender(height=2, width=4))
        try:
            pixel = OpenQuilRender.RV_PIXEL()
            OpenQuilRender.ZRenderView.updatePixels(3, 3, 1, 1, pixel, isHdr=False)
            with self.assertRaisesRegexp(RuntimeError, 'kInvalidParameter'):
                OpenQuilRender.ZRenderView.updatePixels(9, 9, 1, 1, pixel)
        finally:
            OpenQuilRender.ZRenderView.endRender()

    def test_results_are_proxies_made_without_init(self):
        made = OpenQuilRender.ZRenderUtil.maximumSpecularReflection(
            None, OpenQuil.ZFloatVector(0, 0, 1), OpenQuil.ZFloatVector(),
            OpenQuil.ZFloatVector(0, 0, 1), OpenQuil.ZFloatVector(0, 0, -1))
        self.assertIsInstance(made, OpenQuil.ZFloatVector)
        self.assertTrue(made.thisown)
        self.assertEqual(1.0, made.z)


class Recorder(OpenQuilRender.ZRenderCallback):
    """Overrides two of the three callbacks, one of them on top of the base's."""

    def __init__(self):
        super(Recorder, self).__init__()
        self.seen = []

    def renderCallback(self, data):
        self.seen.append(data.resX)
        return super(Recorder, self).renderCallback(data) or 'changed'

    def shadowCastCallback(self, data):
        self.seen.append('shadow')
        raise KeyError('in a callback')


class Forgetful(OpenQuilRender.ZRenderCallback):
    def __init__(self):
        pass


def call_as_host(name, callback, data):
    """A virtual call: the pointer object is not the instance itself, so this is no upcall."""
    return getattr(_OpenQuilRender, 'ZRenderCallback_' + name)(callback.this, data)


class DirectorTest(unittest.TestCase):
    def setUp(self):
        self.data = OpenQuilRender.ZRenderData()
        self.data.resX = 64

    def test_overrides_are_called_and_may_call_the_base(self):
        recorder = Recorder()
        self.assertIs(True, call_as_host('renderCallback', recorder, self.data))
        self.assertEqual([64], recorder.seen)

    def test_methods_that_are_not_overridden_reach_the_base(self):
        recorder = Recorder()
        self.assertIs(False, call_as_host('postProcessCallback', recorder, self.data))
        self.assertIs(False, recorder.postProcessCallback(self.data))
        plain = OpenQuilRender.ZRenderCallback()
        self.assertIs(False, call_as_host('renderCallback', plain, self.data))

    def test_the_base_class_itself_is_no_director(self):
        plain = OpenQuilRender.ZRenderCallback()
        gone = weakref.ref(plain)
        _OpenQuilRender.disown_ZRenderCallback(plain)  # would keep the instance of a director
        del plain
        gc.collect()
        self.assertIsNone(gone())

    def test_a_forgotten_init_is_told(self):
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
        gc.collect()
        self.assertIsNotNone(gone())
        OpenQuilRender.ZRenderCallback.removeCallback(gone())
        gc.collect()
        self.assertIsNone(gone())

    def test_a_callback_that_was_refused_is_not_kept(self):
        recorder = Recorder()
        gone = weakref.ref(recorder)
        with self.assertRaises(TypeError):
            OpenQuilRender.ZRenderCallback.addCallback(recorder, 'first')
        sys.exc_clear()  # its traceback holds the arguments
        del recorder
        gc.collect()
        self.assertIsNone(gone())

    def test_disown_passes_the_instance_to_the_host(self):
        recorder = Recorder()
        gone = weakref.ref(recorder)
        weak = recorder.__disown__()
        pointer = recorder.this
        del recorder
        gc.collect()
        self.assertFalse(weak.thisown)
        self.assertTrue(_OpenQuilRender.ZRenderCallback_renderCallback(pointer, self.data))
        self.assertEqual([64], weak.seen)
        _OpenQuilRender.delete_ZRenderCallback(pointer)
        gc.collect()
        self.assertIsNone(gone())


if __name__ == '__main__':
    unittest.main()
