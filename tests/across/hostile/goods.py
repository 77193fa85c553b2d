# SPDX-License-Identifier: MIT
"""Good values for all declared types, and which calls a host survives."""
import harness
from rows import ANYTHING, CHARACTERS, GL_DATA, NUMBERS, STRINGS, native_of, pointee

import OpenQuil
import OpenQuilRender
from corpus import Item

# Who gives shared shapes back must not use them any more: which argument is given back.
GIVES_BACK = {'ZGeometryManager_dereferenceDefaultGeometry': 0,
              'ZHardwareRenderer_dereferenceGeometry': 1}


def from_scene(name, get, kind):
    """What the selection list says of a node of the scene."""
    nodes, found = OpenQuil.ZSelectionList(), kind()
    nodes.add(name)
    getattr(nodes, get)(0, found)
    return found


# What is not simply constructed: from the module of the proxy classes.
MADE = {
    'ZObject': lambda _: from_scene('ballPaint', 'getDependNode', OpenQuil.ZObject),
    'ZDagPath': lambda _: from_scene('ball', 'getDagPath', OpenQuil.ZDagPath),
    'ZHardwareRenderer': lambda m: m.ZHardwareRenderer.theRenderer(),
    'ZGLFunctionTable': lambda m: m.ZHardwareRenderer.theRenderer().glFunctionTable(),
    'ZGeometryData': lambda m: m.ZGeometryData('data', 1, 0, 3, 4, None, True),
    'ZGeometryList': lambda m: m.ZGeometryManager.referenceDefaultGeometry(
        1, m.ZGeometryRequirements()),
    'ZGeometry': lambda m: MADE['ZGeometryList'](m).geometry(0),
    'ZGeometryPrimitive': lambda m: MADE['ZGeometry'](m).primitiveArray(0),
    'ZSwatchRenderBase': lambda m: m.ZSwatchRenderBase(OpenQuil.ZObject(), OpenQuil.ZObject(), 8),
    'ZUniformParameter': lambda m: m.ZUniformParameter('name', 3, 0),
    'ZVaryingParameter': lambda m: m.ZVaryingParameter('name', 1),
}
# What is made of numbers: of one number all over.
FILLED = {
    'ZTime': lambda x: OpenQuil.ZTime(x),
    'ZColor': lambda x: OpenQuil.ZColor(x, x, x),
    'ZFloatVector': lambda x: OpenQuil.ZFloatVector(x, x, x),
    'ZFloatPoint': lambda x: OpenQuil.ZFloatPoint(x, x, x),
    'ZFloatMatrix': lambda x: OpenQuil.ZFloatMatrix() * x,
    'ZFloatArray': lambda x: OpenQuil.ZFloatArray([x]),
    'ZDoubleArray': lambda x: OpenQuil.ZDoubleArray([x]),
    'ZFloatVectorArray': lambda x: OpenQuil.ZFloatVectorArray([(x, x, x)]),
    'ZFloatPointArray': lambda x: OpenQuil.ZFloatPointArray([(x, x, x)]),
}
ODD_NUMBERS = float('nan'), 3e38, -1e30, 1e-40
BUFFERS = {'void *': 'VoidPointer', 'p_void': 'VoidPointer', 'p_char': 'CharPointer',
           'p_unsigned int': 'UnsignedIntPointer',
           'ZImageFileInfo::ZHwTextureType': 'ZHwTextureType',
           'ZHardwareRenderer::BufferPixelFormat': 'BufferPixelFormat'}


class Goods(object):
    """Makes good values by declared type. What cannot be made by a script is a placeholder."""

    def __init__(self):
        self.kept = {}
        self.placeholders = set()

    def make(self, declared):
        if declared == 'list':
            return []
        if declared in STRINGS or declared in CHARACTERS:
            return 'text'
        if declared in ANYTHING or declared in GL_DATA:
            return None
        if native_of(declared) in NUMBERS:
            return 1
        try:
            return self.construct(pointee(declared))
        except (AttributeError, TypeError):
            self.placeholders.add(declared)
            return harness.placeholder(pointee(declared))

    def construct(self, name):
        buffer_name = BUFFERS.get(name, name.title().replace(' ', '')) + 'Buffer'
        if hasattr(OpenQuil, buffer_name):
            return getattr(OpenQuil, buffer_name)(1024)
        if name in FILLED:
            return FILLED[name](1)
        if name in MADE:
            return MADE[name](OpenQuilRender) or self.fail()
        return (getattr(OpenQuilRender, name, None) or getattr(OpenQuil, name))()

    def fail(self):
        raise TypeError('not to be had from this host')

    def keep(self, declared):
        if declared not in self.kept:
            self.kept[declared] = self.item(declared)
        return self.kept[declared]

    def item(self, declared):
        return Item('good', self.make(declared), good=True)

    @staticmethod
    def filled(name):
        """Host objects of odd numbers."""
        if name in FILLED:
            for number in ODD_NUMBERS:
                yield Item('%s of %r' % (name, number), FILLED[name](number), record=name)


def owns(value):
    bare = getattr(value, 'this', value)
    return bare.own() or bool(bare.next() and owns(bare.next()))


def may_call(row, items, goods):
    """Whether a host survives a call whose arguments are all taken. A null host always does; a
    real one wants the object of a method, takes what it is told is memory for memory, and has no
    use for pointers to objects that are gone or never were."""
    if row.is_destructor:
        return items[0].null or items[0].expendable and owns(items[0].value)
    if row.null_host:
        return True
    if row.name in GIVES_BACK and not items[GIVES_BACK[row.name]].null:
        return False
    return not any(
        item.dangling or declared in goods.placeholders or
        declared in ('void *', 'void const *') and item.value is not None or
        position == 0 and row.is_method and item.null and '*' in declared
        for least, most, types in row.cases if least <= len(items) <= most
        for position, (declared, item) in enumerate(zip(types, items)))
