"""The OpenGL function table from scripts: what its rows have beyond the table of declared types."""
import unittest

import harness
from harness import module

DATA = [row[0] for row in harness.rows() if 'ZGLvoid *' in row[4] or 'ZGLvoid const *' in row[4]]


def arguments(name, data):
    """A call without a table that converts up to its data."""
    types, = [row[4] for row in harness.rows() if row[0] == name]
    return [data if t in ('ZGLvoid *', 'ZGLvoid const *') else None if '*' in t else 0
            for t in types]


class GlTest(unittest.TestCase):
    def test_data_are_typed_pointer_objects(self):
        text = 'Expected argument of pointer type compatible with ZGLvoid*'
        bad = ['text', u'text', [1.0], bytearray(4), 0, object()]
        bad += [harness.placeholder(name) for name in ('signed char', 'void', 'p_void', 'ZImage')]
        self.assertEqual(len(DATA), 26)
        for name in DATA:
            for data in bad:
                with self.assertRaises(TypeError) as raised:
                    getattr(module, name)(*arguments(name, data))
                self.assertEqual(str(raised.exception), text, name)

    def test_constants_outside_the_class(self):
        """First and last of each group, and the two with values of their own."""
        expected = {'ZGL_ACCUM': 0x100, 'ZGL_TEXTURE_2D': 3553, 'ZGL_FLOAT': 5126, 'ZGL_2D': 0x600,
                    'ZGL_ALL_ATTRIB_BITS': 1048575, 'ZGL_CLIENT_ALL_ATTRIB_BITS': -1,
                    'ZGL_DRAW_FRAMEBUFFER': 0x8CA9, 'kZGLext_bgra': 0,
                    'kZGLext_frame_buffer_object': 71, 'kZGLext_NUMBER_OF_EXTENSIONS': 88}
        self.assertEqual(dict((name, getattr(module, name)) for name in expected), expected)
        found = [name for name in vars(module) if name.startswith(('ZGL_', 'kZGLext_'))]
        self.assertEqual(len(found), 1666 + 89)

    def test_without_opengl_every_call_is_an_error(self):
        """These tests run with --no-gl; the message comes once."""
        status, output, errors = harness.run(
            'import _OpenQuilRender as m\n'
            't = m.ZHardwareRenderer_glFunctionTable(m.ZHardwareRenderer_theRenderer())\n'
            'E = m.ZGLFunctionTable_glGetError\n'
            'print E(t), m.ZGLFunctionTable_glColor3f(t, 1, 2, 3), E(t), E(t)\n'
            'print m.ZGLFunctionTable_glGetString(t, m.ZGL_VERSION), E(t)\n'
            'print m.ZGLFunctionTable_glBufferDataARB(t, 1, 4, None, 1), E(t)\n'
            'print m.ZGLFunctionTable_glIsEnabled(t, m.ZGL_FOG), E(t)\n'
            'print m.ZGLFunctionTable_extensionExists(t, 1), m.ZGLFunctionTable_numTexUnits(t)\n'
            'print E(t)\n', '--no-gl')
        self.assertEqual(output.split('\n'), ['0 None 1282 0', 'None 1282', 'False 1282',
                                              '0 1282', 'False 0', '0', ''])
        self.assertEqual((status, errors.count('OpenGL is not available')), (0, 1))


if __name__ == '__main__':
    unittest.main()
