# SPDX-License-Identifier: MIT
"""Draws the scene's meshes with OpenGL: lit, textured, seen by the scene's camera.

    quilhost MODEL.obj --python examples/gl_mesh.py -- PICTURE.png [TEXTURE.png]

Positions, normals and texture coordinates are the streams that a hardware renderer asks the host
for; they go to OpenGL as vertex arrays, without a loop over vertices in the script.
"""
import os
import sys

from OpenQuil import FloatBuffer, UnsignedIntBuffer, ZImage
from OpenQuilRender import *

from gl_scene import Target, function_table, meshes, set_camera

WIDTH, HEIGHT = 640, 480
BACKGROUND = 0.16, 0.18, 0.22, 1
HERE = os.path.dirname(os.path.abspath(__file__))


def set_light(gl):
    """A light beside the camera; the surface reflects white."""
    gl.glEnable(ZGL_LIGHTING)
    gl.glEnable(ZGL_LIGHT0)
    gl.glPushMatrix()
    gl.glLoadIdentity()
    gl.glLightfv(ZGL_LIGHT0, ZGL_POSITION, FloatBuffer([0.4, 0.7, 1, 0]))
    gl.glPopMatrix()
    gl.glLightModelfv(ZGL_LIGHT_MODEL_AMBIENT, FloatBuffer([0.25, 0.25, 0.28, 1]))
    gl.glLightModeli(ZGL_LIGHT_MODEL_TWO_SIDE, 1)
    gl.glMaterialfv(ZGL_FRONT_AND_BACK, ZGL_AMBIENT_AND_DIFFUSE, FloatBuffer([0.9, 0.9, 0.9, 1]))
    gl.glMaterialfv(ZGL_FRONT_AND_BACK, ZGL_SPECULAR, FloatBuffer([0.35, 0.35, 0.35, 1]))
    gl.glMaterialf(ZGL_FRONT_AND_BACK, ZGL_SHININESS, 40)
    # Highlights are added after the texture, not darkened by it.
    gl.glLightModeli(ZGL_LIGHT_MODEL_COLOR_CONTROL, ZGL_SEPARATE_SPECULAR_COLOR)
    gl.glEnable(ZGL_NORMALIZE)


def set_texture(gl, file_name):
    image = ZImage()
    image.readFromFile(file_name)
    name = UnsignedIntBuffer(1)
    gl.glGenTextures(1, name)
    gl.glBindTexture(ZGL_TEXTURE_2D, name[0])
    gl.glTexParameteri(ZGL_TEXTURE_2D, ZGL_GENERATE_MIPMAP_SGIS, 1)
    gl.glTexParameteri(ZGL_TEXTURE_2D, ZGL_TEXTURE_MIN_FILTER, ZGL_LINEAR_MIPMAP_LINEAR)
    gl.glTexImage2D(ZGL_TEXTURE_2D, 0, ZGL_RGBA8, image.width(), image.height(), 0, ZGL_RGBA,
                    ZGL_UNSIGNED_BYTE, image.pixels())
    gl.glEnable(ZGL_TEXTURE_2D)


def draw(gl, mesh):
    projected = not len(mesh.coordinates)
    if projected:  # along the mesh's own Z axis, four repeats from one end to the other
        extent = max(mesh.positions) - min(mesh.positions) or 1
        gl.glTexGeni(ZGL_S, ZGL_TEXTURE_GEN_MODE, ZGL_OBJECT_LINEAR)
        gl.glTexGeni(ZGL_T, ZGL_TEXTURE_GEN_MODE, ZGL_OBJECT_LINEAR)
        gl.glTexGenfv(ZGL_S, ZGL_OBJECT_PLANE, FloatBuffer([4 / extent, 0, 0, 0]))
        gl.glTexGenfv(ZGL_T, ZGL_OBJECT_PLANE, FloatBuffer([0, 4 / extent, 0, 0]))
    for coordinate in (ZGL_TEXTURE_GEN_S, ZGL_TEXTURE_GEN_T):
        (gl.glEnable if projected else gl.glDisable)(coordinate)
    mesh.draw(gl)


def main(picture, texture=os.path.join(HERE, 'scenes', 'tile_pattern.png')):
    gl = function_table()
    target = Target(gl, WIDTH, HEIGHT)
    target.begin(BACKGROUND)
    set_camera(gl, WIDTH, HEIGHT)
    set_light(gl)
    set_texture(gl, texture)
    for mesh in meshes():
        draw(gl, mesh)
    target.write(picture)


main(*sys.argv[1:])
