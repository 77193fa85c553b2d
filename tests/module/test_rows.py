"""The functions of the render families, each against the table of declared types in rows.tsv:
presence, calling flag, argument counts, and the exact complaint about each argument."""
import unittest

import harness
from harness import module, NOARGS, O, VARARGS

CLASSES = ('RV_AOV', 'RV_PIXEL', 'ZCommonRenderSettingsData', 'ZRenderCallback', 'ZRenderData',
           'ZRenderShadowData', 'ZRenderUtil', 'ZRenderView')

CONSTANTS = {
    'ZCommonRenderSettingsData_kRelativePath': 0, 'ZCommonRenderSettingsData_kFullPathImage': 1,
    'ZCommonRenderSettingsData_kFullPathTmp': 2,
    'ZRenderShadowData_kInvalid': 0, 'ZRenderShadowData_kPoint': 1,
    'ZRenderShadowData_kDirectional': 2, 'ZRenderShadowData_kSpot': 3,
    'ZRenderUtil_kNotRendering': 0, 'ZRenderUtil_kBatchRender': 1,
    'ZRenderUtil_kInteractiveRender': 2, 'ZRenderUtil_kIprRender': 3,
    'ZRenderUtil_kHardwareRender': 4, 'ZRenderUtil_kAll': 0, 'ZRenderUtil_kColorOnly': 1,
    'ZRenderUtil_kShadowOnly': 2, 'ZRenderUtil_kAmbientOnly': 3, 'ZRenderUtil_kDiffuseOnly': 4,
    'ZRenderUtil_kSpecularOnly': 5}


class Odd(object):
    def __nonzero__(self):
        raise KeyError('no truth value')


# Declared type: an argument that passes, and those that do not with what is raised.
NUMBERS = {
    'int': (1, [(object(), TypeError), (2 ** 31, OverflowError), (1.0, TypeError)]),
    'unsigned int': (1, [(object(), TypeError), (2 ** 32, OverflowError), (-1, OverflowError)]),
    'unsigned short': (1, [(object(), TypeError), (65536, OverflowError), (-1, OverflowError),
                           (2 ** 70, TypeError)]),
    'float': (1, [(object(), TypeError), (1e39, OverflowError)]),
    'double': (1, [(object(), TypeError), (10 ** 400, TypeError)]),
    'bool': (0, [(Odd(), TypeError)]),
}
NUMBERS['bool const &'] = NUMBERS['bool']
ENUMERATIONS = ('ZCommonRenderSettingsData::ZpathType', 'ZRenderShadowData::LightType')
STRINGS = ('ZString', 'ZString const &')
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
    if declared in ANYTHING:
        return None, []
    bare = declared.replace('const', '').rstrip('&* ').strip()
    good, bad = harness.placeholder(bare), [(object(), TypeError, False)]
    bad.append((harness.placeholder('ZImage'), TypeError, False))  # of no relation to any
    if '*' not in declared or is_object_member:
        bad.append((None, ValueError, True))
    return good, bad


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
        prefixes = tuple(p + c for c in CLASSES for p in ('new_', 'delete_', 'disown_')) + tuple(
            c + '_' for c in CLASSES)
        found = dict((name, harness.definition(value).flags) for name, value in vars(module).items()
                     if name.startswith(prefixes) and callable(value))
        self.assertEqual(found, declared)

    def test_constants(self):
        prefixes = tuple(c + '_' for c in CLASSES)
        found = dict((n, v) for n, v in vars(module).items()
                     if n.startswith(prefixes) and not callable(v))
        self.assertEqual(found, CONSTANTS)
        self.assertEqual(set(map(type, found.values())), {int})

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
