# SPDX-License-Identifier: MIT
"""A sheet of swatches: one picture of all materials and textures of a scene.

    quilhost examples/scenes/materials.obj --python examples/swatch_sheet.py -- sheet.png

Each swatch is begun by the host's generator and worked on step by step, as an editor would do that
shows the pictures while they get better. Arguments: the file to write, the size of a swatch in
pixels (160) and the number of columns (5).
"""
from __future__ import print_function

import sys

from OpenQuil import Swatches, ZImage, ZObject, ZSelectionList, ZStringArray
from OpenQuilRender import ZRenderUtil

QUALITY = 2
GAP = 8
PAPER = b"\x28\x2a\x2e\xff"


def shading_nodes():
    """Names and nodes of everything that has a swatch."""
    found = ZSelectionList()
    found.addNodesOfType("material")
    found.addNodesOfType("file")
    for i in range(len(found)):
        names, node = ZStringArray(), ZObject()
        found.getSelectionStrings(i, names)
        found.getDependNode(i, node)
        yield names[0], node


def draw(node, size):
    """The finished picture."""
    swatch = Swatches.begin("materialBall", node, size)
    swatch.setRenderQuality(QUALITY)
    while not swatch.doIteration():
        pass
    return swatch.image()


def paste(sheet, width, image, left, bottom):
    """Copies the rows of a swatch into the sheet; both begin with the lowest row."""
    size = image.width()
    pixels = image.readPixels()
    for row in range(size):
        start = 4 * ((bottom + row) * width + left)
        sheet[start:start + 4 * size] = pixels[4 * size * row:4 * size * (row + 1)]


def main(path="sheet.png", size="160", columns="5"):
    size, columns = int(size), int(columns)
    nodes = list(shading_nodes())
    columns = min(columns, len(nodes))
    rows = -(-len(nodes) // columns)
    width, height = columns * (size + GAP) + GAP, rows * (size + GAP) + GAP
    sheet = bytearray(PAPER * (width * height))
    for i, (name, node) in enumerate(nodes):
        row, column = divmod(i, columns)
        left, bottom = GAP + column * (size + GAP), height - (row + 1) * (size + GAP)
        paste(sheet, width, draw(node, size), left, bottom)
        ZRenderUtil.sendRenderProgressInfo(name, 100 * (i + 1) // len(nodes))

    image = ZImage()
    image.create(width, height)
    image.writePixels(sheet)
    image.writeToFile(path)
    print(u"%d swatches in %s, row by row: %s" % (
        len(nodes), path, ", ".join(unicode(name) for name, _ in nodes)))


main(*sys.argv[1:])
