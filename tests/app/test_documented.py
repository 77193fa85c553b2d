# SPDX-License-Identifier: MIT
"""The programs of README and the guides as printed, and every example, on scenes with names of all
languages."""
import glob
import os
import re
import shutil
import subprocess
import sys
import unittest

from host import HAS_PLAIN_INTERPRETER, HostCase, LIMIT, ROOT

sys.path.insert(0, os.path.join(ROOT, "docs", "site"))
import guides  # noqa: E402

C = {"LC_ALL": "C", "PYTHONIOENCODING": ""}
READ = "import quilhost_testing as t\nw, h, p = t.read_picture(%r)\n" \
    "print w, h, [tuple(p[i:i + 4]) for i in (0, 4 * (h // 2 * w + w // 2))]"


def blocks(name, language):
    with open(os.path.join(ROOT, name), encoding="utf-8") as stream:
        return re.findall("```%s\n(.*?)```" % language, stream.read(), re.DOTALL)


# The attributes of all types of nodes as the rows of the documentation's table.
ROWS = """
from OpenQuil import NodeTypes, ZMatrix
for node_type in NodeTypes.names():
    for each in NodeTypes.attributes(node_type):
        default = each["default"]
        print "| %s | `%s` | %s | %s | %s | %s | %s |" % (
            node_type, each["name"], each["type"], each["unit"],
            "identity" if default == ZMatrix() else str(default) or "empty",
            "yes" if each["settable"] else "no", each["meaning"])
"""


class DocumentedCase(HostCase):
    def picture(self, name):
        """Width, height, and the pixels in the lower left and in the middle."""
        return self.run_host("--python-expr", READ % name)[0]


class ReadmeTest(DocumentedCase):
    def setUp(self):
        DocumentedCase.setUp(self)
        # The folder where README's commands are typed.
        os.symlink(os.path.dirname(os.path.dirname(self.QUILHOST)),
                   os.path.join(self.folder, "build"))
        shutil.copy(os.path.join(self.folder, "tri.obj"), os.path.join(self.folder, "model.obj"))

    def shell(self, line):
        end = subprocess.run(["sh", "-ec", line], cwd=self.folder, capture_output=True, text=True,
                             timeout=LIMIT)
        self.assertEqual(end.returncode, 0, end)
        return end.stdout

    def test_programs(self):
        renderer, callback = blocks("README.md", "python")
        one, many = next(block for block in blocks("README.md", "sh") if "--python" in block) \
            .splitlines()
        self.write("script.py", renderer)
        self.shell(one)
        # 0.2, 0.4 and 0.6 of 255; the picture is sent as it is seen.
        self.assertEqual(self.picture("picture.png"),
                         "320 240 [(51, 102, 153, 255), (51, 102, 153, 255)]\n")
        self.shell(one.replace("--python script.py", ""))
        usual = self.picture("picture.png")
        self.write("script.py", callback)
        self.shell(one)
        shown = [[int(n) for n in re.findall(r"\d+", text)] for text in
                 (usual, self.picture("picture.png"))]
        # What is clear has the colour 0 in the file, and of what is not each channel is turned.
        self.assertEqual(shown[1][-4:], [255 - n for n in shown[0][-4:-1]] + [255])
        self.shell(many + " --resolution 8 8")
        self.assertEqual(len([name for name in self.files() if name.startswith("frame.")]), 10)

    @unittest.skipUnless(HAS_PLAIN_INTERPRETER, "no plain interpreter")
    def test_plain_interpreter(self):
        line, = [block.strip() for block in blocks("README.md", "sh") if "PYTHONPATH" in block]
        path = os.path.join(self.folder, "build", "python2.path")
        if not os.path.exists(path):  # a build folder beside the usual one
            line = line.replace("$(cat build/python2.path)", os.environ["PYTHON2"])
        self.assertRegex(self.shell(line), r"^-?0\.\d+\n$")


class NodesTest(DocumentedCase):
    def test_table(self):
        with open(os.path.join(ROOT, "docs", "nodes.md"), encoding="utf-8") as stream:
            table = re.search(r"\|---.*\n((\|.*\n)+)", stream.read())[1]
        self.assertEqual(self.run_host("--python-expr", ROWS)[0], table)

    def test_programs(self):
        for block in blocks("docs/nodes.md", "python"):
            out, err = self.run_host("tri.obj", "--python-expr", block)
            self.assertIn("intensity", out)


