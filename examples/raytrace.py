# SPDX-License-Identifier: MIT
"""A small renderer: rays into the scene, tile by tile, into the render view.

    quilhost MODEL.obj --python examples/raytrace.py --output picture.png

It reads the resolution from the render settings, sends the rays of each tile to the host in one
call, paints a floor with the model's shadow and a sky where they hit nothing, and pushes the tile
to the render view.
"""
import math

from OpenQuil import (PixelBuffer, ZDagPath, ZFloatVector, ZFloatVectorArray, ZIntArray, ZPlug,
                      ZSelectionList)
from OpenQuilRender import ZCommonRenderSettingsData, ZRenderUtil, ZRenderView

TILE = 64
REFLECTIONS = 2
NOTHING = (0.0, 0.0, 0.0)


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

    def rays(self, left, right, bottom, top, step=1):
        """Directions through the pixel centres of a tile, row by row from the bottom."""
        for y in range(bottom, top + 1, step):
            up = y + 0.5 - self.height / 2.0
            row = [self.forward[i] + up * self.up[i] for i in range(3)]
            for x in range(left, right + 1, step):
                across = x + 0.5 - self.width / 2.0
                yield tuple(row[i] + across * self.right[i] for i in range(3))


class Surroundings(object):
    """What is seen where a ray misses the model: a floor under it, and the sky."""

    UP = ZFloatVector(0, 1, 0)

    def __init__(self, camera):
        self.eye = [camera.origin.x, camera.origin.y, camera.origin.z]
        self.height = self.eye[1] - self.lowest_point(camera)

    @staticmethod
    def lowest_point(camera):
        """The height of the model's lowest point on a grid of rays from the camera."""
        directions = list(camera.rays(0, camera.width - 1, 0, camera.height - 1, step=4))
        points, numbers = ZFloatVectorArray(), ZIntArray()
        ZRenderUtil.raytraceFirstGeometryIntersections(
            ZFloatVectorArray(len(directions), camera.origin), ZFloatVectorArray(directions),
            None, None, points, numbers)
        return min([y for _, y, _ in points[:]] or [camera.origin.y - 1])

    def color(self, direction):
        if direction[1] < 0 and self.height > 0:
            return self.floor(direction)
        return self.sky(direction)

    def sky(self, direction):
        height = direction[1] / math.sqrt(sum(d * d for d in direction))
        shade = 0.5 + 0.5 * max(height, 0.0)
        return 0.95 - 0.55 * shade, 0.97 - 0.38 * shade, 1.0 - 0.16 * shade

    def floor(self, direction):
        """A plane with soft marble veins, lit by the scene's first light; far off it fades."""
        distance = self.height / -direction[1]
        point = ZFloatVector(*[e + distance * d for e, d in zip(self.eye, direction)])
        x, z = 8 * point.x / self.height, 8 * point.z / self.height
        veins = 0.72 + 0.16 * ZRenderUtil.noise2(x + 90, z + 90)
        light = 0.45 + 0.55 * ZRenderUtil.lightAttenuation(None, point, self.UP, True)
        near = math.exp(-0.02 * (x * x + z * z) ** 0.5)
        return tuple(near * veins * light + (1 - near) * c for c in self.sky(direction))


def render_tile(camera, surroundings, left, right, bottom, top):
    directions = list(camera.rays(left, right, bottom, top))
    origins = ZFloatVectorArray(len(directions), camera.origin)
    points, colors = ZFloatVectorArray(), ZFloatVectorArray()
    ZRenderUtil.raytrace(origins, ZFloatVectorArray(directions), None, None, REFLECTIONS,
                         points, colors)
    # Slices have tuples, which are faster than an object for each ray.
    seen = colors[:]
    for i, point in enumerate(points[:]):
        if seen[i] == point == NOTHING:
            seen[i] = surroundings.color(directions[i])
    colors[:] = seen
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
    surroundings = Surroundings(camera)
    ZRenderView.setCurrentCamera(camera.path)
    ZRenderView.startRender(width, height)
    all_tiles = list(tiles(width, height))
    for number, tile in enumerate(all_tiles):
        render_tile(camera, surroundings, *tile)
        ZRenderUtil.sendRenderProgressInfo("tile %d of %d" % (number + 1, len(all_tiles)),
                                           100 * (number + 1) // len(all_tiles))
    ZRenderView.endRender()


main()
