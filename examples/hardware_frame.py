# SPDX-License-Identifier: MIT
"""Draw procedures of the hardware renderer, and a viewport renderer, that a script draws with: a
sky behind the scene, a floor that the scene stands on, and a mark for each exposure.

    quilhost MODEL.obj --python examples/hardware_frame.py --renderer hardware --output picture.png
    quilhost MODEL.obj --python examples/hardware_frame.py --renderer viewport:sky --output sky.png

Draw procedures and viewport renderers are native objects. Those of examples/script_drawing.cpp call
a function of the script; the build has them in build/lib/libscript_drawing.so.
"""
import ctypes
import math
import os

import OpenQuil
from OpenQuil import UnsignedIntBuffer
from OpenQuilRender import *

from gl_scene import function_table, meshes

LIBRARY = os.path.join(os.path.dirname(OpenQuil.__file__), os.pardir, 'lib', 'libscript_drawing.so')
SQUARES = 20
gl = function_table()
renderer = ZHardwareRenderer.theRenderer()


def quad(*corners):
    gl.glBegin(ZGL_QUADS)
    for corner in corners:
        gl.glVertex3f(*corner)
    gl.glEnd()


def whole_picture(draw):
    """Draws in coordinates from 0 to 1, over everything."""
    gl.glPushAttrib(ZGL_ALL_ATTRIB_BITS)
    gl.glDisable(ZGL_DEPTH_TEST)
    for mode in (ZGL_PROJECTION, ZGL_MODELVIEW):
        gl.glMatrixMode(mode)
        gl.glPushMatrix()
        gl.glLoadIdentity()
    gl.glOrtho(0, 1, 0, 1, -1, 1)
    draw()
    for mode in (ZGL_MODELVIEW, ZGL_PROJECTION):
        gl.glMatrixMode(mode)
        gl.glPopMatrix()
    gl.glPopAttrib()
    return True


def sky(*size):
    def draw():
        gl.glBegin(ZGL_QUADS)
        for height, color in ((0, (0.75, 0.72, 0.66)), (1, (0.16, 0.25, 0.42))):
            gl.glColor3f(*color)
            for x in (height, 1 - height):
                gl.glVertex3f(x, height, 0)
        gl.glEnd()
    return whole_picture(draw)


def floor():
    """A checkerboard under the scene: the matrices are the camera's, the depths the frame's."""
    gl.glPushAttrib(ZGL_ALL_ATTRIB_BITS)
    gl.glEnable(ZGL_DEPTH_TEST)
    side = 4 * SIZE / SQUARES
    for row in range(SQUARES):
        for column in range(SQUARES):
            shade = 0.55 if (row + column) % 2 else 0.35
            gl.glColor3f(shade, shade, shade)
            x, z = CENTRE[0] - 2 * SIZE + column * side, CENTRE[2] - 2 * SIZE + row * side
            quad((x, BOTTOM, z), (x + side, BOTTOM, z), (x + side, BOTTOM, z + side),
                 (x, BOTTOM, z + side))
    gl.glPopAttrib()
    return True


def mark():
    """A square in the corner that each exposure adds its own part to."""
    number, count = UnsignedIntBuffer(1), UnsignedIntBuffer(1)
    renderer.getCurrentExposureNumber('', number)
    renderer.getTotalExposureCount('', count)

    def draw():
        angle = 2 * math.pi * number[0] / count[0]
        gl.glColor3f(*[0.5 + 0.5 * math.cos(angle + turn) for turn in (0, 2.1, 4.2)])
        left = 0.02 + 0.05 * number[0]
        quad((left, 0.03, 0), (left + 0.04, 0.03, 0), (left + 0.04, 0.08, 0), (left, 0.08, 0))
    return whole_picture(draw)


# OBJ files have their points in world space.
points = [list(mesh.positions) for mesh in meshes()]
LOW, HIGH = [[end(end(each[axis::3]) for each in points) for axis in range(3)]
             for end in (min, max)]
CENTRE = [(low + high) / 2 for low, high in zip(LOW, HIGH)]
SIZE, BOTTOM = max(high - low for low, high in zip(LOW, HIGH)), LOW[1]

library = ctypes.CDLL(LIBRARY)
PROCEDURE = ctypes.CFUNCTYPE(ctypes.c_bool)
RENDERER = ctypes.CFUNCTYPE(ctypes.c_bool, ctypes.c_int, ctypes.c_int)
# The library holds their addresses only.
kept = [RENDERER(sky)]
library.add_viewport_renderer('sky', kept[0])
for name, place, procedure in (('sky', ZHardwareRenderer.kPreRendering, PROCEDURE(sky)),
                               ('floor', ZHardwareRenderer.kPreExposure, PROCEDURE(floor)),
                               ('mark', ZHardwareRenderer.kPostExposure, PROCEDURE(mark))):
    kept.append(procedure)
    library.add_draw_procedure(name, place, procedure)
