"""Tests of render callbacks written as Python classes, in renders of a small scene. Run by
Python 3 with the path of quilhost."""

import pathlib
import subprocess
import sys
import tempfile
import unittest

QUILHOST = sys.argv.pop(1)

SCENE = '''v -1 -1 0
v 1 -1 0
v 0 1 0
f 1 2 3
'''
CALLBACKS = '''
import OpenQuilRender

class Teller(OpenQuilRender.ZRenderCallback):
    def __init__(self, name):
        super(Teller, self).__init__()
        self.name = name

    def renderCallback(self, data):
        print self.name, data.resX, data.resY, len(data.rgbaArr.read(0, data.xsize * data.ysize * 4))
        base = super(Teller, self).renderCallback(data)
        assert base is False
        data.rgbaArr.write(0, [9, 8, 7, 6])
        return True

    def postProcessCallback(self, data):
        print self.name, 'post', data.rgbaArr.read(0, 4) == '\\x09\\x08\\x07\\x06'
'''


class CallbackTest(unittest.TestCase):
    def render(self, script):
        """Renders with the script; the finished process and its lines."""
        with tempfile.TemporaryDirectory() as folder:
            folder = pathlib.Path(folder)
            (folder / 'scene.obj').write_text(SCENE)
            (folder / 'script.py').write_text(CALLBACKS + script)
            done = subprocess.run(
                [QUILHOST, '--quiet', '--resolution', '8', '6', '--output', str(folder / 'o.png'),
                 '--python', str(folder / 'script.py'), str(folder / 'scene.obj')],
                stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True, timeout=60)
            self.assertTrue((folder / 'o.png').exists(), done.stderr)
            return done, done.stdout.splitlines()

    def test_callbacks_are_called_in_the_order_of_their_priorities(self):
        # The script keeps no reference, and leaves its callbacks registered at exit.
        done, lines = self.render('''
OpenQuilRender.ZRenderCallback.addCallback(Teller('late'), 5)
OpenQuilRender.ZRenderCallback.addCallback(Teller('early'), -5)
''')
        self.assertEqual(0, done.returncode, done.stderr)
        self.assertEqual(['early 8 6 192', 'late 8 6 192', 'early post True', 'late post True'],
                         lines)

    def test_a_removed_callback_is_not_called(self):
        done, lines = self.render('''
teller = Teller('removed')
OpenQuilRender.ZRenderCallback.addCallback(teller, 0)
OpenQuilRender.ZRenderCallback.removeCallback(teller)
''')
        self.assertEqual(0, done.returncode, done.stderr)
        self.assertEqual([], lines)

    def test_a_disowned_callback_lives_with_its_native_object(self):
        done, lines = self.render('''
OpenQuilRender.ZRenderCallback.addCallback(Teller('disowned').__disown__(), 0)
''')
        self.assertEqual(0, done.returncode, done.stderr)
        self.assertEqual(['disowned 8 6 192', 'disowned post True'], lines)

    def test_an_exception_is_reported_and_the_render_goes_on(self):
        done, lines = self.render('''
class Failing(OpenQuilRender.ZRenderCallback):
    def renderCallback(self, data):
        raise ValueError('told by the callback')
OpenQuilRender.ZRenderCallback.addCallback(Failing(), 0)
OpenQuilRender.ZRenderCallback.addCallback(Teller('next'), 1)
''')
        self.assertEqual(4, done.returncode, done.stderr)
        self.assertIn('ValueError: told by the callback', done.stderr)
        self.assertEqual(['next 8 6 192', 'next post True'], lines)


if __name__ == '__main__':
    unittest.main()
