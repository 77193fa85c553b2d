"""The rows of the module, what each of their arguments takes, good values, and calls that are judged.
Expectations follow the declared types of tests/module/rows.tsv, by families."""
import ctypes
import json
import mmap
import os
import subprocess
import sys
import tempfile

sys.path[:0] = [os.path.join(os.path.dirname(os.path.abspath(__file__)), os.pardir, 'module')]
import harness
from harness import module, O
from test_rows import ANYTHING, FUNCTION_POINTERS, GL_DATA, GL_TYPES, STRINGS, pointee

import OpenQuil
import OpenQuilRender
from corpus import Item

PROGRAM = os.readlink('/proc/self/exe')
BUILD = os.path.dirname(os.path.dirname(PROGRAM))
NULL_HOST = os.path.join(BUILD, 'lib', 'libnull_host.so')
# The rows whose members a preloaded null host replaces: they come back whatever they are given.
NULL_HOST_ROWS = frozenset()
if os.environ.get('LD_PRELOAD') == NULL_HOST:
    NULL_HOST_ROWS = frozenset(open(
        os.path.join(BUILD, 'tests', 'hostile', 'null_host_rows.txt')).read().split())
RANGES = {'int': (-2 ** 31, 2 ** 31 - 1), 'unsigned int': (0, 2 ** 32 - 1),
          'short': (-2 ** 15, 2 ** 15 - 1), 'unsigned short': (0, 2 ** 16 - 1),
          'signed char': (-128, 127), 'unsigned char': (0, 255), 'long': (-2 ** 63, 2 ** 63 - 1)}
CHARACTERS = 'ZGLcharARB const *', 'char const *'
CALLBACK_FAILED = 4  # the program's exit status; odd objects make odd callbacks
NO_OVERLOAD = "Wrong number or type of arguments for overloaded function '%s'.\n"
LARGEST_FLOAT = 3.4028234663852886e38
GL_DATA_RECORDS = map(harness.mangled, (
    'double', 'float', 'int', 'unsigned int', 'short', 'unsigned short', 'char', 'unsigned char'))
# Who gives shared shapes back must not use them any more: which argument is given back.
GIVES_BACK = {'ZGeometryManager_dereferenceDefaultGeometry': 0,
              'ZHardwareRenderer_dereferenceGeometry': 1}
# What is not simply constructed: from the module of the proxy classes.
MADE = {
    'ZHardwareRenderer': lambda m: m.ZHardwareRenderer.theRenderer(),
    'ZGLFunctionTable': lambda m: m.ZHardwareRenderer.theRenderer().glFunctionTable(),
    'ZGeometryData': lambda m: m.ZGeometryData('data', 1, 0, 3, 4, None, True),
    'ZGeometryList': lambda m: m.ZGeometryManager.referenceDefaultGeometry(
        1, m.ZGeometryRequirements()),
    'ZGeometry': lambda m: MADE['ZGeometryList'](m).geometry(0),
    'ZGeometryPrimitive': lambda m: MADE['ZGeometry'](m).primitiveArray(0),
    'ZSwatchRenderBase': lambda m: m.ZSwatchRenderBase(OpenQuil.ZObject(), OpenQuil.ZObject(), 8),
    'ZUniformParameter': lambda m: m.ZUniformParameter('name', 3, 0),
    'ZVaryingParameter': lambda m: m.ZVaryingParameter('name', 1),
}
BUFFERS = {'void *': 'VoidPointer', 'p_void': 'VoidPointer', 'p_char': 'CharPointer',
           'p_unsigned int': 'UnsignedIntPointer',
           'ZImageFileInfo::ZHwTextureType': 'ZHwTextureType',
           'ZHardwareRenderer__BufferPixelFormat': 'BufferPixelFormat'}
NOTHING = object()
raise_pending = ctypes.pythonapi.PyErr_Occurred  # which raises what it finds


class Row(object):
    """One function; `cases` are its overloads: least and most arguments, declared types."""

    def __init__(self, name, flag, least, most, cases):
        self.name, self.flag, self.least, self.most, self.cases = name, flag, least, most, cases
        self.function = getattr(module, name)
        self.null_host = name in NULL_HOST_ROWS
        self.is_method = not name.startswith(('new_', 'delete_', 'disown_'))
        self.is_protocol = name.endswith(('_swigregister', '_swiginit', 'InstanceMethod_New'))
        self.is_destructor = name.startswith('delete_')
        self.is_embedded = name.endswith('_set') and cases[0][2][1] in (
            'ZString *', 'ZTime *', 'ZFloatVector *', 'ZFloatPoint *', 'ZFloatMatrix *')

    def message(self, position, declared):
        return "in method '%s', argument %d of type '%s'" % (self.name, position + 1, declared)


def overloads(description):
    for case in description['overloads']:
        text = case['declaration']
        types = [t.strip() for t in text[text.index('(') + 1:text.rindex(')')].split(',')]
        types = [t.replace('Handle const &', 'Handle') for t in types]  # known by value to scripts
        if description['kind'] == 'method':
            types.insert(0, description['class'] + (' const *' if text.endswith('const') else ' *'))
        yield case['min'], case['max'], [t for t in types if t and t != 'ZStatus *']


