# SPDX-License-Identifier: MIT
"""What quilhost --leak-check tells, and its exit code."""
import subprocess
import sys
import unittest

COMMAND = [sys.argv.pop(1), '--quiet', '--no-gl']
KEPT = 'import OpenQuil as c, OpenQuilRender as r, _OpenQuil as m, sys, atexit\n'


class LeakCheck(unittest.TestCase):
    def test_leaks(self):
        for code, lines in (
                ('v = c.ZVector()', []),
                ('class Held(object): texts = c.ZStringArray([u"a"])', []),
                ('r.ZRenderCallback.addCallback(r.ZRenderCallback(), 0)', []),
                ('atexit.register(lambda: c.ZVector(1, 2, 3).length())', []),
                ('r.ZRenderView.startRender(4, 4)\npixels = c.PixelBuffer(16)\n'
                 'r.ZRenderView.updatePixels(0, 3, 0, 3, pixels)\nr.ZRenderView.endRender()', []),
                ('a = r.RV_AOV()\nfor size in 4, 5: a.pPixels = c.FloatBuffer(size)', []),
                ('sys.keep = c.ZPlug(); c.keep = c.ZImage(); r.keep = c.ZString(u"a")\n'
                 'for name in map(chr, range(97, 123)):\n'
                 '    module = sys.modules[name] = type(sys)(name); module.vector = c.ZVector()',
                 []),
                ('c.ZVector().this.disown()', ['1 ZVector']),
                ('for _ in range(3): c.ZImage().this.disown(), c.FloatBuffer(2).this.disown()',
                 ['3 ZImage', '3 buffer']),
                ('r.ZRenderCallback().__disown__()', ['1 ZRenderCallback']),
                ('m.ZVector_swigregister(object); a = m.new_ZVector()', ['1 ZVector'])):
            done = subprocess.run(COMMAND + ['--leak-check', '--python-expr', KEPT + code],
                                  stderr=subprocess.PIPE, stdout=subprocess.PIPE, timeout=60,
                                  universal_newlines=True)
            told = ['quilhost: left over: ' + line for line in lines]
            self.assertEqual((done.stderr.splitlines(), done.returncode),
                             (told, 5 if lines else 0), code)
            self.assertEqual('no destructor found' in done.stdout, 'register(object)' in code)

    def test_numbers_for_the_script(self):
        code = ('import quilhost, OpenQuil as c; before = quilhost.live_objects()\n'
                'v = c.ZVector(); after = quilhost.live_objects()\n'
                'print before.get("ZVector", 0), after.get("ZVector")')
        for options, output in (['--leak-check'], '0 1\n'), ([], '0 None\n'):
            self.assertEqual(subprocess.check_output(COMMAND + ['--python-expr', code] + options,
                                                     universal_newlines=True), output)

    def test_the_script_s_own_failure_comes_first(self):
        code = 'import OpenQuil as c; c.ZVector().this.disown(); raise SystemExit(7)'
        self.assertEqual(subprocess.run(COMMAND + ['--leak-check', '--python-expr', code],
                                        stderr=subprocess.DEVNULL).returncode, 7)


if __name__ == '__main__':
    unittest.main()
