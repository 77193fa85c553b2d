# SPDX-License-Identifier: MIT
"""The rows of the module and what each of their arguments takes, by the families of the declared
types in tests/module/rows.tsv. Known of an argument is what corpus.Item tells."""
import json
import os
import sys

TESTS = os.path.join(os.path.dirname(os.path.abspath(__file__)), os.pardir, os.pardir)
sys.path[:0] = [os.path.join(TESTS, 'module'), TESTS]
import harness
from harness import module, NOARGS, O, VARARGS

PROGRAM = os.readlink('/proc/self/exe')
BUILD = os.path.dirname(os.path.dirname(PROGRAM))
NULL_HOST = os.path.join(BUILD, 'lib', 'libnull_host.so')
# The rows whose members a preloaded null host replaces: they come back whatever they are given.
NULL_HOST_ROWS = frozenset()
if os.environ.get('LD_PRELOAD') == NULL_HOST:
    NULL_HOST_ROWS = frozenset(open(
        os.path.join(BUILD, 'tests', 'across', 'hostile', 'null_host_rows.txt')).read().split())
RANGES = {'int': (-2 ** 31, 2 ** 31 - 1), 'unsigned int': (0, 2 ** 32 - 1),
          'short': (-2 ** 15, 2 ** 15 - 1), 'unsigned short': (0, 2 ** 16 - 1),
          'signed char': (-128, 127), 'unsigned char': (0, 255), 'long': (-2 ** 63, 2 ** 63 - 1)}
GL_TYPES = {
    'ZGLenum': 'unsigned int', 'ZGLuint': 'unsigned int', 'ZGLbitfield': 'unsigned int',
    'ZGLhandleARB': 'unsigned int', 'ZGLint': 'int', 'ZGLsizei': 'int', 'ZGLExtension': 'int',
    'ZGLsizeiptrARB': 'long', 'ZGLintptrARB': 'long', 'ZGLfloat': 'float', 'ZGLclampf': 'float',
    'ZGLdouble': 'double', 'ZGLclampd': 'double', 'ZGLshort': 'short',
    'ZGLushort': 'unsigned short', 'ZGLubyte': 'unsigned char', 'ZGLboolean': 'unsigned char',
    'ZGLbyte': 'signed char', 'ZGLcharARB': 'char'}
FUNCTION_POINTER = 'ZSwatchRenderCreatorFnPtr'
# What does not point to a type of its own name. Addresses of addresses have one type each, whatever
# is const in them.
POINTEES = {'ZGLvoid **': 'p_void', 'ZGLvoid const **': 'p_void', 'void **': 'p_void',
            'ZGLcharARB const **': 'p_char', 'char const **': 'p_char',
            'void const *&': 'p_void', 'unsigned int *&': 'p_unsigned int',
            'ZHwTextureFileHandle &': 'int',
            FUNCTION_POINTER: 'f_ZObject_ZObject_int__p_ZSwatchRenderBase'}
STRINGS = 'ZString', 'ZString &', 'ZString const &', 'list'
ANYTHING = 'PyObject', 'void *', 'void const *'
GL_DATA = 'ZGLvoid *', 'ZGLvoid const *'
CHARACTERS = 'ZGLcharARB const *', 'char const *'
NO_OVERLOAD = "Wrong number or type of arguments for overloaded function '%s'.\n"
LARGEST_FLOAT = 3.4028234663852886e38
GL_DATA_RECORDS = map(harness.mangled, (
    'double', 'float', 'int', 'unsigned int', 'short', 'unsigned short', 'char', 'unsigned char'))
NUMBERS = frozenset(RANGES) | frozenset(('float', 'double', 'bool', 'bool const &'))


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

    def count_error(self, count):
        """What is raised for so many arguments, None when so many are taken; of an overloaded
        function how the text begins."""
        if any(least <= count <= most for least, most, _ in self.cases):
            return None
        if len(self.cases) > 1:
            return NotImplementedError, NO_OVERLOAD % self.name
        if self.flag != VARARGS:
            wanted = 'no arguments' if self.flag == NOARGS else 'exactly one argument'
            return TypeError, '%s() takes %s (%d given)' % (self.name, wanted, count)
        own = self.name.rsplit('_', 1)[1] if self.is_protocol else self.name
        bound, word = (self.least, 'least') if count < self.least else (self.most, 'most')
        return TypeError, '%s expected %s%d arguments, got %d' % (
            own, '' if self.least == self.most else 'at %s ' % word, bound, count)

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


def pointee(declared):
    """The type that an argument points to."""
    bare = POINTEES.get(declared) or declared.replace('const', '').rstrip('&* ').strip()
    return GL_TYPES.get(bare, bare)


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
        declared != FUNCTION_POINTER) or row.is_embedded and position == 1
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
