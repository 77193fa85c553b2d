# SPDX-License-Identifier: MIT
"""The built module as a file: exports, dependencies, static construction."""
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


class Exit(unittest.TestCase):
    def test_leak_is_reported(self):
        code = 'import _OpenQuilRender as m; m.new_RV_AOV(); m.new_ZRenderView().own(False)'
        status, shown, _ = harness.run(code)
        self.assertEqual((status, shown), (0, "swig/python detected a memory leak of type "
                                              "'RV_AOV *', no destructor found.\n"))


if __name__ == '__main__':
    unittest.main()
