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

# A tent with a seam in its texture coordinates, and a flat triangle without any.
SCENE = """\
o tent
v -1.5 0.1 0.3333333
v 1.5 0.1 0.3333333
v 0 1234.567 -0.25
v 1.5 0.1 -1e-7
vt 0 0
vt 1 0
vt 0.1 0.9
vt 0.7 0.7
vn 0 0 1
vn 1 0 0
vn 0 0.6 0.8
f 1/1/1 2/2/1 3/3/3
f 2/4/2 4/2/2 3/3/3
o flat
v 0 0 7
v 1 0 7
v 0 1 7
vn 0 0 -1
f 7//4 6//4 5//4
"""


def triangles(text):
    """By object: for each corner the numbers of position, texture coordinates and normal."""
    values, objects = {'v': [], 'vt': [], 'vn': []}, {}
    for line in text.splitlines():
        kind, *words = line.split()
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
        with tempfile.TemporaryDirectory() as folder:
            scene, copy = (os.path.join(folder, name) for name in ('scene.obj', 'copy.obj'))
            with open(scene, 'w') as stream:
                stream.write(SCENE)
            subprocess.run([QUILHOST, scene, '--no-gl', '--python', EXAMPLE, '--', copy],
                           check=True, timeout=60)
            with open(copy) as stream:
                written, pools = triangles(stream.read())
        expected, own_pools = triangles(SCENE)
        self.assertEqual(written, expected)
        for pool in own_pools:  # points are not split at seams, and nothing is written twice
            self.assertEqual(sorted(pools[pool]), sorted(own_pools[pool]))


if __name__ == '__main__':
    unittest.main()
