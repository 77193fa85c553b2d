"""The functions, each against the table of declared types in rows.tsv: presence, calling flag,
argument counts, and the exact complaint about each argument."""
import unittest

import harness
from harness import module, NOARGS, O, VARARGS


class Odd(object):
    def __nonzero__(self):
        raise KeyError('no truth value')


# Declared type: an argument that passes, and those that do not with what is raised.
NUMBERS = {
    'signed char': (1, [(object(), TypeError), (128, OverflowError), (-129, OverflowError)]),
    'unsigned char': (1, [(object(), TypeError), (256, OverflowError), (-1, OverflowError)]),
    'short': (1, [(object(), TypeError), (2 ** 15, OverflowError), (1.0, TypeError)]),
    'unsigned short': (1, [(object(), TypeError), (65536, OverflowError), (-1, OverflowError),
                           (2 ** 70, TypeError)]),
    'int': (1, [(object(), TypeError), (2 ** 31, OverflowError), (1.0, TypeError)]),
    'unsigned int': (1, [(object(), TypeError), (2 ** 32, OverflowError), (-1, OverflowError)]),
    'long': (1, [(object(), TypeError), (2 ** 63, OverflowError), (1.0, TypeError)]),
    'float': (1, [(object(), TypeError), (1e39, OverflowError)]),
    'double': (1, [(object(), TypeError), (10 ** 400, TypeError)]),
    'bool': (0, [(Odd(), TypeError)]),
}
NUMBERS['bool const &'] = NUMBERS['bool']
NUMBERS['ZHwTextureFileHandle'] = NUMBERS['int']
GL_TYPES = {
    'ZGLenum': 'unsigned int', 'ZGLuint': 'unsigned int', 'ZGLbitfield': 'unsigned int',
    'ZGLhandleARB': 'unsigned int', 'ZGLint': 'int', 'ZGLsizei': 'int', 'ZGLExtension': 'int',
    'ZGLsizeiptrARB': 'long', 'ZGLintptrARB': 'long', 'ZGLfloat': 'float', 'ZGLclampf': 'float',
    'ZGLdouble': 'double', 'ZGLclampd': 'double', 'ZGLshort': 'short',
    'ZGLushort': 'unsigned short', 'ZGLubyte': 'unsigned char', 'ZGLboolean': 'unsigned char',
    'ZGLbyte': 'signed char', 'ZGLcharARB': 'char'}
NUMBERS.update((gl, NUMBERS[native]) for gl, native in GL_TYPES.items() if native in NUMBERS)
# Addresses of addresses have one pointer type each, whatever is const in them.
ADDRESSES = {'ZGLvoid **': 'p_void', 'ZGLvoid const **': 'p_void', 'void **': 'p_void',
             'ZGLcharARB const **': 'p_char', 'char const **': 'p_char'}
GL_DATA = ('ZGLvoid *', 'ZGLvoid const *')  # these have a message of their own; see test_gl.py
ENUMERATIONS = ('ZHardwareRenderer::CallLocation', 'ZHardwareRenderer::GeometricShape',
                'ZGeometryData::DataType', 'ZGeometryManager::GeometricShape',
                'ZCommonRenderSettingsData::ZpathType', 'ZRenderShadowData::LightType',
                'ZVaryingParameter::ZVaryingParameterSemantic', 'ZViewportRenderer::RenderingAPI',
                'ZViewportRenderer::RenderingOverride')
STRINGS = ('ZString', 'ZString &', 'ZString const &', 'list')
FUNCTION_POINTERS = {'ZSwatchRenderCreatorFnPtr': 'f_ZObject_ZObject_int__p_ZSwatchRenderBase'}
TARGETS = {'void const *&': 'p_void', 'unsigned int *&': 'p_unsigned int',
           'ZHardwareRenderer::BufferPixelFormat &': 'ZHardwareRenderer__BufferPixelFormat',
           'ZHwTextureFileHandle &': 'int'}
ANYTHING = ('PyObject', 'void *', 'void const *')


