# SPDX-License-Identifier: MIT
"""What the operations of the core module come to, by the table operations.txt."""
import math
import os
import sys
import unittest

import _OpenQuil
import OpenQuil

FOLDER = os.path.dirname(os.path.abspath(__file__))
sys.path.insert(0, os.path.dirname(FOLDER))

import operation_table  # noqa: E402

names = dict(vars(OpenQuil), math=math, os=os, _OpenQuil=_OpenQuil)
Operations = operation_table.test_case(os.path.join(FOLDER, 'operations.txt'), names,
                                       OpenQuil.ZFileIO.newScene)

if __name__ == '__main__':
    unittest.main()
