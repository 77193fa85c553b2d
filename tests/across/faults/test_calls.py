# SPDX-License-Identifier: MIT
"""Memory runs out at every allocation of every facility and shape of wrapper in turn: once, and from
there on. A call then succeeds, raises MemoryError or has an outcome that its case names; the same
call works afterwards, and nothing stays behind. All this again for the first call of a process."""
import gc
import itertools
import operator
import os
import sys
import weakref  # noqa: F401: for the list

import _OpenQuil  # noqa: F401: for the list
import _OpenQuilRender as m
import fault_host
import OpenQuil as core
import OpenQuilRender as render

from faults import in_child, outcome

# Quiet outcomes, and why they are right.
TEXT = 'TypeError with a result'     # a text that cannot be read: the call goes on, as is convention
PROXY = 'MemoryError with a result'  # no proxy: the bare pointer object, and the exception stays
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
    kept = pixel()
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


def cell():
    return core.UnsignedIntBuffer(1)


def listed_cases():
    m.RV_PIXEL_swigregister(render.RV_PIXEL)
    kept, hardware = pixel(), m.ZHardwareRenderer_theRenderer()
    scope = dict(
        globals(), h=fault_host, kept=kept, address=int(kept), color=core.ZString('kept'),
        long_text=u'x' * 3000, settings=render.ZCommonRenderSettingsData(), aov=render.RV_AOV(),
        node=core.ZObject(), hardware=hardware, gl=m.ZHardwareRenderer_glFunctionTable(hardware),
        array=core.ZFloatArray(range(9)),
        parameter=render.ZUniformParameter(u'name', m.ZUniformParameter_kTypeString,
                                           m.ZUniformParameter_kSemanticUnknown))
    with open(os.path.join(os.path.dirname(os.path.abspath(__file__)), 'calls.txt')) as listed:
        for line in listed.read().splitlines():
            if line[0] == '#':
                continue
            name, rest = line.split(': ', 1)
            call, _, quiet = rest.partition(' => ')
            make = eval('lambda: (%s,)' % call, scope)
            yield Case(name, make, *eval('(%s)' % (quiet and quiet + ','), scope))


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
    for group in runtime_cases, director_cases, listed_cases:
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
