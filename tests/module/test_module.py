"""The built module as a file and as an import: exports, dependencies, the type ring."""
import ctypes
import subprocess
import unittest

import harness
from harness import module

def output(*command):
    return subprocess.check_output(command).splitlines()


class File(unittest.TestCase):
    def test_exports(self):
        lines = [line.split() for line in output('nm', '-D', '--defined-only', '-S',
                                                 module.__file__)]
        self.assertEqual(sorted(line[-1] for line in lines), ['ZApiVersion', 'init_OpenQuilRender'])
        size, = [int(line[1], 16) for line in lines if line[-1] == 'ZApiVersion']
        self.assertEqual(size, 7)
        version = (ctypes.c_char * 7).in_dll(ctypes.CDLL(module.__file__), 'ZApiVersion')
        self.assertEqual(version.raw, '201600\0')

    def test_dependencies(self):
        needed = [line for line in output('readelf', '-d', module.__file__) if '(NEEDED)' in line]
        self.assertTrue(any('libOpenQuilRender.so' in line for line in needed))
        self.assertEqual([line for line in needed if 'python' in line.lower()], [])

    def test_static_construction(self):
        symbols = output('nm', '-D', module.__file__)
        image = open(module.__file__, 'rb').read()
        if any(name in image for name in ('__asan_init', '__tsan_init', '.gcda')):
            self.skipTest('the instrumentation has constructors')
        section, = [line.split(']')[1].split() for line in
                    output('readelf', '-SW', module.__file__) if '.init_array' in line]
        entries = int(section[4], 16) // 8
        # One is the compiler's own; another may be that of the standard streams.
        streams = any('ios_base4Init' in line for line in symbols)
        self.assertLessEqual(entries, 2 if streams else 1)


class Import(unittest.TestCase):
    def state(self):
        types = harness.own_module().types
        size = harness.own_module().size
        return (len(harness.ring()), [ctypes.addressof(types[i].contents) for i in range(size)],
                [harness.cast_list(types[i]) for i in range(size)])

    def test_type_table(self):
        own = harness.own_module()
        names = harness.names_of(own)
        # Types that a module before this one knows are that module's records.
        self.assertEqual(len(harness.ring()), 1 + len(harness.IMPORTED_FIRST))
        addresses = dict((n, ctypes.addressof(own.types[i].contents)) for i, n in enumerate(names))
        for other in harness.ring():
            for i, name in enumerate(harness.names_of(other)):
                if name in addresses:
                    self.assertEqual(addresses[name], ctypes.addressof(other.types[i].contents))

    def test_again(self):
        before, names = self.state(), dict(vars(module))
        reload(module)
        self.assertEqual(self.state(), before)
        # The entry function itself, as for another interpreter.
        ctypes.PyDLL(module.__file__).init_OpenQuilRender()
        self.assertEqual(self.state(), before)
        self.assertEqual(set(vars(module)), set(names))
        self.assertEqual(module.ZRenderUtil_kSpecularOnly, 5)
        self.assertEqual(module.ZRenderUtil_noise1(0.5), names['ZRenderUtil_noise1'](0.5))

    def test_inert_row(self):
        with self.assertRaises(SystemError):  # a null result without an exception
            module.SWIG_PyInstanceMethod_New(None)


if __name__ == '__main__':
    unittest.main()
