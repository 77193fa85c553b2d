# SPDX-License-Identifier: MIT
"""Constructors, components, arithmetic and comparisons of the core module's values."""

import math
import sys
import unittest

import _OpenQuil
import OpenQuil

core = vars(OpenQuil)
globals().update({name: core[name] for name in OpenQuil.__all__})

VECTORS = [ZVector, ZFloatVector]
POINTS = [(ZPoint, ZVector), (ZFloatPoint, ZFloatVector)]
MATRICES = [ZMatrix, ZFloatMatrix]
VALUES = {ZVector: (0, 0, 0), ZFloatVector: (0, 0, 0), ZPoint: (0, 0, 0, 1),
          ZFloatPoint: (0, 0, 0, 1), ZColor: (0, 0, 0, 1), ZQuaternion: (0, 0, 0, 1),
          ZEulerRotation: (0, 0, 0)}


class Components(unittest.TestCase):
    def test_defaults_copies_and_sequences(self):
        for cls, default in VALUES.items():
            numbers = tuple(0.5 * i + 1 for i in range(len(default)))
            self.assertEqual(tuple(cls()), default)
            made = cls(*numbers)
            self.assertEqual(tuple(made), numbers)
            self.assertEqual(tuple(cls(made)), numbers)
            self.assertEqual(cls(made), made)
            if cls is not ZEulerRotation:
                self.assertEqual(tuple(cls(list(numbers))), numbers)
                self.assertEqual(eval(repr(made)), made)
                self.assertRaises(TypeError, cls, [1, 2])

    def test_index_and_length(self):
        for cls, default in VALUES.items():
            value, size = cls(), len(default)
            self.assertEqual(len(value), size)
            value[0] = 7
            value[-1] = 9
            self.assertEqual((value[0], value[size - 1], value[-size]), (7, 9, 7))
            for index in (size, -size - 1, 2 ** 40):
                self.assertRaises(IndexError, lambda: value[index])
                self.assertRaises(IndexError, value.__setitem__, index, 1)

    def test_comparison_with_other_types(self):
        for cls in list(VALUES) + MATRICES + [ZTime]:
            for other in (None, 3, 'text', ZObject()):
                self.assertFalse(cls() == other)
                self.assertTrue(cls() != other)


class Arithmetic(unittest.TestCase):
    def test_vectors_and_points(self):
        for cls in VECTORS:
            a, b = cls(1, 2, 3), cls(4, -5, 6)
            self.assertEqual(map(list, (a + b, a - b, -a, a * 2, 2 * a, a / 2, a ^ b)),
                             [[5, -3, 9], [-3, 7, -3], [-1, -2, -3], [2, 4, 6], [2, 4, 6],
                              [0.5, 1, 1.5], [27, 6, -13]])
            self.assertEqual(a * b, 4 - 10 + 18)
            self.assertRaises(TypeError, lambda: a + 1)
        for point, vector in POINTS:
            a, b = point(1, 2, 3), point(4, 6, 3)
            self.assertEqual(list(b - a), [3, 4, 0])
            self.assertIs(type(b - a), vector)
            self.assertEqual(list(a + vector(1, 1, 1)), [2, 3, 4, 1])

    def test_matrices(self):
        for cls, point in zip(MATRICES, (ZPoint, ZFloatPoint)):
            moved = cls([1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 5, 6, 7, 1])
            rows = [[2, 0, 0, 0], [0, 4, 0, 0], [0, 0, 8, 0], [0, 0, 0, 1]]
            scaled = cls(rows)
            self.assertEqual(list(scaled), rows)
            self.assertEqual(moved(3, 1), 6)
            # The left factor acts first.
            self.assertEqual(list(point(1, 1, 1) * (moved * scaled)), [12, 28, 64, 1])
            self.assertEqual((moved * scaled)[3], [10, 24, 56, 1])
            self.assertEqual(eval(repr(moved)), moved)
            for row, column in ((4, 0), (0, 4), (-5, 0)):
                self.assertRaises(IndexError, moved.getElement, row, column)
                self.assertRaises(IndexError, moved.setElement, row, column, 1)
            for wrong in range(15), [[1, 2, 3]] * 4:
                self.assertRaises(ValueError, cls, wrong)

    def test_lengths_and_normals(self):
        for cls in VECTORS:
            self.assertEqual((cls(2, 3, 6).length(), cls().normal()), (7, cls()))
            self.assertTrue(cls(0, 3, 4).normal().isEquivalent(cls(0, 0.6, 0.8)))
            for size in 1e-30, 1e30:  # their squares are out of range of floats
                self.assertAlmostEqual(cls(0, 3 * size, 4 * size).length() / size, 5, 5)
                self.assertAlmostEqual(cls(0, 3 * size, 4 * size).normal()[1], 0.6, 6)

    def test_inverses_and_weights(self):
        for cls, (point, vector) in zip(MATRICES, POINTS):
            move = cls([2, 0, 0, 0, 0, 4, 0, 0, 0, 0, 8, 0, 1, 2, 3, 1])
            back = cls([.5, 0, 0, 0, 0, .25, 0, 0, 0, 0, .125, 0, -.5, -.5, -.375, 1])
            lens = cls([1, 0, 0, 0, 0, 1, 0, 0, 0, 0, -1, -1, 0, 0, -2, 0])
            flat = cls([1, 2, 0, 0, 2, 4, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1])
            self.assertTrue(move.inverse().isEquivalent(back))
            self.assertTrue((lens * lens.inverse()).isEquivalent(cls()))
            self.assertEqual((move.det4x4(), lens.det3x3(), move.transpose()(0, 3)), (64, -1, 1))
            self.assertTrue(flat.isSingular() and flat.inverse() == cls())
            self.assertEqual(vector(1, 1, 1) * move, vector(2, 4, 8))  # a direction does not move
            self.assertTrue(vector(1, 1, 0).transformAsNormal(move).isEquivalent(
                vector(2, 1, 0).normal()))
            seen = point(1, 2, -2) * lens
            self.assertEqual(tuple(seen), (1, 2, 0, 2))
            self.assertEqual(seen - point(0, 0, 0), vector(0.5, 1, 0))
            self.assertEqual(seen + vector(1, 1, 1), point(1.5, 2, 1))
            seen.cartesianize()
            self.assertEqual(tuple(seen), (0.5, 1, 0, 1))

    def test_boxes(self):
        box = ZBoundingBox()
        box.expand(ZBoundingBox())
        self.assertTrue(box.isEmpty())
        for corner in (1, 5, 2), (3, 2, 8):
            box.expand(ZPoint(*corner))
        self.assertEqual((box.min(), box.max()), (ZPoint(1, 2, 2), ZPoint(3, 5, 8)))
        self.assertEqual([box.contains(ZPoint(3, 5, z)) for z in (8, 8.01)], [True, False])
        beside = ZBoundingBox(ZPoint(4, 2, 2), ZPoint(5, 5, 5))
        self.assertEqual([box.intersects(beside, gap) for gap in (0.5, 1)], [False, True])
        box.transformUsing(ZQuaternion(math.pi / 2, ZVector(0, 0, 1)).asMatrix())
        self.assertTrue(box.min().isEquivalent(ZPoint(-5, 1, 2)))
        self.assertTrue(box.max().isEquivalent(ZPoint(-2, 3, 8)))

    def test_colors_and_times(self):
        a, b = ZColor(0.5, 0.25, 1, 0.5), ZColor(0.5, 0.5, 0.5)
        self.assertEqual(map(list, (a + b, a * b, 2 * a)),
                         [[1, 0.75, 1.5, 0.5], [0.25, 0.125, 0.5, 0.5], [1, 0.5, 2, 0.5]])
        second = ZTime(1, _OpenQuil.ZTime_kSeconds)
        film = ZTime(24, _OpenQuil.ZTime_kFilm)
        self.assertEqual(second, film)
        self.assertEqual((second + film).value(), 2)
        self.assertEqual((film - 4).value(), 20)
        self.assertTrue(second < film + 1 and film + 1 > second and second <= film)
        self.assertEqual(repr(film), 'ZTime(24.0, 6)')