def read_rows():
    with open(os.path.join(BUILD, 'companion', 'render.json')) as text:
        described = dict((str(f['name']), f) for f in json.load(text)['functions'])
    for name, flag, least, most, types in harness.rows():
        cases = [(least, most, types)]
        if types == ['overloaded']:
            cases = [(a, b, map(str, types)) for a, b, types in overloads(described[name])]
        yield Row(name, flag, least, most, cases)
    yield Row('SWIG_PyInstanceMethod_New', O, 1, 1, [(1, 1, ['PyObject'])])


def native_of(declared):
    """The type of a number, whatever its name."""
    bare = declared[:-len(' const')] if declared.endswith(' const') else declared
    if '::' in bare and bare[-1] not in '&*' or bare == 'ZHwTextureFileHandle':
        return 'int'
    return GL_TYPES.get(bare, bare)


NUMBERS = frozenset(RANGES) | frozenset(('float', 'double', 'bool', 'bool const &'))


def is_pointer(declared):
    """Whether only pointer objects of one type are taken, and None."""
    return native_of(declared) not in NUMBERS and declared not in (
        STRINGS + ANYTHING + GL_DATA + CHARACTERS)


# What is said about one argument: None where it is taken, else the exception and what it says.

def number_error(native, value):
    if native in ('float', 'double'):
        if not isinstance(value, (int, long, float)):
            return TypeError
        try:
            value = float.__float__(value) if isinstance(value, float) else value * 1.0
        except OverflowError:
            return TypeError
        return OverflowError if native == 'float' and abs(value) > LARGEST_FLOAT else None
    low, high = RANGES[native]
    if not isinstance(value, (int, long)):
        return TypeError
    word = (-2 ** 63, 2 ** 63 - 1) if low else (0, 2 ** 64 - 1)
    if isinstance(value, long) and not word[0] <= value <= word[1] and native != 'long':
        return TypeError
    return None if low <= value <= high else OverflowError


def complaint(row, position, declared, item):
    if item.good:
        return None
    text = row.message(position, declared)
    native = native_of(declared)
    if native in ('bool', 'bool const &'):
        return None if item.truth else (TypeError, text)
    if native in NUMBERS:
        error = number_error(native, item.value)
        return error and (error, text)
    if declared == 'list':
        return list_error(item)
    if declared in STRINGS:
        return None if item.text else (
            TypeError, 'Expected a String or Unicode object for argument %d' % (position + 1))
    if declared in ANYTHING or item.value is None and declared in GL_DATA:
        return None
    if declared in GL_DATA:
        return None if item.record in GL_DATA_RECORDS else (
            TypeError, 'Expected argument of pointer type compatible with ZGLvoid*')
    if declared in CHARACTERS and isinstance(item.value, str):
        return None
    if item.value is not None and item.record != harness.mangled(pointee(declared)):
        return TypeError, text
    is_reference = ('*' not in declared or declared.endswith('*&')) and (
        declared not in FUNCTION_POINTERS) or row.is_embedded and position == 1
    return (ValueError, 'invalid null reference ' + text) if item.null and is_reference else None


def list_error(item):
    """The names of a list are read, and go on being read like text; then it is filled."""
    if type(item.value) is not list:
        return TypeError, 'Argument 4 must be a list object'
    if not any(i is None or type(i) is str and i == '\xff' for i in item.value):
        return None
    return TypeError, 'Expected a list of Strings or Unicode objects for argument 4'


def goes_on(error):
    """Text that cannot be read raises, and the call is made all the same."""
    return error and error[1].startswith('Expected a ') and 'pointer' not in error[1]


def first_complaint(row, types, items):
    waiting = None
    for position, (declared, item) in enumerate(zip(types, items)):
        error = complaint(row, position, declared, item)
        if error and not goes_on(error):
            return error
        waiting = error or waiting
    return waiting


def expectations(row, items):
    """The possible outcomes of a call. Of an overloaded function, an odd argument may keep one case
    from being chosen; another one then complains about its own first difference."""
    fitting = [types for least, most, types in row.cases if least <= len(items) <= most]
    expected = [first_complaint(row, types, items) for types in fitting]
    if len(row.cases) > 1:
        for types in fitting:
            for position, (declared, item) in enumerate(zip(types, items)):
                expected.append((TypeError, row.message(position, declared)))
                error = complaint(row, position, declared, item)
                expected += [error] if error else []
    return expected


def record_of(value):
    """The type of the pointer object behind a result, or None."""
    bare = getattr(value, 'this', value)
    if type(bare).__name__ != 'SwigPyObject':
        return None
    return harness.PointerObject.from_address(id(bare)).ty.contents.name


# Good values

