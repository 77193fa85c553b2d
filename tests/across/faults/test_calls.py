# SPDX-License-Identifier: MIT
"""Memory runs out at every allocation of every facility and shape of wrapper in turn: once, and from
there on. A call then succeeds, raises MemoryError or has an outcome that its case names; the same
call works afterwards, and nothing stays behind. All this again for the first call of a process."""
import gc
import itertools
import operator
import sys
import weakref

import _OpenQuil
import _OpenQuilRender as m
import fault_host
import OpenQuil as core
import OpenQuilRender as render

from faults import in_child, outcome

# Quiet outcomes, and why they are right.
TEXT = 'TypeError with a result'     # a text that cannot be read: the call goes on, as is convention
PROXY = 'MemoryError with a result'  # no proxy: the bare pointer object, and the exception stays
CONVERSION = '-1', 'TypeError'       # no "this" for a lookup: conversions leave no exception
REPORTED = 'False'                   # what a callback runs into is reported, and reads as false
UNDESTROYED = 'MemoryError with a result'  # no object to call the destructor with: it stays behind
STATUS = 'RuntimeError'              # a failed status of the host, for want of memory
HOST = 'native exception'            # thrown by the host: it passes, and the locals are let go
NO_TUPLE = 'TypeError'               # the interpreter calls without the tuple that it could not make
LEAKS = 'leaks'                      # blocks are to stay behind where nothing fails
# The interpreter makes a type ready without a look at whether its entry in the base's list of
# subclasses, a weak reference, could be made. No care of ours helps; it happens once in a process.
INTERPRETER = 'crash'


class Case(object):
    def __init__(self, name, make, *quiet):
        """`make` gives the function and its arguments anew."""
        self.name, self.make, self.quiet, self.normal = name, make, quiet, None

    def call(self, nth=0, persistent=0):
        made = self.make()
        return fault_host.call(made[0], tuple(made[1:]), nth, persistent)

    def attempt(self, nth, persistent):
        """What is wrong with one failure, and whether the call got that far."""
        call = self.call(nth, persistent)
        reached, found = call[-1] >= nth, outcome(call)
        del call
        again = outcome(self.call())
        problems = []
        if found not in (self.normal, 'MemoryError') + self.quiet:
            problems.append(found)
        if again != self.normal:
            problems.append('then ' + again)
        where = 'from' if persistent else 'at'
        return [(where, nth, problem) for problem in problems], reached

    def sweep(self, persistent, attempt):
        problems = []
        for nth in itertools.count(1):
            result = attempt(nth, persistent)
            crashed = [] if INTERPRETER in self.quiet else [('crash', nth, persistent)]
            problems += result[0] if result else crashed
            if result and not result[1] or len(problems) > 20:
                return problems

    def growth(self, work):
        """Blocks that `work` leaves behind each time, beyond what the interpreter keeps once."""
        for times in 2, 10:
            gc.collect()
            before = fault_host.live()
            for i in range(times):
                work()
            gc.collect()
        return (fault_host.live() - before) // times

    def warm(self):
        self.normal = outcome(self.call())
        problems = []
        for persistent in 0, 1:
            problems += self.sweep(persistent, self.attempt)
            if LEAKS in self.quiet:
                continue
            if self.growth(lambda: self.sweep(persistent, self.attempt)) > 0:
                count = self.call(10 ** 6)[-1]
                leaks = [(nth, self.growth(lambda: self.call(nth, persistent)))
                         for nth in range(count + 2)]
                problems.append(('leaks', persistent, [leak for leak in leaks if leak[1] > 0]))
        return self.normal, self.call(10 ** 6)[-1], problems

    def cold(self, normal):
        self.normal = normal
        return self.sweep(0, lambda *at: in_child(lambda: self.attempt(*at)))


class Plain(object):
    """A proxy class as a script writes one; its destructor is no built-in."""
    @staticmethod
    def __swig_destroy__(pointer_object):
        m.delete_RV_PIXEL(pointer_object)


class Classic:
    __swig_destroy__ = m.delete_RV_PIXEL


class Made(object):
    def __new__(cls):
        return object.__new__(cls)
    __swig_destroy__ = m.delete_RV_PIXEL


class Slot(object):
    __slots__ = ['this']


class Bare(object):
    """An instance without a pointer object yet."""


class Answer(render.ZRenderCallback):
    def __init__(self, answer):
        render.ZRenderCallback.__init__(self)
        self.answer = answer

    def renderCallback(self, data):
        return self.answer()
    shadowCastCallback = postProcessCallback = renderCallback


class Upcall(render.ZRenderCallback):
    def renderCallback(self, data):
        return m.ZRenderCallback_renderCallback(self, data)


def raises():
    raise KeyError


class NoTruth(object):
    def __nonzero__(self):
        raise KeyError


def pixel():
    return m.new_RV_PIXEL()