class Rotations(unittest.TestCase):
    def test_quaternions(self):
        around_z, around_x = [ZQuaternion(math.pi / 2, ZVector(*axis))
                              for axis in ((0, 0, 2), (1, 0, 0))]
        turn = ZMatrix([0, 1, 0, 0, -1, 0, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1])
        self.assertTrue(around_z.asMatrix().isEquivalent(turn))
        # x to y around z, then y to z around x.
        self.assertTrue(ZVector(1, 0, 0).rotateBy(around_z * around_x).isEquivalent(
            ZVector(0, 0, 1)))
        self.assertTrue(ZQuaternion(around_x.asMatrix()).isEquivalent(around_x))
        self.assertTrue((around_x * around_x.inverse()).isEquivalent(ZQuaternion()))

    def test_euler_is_a_product_of_axis_rotations(self):
        def about(axis, angle):
            c, s = math.cos(angle), math.sin(angle)
            m = ZMatrix()
            j, k = (axis + 1) % 3, (axis + 2) % 3
            for row, column, value in ((j, j, c), (j, k, s), (k, j, -s), (k, k, c)):
                m.setElement(row, column, value)
            return m
        angles = (0.3, -0.7, 1.1)
        for name in ('XYZ', 'YZX', 'ZXY', 'XZY', 'YXZ', 'ZYX'):
            order = getattr(_OpenQuil, 'ZEulerRotation_k' + name)
            expected = ZMatrix()
            for letter in name:
                axis = 'XYZ'.index(letter)
                expected = expected * about(axis, angles[axis])
            rotation = ZEulerRotation(*(angles + (order,)))
            self.assertTrue(rotation.asMatrix().isEquivalent(expected), name)
            back = _OpenQuil.ZEulerRotation_decompose(expected, order)
            self.assertTrue(back.isEquivalent(rotation), name)
            # With the second axis at a right angle the angles are not unique, the rotation is.
            for sign in (1, -1):
                locked = list(angles)
                locked['XYZ'.index(name[1])] = sign * math.pi / 2
                locked = ZEulerRotation(*(locked + [order]))
                back = _OpenQuil.ZEulerRotation_decompose(locked.asMatrix(), order)
                self.assertTrue(back.asMatrix().isEquivalent(locked.asMatrix(), 1e-7), name)


if __name__ == '__main__':
    unittest.main(argv=sys.argv[:1])
