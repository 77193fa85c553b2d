# SPDX-License-Identifier: MIT
"""Odd objects, each with the few facts that decide which kinds of arguments take it."""
import ctypes
import sys
import types
import weakref

import harness
from harness import module

import OpenQuil
import OpenQuilRender


class Item(object):
    """`record`: the type of the pointer object behind it, if any; `null`: a null pointer; `truth`,
    `text`: whether it has one; `dangling`: what it points to is gone; `good`: is taken where it is
    given."""

    def __init__(self, label, value, record=None, null=False, truth=True, text=True,
                 dangling=False, good=False):
        self.expendable = False  # whether it may be deleted
        self.needs = frozenset()  # the items that it points into
        self.label, self.value, self.null = label, value, null
        self.record = record and harness.mangled(record)
        self.truth, self.text, self.dangling, self.good = truth, text, dangling, good


class BufferItem(Item):
    """Memory: its text is that of its bytes, which calls change, or own from then on."""

    @property
    def text(self):
        try:
            self.value.readBytes(0, len(self.value)).decode('utf-8')
            return self.value.thisown
        except UnicodeDecodeError:
            return False

    @text.setter
    def text(self, _):
        pass


kept = []  # what a weak proxy refers to


def reenter(*_):
    """What a hostile method does: calls of its own in the middle of another one."""
    module.ZRenderUtil_relativeFileName(u're-entered')
    try:
        module.ZRenderView_setDrawTileBoundary(NoTruth())
    except TypeError:
        return True
    raise AssertionError('a truth value where there is none')


def failing(error):
    def method(*_):
        raise error
    return method


def made(name, bases, **methods):
    """An instance of a class with these methods."""
    make = types.ClassType if bases == () else type
    return make(name, bases, methods)()


class NoTruth(object):
    __nonzero__ = failing(KeyError('no truth value'))


class Holder(object):
    def __init__(self, this):
        self.this = this


class DyingText(unicode):
    """The text of another object: it dies inside the reader."""

    def __del__(self):
        reenter()


class BadDeath(object):
    def __del__(self):
        reenter()
        raise KeyError('no death')


def pointer_items():
    pixel, image = module.new_RV_PIXEL(), OpenQuil.ZImage()
    gone = module.new_RV_PIXEL()
    module.delete_RV_PIXEL(gone)
    disowned = OpenQuilRender.RV_PIXEL()
    disowned.this.disown()
    kept.append(disowned)
    looping, knot = Holder(None), Holder(None)
    looping.this = looping
    knot.this = Holder(Holder(knot))
    circle = [harness.placeholder('ZImage') for _ in range(2)]
    for i in 0, 1:  # a chain that comes back cannot be made by append
        ctypes.pythonapi.Py_IncRef(ctypes.py_object(circle[1 - i]))
        harness.PointerObject.from_address(id(circle[i])).next = id(circle[1 - i])
    classic = types.ClassType('Classic', (), {'this': pixel})()
    dead = weakref.proxy(Holder(None))
    pixels = {'record': 'RV_PIXEL'}
    yield Item('RV_PIXEL', pixel, **pixels)
    yield Item('proxy', disowned, **pixels)
    yield Item('proxy of a proxy', Holder(Holder(disowned)), **pixels)
    yield Item('classic instance with this', classic, **pixels)
    # The interpreter asks a weak proxy's referent for __unicode__ and for nothing else.
    yield Item('weak proxy', weakref.proxy(disowned), text=False, **pixels)
    yield Item('deleted RV_PIXEL', gone, dangling=True, **pixels)
    yield Item('null RV_PIXEL', harness.pointer('RV_PIXEL', 0), null=True, **pixels)
    yield Item('core image', image, record='ZImage')
    yield Item('bare core image', image.this, record='ZImage')
    yield Item('void', harness.placeholder('void'), record='void')
    for record in ('double', 'float', 'int', 'unsigned int', 'short', 'unsigned short', 'char',
                   'unsigned char', 'signed char', 'long'):
        buffer_class = getattr(OpenQuil, record.title().replace(' ', '') + 'Buffer')
        yield BufferItem(record, buffer_class(64), record=record)
    yield Item('circular chain', circle[0], record='ZImage', dangling=True)
    yield Item('its own this', looping)
    yield Item('this in a circle', knot)
    yield Item('foreign this', Holder(5))
    yield Item('uninitialised proxy', OpenQuilRender.RV_PIXEL.__new__(OpenQuilRender.RV_PIXEL))
    yield Item('dead weak proxy', dead, truth=False, text=False)


