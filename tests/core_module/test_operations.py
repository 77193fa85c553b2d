# SPDX-License-Identifier: MIT
"""What the operations of the core module come to, by the table operations.txt."""
import math
import operator
import os
import sys
import unittest

import OpenQuil

FOLDER = os.path.dirname(os.path.abspath(__file__))
sys.path.insert(0, os.path.dirname(FOLDER))

import operation_table  # noqa: E402


def both(call):
    """A call's results for the two numbers that it fills."""
    cells = OpenQuil.UnsignedIntBuffer([77, 88]), OpenQuil.UnsignedIntBuffer([77, 88])
    call(*cells)
    return tuple(cell[0] for cell in cells)


def clean_up():
    OpenQuil.ZFileIO.newScene()
    OpenQuil.ZTime.setUIUnit(OpenQuil.ZTime.kFilm)
    OpenQuil.Frames.setRenderer('software')


names = dict(vars(OpenQuil), math=math, pi=math.pi, operator=operator, os=os, here=FOLDER,
             both=both)
Operations = operation_table.test_case(os.path.join(FOLDER, 'operations.txt'), names, clean_up)

if __name__ == '__main__':
    unittest.main()
