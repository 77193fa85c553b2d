# SPDX-License-Identifier: MIT
"""What is installed: it runs where it was not installed, names neither sources nor build, and has
what a native plug-in is built against.

Usage: test_install.py CMAKE BUILD_FOLDER SOURCE_FOLDER
"""
import glob
import os
import re
import shutil
import subprocess
import sys
import tempfile
import unittest

CMAKE, BUILD, SOURCE = sys.argv[1:4]
SCENE = os.path.join(SOURCE, "examples", "scenes", "materials.obj")
WRONG_VERSION = """
extern "C" const int quilhostPluginVersion = 999;
extern "C" const char *startQuilhostPlugin() { return nullptr; }
"""
NO_PLUGIN = "extern int missing; extern \"C\" int *use() { return &missing; }\n"


def run(*command, **environment):
    return subprocess.run(command, env={"PATH": os.environ["PATH"], "HOME": "/", **environment},
                          stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True)


class InstalledTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.folder = tempfile.mkdtemp()
        cls.addClassCleanup(shutil.rmtree, cls.folder)
        cls.prefix = os.path.join(cls.folder, "moved")
        first = os.path.join(cls.folder, "prefix")
        installed = run(CMAKE, "--install", BUILD, "--prefix", first, "--strip")
        assert installed.returncode == 0, installed.stderr
        os.rename(first, cls.prefix)
        cls.quilhost = os.path.join(cls.prefix, "bin", "quilhost")
        # The guide's commands, as printed.
        with open(os.path.join(SOURCE, "docs", "plugins.md"), encoding="utf-8") as page:
            commands, = re.findall("```sh\n(.*?)```", page.read(), re.DOTALL)
        os.symlink(os.path.join(SOURCE, "examples"), os.path.join(cls.folder, "examples"))
        built = run("sh", "-ec", "cd '%s'\n%s" % (
            cls.folder, commands.replace("/usr/local", cls.prefix)), PATH="%s:%s:%s" % (
                os.path.dirname(cls.quilhost), os.path.dirname(CMAKE), os.environ["PATH"]))
        assert built.returncode == 0, built.stdout + built.stderr
        cls.plugin = os.path.join(cls.folder, "build_plugin", "sample_plugin.so")

    def path(self, name):
        return os.path.join(self.folder, name)

    def compiled(self, name, text):
        with open(self.path(name + ".cpp"), "w") as file:
            file.write(text)
        subprocess.check_call(["c++", "-shared", "-fPIC", "-o", self.path(name + ".so"),
                               self.path(name + ".cpp")])
        return self.path(name + ".so")

    def test_no_file_names_the_build(self):
        for folder, _, files in os.walk(self.prefix):
            for file in files:
                with open(os.path.join(folder, file), "rb") as content:
                    text = content.read()
                for place in (BUILD, SOURCE):
                    self.assertNotIn(place.encode() + b"/", text, file)

    def test_the_current_folder_is_no_place_for_libraries(self):
        for folder in (BUILD, os.path.join(self.prefix, "lib", "openquil")):
            for files in ("bin/quilhost", "bin/quilfarm", "lib/lib*.so", "python/*.so"):
                found = glob.glob(os.path.join(folder, files))
                self.assertTrue(found, files)
                for file in found:
                    path = re.search(r"RUNPATH.*\[(.*)\]", run("readelf", "-d", file).stdout)
                    self.assertNotIn("", path[1].split(":") if path else ["none"], file)

    def test_renders_as_the_build_does(self):
        pictures = []
        for program in (self.quilhost, os.path.join(BUILD, "bin", "quilhost")):
            output = self.path("picture%d.png" % len(pictures))
            child = run(program, SCENE, "--quiet", "--output", output, "--resolution", "32", "24",
                        "--python", os.path.join(SOURCE, "examples", "depth_fog.py"))
            self.assertEqual((child.returncode, child.stderr), (0, ""))
            with open(output, "rb") as file:
                pictures.append(file.read())
        self.assertEqual(*pictures)

    def test_one_version(self):
        told = run(self.quilhost, "--version").stdout.split()[-1]
        child = run(self.quilhost, "--python-expr", "import OpenQuil, OpenQuilRender\n"
                    "print(OpenQuil.__version__, OpenQuilRender.__version__)")
        self.assertEqual(child.stdout, "('%s', '%s')\n" % (told, told))

    def test_manual_pages(self):
        for program, text in (("quilhost", "\\-\\-plugin"), ("quilfarm", "submit")):
            with open(os.path.join(self.prefix, "share", "man", "man1", program + ".1")) as file:
                self.assertIn(text, file.read())

    def test_plugin(self):
        parts = self.path("from_folder.png")
        child = run(self.quilhost, SCENE, "--quiet", "--resolution", "64", "64", "--python",
                    os.path.join(SOURCE, "examples", "plugin", "four_parts.py"), "--", parts,
                    QUILHOST_PLUGINS=os.path.dirname(self.plugin))
        self.assertEqual((child.returncode, child.stderr), (0, ""))
        with open(parts, "rb") as one, open(self.path("parts.png"), "rb") as other:
            self.assertEqual(one.read(), other.read())
        look = ("from OpenQuil import ZImage\nimage = ZImage()\nimage.readFromFile(%r)\n"
                "pixels = bytearray(image.readPixels())\n"
                "print([tuple(pixels[4 * (128 * y + x):][:3]) for x, y in "
                "((5, 0), (70, 0), (5, 100), (70, 100))])" % parts)
        child = run(self.quilhost, "--python-expr", look)
        # The callback's row, the draw procedure's background, the viewport renderer, the swatch.
        self.assertEqual(child.stdout,
                         "[(0, 255, 0), (0, 0, 255), (255, 128, 0), (128, 0, 255)]\n")

    def test_plugins_that_are_refused(self):
        for name, text, why in [
                ("wrong", WRONG_VERSION, "it was built for version 999 of the plug-in interface; "
                                         "this is version 1"),
                ("symbol", NO_PLUGIN, "undefined symbol: missing"),
                ("empty", "", "it has no QUILHOST_PLUGIN, and so is none")]:
            with self.subTest(name):
                child = run(self.quilhost, "--plugin", self.compiled(name, text), "--python-expr",
                            "print('ran')")
                self.assertEqual((child.returncode, child.stdout), (2, ""))
                line, = child.stderr.splitlines()
                self.assertTrue(line.endswith(why), line)
        twice = run(self.quilhost, "--plugin", self.plugin, "--python-expr", "print('ran')",
                    QUILHOST_PLUGINS=os.path.dirname(self.plugin))
        self.assertEqual((twice.returncode, twice.stdout), (2, ""))
        missing = run(self.quilhost, "--python-expr", "print('ran')", QUILHOST_PLUGINS="/absent")
        self.assertEqual((missing.returncode, missing.stdout), (2, ""))
        self.assertIn("'/absent' cannot be read: No such file", missing.stderr)