def slot():
    made = Slot()
    made.this = pixel()
    return made


def runtime_cases():
    h = fault_host
    yield Case('pointer object, first', lambda: (m.new_RV_PIXEL,), INTERPRETER)
    yield Case('packed object, first', lambda: (h.packed, 'abc'), INTERPRETER)
    kept, color = pixel(), core.ZString('kept')
    address = int(kept)
    yield Case('type lookup', lambda: (h.type_query, '_p_float'))
    yield Case('type lookup, readable name', lambda: (h.type_query, 'float *'), 'False')
    yield Case('pointer object', lambda: (h.pointer, address, '_p_void', 0))
    for klass in Plain, Classic, Made:
        m.RV_PIXEL_swigregister(klass)
        yield Case('proxy, ' + klass.__name__, lambda: (h.pointer, address, '_p_RV_PIXEL', 0), PROXY)
        yield Case('destruction, ' + klass.__name__, lambda: (operator.delitem, [pixel()], 0),
                   *[UNDESTROYED, LEAKS] * (klass is Plain))
        yield Case('registration, ' + klass.__name__, lambda: (m.RV_PIXEL_swigregister, klass), LEAKS)
    m.RV_PIXEL_swigregister(render.RV_PIXEL)
    yield Case('packed object, repr', lambda: (repr, h.packed('abc')))
    for name, function in [('repr', repr), ('str', str), ('hex', hex), ('print', h.print_object)]:
        yield Case('pointer object, ' + name, lambda: (function, kept))
    for name in 'acquire', 'own', 'next', '__repr__':
        yield Case('pointer object, ' + name, lambda: (getattr(pixel(), name),))
    yield Case('pointer object, disown', lambda: (h.pointer(address, '_p_void', 0).disown,))
    yield Case('pointer object, append', lambda: (pixel().append, pixel()))
    yield Case('pointer object, ==', lambda: (operator.eq, kept, kept))
    yield Case('packed object, ==', lambda: (operator.eq, h.packed('abc'), h.packed('abd')))
    yield Case('instance method', lambda: (m.SWIG_PyInstanceMethod_New, kept))
    for name, make in [('proxy', lambda: core.ZString('x')), ('weak', lambda: weakref.proxy(color)),
                       ('pointer object', lambda: color.this), ('no pointer', object)]:
        yield Case('conversion, ' + name, lambda: (h.convert, make(), '_p_ZString', 0), *CONVERSION)
    yield Case('conversion, slot', lambda: (h.convert, slot(), '_p_RV_PIXEL', 0), *CONVERSION)
    yield Case('conversion, implicit', lambda: (h.convert, 'text', '_p_ZString', 2), '-1', LEAKS)
    yield Case('characters, copied', lambda: (h.copy_chars, 'text'), '-12')
    yield Case('characters, result', lambda: (h.from_chars, 'text'))
    yield Case('swiginit', lambda: (m.RV_PIXEL_swiginit, Bare(), pixel()))


def director_cases():
    data, shadow = render.ZRenderData(), render.ZRenderShadowData()
    yield Case('director', lambda: (m.new_ZRenderCallback, Bare()))
    yield Case('director, none', lambda: (m.new_ZRenderCallback, None))
    yield Case('director, proxy', lambda: (Answer, None), NO_TUPLE)
    for name, answer in [('true', bool), ('raises', raises), ('no truth', NoTruth)]:
        callback = Answer(answer)
        for method, argument in [('renderCallback', data), ('postProcessCallback', data),
                                 ('shadowCastCallback', shadow)]:
            yield Case('%s, %s' % (method, name), lambda: (
                getattr(m, 'ZRenderCallback_' + method), callback.this, argument), REPORTED)
    upcall = Upcall()
    yield Case('callback, upcall', lambda: (m.ZRenderCallback_renderCallback, upcall.this, data),
               REPORTED)
    yield Case('callback, added', lambda: (m.ZRenderCallback_addCallback, upcall, 0), HOST)
    yield Case('callback, removed', lambda: (m.ZRenderCallback_removeCallback, upcall))
    yield Case('disown', lambda: (m.disown_ZRenderCallback, upcall))


def cells(count, kind='UnsignedIntBuffer'):
    return [getattr(core, kind)(1) for i in range(count)]


