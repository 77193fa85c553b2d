# SPDX-License-Identifier: MIT
"""Tests of render scripts."""
import unittest
from typing import List, Text, Tuple

class PictureTest(unittest.TestCase):
    """A test case that renders the scene and compares what came of it with pictures in files."""
    def folder(self) -> str:
        """A folder for files of this test, which goes when the test has ended."""
    def render(self, width: int, height: int, name: Text = ...) -> str:
        """Has the host render the scene with the registered callbacks; returns the file's path."""
    def assertPicture(self, path: Text, reference: Text, tolerance: int = 2,
                      pixels: int = 0) -> None:
        """Fails unless all but `pixels` pixels are the reference's, up to the tolerance."""

def read_picture(path: Text) -> Tuple[int, int, bytearray]:
    """Width, height and the bytes of the pixels, four each, row by row from the bottom."""
def picture_differences(found: bytearray, expected: bytearray,
                        tolerance: int) -> List[Tuple[int, int]]:
    """The place and the greatest difference of each pixel that differs by more."""
