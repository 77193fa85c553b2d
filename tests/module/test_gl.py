# SPDX-License-Identifier: MIT
"""The OpenGL functions from scripts, where there is no OpenGL."""
import unittest

import harness


class GlTest(unittest.TestCase):
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
