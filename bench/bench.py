# -*- coding: utf-8 -*-
# SPDX-License-Identifier: MIT
"""The measured calls, for Python 2.7. run.py starts this script; its commands are

    bench.py time ROUNDS            print the nanoseconds per call, as JSON
    bench.py count SHAPE WHO N      make N calls of one shape through one implementation
    bench.py names                  print the shapes and the implementations, as JSON

The folders of the module and of the built bench modules come in PYTHONPATH.
"""
import array
import ctypes
import gc
import itertools
import json
import os
import re
import sys
import time

# Short and not absolute, so that the host gives it back at once and the conversions stand out.
NAME = u"wood.png"
LIGHT, POINT, NORMAL, RAY = (0, 1, 1), (1, 2, 3), (0, 0, 1), (0, 0, -1)
CURRENT_COLOR, MAX_TEXTURE_SIZE = 0x0B00, 0x0D33  # OpenGL's names
EMPTY_LOOP = "empty loop"

# A pair of a key and what the call is.
SHAPES = [
    ("none", "no argument: ZRenderUtil_noiseTableSize"),
    ("float", "one float: ZRenderUtil_noise1"),
    ("numbers", "five numbers: ZRenderUtil_noise4"),
    ("get", "pointer: RV_PIXEL_r_get"),
    ("set", "pointer and int: RV_AOV_numberOfChannels_set"),
    ("get_proxy", "the same getter, given a proxy"),
    ("set_proxy", "the same setter, given a proxy"),
    ("string", "string in and out: ZRenderUtil_relativeFileName"),
    ("value", "by-value result: ZRenderUtil_maximumSpecularReflection"),
    ("proxy", "the same, results in proxies everywhere"),
    ("gl_color", "three floats: ZGLFunctionTable_glColor3f"),
    ("gl_vertex", "float pointer: ZGLFunctionTable_glVertex3fv"),
    ("gl_get", "enum and int pointer: ZGLFunctionTable_glGetIntegerv"),
    ("gl_uniform", "int and four floats: ZGLFunctionTable_glUniform4fARB"),
    ("callback", "host to Python: ZRenderCallback.renderCallback"),
]


# What a script writes: with the proxy classes, and with Cython's own classes.
SCRIPTS = [
    ("script_none", "util.noise_size()", "static method, no argument"),
    ("script_numbers", "util.noise4(0.1, 0.2, 0.3, 0.4, 7)", "static method, five numbers"),
    ("script_get", "pixel.r", "property"),
    ("script_set", "pixel.r = 0.5", "property set"),
    ("script_make", "Vector()", "construct and destroy"),
    ("script_length", "v.length()", "method"),
    ("script_add", "v + w", "operator, by-value result"),
    ("script_times", "v * 2.0", "overloaded operator"),
    ("script_item", "numbers[3]", "item of a buffer"),
    ("script_item_set", "numbers[3] = 0.5", "item of a buffer set"),
    ("script_slice", "numbers[:]", "a slice of 1,000 floats"),
    ("script_write", "numbers.write(0, packed)", "1,000 floats from array.array"),
]
SHAPES += [(key, "script: %s: %s" % (text, code)) for key, code, text in SCRIPTS]
# The proxies spell it in the host's way.
HOST_NAMES = {"noise_size": "noiseTableSize"}


class Callback(object):
    """What the host calls; any object with the method will do."""

    def __init__(self):
        self.calls = 0

    def renderCallback(self, data):
        return False


class CountingCallback(Callback):
    def renderCallback(self, data):
        self.calls += 1
        return True


def load_shims():
    """The shims, with the interpreter lock kept during calls, as the module keeps it."""
    for folder in os.environ["PYTHONPATH"].split(":"):
        path = os.path.join(folder, "libbench_shims.so")
        if os.path.exists(path):
            break
    shims = ctypes.PyDLL(path)
    shims.call_render_callback.argtypes = [ctypes.c_void_p, ctypes.c_uint]
    return shims


class Calls(object):
    """One implementation: self.shapes maps a shape to (function, arguments); self.callback_loop
    makes, for a Python object, a function that has the host call it so many times."""

    def prepare_gl(self):
        """Adds the OpenGL shapes, which only then load a driver."""

    def loop(self, shape):
        if shape == "callback":
            return self.callback_loop(Callback())
        if shape in self.scripts:
            return make_code_loop(*self.scripts[shape])
        function, arguments = self.shapes[shape]
        return make_loop(function, arguments)

    scripts = {}


