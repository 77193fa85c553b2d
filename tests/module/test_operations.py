# SPDX-License-Identifier: MIT
"""What the operations of the render module come to, by the tables in the folder operations. What
these name beside the classes of both modules is defined here."""
import collections
import ctypes
import math
import os
import re
import struct
import sys
import unittest
import zlib

import harness
import OpenQuil
import OpenQuilRender
from OpenQuil import ZFileIO, ZPlug, ZSelectionList, ZStringArray

sys.path.insert(0, os.path.dirname(harness.FOLDER))

import operation_table  # noqa: E402
from operation_table import node, path  # noqa: E402, F401: for the scripts that rows run, too


TRIANGLE = '''{"asset": {"version": "2.0"},
"buffers": [{"byteLength": 36, "uri": "data:application/octet-stream;base64,%s"}],
"bufferViews": [{"buffer": 0, "byteLength": 36}],
"accessors": [{"bufferView": 0, "componentType": 5126, "count": 3, "type": "VEC3"}],
"meshes": [{"primitives": [{"attributes": {"POSITION": 0}}]}],'''


def plug(name):
    owner, attribute = name.rsplit('.', 1)
    return ZPlug(node(owner), attribute)


def names(found):
    """The names of what is in a selection list, or of the nodes or paths in an array."""
    listed = found
    if not isinstance(found, ZSelectionList):
        listed = ZSelectionList()
        for each in found:
            listed.add(each)
    texts = ZStringArray()
    listed.getSelectionStrings(texts)
    return [text.lstrip('|') for text in texts]


def write(folder, name, text):
    with open(os.path.join(folder, name), 'wb') as file:
        file.write(text)


def open_scene(folder, text, layers='{}'):
    """Opens an OBJ file of the text, beside which lies a layer file."""
    write(folder, 'room.layers.json', layers)
    write(folder, 'room.obj', text)
    ZFileIO.open(os.path.join(folder, 'room.obj'))


def open_gltf(folder, members, layers='{}'):
    """The same with a glTF file, whose mesh 0 has the corners 0 0 0, 1 0 0 and 0 1 0."""
    corners = struct.pack('9f', 0, 0, 0, 1, 0, 0, 0, 1, 0).encode('base64').replace('\n', '')
    write(folder, 'room.layers.json', layers)
    write(folder, 'room.gltf', TRIANGLE % corners + members + '}')
    ZFileIO.open(os.path.join(folder, 'room.gltf'))


def floats(buffer, count):
    """Numbers of memory whose length the buffer does not know."""
    return [buffer[i] for i in range(count)]


def memory(address, kind, count):
    """Numbers of a C type, such as 'int16', at a typed or untyped pointer."""
    return list((getattr(ctypes, 'c_' + kind) * count).from_address(int(address)))


def native_renderer(name, draw):
    """A viewport renderer of native code, which its user deletes, and what has to live as long: it
    calls the function with the description of what is to be drawn, for the flat functions."""
    handed = ctypes.CFUNCTYPE(None, ctypes.c_void_p)(
        lambda address: draw(harness.pointer('ZRenderingInfo', address)))
    native = ctypes.CDLL(os.environ['NATIVE_PROCEDURES'])
    native.make_renderer.restype = ctypes.c_void_p
    return harness.pointer('ZViewportRenderer', native.make_renderer(name, handed)), handed


def clean_up():
    """Leaves no picture open that a failure left, and no scene."""
    try:
        OpenQuilRender.ZRenderView.endRender()
    except RuntimeError:
        pass
    ZFileIO.newScene()


shared = dict(vars(OpenQuil), collections=collections, flat=harness.module, math=math, os=os, re=re,
              struct=struct, zlib=zlib, **vars(OpenQuilRender))
shared.update((each.__name__, each) for each in (
    floats, harness.run, memory, names, native_renderer, open_gltf, open_scene, plug, write))
TABLES = os.path.join(harness.FOLDER, 'operations')
for _name in sorted(os.listdir(TABLES)):
    _title = os.path.splitext(_name)[0].title()
    globals()[_title] = operation_table.test_case(os.path.join(TABLES, _name), shared,
                                                  clean_up)

if __name__ == '__main__':
    unittest.main()
