# SPDX-License-Identifier: MIT
"""quilhost --guard: a script that leaves what it is lent, or comes back too late, stops there."""
import os
import re
import signal
import sys
import unittest

from host import HostCase

# What a callback keeps, or does at once.
CALLBACK = """
from OpenQuilRender import ZRenderCallback
from OpenQuil import *
kept = []
class Callback(ZRenderCallback):
    def {method}(self, data):
        {body}
        return False
callback = Callback()
ZRenderCallback.addCallback(callback, 0)
def render(frame):
    for each in kept:
        each()
"""
PIXELS, DEPTHS = r"the pixels that render .* \(rgbaArr\), 48 bytes", \
    r"the depths that render .* \(depthArr\), 48 bytes"
BACK = r", taken back \d+ ms before: the host took it back"
MESH = """
from OpenQuil import *
from OpenQuilRender import *
selection, path = ZSelectionList(), ZDagPath()
selection.addNodesOfType('mesh')
selection.getDagPath(0, path)
wanted = ZGeometryRequirements()
wanted.addPosition()
def geometry():
    return ZGeometryManager.getGeometry(path, wanted)
{body}
"""


class GuardTest(HostCase):
    def run_script(self, source, *options, code):
        return self.run_host("tri.obj", "--quiet", "--python", self.write("a.py", source),
                             "--output", "a.#.png", "--resolution", "4", "3", "--frames", "1-2",
                             *options, code=code)[1]

    def stops(self, source, what, line):
        """The guard's line fits `what`, and the script's own innermost line is the given one."""
        told = self.run_script(source, "--guard", code=-signal.SIGSEGV).splitlines()
        self.assertRegex(told[0], "^quilhost: fatal signal SIGSEGV at address 0x[0-9a-f]{16}$")
        self.assertRegex(told[1], "^  that is %s$" % what)
        numbers = [int(number) for number in re.findall(r'"a\.py", line (\d+)', "\n".join(told))]
        self.assertEqual(numbers[:1], [line], told)

    def test_callbacks(self):
        for method, body, what, line in [
                ("renderCallback", "kept.append(lambda: data.rgbaArr)",
                 r"at byte \d+ of the record .* \(data\), \d+ bytes, taken back \d+ ms before: the "
                 "callback had returned", 7),
                ("renderCallback", "a = data.rgbaArr; kept.append(lambda: a.read(0, 1))",
                 "at byte 0 of " + PIXELS + BACK, 7),
                ("postProcessCallback", "a = data.depthArr; kept.append(lambda: a.get(11))",
                 "at byte 44 of " + DEPTHS + BACK, 7),
                ("shadowCastCallback", "a = data.depthMaps; kept.append(lambda: a.set(1, 2.0))",
                 r"at byte 4 of the maps that shadow .* \(depthMaps\), \d+ bytes" + BACK, 7)]:
            with self.subTest(body=body):
                source = CALLBACK.format(method=method, body=body)
                self.stops(source, what, line)
                self.assertEqual(self.files(), ["a.1.png", "a.py", "tri.obj"])
                os.remove(os.path.join(self.folder, "a.1.png"))

    def test_what_scripts_make_and_images(self):
        start = "from OpenQuil import *\nimport _OpenQuil as n, OpenQuilRender\n" \
            "image = ZImage()\nimage.create(4, 1)\np = image.pixels()\n"
        for body, what in [
                ("p.read(0, 17)", "0 bytes behind the end of the pixels of an image, 16 bytes"),
                ("p.write(16, 'x')", "0 bytes behind the end of the pixels of an image, 16 bytes"),
                ("image.create(1, 1); p.get(3)", "at byte 3 of the pixels of an image, 16 bytes" +
                 BACK),
                ("b = n.new_DoubleBuffer(2); n.delete_DoubleBuffer(b); n.DoubleBuffer_get(b, 1)",
                 r"at byte 8 of a buffer that a script made, 16 bytes, taken back \d+ ms before: "
                 "the buffer was deleted"),
                ("q = PixelBuffer(3); r = n.PixelBuffer_pixels(q, 2); del q; print r.g",
                 r"at byte 36 of the pixels of a PixelBuffer, 48 bytes" + BACK)]:
            with self.subTest(body=body):
                self.stops(start + body, what, 6)

    def test_streams(self):
        # The last handle to the first one goes at once.
        for body, what, line in [
                ("print FloatBuffer(geometry().position().data(), 1)",
                 r"at byte 0 of a stream of a geometry, 36 bytes, taken back \d+ ms before: the "
                 "last handle to the stream was gone", 11),
                ("g = geometry()\nprint FloatBuffer(g.position().data(), 9)[8]\n"
                 "FloatBuffer(g.position().data(), 10)",
                 "0 bytes behind the end of a stream of a geometry, 36 bytes", 13)]:
            with self.subTest(body=body):
                self.stops(MESH.format(body=body), what, line)

    def test_pictures_are_the_same(self):
        source = CALLBACK.format(method="renderCallback", body="data.rgbaArr.write(0, [9] * 16)")
        pictures = []
        for options in ((), ("--guard",)):
            self.run_script(source, *options, code=0)
            with open(os.path.join(self.folder, "a.2.png"), "rb") as stream:
                pictures.append(stream.read())
        self.assertEqual(*pictures)


if __name__ == "__main__":
    HostCase.QUILHOST = os.path.abspath(sys.argv.pop(1))
    unittest.main()