def scalar_items():
    for power in 7, 8, 15, 16, 31, 32, 63, 64:
        for value in 2 ** power - 1, 2 ** power, -2 ** power, -2 ** power - 1:
            yield Item(repr(value), value)
    for value in (True, 0, -1, 5L, -1L, 10 ** 400, -10 ** 400, 0.5, -0.0, 3.4028234663852886e38,
                  3.5e38, -1e308, float('inf'), float('-inf'), float('nan'), 1j):
        yield Item(repr(value)[:20], value)
    for kind in int, long, float:
        methods = dict.fromkeys(('__int__', '__long__', '__float__', '__index__'),
                                failing(KeyError('no number')))
        yield Item('odd ' + kind.__name__, made('Odd', (kind,), **methods))


def text_items():
    for value in (u'', u'\ud800', u'\udc00\ud800', u'\U0010ffff', u'a\0b', u'x' * 1023,
                  u'x' * 1024, '', 'a\0b', '%s%n', 'x' * 5000, bytearray('ab\0'), buffer('buffer')):
        yield Item(repr(value)[:20], value)
    for value in '\xff\xfe', bytearray('\xff'):
        yield Item(repr(value), value, text=False)
    yield Item('memoryview', memoryview('abc'))
    yield Item('odd str', made('Odd', (str,), __str__=failing(KeyError('no text'))))
    yield Item('odd unicode', made('Odd', (unicode,), __unicode__=failing(KeyError('no text'))))
    yield Item('text that dies', made('Odd', (object,), __unicode__=lambda _: DyingText('dying')))
    yield Item('text of another type', made('Odd', (object,), __unicode__=lambda _: 5), text=False)
    yield Item('module as text', made('Odd', (object,), __str__=lambda _: '\xff'), text=False)


def container_items():
    circular = []
    circular.append(circular)
    for value in ([], [u'a', 7.5, circular], [7.5, 'a', None], ['\xff'], (None,), (), {}, set([1]),
                  xrange(3), circular, (i for i in ()), object(), type, len, sys, lambda: None,
                  Ellipsis, module.ZRenderUtil_noise1, types.ClassType('Classic', (), {}), Exception('x')):
        yield Item(repr(value)[:24], value)


def method_items():
    """Every special method that a conversion may reach, raising and calling back."""
    for bases in (), (object,):
        kind = 'new-style ' if bases else 'classic '
        yield Item(kind + 'instance', made('Plain', bases))
        for name, facts in (
                ('__nonzero__', {'truth': False}), ('__unicode__', {'text': False}),
                ('__len__', {'truth': False}), ('__str__', {'text': False}), ('__int__', {}),
                ('__float__', {}), ('__index__', {}), ('__long__', {}), ('__del__', {}),
                ('__repr__', {'text': False}), ('__call__', {}), ('__coerce__', {})):
            for error in KeyError(u'\ud800'), SystemExit(3):
                method = failing(error) if name != '__del__' else BadDeath.__dict__['__del__']
                yield Item('%s%s raises %s' % (kind, name, type(error).__name__),
                           made('Raising', bases, **{name: method}), **facts)
        yield Item(kind + '__nonzero__ re-enters', made('Again', bases, __nonzero__=reenter))
        yield Item(kind + '__unicode__ re-enters',
                   made('Again', bases, __unicode__=lambda _: reenter() and u'text'))
        yield Item(kind + '__len__ is negative', made('Again', bases, __len__=lambda _: -1),
                   truth=False)
    recursive = made('Again', (object,), __unicode__=lambda self: (
        module.ZRenderUtil_relativeFileName(self)), __nonzero__=lambda self: (
            module.ZRenderView_setDrawTileBoundary(self)))
    yield Item('recursion', recursive, truth=False)
    yield Item('the pointer objects\' name', made('SwigPyObject', (object,)))
    yield Item('the pointer objects\' class', made(
        'Liar', (object,), __class__=property(lambda _: type(harness.placeholder('ZImage')))))
    yield Item('__getattribute__ raises', made(
        'Raising', (object,), __getattribute__=failing(KeyError('no attribute'))))
    yield Item('no dictionary, __getattr__ raises', made(
        'Raising', (object,), __slots__=(), __getattr__=failing(KeyError('no attribute'))))
    yield Item('classic __getattr__ raises', made(
        'Raising', (), __getattr__=failing(KeyError('no attribute'))), truth=False, text=False)


def corpus():
    items = [Item('None', None, null=True, text=False)]
    for family in pointer_items, scalar_items, text_items, container_items, method_items:
        items += family()
    return items