def expectations(declared, is_object_member):
    """An argument that passes, and the failures: argument, exception, is a null reference."""
    if declared in ENUMERATIONS:
        declared = 'int'
    if declared in NUMBERS:
        good, bad = NUMBERS[declared]
        return good, [(value, error, False) for value, error in bad]
    if declared in STRINGS:
        return 'text', []  # these go on; see test_values.py
    if declared in ANYTHING or declared in GL_DATA:
        return None, []
    if declared == 'ZGLcharARB const *':
        return 'text', [(bad, TypeError, False) for bad in (object(), u'text', ['text'])]
    if declared in ADDRESSES:
        return harness.placeholder(ADDRESSES[declared]), [
            (bad, TypeError, False) for bad in (object(), ['text'], harness.placeholder('void'))]
    if declared in FUNCTION_POINTERS:
        return harness.placeholder(FUNCTION_POINTERS[declared]), [
            (bad, TypeError, False) for bad in (object(), harness.placeholder('ZImage'))]
    bare = TARGETS.get(declared) or declared.replace('const', '').rstrip('&* ').strip()
    bare = GL_TYPES.get(bare, bare)
    good, bad = harness.placeholder(bare), [(object(), TypeError, False)]
    unrelated = harness.placeholder('ZStatus' if bare == 'ZImage' else 'ZImage')
    bad.append((unrelated, TypeError, False))
    if '*' not in declared or declared.endswith('*&') or is_object_member:
        bad.append((None, ValueError, True))
    return good, bad


NO_OVERLOAD = """Wrong number or type of arguments for overloaded function '%s'.
  Possible C/C++ prototypes are:
%s"""


class RowTest(unittest.TestCase):
    def assert_raises(self, error, text, function, arguments):
        try:
            function(*arguments)
        except Exception as caught:
            self.assertEqual((type(caught), str(caught)), (error, text))
        else:
            self.fail('nothing raised: ' + text)

    def test_rows_are_those_of_the_table(self):
        declared = dict((row[0], row[1]) for row in harness.rows())
        declared['SWIG_PyInstanceMethod_New'] = O
        found = dict((name, harness.definition(value).flags) for name, value in vars(module).items()
                     if type(value) is type(len))
        self.assertEqual(found, declared)
        flags = found.values()
        self.assertEqual([flags.count(flag) for flag in (VARARGS, NOARGS, O)], [1000, 41, 247])

    def test_constants(self):
        found = dict((name, value) for name, value in vars(module).items() if type(value) is int)
        self.assertEqual(len(found), 1967)
        own = dict((name, value) for name, value in found.items() if not name.startswith(
            ('ZGL_', 'kZGLext_')))  # these have tests of their own
        self.assertEqual(own, dict((n, int(v)) for n, v in harness.table('constants.tsv')))

    def test_no_documentation(self):
        for name, _, _, _, _ in harness.rows():
            self.assertIsNone(harness.definition(getattr(module, name)).doc, name)

    def test_argument_counts(self):
        for name, flag, least, most, types in harness.rows():
            function = getattr(module, name)
            if types == ['overloaded']:
                continue
            self.assertEqual(most, len(types), name)
            if flag == NOARGS:
                text = name + '() takes no arguments (1 given)'
                self.assert_raises(TypeError, text, function, [None])
                continue
            if flag == O:
                for count in (0, 2):
                    text = '%s() takes exactly one argument (%d given)' % (name, count)
                    self.assert_raises(TypeError, text, function, [None] * count)
                continue
            own = name.rsplit('_', 1)[1] if name.endswith(('swigregister', 'swiginit')) else name
            form = '%s expected %s%d arguments, got %d'
            for count, bound, word in ((least - 1, least, 'at least '), (most + 1, most, 'at most ')):
                text = form % (own, '' if least == most else word, bound, count)
                self.assert_raises(TypeError, text, function, [None] * count)

    def test_overloads(self):
        overloaded = [row[0] for row in harness.rows() if row[4] == ['overloaded']]
        table = harness.table('overloads.tsv')
        self.assertEqual([line[0] for line in table], overloaded)
        for name, counts, prototypes in table:
            text = NO_OVERLOAD % (name, ''.join('    %s\n' % p for p in prototypes.split('; ')))
            for count in counts.split():
                self.assert_raises(NotImplementedError, text, getattr(module, name),
                                   [None] * int(count))

    def test_each_argument_is_told_by_position_and_type(self):
        checked = 0
        for name, flag, least, most, types in harness.rows():
            if types == ['overloaded']:
                continue
            is_setter = name.endswith('_set')
            cases = [expectations(declared, is_setter and i == 1 and declared in (
                'ZString *', 'ZTime *', 'ZFloatVector *', 'ZFloatPoint *', 'ZFloatMatrix *'))
                     for i, declared in enumerate(types)]
            for i, (_, failures) in enumerate(cases):
                for value, error, is_null in failures:
                    arguments = [good for good, _ in cases]
                    arguments[i] = value
                    text = '%sin method \'%s\', argument %d of type \'%s\'' % (
                        'invalid null reference ' if is_null else '', name, i + 1, types[i])
                    self.assert_raises(error, text, getattr(module, name), arguments)
                    checked += 1
        self.assertGreater(checked, 500)


if __name__ == '__main__':
    unittest.main()
