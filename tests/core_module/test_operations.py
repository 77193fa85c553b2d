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


def node(name):
    found, selection = OpenQuil.ZObject(), OpenQuil.ZSelectionList()
    selection.add(name)
    selection.getDependNode(0, found)
    return found


def path(name):
    found = OpenQuil.ZDagPath()
    OpenQuil.ZDagPath.getAPathTo(node(name), found)
    return found


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
             node=node, path=path, both=both)
Operations = operation_table.test_case(os.path.join(FOLDER, 'operations.txt'), names, clean_up)

if __name__ == '__main__':
    unittest.main()