class Goods(object):
    """Makes good values by declared type. What cannot be made by a script is a placeholder."""

    def __init__(self):
        self.kept = {}
        self.placeholders = set()

    def make(self, declared):
        if declared == 'list':
            return []
        if declared in STRINGS or declared in CHARACTERS:
            return 'text'
        if declared in ANYTHING or declared in GL_DATA:
            return None
        if native_of(declared) in NUMBERS:
            return 1
        try:
            return self.construct(pointee(declared))
        except (AttributeError, TypeError):
            self.placeholders.add(declared)
            return harness.placeholder(pointee(declared))

    def construct(self, name):
        buffer_name = BUFFERS.get(name, name.title().replace(' ', '')) + 'Buffer'
        if hasattr(OpenQuil, buffer_name):
            return getattr(OpenQuil, buffer_name)(1024)
        if name in MADE:
            return MADE[name](OpenQuilRender) or self.fail()
        return (getattr(OpenQuilRender, name, None) or getattr(OpenQuil, name))()

    def fail(self):
        raise TypeError('not to be had from this host')

    def keep(self, declared):
        if declared not in self.kept:
            self.kept[declared] = self.item(declared)
        return self.kept[declared]

    def item(self, declared):
        return Item('good', self.make(declared), good=True)


def owns(value):
    bare = getattr(value, 'this', value)
    return bare.own() or bool(bare.next() and owns(bare.next()))


def may_call(row, items, goods):
    """Whether a host survives a call whose arguments are all taken. A null host always does; a
    real one wants the object of a method, takes what it is told is memory for memory, and has no
    use for pointers to objects that are gone or never were."""
    if row.is_destructor:
        return items[0].null or items[0].expendable and owns(items[0].value)
    if row.null_host:
        return True
    if row.name in GIVES_BACK and not items[GIVES_BACK[row.name]].null:
        return False
    return not any(
        item.dangling or declared in goods.placeholders or
        declared in ('void *', 'void const *') and item.value is not None or
        position == 0 and row.is_method and item.null and '*' in declared
        for least, most, types in row.cases if least <= len(items) <= most
        for position, (declared, item) in enumerate(zip(types, items)))


# Calls

def attempt(function, arguments):
    """The result, or NOTHING, and the exception. Both come together where text could not be read."""
    result = NOTHING
    try:
        result = function(*arguments)
        raise_pending()
    except BaseException as error:
        return result, error
    return result, None


def leave():
    """Ends a render that a call may have begun: the program does not end well with an open one."""
    attempt(module.ZRenderView_endRender, ())


class Journal(object):
    """The last calls, in a file that outlives a crash."""
    SLOTS, WIDTH = 40, 500

    def __init__(self, path):
        with open(path, 'wb') as room:
            room.write(' ' * self.SLOTS * self.WIDTH)
        with open(path, 'r+b') as room:
            self.room = mmap.mmap(room.fileno(), 0)
        self.count = 0

    def write(self, text):
        start = self.count % self.SLOTS * self.WIDTH
        line = '%d: %s' % (self.count, text)
        self.room[start:start + self.WIDTH] = line[:self.WIDTH - 1].ljust(self.WIDTH - 1) + '\n'
        self.count += 1

    @staticmethod
    def tail(path, count=12):
        with open(path, 'rb') as room:
            lines = [line.strip() for line in room.read().split('\n') if line.strip()]
        return sorted(lines, key=lambda line: int(line.split(':')[0]))[-count:]


def judge(row, expected, result, error):
    """What is wrong with the outcome of a call, or None. `expected` are the possible complaints;
    None among them stands for success, after which a real host may still refuse."""
    if row.is_protocol:
        is_null = row.name == 'SWIG_PyInstanceMethod_New'
        return None if (type(error) is SystemError) == is_null else 'null without an exception'
    if error is None:
        return None if None in expected else 'should have failed: %r' % expected
    if row.name == 'ZGeometryList_addLast' and str(error).startswith(NO_OVERLOAD % row.name):
        return None  # the one dispatcher that probes where only one case takes so many arguments
    said = type(error), str(error)
    if said in expected:
        if result is NOTHING or goes_on(said):
            return None
        return '%r, and the result is %r' % (said, result)
    refused = type(error) is RuntimeError and result is NOTHING and not row.null_host
    if refused and any(e is None or goes_on(e) for e in expected):
        return None
    return '%r raised instead of %r; result %r' % (said, expected, result)


def supervise(script, arguments, null_host):
    """Runs a script in a process of its own, with a journal; when it crashes or hangs, shows its
    last calls. Returns the exit status."""
    handle, journal = tempfile.mkstemp()
    os.close(handle)
    environment = dict(os.environ, PYTHONDONTWRITEBYTECODE='1')
    if null_host:
        environment['LD_PRELOAD'] = NULL_HOST
    try:
        status = subprocess.call([PROGRAM, '--no-gl', '--quiet', '--python', script, '--', '--journal',
                                  journal] + arguments, env=environment)
        if status < 0:
            sys.stderr.write('signal %d; the last calls:\n%s\n' % (
                -status, '\n'.join(Journal.tail(journal))))
        return 0 if status in (0, CALLBACK_FAILED) else 1
    finally:
        os.remove(journal)