def wrapper_cases():
    long_text = u'x' * 3000
    settings, aov, node = render.ZCommonRenderSettingsData(), render.RV_AOV(), core.ZObject()
    parameter = render.ZUniformParameter(u'name', m.ZUniformParameter_kTypeString,
                                         m.ZUniformParameter_kSemanticUnknown)
    hardware = m.ZHardwareRenderer_theRenderer()
    gl = m.ZHardwareRenderer_glFunctionTable(hardware)
    yield Case('constructor', lambda: (m.new_RV_PIXEL,))
    yield Case('constructor, text', lambda: (m.new_ZUniformParameter, 'n', 1, 1), TEXT, HOST)
    yield Case('constructor, status failed', lambda: (m.new_ZFnRenderLayer, node), LEAKS, HOST)
    yield Case('constructor, proxy', lambda: (render.RV_PIXEL,), NO_TUPLE)
    yield Case('destructor', lambda: (m.delete_RV_PIXEL, pixel()))
    yield Case('value', lambda: (m.ZUniformParameter_getPlug, parameter), PROXY, HOST)
    yield Case('reference', lambda: (m.ZCommonRenderSettingsData_name_get, settings), PROXY)
    yield Case('number', lambda: (m.ZRenderUtil_noise1, 0.5), HOST)
    yield Case('text out', lambda: (m.ZRenderUtil_mainBeautyPassName,))
    for name, text in [('bytes', 'text'), ('long', long_text), ('other', 7)]:
        yield Case('text in, ' + name, lambda: (m.ZUniformParameter_setAsString, parameter, text),
                   TEXT, HOST)
    yield Case('text member', lambda: (m.ZCommonRenderSettingsData_name_set, settings,
                                       core.ZString(long_text)), HOST)
    yield Case('text in and out', lambda: (m.ZRenderUtil_relativeFileName, long_text), TEXT,
               STATUS, HOST)
    yield Case('list of texts', lambda: (
        m.ZHardwareRenderer_getDrawProcedureListNames, hardware, 'x', 0, ['a', long_text]), TEXT,
        'TypeError', HOST)  # "Unable to modify argument 4"
    yield Case('out-arguments', lambda: (m.ZRenderView_getRenderRegion,) + tuple(cells(4)), HOST)
    yield Case('status, failed', lambda: (m.ZRenderView_setCurrentCamera, core.ZDagPath()))
    yield Case('dispatch', lambda: (m.ZRenderUtil_raytrace, core.ZFloatVector(),
                                    core.ZFloatVector(), None, None, core.ZFloatVector(),
                                    core.ZFloatVector(), core.ZFloatVector(), True))
    yield Case('dispatch, none fits', lambda: (m.ZRenderUtil_raytrace, 1, 2, 3))
    yield Case('null reference', lambda: (m.ZRenderView_setCurrentCamera, None))
    yield Case('wrong count', lambda: (m.ZRenderView_startRender, 1))
    yield Case('overflow', lambda: (m.ZRenderView_startRender, 2 ** 40, 2 ** 70))
    yield Case('buffer out', lambda: (m.RV_AOV_pPixels_get, aov))
    yield Case('buffer in', lambda: (m.RV_AOV_pPixels_set, aov, core.FloatBuffer(4)), LEAKS)
    yield Case('GL data', lambda: (m.ZGLFunctionTable_glBufferDataARB, gl, 1, 4,
                                   core.FloatBuffer(4), 1))
    yield Case('GL text', lambda: (m.ZGLFunctionTable_glGetUniformLocationARB, gl, 1, 'name'))
    yield Case('GL texts', lambda: (m.ZGLFunctionTable_glShaderSourceARB, gl, 1, 1,
                                    core.CharPointerBuffer(1), core.IntBuffer([1])))
    yield Case('GL text out', lambda: (m.ZGLFunctionTable_glGetString, gl, m.ZGL_VERSION))


def core_cases():
    array = core.ZFloatArray(range(9))
    flat = _OpenQuil
    yield Case('iterator', lambda: (flat.ZFloatArray___iter__, array))
    yield Case('items', lambda: (core.ZFloatArray, [1, 2, 3]), NO_TUPLE)
    yield Case('texts', lambda: (core.ZStringArray, ['a', u'b' * 3000]), 'TypeError')
    yield Case('item', lambda: (flat.ZStringArray___getitem__, core.ZStringArray(['a']), 0))
    yield Case('buffer', lambda: (core.FloatBuffer, 16), NO_TUPLE)
    yield Case('buffer, read', lambda: (core.FloatBuffer(16).read, 0, 16), NO_TUPLE)


def test(make_case):
    """Name, number of allocations and problems of the case that is made."""
    case = make_case()
    if not case:
        return None, 0, []
    normal, count, problems = in_child(case.warm) or (None, 0, ['crash'])
    return case.name, count, problems + (case.cold(normal) if normal else [])


def main():
    gc.disable()
    failed = False
    for group in runtime_cases, director_cases, wrapper_cases, core_cases:
        for index in itertools.count():
            # The case is made in the child: all are first in their process.
            name, count, problems = in_child(
                lambda: test(lambda: next(itertools.islice(group(), index, None), None)))
            if not name:
                break
            print '%-40s %3d %s' % (name, count, problems or '')
            sys.stdout.flush()
            failed = failed or problems
    sys.exit(1 if failed else 0)


main()
