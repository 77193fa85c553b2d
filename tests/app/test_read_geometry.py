# SPDX-License-Identifier: MIT
"""Runs the example that reads a scene's geometry and writes it to an OBJ file, and compares the
file's triangles with those of the scene file, number by number."""
import os
import subprocess
import sys
import tempfile
import unittest

QUILHOST, EXAMPLE = (os.path.abspath(path) for path in sys.argv[1:3])
del sys.argv[1:3]
SCENE = os.path.join(os.path.dirname(os.path.abspath(__file__)), 'tent.obj')


def triangles(text):
    """By object: for each corner the numbers of position, texture coordinates and normal."""
    values, objects = {'v': [], 'vt': [], 'vn': []}, {}
    for line in text.splitlines():
        kind, *words = line.split()
        if kind == '#':
            continue
        if kind == 'o':
            current = objects.setdefault(words[0], [])
        elif kind == 'f':
            current.append([[values[pool][int(index) - 1] if index else None
                             for pool, index in zip(('v', 'vt', 'vn'), corner.split('/'))]
                            for corner in words])
        else:
            values[kind].append([float(word) for word in words])
    return objects, values


class ReadGeometry(unittest.TestCase):
    def test_copy_has_the_triangles_of_the_scene(self):
        with open(SCENE) as stream:
            expected, own_pools = triangles(stream.read())
        with tempfile.TemporaryDirectory() as folder:
            copy = os.path.join(folder, 'copy.obj')
            subprocess.run([QUILHOST, SCENE, '--no-gl', '--python', EXAMPLE, '--', copy],
                           check=True, timeout=60)
            with open(copy) as stream:
                written, pools = triangles(stream.read())
        self.assertEqual(written, expected)
        for pool in own_pools:  # points are not split at seams, and nothing is written twice
            self.assertEqual(sorted(pools[pool]), sorted(own_pools[pool]))


if __name__ == '__main__':
    unittest.main()