def script_shapes(names, host_names):
    """The codes with the names in them, those that the implementation has."""
    result = {}
    for key, code, _ in SCRIPTS:
        for ours, host in host_names.items():
            code = code.replace(ours, host)
        used = dict((n, v) for n, v in names.items() if n in re.findall(r"[a-zA-Z]+", code))
        if set(re.findall(r"\b(?:util|pixel|Vector|v|w|numbers|packed)\b", code)) == set(used):
            result[key] = code, used
    return result


def flat_shapes(module, new_vector):
    """The shapes of an implementation that spells its functions as the floor does."""
    vectors = tuple(new_vector(*v) for v in (LIGHT, POINT, NORMAL, RAY))
    return {
        "none": (module.noise_table_size, ()),
        "float": (module.noise1, (0.3,)),
        "numbers": (module.noise4, (0.1, 0.2, 0.3, 0.4, 7)),
        "get": (module.pixel_r_get, (module.new_pixel(),)),
        "set": (module.aov_channels_set, (module.new_aov(), 3)),
        "string": (module.relative_file_name, (NAME,)),
        "value": (module.maximum_specular_reflection, (None,) + vectors),
    }


def gl_shapes(functions, table, vertex, integers):
    color, vertex_pointer, get_integers, uniform = functions
    return {
        "gl_color": (color, (table, 0.25, 0.5, 1.0)),
        "gl_vertex": (vertex_pointer, (table, vertex)),
        "gl_get": (get_integers, (table, MAX_TEXTURE_SIZE, integers)),
        "gl_uniform": (uniform, (table, -1, 0.1, 0.2, 0.3, 0.4)),
    }


def flat_gl_functions(module):
    return module.gl_color3f, module.gl_vertex3fv, module.gl_get_integerv, module.gl_uniform4f


class FlatCalls(Calls):
    """The floor and Cython spell their functions alike."""

    def __init__(self, module):
        self.new_callback = module.new_callback
        self.vector_tuple = module.vector_tuple
        self.shapes = flat_shapes(module, module.new_vector)

    def callback_loop(self, target):
        return callback_loop(self.new_callback(target), target)


class FloorCalls(FlatCalls):
    def __init__(self):
        import _floor

        class FloatVector(object):
            pass

        FlatCalls.__init__(self, _floor)
        _floor.set_vector_proxy(FloatVector)
        arguments = self.shapes["value"][1]
        self.shapes["proxy"] = (_floor.maximum_specular_reflection_in_proxy, arguments)
        self.integers_tuple = _floor.integers_tuple

    def prepare_gl(self):
        import _floor
        self.shapes.update(gl_shapes(flat_gl_functions(_floor), _floor.function_table(),
                                     _floor.new_floats(*POINT), _floor.new_integers()))


class CythonCalls(FlatCalls):
    def __init__(self):
        import cython_floor
        FlatCalls.__init__(self, cython_floor)
        vector = cython_floor.ScriptVector
        self.scripts = script_shapes({
            "util": cython_floor.Util, "pixel": cython_floor.Pixel(), "Vector": vector,
            "v": vector(1.0, 2.0, 3.0), "w": vector(4.0, 5.0, 6.0)}, {})


class CtypesCalls(Calls):
    class Vector(ctypes.Structure):
        _fields_ = [(name, ctypes.c_float) for name in "xyz"]

    def __init__(self):
        self.shims = shims = load_shims()
        vector, reference = self.Vector, ctypes.POINTER(self.Vector)
        for name, result, arguments in [
                ("noise_table_size", ctypes.c_uint, []),
                ("noise1", ctypes.c_float, [ctypes.c_float]),
                ("noise4", ctypes.c_float, [ctypes.c_float] * 4 + [ctypes.c_ushort]),
                ("new_pixel", ctypes.c_void_p, []),
                ("pixel_r_get", ctypes.c_float, [ctypes.c_void_p]),
                ("new_aov", ctypes.c_void_p, []),
                ("aov_channels_set", None, [ctypes.c_void_p, ctypes.c_uint]),
                ("relative_file_name", ctypes.c_wchar_p, [ctypes.c_wchar_p]),
                ("maximum_specular_reflection", vector, [ctypes.c_void_p] + [reference] * 4),
                ("function_table", ctypes.c_void_p, []),
                ("gl_color3f", None, [ctypes.c_void_p] + [ctypes.c_float] * 3),
                ("gl_vertex3fv", None, [ctypes.c_void_p, ctypes.POINTER(ctypes.c_float)]),
                ("gl_get_integerv", None,
                 [ctypes.c_void_p, ctypes.c_uint, ctypes.POINTER(ctypes.c_int)]),
                ("gl_uniform4f", None,
                 [ctypes.c_void_p, ctypes.c_int] + [ctypes.c_float] * 4)]:
            function = getattr(shims, name)
            function.restype, function.argtypes = result, arguments
        self.shapes = flat_shapes(shims, vector)
        self.integers_tuple = tuple

    def prepare_gl(self):
        self.shapes.update(gl_shapes(
            flat_gl_functions(self.shims), self.shims.function_table(),
            (ctypes.c_float * 3)(*POINT), (ctypes.c_int * 4)()))

    def vector_tuple(self, vector):
        return vector.x, vector.y, vector.z

    def callback_loop(self, target):
        function_type = ctypes.PYFUNCTYPE(ctypes.c_bool, ctypes.c_void_p)
        function = function_type(target.renderCallback)
        self.shims.call_function.argtypes = [function_type, ctypes.c_uint]
        return lambda count: self.shims.call_function(function, count)