class GuideTest(DocumentedCase):
    """Each guide's programs and commands do what the page says."""
    OWN_TESTS = {"nodes.md", "testing.md"}

    def test_programs(self):
        pages = [path for path in glob.glob(os.path.join(ROOT, "docs", "*.md"))
                 if re.search("```python|^<!-- picture", self.read(path), re.MULTILINE)
                 and os.path.basename(path) not in self.OWN_TESTS]
        self.assertGreaterEqual(len(pages), 7)
        for page in pages:
            with self.subTest(page=page):
                faults = guides.run(page, self.folder, os.path.dirname(self.QUILHOST), LIMIT)
                self.assertEqual(faults, [])
        # The sky's lowest row, and the one halfway up; tiles 156 and 3 of 0 to 159.
        for name, expected in [("first", "640 400 [(217, 235, 255, 255), (140, 177, 223, 255)]\n"),
                               ("tiles", "640 400 [(42, 66, 127, 255), (238, 189, 77, 255)]\n")]:
            self.assertEqual(self.picture(name + ".png"), expected)
        turned, texture = map(self.picture, ("negative.png", "examples/scenes/tile_pattern.png"))
        sums = [a + b for a, b in zip(*(map(int, re.findall(r"\d+", text)) for text in (
            turned, texture)))]
        self.assertEqual(sums[2:], [255, 255, 255, 510] * 2)

    def test_plugin(self):
        block, = blocks("docs/plugins.md", "cpp")
        self.write("plugin.cpp", block)
        subprocess.run(["c++", "-std=c++20", "-shared", "-fPIC", "-I", ROOT, "plugin.cpp", "-o",
                        "plugin.so"], cwd=self.folder, check=True, timeout=LIMIT)
        out, _ = self.run_host("--plugin", "./plugin.so", "--python-expr", "print 'loaded'")
        self.assertEqual(out, "loaded\n")


class ExampleTest(DocumentedCase):
    """Each example runs as its first lines say, with names that are not ASCII."""

    NAMES = ["box", "front", "floor", "cone", "key", "props", "ball", "side", "fill", "floorPaint",
             "conePaint", "ballPaint", "boxPaint"]

    def setUp(self):
        DocumentedCase.setUp(self)
        shutil.copytree(os.path.join(ROOT, "examples"), os.path.join(self.folder, "examples"))
        for path in glob.glob(os.path.join(self.folder, "examples", "scenes", "*")):
            if not path.endswith(".png"):
                self.write(path, self.renamed(self.read(path)))

    @staticmethod
    def renamed(text):
        text = re.sub(r"(?m)^(newmtl|usemtl|o|g) (\w+)", "\\1 \\2\xe9\u4e2d", text)
        names = "|".join(ExampleTest.NAMES)
        return re.sub(r'"(%s)((?:\.\w+)?)"' % names, '"\\1\xe9\u4e2d\\2"', text)

    def test_all(self):
        small = ("--output", "a.png", "--resolution", "16", "12")
        for example, scene, arguments, result, printed in [
                ("raytrace", "materials.obj", small, "a.png", ""),
                ("depth_fog", "layers.gltf", small, "a.png", ""),
                ("layers", "layers.gltf", small, "a.png", "members: "),
                ("swatch_sheet", "materials.obj", ("--", "b.png", "8"), "b.png", "swatches in"),
                ("read_geometry", "layers.gltf", ("--", "c.obj"), "c.obj", ""),
                ("hardware_frame", "layers.gltf", small + ("--renderer", "hardware"), "a.png",
                 None),
                ("gl_mesh", "layers.gltf", ("--", "d.png"), "d.png", None),
                ("gl_program", "layers.gltf", ("--", "e.png"), "e.png", None),
                ("hardware_frame", "materials.obj", ("--renderer", "hardware") + small, "a.png",
                 None)]:
            with self.subTest(example=example):
                child = self.start("examples/scenes/" + scene, "--quiet", "--python",
                                   "examples/%s.py" % example, *arguments, environment=C)
                out, err = child.communicate(timeout=LIMIT)
                if printed is None and "OpenGL" in err:
                    continue
                self.assertEqual((child.returncode, err), (0, ""))
                self.assertIn(printed or "", out)
                self.assertEqual("\xe9\u4e2d" in out, bool(printed), out)
                self.assertIn(result, self.files())
        self.assertIn("box\xe9\u4e2d\n", self.read("c.obj"))
        there = {os.path.basename(path)[:-3] for path in
                 glob.glob(os.path.join(self.folder, "examples", "*.py"))}
        self.assertEqual(there, {"raytrace", "depth_fog", "layers", "swatch_sheet", "gl_scene",
                                 "read_geometry", "gl_mesh", "gl_program", "hardware_frame"})


if __name__ == "__main__":
    HostCase.QUILHOST = os.path.abspath(sys.argv.pop(1))
    unittest.main()
