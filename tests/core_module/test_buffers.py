# SPDX-License-Identifier: MIT
"""Buffers and cells: bounds, conversions, ownership of the blocks, and pixels."""

import struct
import sys
import unittest

import _OpenQuil
import OpenQuil

core = vars(OpenQuil)
globals().update({name: core[name] for name in OpenQuil.__all__})

# The struct code of each integer buffer's items.
INTEGERS = {SignedCharBuffer: 'b', UnsignedCharBuffer: 'B', ShortBuffer: 'h',
            UnsignedShortBuffer: 'H', IntBuffer: 'i', UnsignedIntBuffer: 'I', LongBuffer: 'l',
            UnsignedLongBuffer: 'L'}
NUMBERS = dict(INTEGERS)
NUMBERS.update({FloatBuffer: 'f', DoubleBuffer: 'd'})
POINTERS = [CharPointerBuffer, UnsignedIntPointerBuffer, VoidPointerBuffer]


def limits(code):
    bits = 8 * struct.calcsize(code)
    return (0, 2 ** bits - 1) if code.isupper() else (-2 ** (bits - 1), 2 ** (bits - 1) - 1)


class Buffers(unittest.TestCase):
    def test_items(self):
        for cls, code in NUMBERS.items():
            buffer = cls(3)
            self.assertEqual((len(buffer), buffer.length(), list(buffer)[:]),
                             (3, 3, [0, 0, 0] if cls is not UnsignedCharBuffer else ['\0'] * 3))
            buffer[1] = 5
            buffer.set(2, 7)
            self.assertEqual([buffer[0], buffer.get(1), buffer[2]], [0, 5, 7])
            buffer.write(0, [3, 4])
            self.assertEqual(buffer.readBytes(0, 3), struct.pack('3' + code, 3, 4, 7))
            buffer.write(1, struct.pack('2' + code, 8, 9))
            self.assertEqual([buffer[i] for i in range(3)], [3, 8, 9])

    def test_characters_and_bytes_read_as_str(self):
        text = CharBuffer('abc')
        self.assertEqual((text[1], text.read(0, 3), text.readBytes(1, 2)), ('b', 'abc', 'bc'))
        text[0] = 'x'
        text.write(1, ['y', 'z'])
        self.assertEqual(text.read(0, 3), 'xyz')
        for wrong in (1, 'ab', '', u'a', None):
            self.assertRaises(TypeError, text.set, 0, wrong)
        self.assertEqual(UnsignedCharBuffer([1, 2, 255]).read(1, 2), '\x02\xff')

    def test_ranges(self):
        for cls, code in INTEGERS.items():
            low, high = limits(code)
            buffer = cls([low, high])
            self.assertEqual([buffer[0], buffer[1]], [low, high])
            for wrong in (low - 1, high + 1):
                self.assertRaises((OverflowError, TypeError), buffer.set, 0, wrong)
            for wrong in (1.5, 'x', None):
                self.assertRaises(TypeError, buffer.set, 0, wrong)

    def test_bounds(self):
        for cls in list(NUMBERS) + [CharBuffer] + POINTERS:
            buffer = cls(3)
            before = buffer.readBytes(0, 3)
            items = [buffer[0]] * 2
            for index in (-1, 3, 2 ** 62, -2 ** 62):
                self.assertRaises(IndexError, buffer.get, index)
                self.assertRaises(IndexError, buffer.set, index, buffer[0])
            for index in (-4, 3, 2 ** 62, -2 ** 62, 2 ** 70):
                self.assertRaises(IndexError, lambda: buffer[index])
                self.assertRaises(IndexError, buffer.__setitem__, index, buffer[0])
            for start, count in (0, 4), (3, 1), (-1, 1), (1, -1), (2, 2 ** 62), (2 ** 62, 2 ** 62):
                self.assertRaises(IndexError, buffer.read, start, count)
                self.assertRaises(IndexError, buffer.readBytes, start, count)
            for start in (-1, 2, 2 ** 62):
                self.assertRaises(IndexError, buffer.write, start, items)
            self.assertEqual(buffer.readBytes(0, 3), before)

    def test_wrong_data(self):
        for wrong in 5, u'ab', None:
            self.assertRaises(TypeError, IntBuffer(2).write, 0, wrong)
            self.assertRaises(TypeError, IntBuffer, object())
        self.assertRaises(ValueError, IntBuffer(2).write, 0, 'abc')
        for kind in DoubleBuffer, ZFloatArray:
            for length in -1, 2 ** 32, 2 ** 64:
                self.assertRaisesRegexp(OverflowError, 'a length is from 0', kind, length)

    def test_pointers(self):
        text, numbers = CharBuffer('hello'), UnsignedIntBuffer([1, 2])
        texts = CharPointerBuffer([text, None])
        self.assertIs(type(texts[0]), CharBuffer)
        self.assertEqual((texts[0].length(), texts[0].read(0, 5)), (5, 'hello'))
        self.assertIs(texts[1], None)
        self.assertFalse(texts[0].this.own())
        cells = UnsignedIntPointerBuffer(1)
        cells[0] = numbers
        cells[0][1] = 9
        self.assertEqual(numbers[1], 9)
        self.assertRaises(TypeError, cells.set, 0, text)
        anything = VoidPointerBuffer([text, numbers])
        self.assertEqual(int(anything[1]), int(numbers.this))
        self.assertRaises(TypeError, anything.set, 0, 'text')

    def test_copies_of_memory(self):
        for cls, code in NUMBERS.items():
            source = cls([1, 2, 3])
            untyped = VoidPointerBuffer([source])[0]
            for memory in (source, untyped):
                copy = cls(memory, 2)
                self.assertEqual(copy.readBytes(0, len(copy)), struct.pack('2' + code, 1, 2))
                self.assertNotEqual(int(copy.this), int(source.this))
                self.assertRaises(IndexError, cls, memory, 4)
            self.assertEqual(len(cls(None, 0)), 0)
            self.assertRaises(IndexError, cls, None, 1)
            self.assertRaises(TypeError, cls, 'text', 1)
            self.assertRaises(TypeError, cls, VoidPointerBuffer(1), 1)