class ModuleCalls(Calls):
    def __init__(self):
        import _OpenQuil as core
        import _OpenQuilRender as render
        import OpenQuil  # the proxy classes, as scripts have them
        import OpenQuilRender

        light, point, normal, ray = [
            core.new_ZFloatVector(*map(float, v)) for v in (LIGHT, POINT, NORMAL, RAY)]
        reflection = (render.ZRenderUtil_maximumSpecularReflection,
                      (None, light, point, normal, ray))
        self.core = core
        self.new_callback = render.new_ZRenderCallback
        self.shapes = {
            "none": (render.ZRenderUtil_noiseTableSize, ()),
            "float": (render.ZRenderUtil_noise1, (0.3,)),
            "numbers": (render.ZRenderUtil_noise4, (0.1, 0.2, 0.3, 0.4, 7)),
            "get": (render.RV_PIXEL_r_get, (render.new_RV_PIXEL(),)),
            "set": (render.RV_AOV_numberOfChannels_set, (render.new_RV_AOV(), 3)),
            "string": (render.ZRenderUtil_relativeFileName, (NAME,)),
            "value": reflection,
            "proxy": reflection,
            "get_proxy": (render.RV_PIXEL_r_get, (OpenQuilRender.RV_PIXEL(),)),
            "set_proxy": (render.RV_AOV_numberOfChannels_set, (OpenQuilRender.RV_AOV(), 3)),
        }
        packed = array.array("f", range(1000))
        vector = OpenQuil.ZVector
        self.scripts = script_shapes({
            "util": OpenQuilRender.ZRenderUtil, "pixel": OpenQuilRender.RV_PIXEL(),
            "Vector": vector, "v": vector(1, 2, 3), "w": vector(4, 5, 6),
            "numbers": OpenQuil.FloatBuffer(packed), "packed": packed}, HOST_NAMES)

    def prepare_gl(self):
        import _OpenQuilRender as render
        core = self.core
        functions = [getattr(render, "ZGLFunctionTable_" + name) for name in
                     ("glColor3f", "glVertex3fv", "glGetIntegerv", "glUniform4fARB")]
        vertex = core.new_FloatBuffer(3)
        for index, value in enumerate(POINT):
            core.FloatBuffer_set(vertex, index, float(value))
        table = render.ZHardwareRenderer_glFunctionTable(render.ZHardwareRenderer_theRenderer())
        self.shapes.update(gl_shapes(functions, table, vertex, core.new_IntBuffer(4)))

    def integers_tuple(self, integers):
        return tuple(self.core.IntBuffer_get(integers, index) for index in range(4))

    def vector_tuple(self, vector):
        core = self.core
        return (core.ZFloatVector_x_get(vector), core.ZFloatVector_y_get(vector),
                core.ZFloatVector_z_get(vector))

    def callback_loop(self, target):
        return callback_loop(self.new_callback(target), target)


IMPLEMENTATIONS = [("module", ModuleCalls), ("floor", FloorCalls), ("cython", CythonCalls),
                   ("ctypes", CtypesCalls)]


def make_loop(function, arguments):
    """A function that calls the given one so many times, its arguments in local variables."""
    names = ["a%d" % i for i in range(len(arguments))]
    source = """
def loop(count, repeat=repeat, function=function%s):
    for _ in repeat(None, count):
        function(%s)
""" % ("".join(", %s=%s" % (n, n) for n in names), ", ".join(names))
    scope = dict(zip(names, arguments), repeat=itertools.repeat, function=function)
    exec(source, scope)
    return scope["loop"]


