"""No call gains or loses references, whether it succeeds or fails, and results and exceptions
never come together."""

import gc
import sys
import unittest

import _OpenQuil
from proxies import make_proxies

core = make_proxies(_OpenQuil)

ROUNDS = 200


class Token(object):
    """An argument that fits nowhere."""


def arguments_by_function():
    vector, values = core['ZFloatVector'](1, 2, 3), (1.0, 2.0, 3.0)
    array = core['ZFloatVectorArray']([values, values])
    texts = core['ZStringArray']([u'a', u'b'])
    buffer, cells = core['FloatBuffer']([1, 2, 3]), core['CharPointerBuffer'](1)
    data, word = 'x' * 12, u'a longer text'
    text, pixels = core['ZString'](word), core['PixelBuffer'](2)
    image = core['ZImage']()
    image.create(1, 3)
    token, index = Token(), 10 ** 6
    return [
        (_OpenQuil.new_ZVector, (values,)), (_OpenQuil.new_ZVector, (token,)),
        (_OpenQuil.new_ZFloatVectorArray, ([values, vector],)),
        (_OpenQuil.new_ZFloatVectorArray, ([values, token],)),
        (_OpenQuil.ZFloatVector___add__, (vector, token)),
        (_OpenQuil.ZFloatVector___eq__, (vector, token)),
        (_OpenQuil.ZFloatVector___getitem__, (vector, index)),
        (_OpenQuil.ZFloatVector___iter__, (vector,)), (_OpenQuil.ZFloatVector___repr__, (vector,)),
        (_OpenQuil.ZFloatVectorArray_append, (core['ZFloatVectorArray'](), vector)),
        (_OpenQuil.ZFloatVectorArray_append, (array, token)),
        (_OpenQuil.ZFloatVectorArray___getitem__, (array, 1)),
        (_OpenQuil.ZFloatVectorArray___setitem__, (array, index, vector)),
        (_OpenQuil.ZFloatVectorArray___repr__, (array,)),
        (_OpenQuil.ZStringArray___iter__, (texts,)), (_OpenQuil.ZStringArray_join, (texts, word)),
        (_OpenQuil.new_FloatBuffer, (list(values),)), (_OpenQuil.new_FloatBuffer, (token,)),
        (_OpenQuil.FloatBuffer_read, (buffer, 0, 3)), (_OpenQuil.FloatBuffer_read, (buffer, 0, index)),
        (_OpenQuil.FloatBuffer_write, (buffer, 0, data)),
        (_OpenQuil.FloatBuffer_write, (buffer, 0, [1.0, token])),
        (_OpenQuil.CharPointerBuffer_set, (cells, 0, None)),
        (_OpenQuil.CharPointerBuffer_get, (cells, 0)),
        (_OpenQuil.PixelBuffer_pixels, (pixels, 1)), (_OpenQuil.PixelBuffer_pixels, (pixels, index)),
        (_OpenQuil.PixelBuffer_setColors, (pixels, 0, array, 0.5)),
        (_OpenQuil.new_ZString, (word,)), (_OpenQuil.new_ZString, (None,)),
        (_OpenQuil.ZString___getitem__, (text, 1)), (_OpenQuil.ZString___repr__, (text,)),
        (_OpenQuil.ZImage_writePixels, (image, data)), (_OpenQuil.ZImage_writePixels, (image, 'x')),
        (_OpenQuil.ZImage_readPixels, (image,)),
    ]


def attempt(function, arguments):
    try:
        result = function(*arguments)
    except Exception as error:
        sys.exc_clear()
        return type(error)
    # A bare new object has no other owner.
    if function.__name__.startswith('new_'):
        getattr(_OpenQuil, 'delete_' + function.__name__[4:])(result)
    return None


def watched(arguments):
    """The arguments, what is in them, and the singletons that results are made of."""
    objects = [None, NotImplemented, True, False, _OpenQuil]
    for argument in arguments:
        objects.append(argument)
        objects += list(argument) if isinstance(argument, (list, tuple)) else []
        if hasattr(argument, 'this'):
            objects.append(argument.this)
    return objects


class References(unittest.TestCase):
    def test_balanced(self):
        failures = 0
        for function, arguments in arguments_by_function():
            objects = watched(arguments)
            outcome = attempt(function, arguments)
            before, alive = [sys.getrefcount(item) for item in objects], len(gc.get_objects())
            for _ in range(ROUNDS):
                attempt(function, arguments)
            self.assertLess(len(gc.get_objects()) - alive, ROUNDS // 2, function.__name__)
            after = [sys.getrefcount(item) for item in objects]
            for item, old, new in zip(objects, before, after):
                # A few come and go with the test itself; a leak shows in every round.
                self.assertLess(abs(new - old), ROUNDS // 2, (function.__name__, outcome, item))
            failures += outcome is not None
        self.assertGreater(failures, 10)


if __name__ == '__main__':
    unittest.main(argv=sys.argv[:1])
