"""A small renderer: rays into the scene, tile by tile, into the render view.

    quilhost MODEL.obj --python examples/raytrace.py --output picture.png

It reads the resolution from the render settings, sends the rays of each tile to the host in one
call, paints a cloudy sky where they hit nothing, and pushes the tile to the render view.
"""
import math

from OpenQuil import (PixelBuffer, ZDagPath, ZFloatVector, ZFloatVectorArray, ZPlug,
                      ZSelectionList)
from OpenQuilRender import ZCommonRenderSettingsData, ZRenderUtil, ZRenderView

TILE = 64
REFLECTIONS = 2


class Camera(object):
    """Rays through the pixels of an image, from the scene's first camera."""

    def __init__(self, width, height):
        cameras = ZSelectionList()
        cameras.addNodesOfType("camera")
        self.path = ZDagPath()
        cameras.getDagPath(0, self.path)
        self.width, self.height = width, height
        field_of_view = math.radians(ZPlug(self.path.node(), "horizontalFieldOfView").asDouble())
        to_world = self.path.inclusiveMatrix()
        # Vectors are rows: the rows of the matrix are the camera's axes and its place.
        self.right, self.up, backwards, place = [
            [to_world(row, column) for column in range(3)] for row in range(4)]
        self.origin = ZFloatVector(*place)
        distance = width / 2.0 / math.tan(field_of_view / 2)
        self.forward = [-axis * distance for axis in backwards]

    def rays(self, left, right, bottom, top):
        """Directions through the pixel centres of a tile, row by row from the bottom."""
        for y in range(bottom, top + 1):
            up = y + 0.5 - self.height / 2.0
            row = [self.forward[i] + up * self.up[i] for i in range(3)]
            for x in range(left, right + 1):
                across = x + 0.5 - self.width / 2.0
                yield tuple(row[i] + across * self.right[i] for i in range(3))


def sky(direction):
    """The colour that is seen along a direction that hits nothing."""
    x, y, z = direction
    length = math.sqrt(x * x + y * y + z * z)
    height = y / length
    cloud = 0.0
    if height > 0:
        for octave in (1, 2, 4):
            scale = 3.0 * octave / (height + 0.15) / length
            cloud += ZRenderUtil.noise2(x * scale + 7, z * scale + 7) / octave
        cloud = min(max(cloud - 0.75, 0.0) * 1.4, 1.0) * min(height * 4, 1.0)
    shade = min(max(0.5 + height / 2, 0.0), 1.0)
    blue = (0.85 - 0.55 * shade, 0.88 - 0.38 * shade, 0.92 - 0.12 * shade)
    return ZFloatVector(*[c + (1 - c) * cloud for c in blue])


def render_tile(camera, left, right, bottom, top):
    directions = list(camera.rays(left, right, bottom, top))
    origins = ZFloatVectorArray(len(directions), camera.origin)
    points, colors = ZFloatVectorArray(), ZFloatVectorArray()
    ZRenderUtil.raytrace(origins, ZFloatVectorArray(directions), None, None, REFLECTIONS,
                         points, colors)
    nothing = ZFloatVector()
    for i, direction in enumerate(directions):
        if colors[i] == nothing and points[i] == nothing:
            colors[i] = sky(direction)
    pixels = PixelBuffer(len(directions))
    pixels.setColors(0, colors)
    ZRenderView.updatePixels(left, right, bottom, top, pixels, True)


def tiles(width, height):
    for bottom in range(0, height, TILE):
        for left in range(0, width, TILE):
            yield left, min(left + TILE, width) - 1, bottom, min(bottom + TILE, height) - 1


def main():
    settings = ZCommonRenderSettingsData()
    ZRenderUtil.getCommonRenderSettings(settings)
    width, height = settings.width, settings.height
    camera = Camera(width, height)
    ZRenderView.setCurrentCamera(camera.path)
    ZRenderView.startRender(width, height)
    all_tiles = list(tiles(width, height))
    for number, tile in enumerate(all_tiles):
        render_tile(camera, *tile)
        ZRenderUtil.sendRenderProgressInfo("tile %d of %d" % (number + 1, len(all_tiles)),
                                           100 * (number + 1) // len(all_tiles))
    ZRenderView.endRender()


main()
