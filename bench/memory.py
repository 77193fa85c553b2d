# -*- coding: utf-8 -*-
# SPDX-License-Identifier: MIT
"""Arrays, buffers and pixels, item by item and as memory, beside array.array and memcpy, in one run
of Python 2.7. Prints nanoseconds an item and microseconds a megabyte (2 ** 20 bytes), each the
least of many runs that take turns. The folder of the modules comes in PYTHONPATH."""
import array
import ctypes
import gc
import time

from OpenQuil import FloatBuffer, PixelBuffer, ZFloatArray, ZFloatVectorArray

MEGABYTE = 2 ** 20
COUNT = MEGABYTE // 4  # of floats
VECTORS = COUNT // 3
ROUNDS = 15

packed = array.array('f', range(COUNT))
vectors_packed = packed[:3 * VECTORS]
raw = packed.tostring()
buffer_, numbers, pixels = FloatBuffer(packed), ZFloatArray(packed), PixelBuffer(COUNT // 4)
vectors = ZFloatVectorArray(vectors_packed)
as_list = packed.tolist()
as_tuples = vectors[:]
target = ctypes.create_string_buffer(MEGABYTE)
view = memoryview(numbers)


def loop(items):
    for _ in items:
        pass


def each_index(items, count):
    for i in xrange(count):
        items[i]


def grouped(numbers):
    """What stands for vectors without the host: tuples of three."""
    return zip(*[iter(numbers)] * 3)


# What is done, with how many items, by a class of the host and by array.array.
ITEMS = [
    ('FloatBuffer[i]', COUNT, lambda: each_index(buffer_, COUNT),
     lambda: each_index(packed, COUNT)),
    ('ZFloatArray[i]', COUNT, lambda: each_index(numbers, COUNT),
     lambda: each_index(packed, COUNT)),
    ('for number in ZFloatArray', COUNT, lambda: loop(numbers), lambda: loop(packed)),
    ('ZFloatArray[:], a list', COUNT, lambda: numbers[:], packed.tolist),
    ('ZFloatArray(list)', COUNT, lambda: ZFloatArray(as_list), lambda: array.array('f', as_list)),
    ('for vector in ZFloatVectorArray', VECTORS, lambda: loop(vectors), None),
    ('for x, y, z in ZFloatVectorArray[:]', VECTORS, lambda: loop(vectors[:]),
     lambda: loop(grouped(vectors_packed))),
    ('ZFloatVectorArray(tuples)', VECTORS, lambda: ZFloatVectorArray(as_tuples),
     lambda: array.array('f', [n for each in as_tuples for n in each])),
    ('for r, g, b, a in PixelBuffer[:]', COUNT // 4, lambda: loop(pixels[:]), None),
]
# The same for a megabyte, beside memcpy.
MEMORY = [
    ('ZFloatArray(array.array)', lambda: ZFloatArray(packed)),
    ('ZFloatArray.write(0, array.array)', lambda: numbers.write(0, packed)),
    ('ZFloatArray.write(0, str)', lambda: numbers.write(0, raw)),
    ('ZFloatArray.readBytes', lambda: numbers.readBytes(0, COUNT)),
    ('memoryview(ZFloatArray).tobytes()', lambda: view.tobytes()),
    ('FloatBuffer.write(0, array.array)', lambda: buffer_.write(0, packed)),
    ('FloatBuffer.readBytes', lambda: buffer_.readBytes(0, COUNT)),
    ('PixelBuffer.write(0, array.array)', lambda: pixels.write(0, packed)),
    ('PixelBuffer.readBytes', lambda: pixels.readBytes(0, COUNT // 4)),
    ('array.array.tostring', packed.tostring),
]


def memcpy():
    ctypes.memmove(target, raw, MEGABYTE)


def seconds(work):
    start = time.time()
    work()
    return time.time() - start


def least(works):
    best = [float('inf')] * len(works)
    for _ in range(ROUNDS):
        best = [min(old, seconds(work)) if work else None for old, work in zip(best, works)]
    return best


def main():
    gc.disable()
    print('\n%-40s%9s%13s%9s' % ('nanoseconds an item', 'here', 'array.array', 'ratio'))
    for name, count, here, there in ITEMS:
        mine, other = least([here, there])
        beside = '%13.1f%9.2f' % (1e9 * other / count, mine / other) if there else ''
        print('%-40s%9.1f%s' % (name, 1e9 * mine / count, beside))
    print('\n%-40s%9s%13s%9s' % ('microseconds a megabyte', 'here', 'memcpy', 'ratio'))
    for name, work in MEMORY:
        mine, copy = least([work, memcpy])
        print('%-40s%9.0f%13.0f%9.2f' % (name, 1e6 * mine, 1e6 * copy, mine / copy))


main()
