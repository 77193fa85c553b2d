# SPDX-License-Identifier: MIT
"""Writes the scene's meshes to an OBJ file, in world space.

    quilhost MODEL.glb --python examples/read_geometry.py -- COPY.obj

Each mesh is read as a hardware renderer reads it: it tells which streams it wants, gets them side
by side in memory, and follows the index array into them.
"""
import struct
import sys

from OpenQuil import FloatBuffer, UnsignedIntBuffer, ZDagPath, ZPoint, ZSelectionList, ZVector
from OpenQuilRender import ZGeometryData, ZGeometryManager, ZGeometryRequirements

BUFFERS = {ZGeometryData.kFloat: FloatBuffer, ZGeometryData.kUnsignedInt32: UnsignedIntBuffer}


def elements(stream):
    """The elements of a stream as tuples; none when the mesh has no such stream."""
    width, count = stream.elementSize(), stream.elementCount()
    if not count:
        return []
    values = BUFFERS[stream.elementType()](stream.data(), width * count)
    return list(zip(*[iter(values)] * width))


def indices(geometry):
    """The corners of the triangles, three for each."""
    for i in range(geometry.primitiveArrayCount()):
        array = geometry.primitiveArray(i)
        for index in UnsignedIntBuffer(array.data(), array.elementCount()):
            yield index


def shortest(value):
    """The shortest text that reads back as the same 32-bit number."""
    for digits in range(6, 10):
        text = '%.*g' % (digits, value)
        if struct.pack('f', float(text)) == struct.pack('f', value):
            return text
    return repr(value)


class ObjFile(object):
    """Collects lines; equal ones of an object are written once."""

    def __init__(self):
        self.lines = []
        self.counts = {'v': 0, 'vt': 0, 'vn': 0}
        self.numbers = {}

    def begin(self, name):
        self.lines.append('o ' + name)
        self.numbers = {}

    def number(self, kind, values, key):
        """The number of a value line, counted from 1 through the file."""
        if (kind, key) not in self.numbers:
            self.lines.append(kind + ' ' + ' '.join(shortest(value) for value in values))
            self.counts[kind] += 1
            self.numbers[kind, key] = self.counts[kind]
        return self.numbers[kind, key]


def add_mesh(output, path):
    wanted = ZGeometryRequirements()
    wanted.addPosition()
    wanted.addNormal()
    wanted.addTexCoord('')  # the first set
    wanted.addComponentId()
    geometry = ZGeometryManager.getGeometry(path, wanted)
    # A point of the mesh is several vertices where normals or texture coordinates differ; they
    # have the same component id.
    points = [point for point, in elements(geometry.componentId())]
    positions = elements(geometry.position())
    normals = elements(geometry.normal())
    uvs = elements(geometry.texCoord(''))
    to_world = path.inclusiveMatrix()
    output.begin(path.fullPathName().split('|')[-1].encode('utf-8'))
    corners = []
    for vertex in indices(geometry):
        place = ZPoint(*positions[vertex]) * to_world
        normal = ZVector(*normals[vertex]).transformAsNormal(to_world)
        point = output.number('v', (place.x, place.y, place.z), points[vertex])
        uv = output.number('vt', uvs[vertex], uvs[vertex]) if uvs else ''
        direction = normal.x, normal.y, normal.z
        corners.append('%d/%s/%d' % (point, uv, output.number('vn', direction, direction)))
    for i in range(0, len(corners), 3):
        output.lines.append('f ' + ' '.join(corners[i:i + 3]))


def main(file_name):
    meshes = ZSelectionList()
    meshes.addNodesOfType('mesh')
    output = ObjFile()
    for i in range(meshes.length()):
        path = ZDagPath()
        meshes.getDagPath(i, path)
        add_mesh(output, path)
    with open(file_name, 'w') as stream:
        stream.write('\n'.join(output.lines) + '\n')


main(sys.argv[1])
