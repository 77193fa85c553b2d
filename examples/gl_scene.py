# SPDX-License-Identifier: MIT
"""The scene for OpenGL, and a picture that it draws into: what the examples have in common that
draw with the host's function table."""
import math

from OpenQuil import (DoubleBuffer, FloatBuffer, UnsignedCharBuffer, UnsignedIntBuffer, ZDagPath,
                      ZImage, ZPlug, ZSelectionList)
from OpenQuilRender import *

SAMPLES = 2  # along each axis of a pixel


class Target(object):
    """Colours and depths in twice the picture's resolution, reduced when it is finished."""

    def __init__(self, gl, width, height):
        self.gl, self.width, self.height = gl, width, height
        self.drawn = self.framebuffer(SAMPLES * width, SAMPLES * height, depth=True)
        self.reduced = self.framebuffer(width, height, depth=False)

    def framebuffer(self, width, height, depth):
        gl, name = self.gl, UnsignedIntBuffer(1)
        gl.glGenFramebuffersEXT(1, name)
        gl.glBindFramebufferEXT(ZGL_FRAMEBUFFER, name[0])
        self.attach(ZGL_COLOR_ATTACHMENT0, ZGL_RGBA8, width, height)
        if depth:
            self.attach(ZGL_DEPTH_ATTACHMENT, ZGL_DEPTH_COMPONENT24_ARB, width, height)
        if gl.glCheckFramebufferStatusEXT(ZGL_FRAMEBUFFER) != ZGL_FRAMEBUFFER_COMPLETE:
            raise RuntimeError('the driver cannot draw into a framebuffer object')
        return name[0]

    def attach(self, place, form, width, height):
        gl, name = self.gl, UnsignedIntBuffer(1)
        gl.glGenRenderbuffersEXT(1, name)
        gl.glBindRenderbufferEXT(ZGL_RENDERBUFFER, name[0])
        gl.glRenderbufferStorageEXT(ZGL_RENDERBUFFER, form, width, height)
        gl.glFramebufferRenderbufferEXT(ZGL_FRAMEBUFFER, place, ZGL_RENDERBUFFER, name[0])

    def begin(self, color):
        gl = self.gl
        gl.glBindFramebufferEXT(ZGL_FRAMEBUFFER, self.drawn)
        gl.glViewport(0, 0, SAMPLES * self.width, SAMPLES * self.height)
        gl.glClearColor(*color)
        gl.glClear(ZGL_COLOR_BUFFER_BIT | ZGL_DEPTH_BUFFER_BIT)
        gl.glEnable(ZGL_DEPTH_TEST)

    def write(self, path):
        """Writes the picture; both OpenGL and images have their first row at the bottom."""
        gl, width, height = self.gl, self.width, self.height
        gl.glBindFramebufferEXT(ZGL_READ_FRAMEBUFFER, self.drawn)
        gl.glBindFramebufferEXT(ZGL_DRAW_FRAMEBUFFER, self.reduced)
        gl.glBlitFramebufferEXT(0, 0, SAMPLES * width, SAMPLES * height, 0, 0, width, height,
                                ZGL_COLOR_BUFFER_BIT, ZGL_LINEAR)
        gl.glBindFramebufferEXT(ZGL_READ_FRAMEBUFFER, self.reduced)
        pixels = UnsignedCharBuffer(4 * width * height)
        gl.glReadPixels(0, 0, width, height, ZGL_RGBA, ZGL_UNSIGNED_BYTE, pixels)
        image = ZImage()
        image.setPixels(pixels, width, height)
        image.writeToFile(path)
        error = gl.glGetError()
        if error != ZGL_NO_ERROR:
            raise RuntimeError('OpenGL error 0x%04X' % error)


def function_table():
    """The host's OpenGL; an exception where there is none."""
    gl = ZHardwareRenderer.theRenderer().glFunctionTable()
    if not gl.extensionExists(kZGLext_frame_buffer_object):
        raise RuntimeError('this needs OpenGL with framebuffer objects')
    return gl


def paths_of_type(name):
    found = ZSelectionList()
    found.addNodesOfType(name)
    for i in range(found.length()):
        path = ZDagPath()
        found.getDagPath(i, path)
        yield path


def column_major(matrix):
    """A matrix for OpenGL. The host's vectors are rows, so its rows are OpenGL's columns."""
    return DoubleBuffer([matrix(row, column) for row in range(4) for column in range(4)])


def set_camera(gl, width, height):
    """Looks through the scene's first camera."""
    path = next(paths_of_type('camera'))
    field_of_view, near, far = [
        ZPlug(path.node(), name).asDouble()
        for name in ('horizontalFieldOfView', 'nearClip', 'farClip')]
    right = near * math.tan(math.radians(field_of_view) / 2)
    top = right * height / width
    gl.glMatrixMode(ZGL_PROJECTION)
    gl.glLoadIdentity()
    gl.glFrustum(-right, right, -top, top, near, far)
    gl.glMatrixMode(ZGL_MODELVIEW)
    gl.glLoadMatrixd(column_major(path.inclusiveMatrix().inverse()))


class Mesh(object):
    """The streams of a mesh, as a hardware renderer asks the host for them."""

    def __init__(self, path):
        wanted = ZGeometryRequirements()
        wanted.addPosition()
        wanted.addNormal()
        wanted.addTexCoord('')  # the first set
        geometry = ZGeometryManager.getGeometry(path, wanted)
        self.to_world = column_major(path.inclusiveMatrix())
        self.positions, self.normals, self.coordinates = [
            FloatBuffer(stream.data(), stream.elementSize() * stream.elementCount())
            for stream in (geometry.position(), geometry.normal(), geometry.texCoord(''))]
        arrays = [geometry.primitiveArray(i) for i in range(geometry.primitiveArrayCount())]
        self.triangles = [UnsignedIntBuffer(array.data(), array.elementCount())
                          for array in arrays]

    def draw(self, gl):
        arrays = [ZGL_VERTEX_ARRAY, ZGL_NORMAL_ARRAY]
        if len(self.coordinates):
            arrays.append(ZGL_TEXTURE_COORD_ARRAY)
        # OpenGL keeps addresses only: the buffers have to live until everything is drawn.
        gl.glVertexPointer(3, ZGL_FLOAT, 0, self.positions)
        gl.glNormalPointer(ZGL_FLOAT, 0, self.normals)
        gl.glTexCoordPointer(2, ZGL_FLOAT, 0, self.coordinates)
        for array in arrays:
            gl.glEnableClientState(array)
        gl.glPushMatrix()
        gl.glMultMatrixd(self.to_world)
        for corners in self.triangles:
            gl.glDrawElements(ZGL_TRIANGLES, len(corners), ZGL_UNSIGNED_INT, corners)
        gl.glPopMatrix()
        for array in arrays:
            gl.glDisableClientState(array)


def meshes():
    return [Mesh(path) for path in paths_of_type('mesh')]