class InstallerTest(unittest.TestCase):
    """tools/install.sh, where it refuses."""

    def refused(self, action, prefix):
        child = run(os.path.join(SOURCE, "tools", "install.sh"), action, prefix)
        self.assertEqual((child.returncode, child.stdout), (1, ""))
        line, = child.stderr.splitlines()
        return line

    def test_prefixes(self):
        with tempfile.TemporaryDirectory() as prefix:
            self.assertIn("usage: install.sh", self.refused("fly", prefix))
            self.assertIn("absolute path, not 'here'", self.refused("install", "here"))
            self.assertIn("nothing that make install has put there",
                          self.refused("uninstall", prefix))
            home = os.path.join(prefix, "lib", "openquil")
            os.makedirs(home)
            with open(os.path.join(home, "version"), "w") as file:
                file.write("0.0.9\n")
            self.assertIn("version 0.0.9 is in " + prefix, self.refused("install", prefix))
            with open(os.path.join(prefix, "file"), "w"):
                pass
            self.assertIn("no files can be made in " + prefix + "/file",
                          self.refused("install", prefix + "/file/deeper"))

    @unittest.skipUnless(BUILD == os.path.join(SOURCE, "build"), "another build")
    def test_all_that_comes_goes(self):
        with tempfile.TemporaryDirectory() as prefix:
            mine = os.path.join(prefix, "share", "mine")
            os.makedirs(mine)
            for action in ("install", "install", "uninstall"):
                child = run(os.path.join(SOURCE, "tools", "install.sh"), action, prefix)
                self.assertEqual((child.returncode, child.stderr), (0, ""))
                self.assertEqual(os.path.exists(os.path.join(prefix, "bin")), action == "install")
            self.assertEqual([folder for folder, _, _ in os.walk(prefix)],
                             [prefix, os.path.dirname(mine), mine])


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