def make_code_loop(code, names):
    """The same for a piece of code."""
    source = """
def loop(count, repeat=repeat%s):
    for _ in repeat(None, count):
        %s
""" % ("".join(", %s=%s" % (n, n) for n in names), code)
    scope = dict(names, repeat=itertools.repeat)
    exec(source, scope)
    return scope["loop"]


def empty_loop(count):
    for _ in itertools.repeat(None, count):
        pass


def callback_loop(native, target):
    call, address = load_shims().call_render_callback, long(native)
    # The default values keep both objects alive as long as the loop.
    return lambda count, native=native, target=target: call(address, count)


def has(calls, shape):
    return shape == "callback" or shape in calls.shapes or shape in calls.scripts


def available():
    """The implementations that were built (Cython may be missing), made ready."""
    result = []
    for name, make in IMPLEMENTATIONS:
        try:
            result.append((name, make()))
        except ImportError as error:
            if name != "cython" or "No module named" not in str(error):
                raise
    return result


def check(implementations):
    """All implementations must do the same: a faster wrong answer is no measurement."""
    def gl_answers(calls):
        """What calls through the table leave behind; nothing changes where there is no driver."""
        color, (table, red, green, blue) = calls.shapes["gl_color"]
        get_integers, (_, name, integers) = calls.shapes["gl_get"]
        get_integers(table, name, integers)
        result = [calls.integers_tuple(integers)]
        for shown in ((blue, red, green), (red, green, blue)):
            color(table, *shown)
            get_integers(table, CURRENT_COLOR, integers)
            result.append(calls.integers_tuple(integers))
        return result

    def answers(calls):
        result = {}
        for shape, (function, arguments) in calls.shapes.items():
            result[shape] = function(*arguments)
        result["value"] = calls.vector_tuple(result["value"])
        for only in "proxy", "get_proxy", "set_proxy":
            result.pop(only, None)
        for key, (code, names) in calls.scripts.items():
            value = eval(code, dict(names)) if "=" not in code else None
            result[key] = value if isinstance(value, (int, float)) else None
        if "gl_get" in calls.shapes:
            result["gl_state"] = gl_answers(calls)
        target = CountingCallback()
        result["callback"] = calls.callback_loop(target)(10), target.calls
        return result

    expected = answers(implementations[0][1])
    for name, calls in implementations[1:]:
        found = answers(calls)
        wanted = dict((shape, expected[shape]) for shape in found)
        if found != wanted:
            sys.exit("bench: %s answers %r, the module %r" % (name, found, wanted))
    if expected["callback"] != (10, 10):
        sys.exit("bench: ten callbacks gave (true answers, calls) = %r" % (expected["callback"],))


def seconds(loop, count):
    start = time.time()
    loop(count)
    return time.time() - start


def measure(rounds):
    """Nanoseconds per call: the least of many batches, all implementations in turn, so that a
    slow moment of the machine touches them alike; the loop's own time is taken off."""
    implementations = available()
    for _, calls in implementations:
        calls.prepare_gl()
    check(implementations)
    batches = [((EMPTY_LOOP, EMPTY_LOOP), empty_loop)]
    for shape, _ in SHAPES:
        for name, calls in implementations:
            if has(calls, shape):
                batches.append(((shape, name), calls.loop(shape)))
    counts, best = {}, {}
    for key, loop in batches:
        loop(100)
        counts[key] = max(100, int(0.002 / max(seconds(loop, 1000) / 1000, 1e-9)))
        best[key] = float("inf")
    gc.collect()
    gc.disable()
    for _ in range(rounds):
        for key, loop in batches:
            best[key] = min(best[key], seconds(loop, counts[key]) / counts[key])
    overhead = best.pop((EMPTY_LOOP, EMPTY_LOOP))
    result = {}
    for (shape, name), value in best.items():
        # The callback's loop is native.
        own = value if shape == "callback" else value - overhead
        result.setdefault(shape, {})[name] = own * 1e9
    return result


def counted_loop(shape, name):
    calls = dict(IMPLEMENTATIONS)[name]()
    if shape.startswith("gl_"):
        calls.prepare_gl()
    return calls.loop(shape)


def main(command, *arguments):
    if command == "names":
        print(json.dumps({"shapes": SHAPES, "implementations": [n for n, _ in available()]}))
    elif command == "time":
        print(json.dumps(measure(int(arguments[0]))))
    elif command == "count":
        shape, name, count = arguments
        loop = empty_loop if shape == EMPTY_LOOP else counted_loop(shape, name)
        gc.disable()
        loop(50)
        loop(int(count))
        # Leaving at once keeps the interpreter's teardown out of the count.
        sys.stdout.flush()
        os._exit(0)


if __name__ == "__main__":
    main(*sys.argv[1:])