class Ownership(unittest.TestCase):
    def test_only_own_blocks_are_freed(self):
        image = ZImage()
        image.create(2, 1, 4, _OpenQuil.ZImage_kFloat)
        image.writePixels(struct.pack('8f', *range(8)))
        pixels = image.floatPixels()
        self.assertIs(type(pixels), FloatBuffer)
        self.assertEqual(pixels.length(), -1)
        pixels.this.acquire()
        _OpenQuil.delete_FloatBuffer(pixels)
        self.assertFalse(pixels.this.own())
        pixels.this.acquire()
        del pixels
        self.assertEqual(image.floatPixels().read(0, 8), range(8))

    def test_memory_of_the_host_has_no_known_length(self):
        image = ZImage()
        image.create(2, 1)
        pixels = image.pixels()
        pixels.write(0, '12345678')
        self.assertEqual(image.readPixels(), '12345678')
        self.assertRaises(IndexError, pixels.read, 0, -1)
        self.assertRaises(TypeError, len, pixels)
        self.assertRaises(IndexError, lambda: pixels[-1])


class Pixels(unittest.TestCase):
    def test_colors(self):
        buffer = PixelBuffer(4)
        self.assertEqual(len(buffer), 4)
        buffer.fill(ZColor(0.5, 0.5, 0.5))
        buffer.setColors(1, ZColorArray([(1, 0, 0, 0.25)]))
        buffer.setColors(2, ZFloatVectorArray([(0, 1, 0)]))
        buffer.setColors(3, ZFloatVectorArray([(0, 0, 1)]), 0.75)
        expected = [(0.5, 0.5, 0.5, 1), (1, 0, 0, 0.25), (0, 1, 0, 1), (0, 0, 1, 0.75)]
        self.assertEqual([tuple(color) for color in buffer], expected)

    def test_bounds(self):
        buffer, colors = PixelBuffer(4), ZColorArray([(1, 1, 1)] * 3)
        for start in (-1, 2, 4, 2 ** 62, -2 ** 62):
            self.assertRaises(IndexError, buffer.setColors, start, colors)
        for index in (-1, 4, 2 ** 40):
            self.assertRaises(IndexError, buffer.pixels, index)
        self.assertEqual([tuple(color) for color in buffer], [(0, 0, 0, 0)] * 4)


if __name__ == '__main__':
    unittest.main(argv=sys.argv[:1])
