# SPDX-License-Identifier: MIT
"""One picture of what a native plug-in brings: below a frame of the host, whose lowest row is the
plug-in's render callback's, and one of the hardware renderer; above a viewport renderer's and a
swatch.

    quilhost MODEL.obj --plugin sample_plugin.so --python examples/plugin/four_parts.py \
        --resolution 64 64 -- parts.png
"""
import os
import shutil
import sys
import tempfile

from OpenQuil import Frames, Swatches, Viewports, ZImage, ZObject, ZSelectionList

SIZE = 64


def of_file(draw):
    """The pixels of the picture that `draw` writes into a file."""
    folder = tempfile.mkdtemp()
    try:
        path = os.path.join(folder, 'part.png')
        draw(path)
        image = ZImage()
        image.readFromFile(path)
        return image.readPixels()
    finally:
        shutil.rmtree(folder)


def frame(renderer):
    Frames.setRenderer(renderer)
    return of_file(Frames.render)


def swatch():
    materials, node, image = ZSelectionList(), ZObject(), ZImage()
    materials.addNodesOfType('material')
    materials.getDependNode(0, node)
    Swatches.render('sampleViolet', node, SIZE, image)
    return image.readPixels()


def main(path='parts.png'):
    lower = frame('software'), frame('hardware')
    upper = of_file(lambda part: Viewports.render('samplePainter', SIZE, SIZE, part)), swatch()
    row = 4 * SIZE
    picture = ZImage()
    picture.create(2 * SIZE, 2 * SIZE)
    picture.writePixels(b''.join(left[at:at + row] + right[at:at + row]
                                 for left, right in (lower, upper)
                                 for at in range(0, row * SIZE, row)))
    picture.writeToFile(path)


main(*sys.argv[1:])
