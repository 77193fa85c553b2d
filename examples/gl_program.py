# SPDX-License-Identifier: MIT
"""Draws the scene's meshes with a program of its own: flat steps of light, and height lines whose
colours come from a palette.

    quilhost MODEL.obj --python examples/gl_program.py -- PICTURE.png

The program is written in OpenGL's shading language and goes through the members that end in ARB.
Its palette is a uniform array, set from a buffer in one call.
"""
import sys

from OpenQuil import CharBuffer, CharPointerBuffer, FloatBuffer, IntBuffer
from OpenQuilRender import *

from gl_scene import Target, function_table, meshes, set_camera

WIDTH, HEIGHT = 640, 480
BACKGROUND = 0.96, 0.94, 0.89, 1
PALETTE = [(0.10, 0.23, 0.36), (0.13, 0.47, 0.52), (0.55, 0.68, 0.39), (0.93, 0.72, 0.31),
           (0.80, 0.32, 0.22)]

VERTEX_SHADER = """
varying vec3 normal;
varying float height;

void main() {
    normal = gl_NormalMatrix * gl_Normal;
    height = gl_Vertex.y;
    gl_Position = ftransform();
}
"""

FRAGMENT_SHADER = """
uniform vec3 palette[%d];
uniform vec2 range;  // lowest point, and bands per unit of height
varying vec3 normal;
varying float height;

void main() {
    vec3 facing = normalize(gl_FrontFacing ? normal : -normal);
    float light = dot(facing, normalize(vec3(0.4, 0.7, 1.0)));
    float level = 0.45 + 0.2 * step(0.05, light) + 0.2 * step(0.45, light) +
                  0.15 * step(0.8, light);
    float band = (height - range.x) * range.y;
    vec3 color = palette[int(min(band, %d.0))];
    float line = abs(fract(4.0 * band + 0.5) - 0.5) / fwidth(4.0 * band);
    color *= 0.7 + 0.3 * smoothstep(0.5, 1.5, line);
    gl_FragColor = vec4(color * level, 1.0);
}
""" % (len(PALETTE), len(PALETTE) - 1)


def status(gl, thing, name):
    value = IntBuffer(1)
    gl.glGetObjectParameterivARB(thing, name, value)
    return value[0]


def check(gl, thing, name):
    """Raises what the driver has to say about a shader or program that failed."""
    if not status(gl, thing, name):
        length = status(gl, thing, ZGL_OBJECT_INFO_LOG_LENGTH_ARB)
        log = CharBuffer(length + 1)
        gl.glGetInfoLogARB(thing, length, None, log)
        raise RuntimeError(log.read(0, length).rstrip('\0'))


def add_shader(gl, program, kind, source):
    shader = gl.glCreateShaderObjectARB(kind)
    text = CharBuffer(source)
    gl.glShaderSourceARB(shader, 1, CharPointerBuffer([text]), IntBuffer([len(source)]))
    gl.glCompileShaderARB(shader)
    check(gl, shader, ZGL_OBJECT_COMPILE_STATUS_ARB)
    gl.glAttachObjectARB(program, shader)


def make_program(gl):
    program = gl.glCreateProgramObjectARB()
    add_shader(gl, program, ZGL_VERTEX_SHADER_ARB, VERTEX_SHADER)
    add_shader(gl, program, ZGL_FRAGMENT_SHADER_ARB, FRAGMENT_SHADER)
    gl.glLinkProgramARB(program)
    check(gl, program, ZGL_OBJECT_LINK_STATUS_ARB)
    gl.glUseProgramObjectARB(program)
    return program


def set_uniforms(gl, program, drawn):
    palette = FloatBuffer([channel for color in PALETTE for channel in color])
    gl.glUniform3fvARB(gl.glGetUniformLocationARB(program, 'palette'), len(PALETTE), palette)
    heights = [height for mesh in drawn for height in list(mesh.positions)[1::3]]
    low, high = min(heights), max(heights)
    gl.glUniform2fARB(gl.glGetUniformLocationARB(program, 'range'), low,
                      len(PALETTE) / (high - low or 1))


def main(picture):
    gl = function_table()
    target = Target(gl, WIDTH, HEIGHT)
    target.begin(BACKGROUND)
    set_camera(gl, WIDTH, HEIGHT)
    drawn = meshes()
    set_uniforms(gl, make_program(gl), drawn)
    for mesh in drawn:
        mesh.draw(gl)
    target.write(picture)


main(*sys.argv[1:])
