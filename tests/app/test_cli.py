# SPDX-License-Identifier: MIT
"""Drives the quilhost program in child processes: what it writes, tells and returns."""
import ast
import json
import math
import os
import shlex
import shutil
import subprocess
import sys
import unittest

from host import HAS_PLAIN_INTERPRETER, HostCase, LIMIT, TRIANGLE

HERE = os.path.dirname(os.path.abspath(__file__))
QUILHOST = os.path.abspath(sys.argv.pop(1))
PYTHON2 = sys.argv.pop(1)

# A script that sends a 1 x 1 picture of the given red to the render view.
PICTURE = """
import _OpenQuilRender as r
def picture(red):
    r.ZRenderView_startRender(1, 1)
    pixel = r.new_RV_PIXEL()
    r.RV_PIXEL_r_set(pixel, red)
    r.RV_PIXEL_a_set(pixel, 1.0)
    r.ZRenderView_updatePixels(0, 0, 0, 0, pixel)
    r.ZRenderView_endRender()
    r.delete_RV_PIXEL(pixel)
"""

CALLBACK = """
import OpenQuilRender as r
class Callback(r.ZRenderCallback):
    def renderCallback(self, data):
        {body}
callback = Callback()
r.ZRenderCallback.addCallback(callback, 0)
"""


# Prints the size and the rows, from the lowest, of a picture; the images' own tests compare what
# is read with other readers.
SHOW = """
import OpenQuil
image = OpenQuil.ZImage()
image.readFromFile(%r)
width, height, pixels = image.width(), image.height(), map(ord, image.readPixels())
print (width, height, [pixels[y * width * 4:][:width * 4] for y in range(height)])
"""


SHOW_FLOATS = """
import OpenQuil, struct
image = OpenQuil.ZImage()
image.readFromFile(%r)
print struct.unpack('4f', image.readPixels())
"""


class Case(HostCase):
    QUILHOST = QUILHOST

    def copy(self, name):
        """A scene that lies beside this file."""
        shutil.copy(os.path.join(HERE, name), self.folder)

    def png(self, name):
        width, height, rows = ast.literal_eval(self.run_host("--python-expr", SHOW % name)[0])
        return width, height, rows[::-1]


class BadInput(Case):
    """Each mistake: one line that names what is wrong, the exit code, and no file left behind."""

    def refuses(self, code, words, *arguments):
        before = self.files()
        out, err = self.run_host(*arguments, code=code)
        self.assertEqual(out, "")
        self.assertEqual(len(err.splitlines()), 1, err)
        self.assertTrue(err.startswith("quilhost: "), err)
        for word in words.split("|"):
            self.assertIn(word, err)
        self.assertEqual(self.files(), before)

    def test_mistakes(self):
        for name in "folder.obj", "folder.png":
            os.mkdir(os.path.join(self.folder, name))
        self.write("scene.abc", "?")
        with open(os.path.join(HERE, "refused.tsv"), encoding="utf-8") as table:
            rows = [line.rstrip("\n").split("\t") for line in table if line[0] != "#"]
        self.assertGreater(len(rows), 20)
        for words, arguments in rows:
            with self.subTest(arguments=arguments):
                self.refuses(2, words, *shlex.split(arguments))

    def test_damaged_scene(self):
        self.write("cut.gltf", '{"asset": {"version"')
        self.refuses(3, "cut.gltf", "cut.gltf", "--output", "a.png")

    def test_working_folder_that_is_gone(self):
        gone = os.path.join(self.folder, "gone")
        os.mkdir(gone)
        end = subprocess.run(["sh", "-c", 'rmdir "$PWD"; exec "$0" "$@"', QUILHOST,
                              os.path.join(self.folder, "tri.obj"), "--output", "a.png"],
                             cwd=gone, stderr=subprocess.PIPE, text=True, timeout=LIMIT)
        self.assertEqual((end.returncode, len(end.stderr.splitlines())), (2, 1), end.stderr)
        self.assertIn("working folder", end.stderr)

    def test_nothing_rendered(self):
        self.refuses(3, "no scene", "--python-expr", "pass", "--output", "a.png")
        self.refuses(3, "render(1)|no picture", "--python-expr", "def render(frame): pass",
                     "--output", "a.png")
        self.refuses(3, "left its picture", "--python-expr",
                     "import _OpenQuilRender as r; r.ZRenderView_startRender(4, 4)",
                     "--output", "a.png")


class Scripts(Case):
    def test_surroundings(self):
        os.mkdir(os.path.join(self.folder, "sub"))
        self.write("sub/helper.py", "value = 5")
        self.write("sub/a.py", """
import sys, helper
print(__name__, __file__, sys.argv, helper.value, sys.version_info[:2])
print(sys.path[1])
""")
        out, err = self.run_host("--background", "--no-gl", "--python", "sub/a.py", "--",
                                 "--frames", "x y")
        names, path = out.splitlines()
        self.assertEqual(names, repr(("__main__", "sub/a.py",
                                      ["sub/a.py", "--frames", "x y"], 5, (2, 7))))
        build = os.path.dirname(os.path.dirname(os.path.realpath(QUILHOST)))
        self.assertEqual(path, os.path.join(build, "python"))

    def test_ends(self):
        for source, code, last in [
                ("raise ValueError('bad thing')", 1, "ValueError: bad thing"),
                ("this is no python", 1, "SyntaxError: invalid syntax"),
                ("import _OpenQuilRender as r; r.ZRenderUtil_relativeFileName(None)", 1,
                 "TypeError: Expected a String or Unicode object for argument 1"),
                ("import sys; sys.exit(200)", 200, None),
                ("import sys; sys.exit('so long')", 1, "so long"),
                ("raise KeyboardInterrupt", 130, "quilhost: interrupted"),
                ("import atexit, sys\ndef bye(): sys.stderr.write('bye')\natexit.register(bye)",
                 0, "bye"),
        ]:
            with self.subTest(source=source):
                out, err = self.run_host("--python", self.write("a.py", source), code=code)
                self.assertEqual(err.splitlines()[-1:], [last] if last else [])
                self.assertEqual("Traceback" in err or "SyntaxError" in err,
                                 source.startswith(("raise", "this")), err)

    def test_interrupt_while_python_starts(self):
        self.write("sitecustomize.py", "import os, signal; os.kill(os.getpid(), signal.SIGINT)")
        child = self.start("--python-expr", "print('on')", environment={"PYTHONPATH": self.folder})
        self.assertEqual(child.communicate(timeout=LIMIT), ("", "quilhost: interrupted\n"))
        self.assertEqual(child.returncode, 130)

    def test_render_function_is_called_for_every_frame(self):
        self.write("a.py", PICTURE + """
import OpenQuilRender
def render(frame):
    print(frame, OpenQuilRender.ZRenderUtil.quilRenderState())
    picture(frame / 255.0)
""")
        out, err = self.run_host("tri.obj", "--python", "a.py", "--frames", "1-5x2,9",
                                 "--output", "a.##.png", "--progress", "plain")
        self.assertEqual(out.splitlines(), ["(%d, 1)" % f for f in (1, 3, 5, 9)])
        for frame in (1, 3, 5, 9):
            name = "a.%02d.png" % frame
            self.assertEqual(self.png(name), (1, 1, [[frame, 0, 0, 255]]))
            self.assertIn(os.path.join(self.folder, name), err)
        self.assertEqual(len(self.files()), 6)


class Frames(Case):
    def test_what_a_script_leaves_to_the_host(self):
        # Frame 1 is the script's own, 2 is left to the host, and so is 3 without the triangle.
        self.write("a.py", CALLBACK.format(
            body="print('callback', frame(), state())") + PICTURE + """
import OpenQuil
from OpenQuilRender import ZCommonRenderSettingsData, ZRenderUtil, ZRenderView
def state():
    return ZRenderUtil.quilRenderState()
def frame():
    settings = ZCommonRenderSettingsData()
    ZRenderUtil.getCommonRenderSettings(settings)
    assert settings.currentFrame == OpenQuil.Frames.current()
    return settings.currentFrame.value()
meshes, mesh = OpenQuil.ZSelectionList(), OpenQuil.ZObject()
meshes.addNodesOfType("mesh")
meshes.getDependNode(0, mesh)
def render(number):
    print("render", frame(), state())
    if number == 1:
        picture(1.0)
    OpenQuil.ZPlug(mesh, "visibility").setBool(number != 3)
print(frame(), state())
ZRenderView.startRender(1, 1)
print(state())
ZRenderView.endRender()
""")
        out, err = self.run_host("tri.obj", "--python", "a.py", "--frames", "2,3,1", "--output",
                                 "a.#.png", "--resolution", "3", "3", "--quiet")
        self.assertEqual([ast.literal_eval(line) for line in out.splitlines()],
                         [(2.0, 0), 1, ("render", 2.0, 1), ("callback", 2.0, 1),
                          ("render", 3.0, 1), ("callback", 3.0, 1), ("render", 1.0, 1)])
        self.assertEqual(self.png("a.1.png"), (1, 1, [[255, 0, 0, 255]]))
        self.assertGreater(self.png("a.2.png")[2][1][7], 0)
        self.assertEqual(self.png("a.3.png"), (3, 3, [[0] * 12] * 3))

    def test_settings_are_obeyed_or_told(self):
        out, err = self.run_host(
            "tri.obj", "--frames", "5-9x2", "--output", "a.#.png", "--resolution", "4", "2",
            "--setting", "renumberFrames=true", "--setting", "renumberStart=10", "--setting",
            "renumberBy=-2", "--setting", "pixelAspectRatio=0.5", "--setting", "preKos=cmd")
        self.assertEqual(self.files(), ["a.10.png", "a.6.png", "a.8.png", "tri.obj"])
        self.assertEqual([err.splitlines()[at] for at in (0, -1)], [
            "quilhost: notice: setting preKos: there is nothing that runs commands; scripts can "
            "ask for it", "quilhost: 1 notice; see above"])
        show = """
from OpenQuilRender import ZCommonRenderSettingsData, ZRenderUtil
settings = ZCommonRenderSettingsData()
ZRenderUtil.getCommonRenderSettings(settings)
print(settings.renderAll, settings.deviceAspectRatio, settings.preKos.asUnicode())
"""
        out, err = self.run_host("--python-expr", show, "--resolution", "4", "2", "--setting",
                                 "renderAll=0", "--setting", "pixelAspectRatio=0.5", "--setting",
                                 "preKos=a=b", "--setting", "dotPerInch=300", "--progress", "json")
        self.assertEqual(out, "(False, 1.0, u'a=b')\n")
        self.assertEqual([(each.get("kind"), each.get("place", each.get("count")))
                          for each in map(json.loads, err.splitlines())
                          if "notice" in each["event"]], [
            ("setting", "setting renderAll"), ("setting", "setting dotPerInch"),
            ("setting", "setting preKos"), (None, 3)])
        self.run_host("tri.obj", "--strict", "--setting", "preKos=a", "--output", "strict.png",
                      code=3)
        self.assertNotIn("strict.png", self.files())

    def test_whole_pictures_are_skipped(self):
        options = ("--output", "a.#.png", "--skip-existing", "--progress", "json")

        def frames(*arguments):
            out, err = self.run_host(*arguments + options)
            events = [json.loads(line) for line in err.splitlines()]
            return [(e["frame"], e["skipped"]) for e in events if e["event"] == "frame"]
        self.write("a.py", PICTURE + "picture(0.5)")
        for skipped in (False, True):
            self.assertEqual(frames("--python", "a.py"), [(1, skipped)])
        with open(os.path.join(self.folder, "a.1.png"), "rb") as stream:
            whole = stream.read()
        with open(os.path.join(self.folder, "a.3.png"), "wb") as stream:
            stream.write(whole[:-1])
        self.assertEqual(frames("tri.obj", "--frames", "1-3", "--resolution", "2", "2"),
                         [(1, True), (2, False), (3, False)])
        self.assertEqual([self.png("a.%d.png" % f)[:2] for f in (1, 2, 3)],
                         [(1, 1), (2, 2), (2, 2)])

    def test_other_frames_go_on_after_failures(self):
        source = PICTURE + """
import sys
def render(frame):
    if frame == 2:
        r.ZRenderView_startRender(1, 1)
    elif frame == 3:
        raise ValueError("frame three")
    elif frame == 4:
        sys.exit(7)
    else:
        picture(1.0)
"""
        for frames, code, pictures in [("1-5", 3, ["a.1.png", "a.5.png"]),
                                       ("3-5", 1, ["a.5.png"]), ("4-6", 7, ["a.5.png", "a.6.png"])]:
            with self.subTest(frames=frames):
                out, err = self.run_host("--python", self.write("a.py", source), "--frames", frames,
                                         "--output", "a.#.png", "--keep-going", code=code)
                self.assertEqual(self.files(), pictures + ["a.py", "tri.obj"])
                self.assertEqual("frame 2: render(2) left its picture" in err, code == 3, err)
                for name in pictures:
                    os.remove(os.path.join(self.folder, name))


class HostRenders(Case):
    def test_lux_over_pi_times_exposure(self):
        # A square of the factor 0.5 squarely under 3 lux.
        self.copy("lit.gltf")
        out, err = self.run_host("lit.gltf", "--resolution", "1", "1", "--exposure", "2", "--exr",
                                 "float", "--output", "a.exr")
        out, err = self.run_host("--python-expr", SHOW_FLOATS % "a.exr")
        # Diffuse 0.5 and a glint of 0.04, over pi, doubled twice.
        for value in ast.literal_eval(out)[:3]:
            self.assertAlmostEqual(value, 0.54 * 3 / math.pi * 4, 5)

    def test_renderers(self):
        """Samples lie at the same places, so that the same share of each pixel is covered."""
        script = self.write("a.py", CALLBACK.format(body="print('called')") + """
import OpenQuil
print(OpenQuil.Frames.renderer())
OpenQuil.Frames.render("script.png")
OpenQuil.Frames.setRenderer("software")
for call in OpenQuil.Frames.setRenderer, OpenQuil.Frames.render:
    try:
        call("other")
    except RuntimeError as error:
        print(error)
def render(frame):
    OpenQuil.Frames.setRenderer("hardware")
""")
        size = ("tri.obj", "--resolution", "30", "20", "--region", "3", "25", "0", "19")
        out, err = self.run_host(*size, "--no-gl", "--renderer", "hardware", "--python", script,
                                 "--output", "hardware.png")
        self.assertEqual(out, "hardware\n(kInvalidParameter): 'other' is neither software nor "
                         "hardware nor viewport:NAME\n(kInvalidParameter): 'other' is neither a "
                         ".png nor a .exr file\n")
        self.assertIn("quilhost: notice: hardware renderer: there is no OpenGL: switched off by "
                      "--no-gl; its draw procedures have nothing to draw in", err)
        self.assertIn("nothing calls the render callbacks: that is for the software", err)
        self.run_host(*size, "--output", "software.png")
        self.assertEqual(self.png("script.png"), self.png("hardware.png"))
        drawn, rendered = self.png("hardware.png")[2], self.png("software.png")[2]
        self.assertEqual([row[3::4] for row in drawn], [row[3::4] for row in rendered])
        self.assertGreater(drawn[10][4 * 15], 0)
        out, err = self.run_host("tri.obj", "--renderer", "viewport:no", "--output", "b.png",
                                 code=3)
        self.assertEqual(err, "quilhost: there is no viewport renderer 'no'\n")

    def test_threads_do_not_change_the_picture(self):
        for threads in ("1", "7"):
            self.run_host("tri.obj", "--output", threads + ".png", "--threads", threads,
                          "--resolution", "64", "48")
        self.assertEqual(self.png("1.png"), self.png("7.png"))

    @unittest.skipUnless("NO_THREADS" in os.environ, "cannot be preloaded")
    def test_limits_of_the_system(self):
        def limited(prefix, *arguments):
            end = subprocess.run(prefix + [QUILHOST, "--quiet", "--threads", "3"] + list(arguments),
                                 cwd=self.folder, capture_output=True, text=True, timeout=LIMIT)
            return end.returncode, end.stdout + end.stderr
        preload = ["env", "LD_PRELOAD=" + os.environ["NO_THREADS"]]
        small = ("tri.obj", "--resolution", "200", "30", "--output")
        self.run_host(*small + ("a.png",))
        self.assertEqual(limited(preload, *small + ("b.png",)), (
            0, "quilhost: no more threads can be started: rendering with 1 of 3\n"))
        self.assertEqual(self.png("a.png"), self.png("b.png"))
        # Without OpenGL on this machine it says so at once; with it, drawing must not hang.
        code, told = limited(preload, "--python-expr", "from OpenQuilRender import *\n"
                             "ZHardwareRenderer.theRenderer().makeResourceContextCurrent('')")
        self.assertTrue((code, told) == (0, "") or "there is no OpenGL" in told, told)
        memory = ["sh", "-c", 'ulimit -v 400000; exec "$0" "$@"']
        self.assertEqual(limited(memory, "tri.obj", "--output", "b.png", "--resolution", "16000",
                                 "16000"), (3, "quilhost: not enough memory for the image\n"))


class Told(Case):
    def test_frames_and_progress(self):
        out, err = self.run_host("tri.obj", "--frames", "8-10x2", "--output", "<Scene>.###.png",
                                 "--resolution", "16", "16", "--progress", "json")
        events = [json.loads(line) for line in err.splitlines()]
        done = [e for e in events if e["event"] == "frame"]
        self.assertEqual([(e["frame"], e["done"], e["frames"], os.path.basename(e["output"]))
                          for e in done], [(8, 1, 2, "tri.008.png"), (10, 2, 2, "tri.010.png")])
        percents = [e["percent"] for e in events if e["event"] == "progress" and e["frame"] == 8]
        self.assertEqual(percents, sorted(percents))
        self.assertEqual(percents[-1], 100)
        self.assertEqual(events[-1], {"event": "end", "code": 0, "why": ""})
        self.assertEqual(self.files(), ["tri.008.png", "tri.010.png", "tri.obj"])
        out, err = self.run_host("tri.obj", "--output", "q.png", "--quiet")
        self.assertEqual((out, err), ("", ""))

    def test_version_and_what_verbose_tells(self):
        version = self.run_host("--python-expr", "import OpenQuil; print OpenQuil.__version__")[0]
        self.assertEqual(self.run_host("--version")[0], "quilhost " + version)
        self.copy("lit.gltf")
        out, err = self.run_host("lit.gltf", "--verbose", "--output", "a.png")
        self.assertRegex(err, r"quilhost: lit.gltf: meshes: 1, triangles: 2, lights: 1\n")
        self.assertRegex(err, r"quilhost: frame 1 took \d+\.\d\d s\n")

    def test_pictures_that_a_script_asks_for(self):
        out, err = self.run_host("tri.obj", "--python-expr", """
import quilhost
for arguments in ("a.jpg",), ("a.png", 16385, 1), ("a.png", 1, 16385), ("no/a.png", 4, 4):
    try:
        quilhost.render(*arguments)
    except (ValueError, RuntimeError) as error:
        print(type(error).__name__)
quilhost.render("a.png", 5, 3)
quilhost.render("b.png")
""", "--resolution", "8", "4")
        self.assertEqual(out.split(), ["ValueError"] * 3 + ["RuntimeError"])
        self.assertEqual([self.png(name)[:2] for name in ("a.png", "b.png")], [(5, 3), (8, 4)])

    def test_messages_of_open_job_description(self):
        script = "import sys\ndef render(frame): sys.exit(7 if frame > %d else 0)"
        options = ("tri.obj", "--frames", "1-4", "--output", "a.#.png", "--progress", "openjd",
                   "--resolution", "8", "8", "--python-expr")
        for last, code, percent, end in ((4, 0, 100, None), (2, 7, 50, "openjd_fail: exit code 7")):
            lines = self.run_host(*options, script % last, code=code)[1].splitlines()
            told = [float(line.split()[1]) for line in lines if line.startswith("openjd_progress")]
            self.assertEqual((told, told[-1]), (sorted(told), percent))
            self.assertIn("openjd_status: frame 2 (2 of 4): rendering 100%", lines)
            self.assertEqual(lines[-1] if end else None, end)
        out, err = self.run_host("tri.obj", "--strict", "--fps", "7.5", "--progress", "openjd",
                                 "--output", "a.png", code=3)
        self.assertEqual(err.splitlines()[-1],
                         "openjd_fail: with --strict, the notice is an error")

    def test_plain_lines_are_few(self):
        told = [("tile 1 of 9", 0), ("tile 2 of 9", 11), ("tile 3 of 9", 24), ("tile 4 of 9", 25),
                ("lights 1", 26), ("lights 2", 27), ("7", 27), ("7", 3)]
        out, err = self.run_host("--progress", "plain", "--python-expr",
                                 "import OpenQuilRender as r\nfor each in %r: "
                                 "r.ZRenderUtil.sendRenderProgressInfo(*each)" % told)
        self.assertEqual(err.splitlines(), ["frame 1: " + line for line in (
            "tile 1 of 9 0%", "tile 4 of 9 25%", "lights 1 26%", "7 27%", "7 3%")])

    def test_texts_of_others_do_not_steer_the_terminal(self):
        title, shown = "\\x1b]0;a\\x07\\nquilhost: b", "\\u001b]0;a\\u0007\\u000aquilhost: b"
        send = "import OpenQuilRender as r; r.ZRenderUtil.sendRenderProgressInfo('%s', 7)" % title
        for style, line in [("plain", "frame 1: %s 7%%\n" % shown),
                            ("json", '"%s"' % shown.replace("u000a", "n"))]:
            out, err = self.run_host("--progress", style, "--python-expr", send)
            self.assertIn(line, err)
        out, err = self.run_host("\x1b[2J.obj", "--output", "a.png", code=2)
        self.assertEqual(err, "quilhost: scene '\\u001b[2J.obj' does not exist\n")
        out, err = self.run_host("--python-expr", "import OpenQuilRender as r; "
                                 "r.ZFnRenderLayer.findLayerByName('%s')" % title, code=1)
        self.assertIn(shown, err)


class Callbacks(Case):
    def test_failing_callback(self):
        both, raising = ["a.1.png", "a.2.png"], "raise %s('in the callback')"
        for body, error, code, reports, pictures in [
                (raising % "ValueError", "ValueError: in the callback", 4, 2, both),
                ("return r._native.ZRenderUtil_relativeFileName(None) is None",
                 "TypeError: Expected", 4, 2, both),
                ("__import__('OpenQuil').Frames.render('b.png')",
                 "a frame is being rendered already", 4, 2, both),
                (raising % "KeyboardInterrupt", "KeyboardInterrupt: in the callback", 130, 1, [])]:
            with self.subTest(error=error):
                self.write("a.py", CALLBACK.format(body=body))
                out, err = self.run_host("tri.obj", "--python", "a.py", "--frames", "1-2",
                                         "--output", "a.#.png", "--quiet", code=code)
                self.assertEqual(err.count(error), reports)
                self.assertEqual(self.files(), pictures + ["a.py", "tri.obj"])
                for name in pictures:
                    os.remove(os.path.join(self.folder, name))

    def test_callbacks_stay_inside_what_they_are_lent(self):
        pixels = "data.xsize * data.ysize"
        for method, body in [
                ("renderCallback", "data.rgbaArr.read(1, 4 * %s)" % pixels),
                ("postProcessCallback", "data.rgbaArr.write(4 * %s, [1])" % pixels),
                ("renderCallback", "data.depthArr[%s]" % pixels),
                ("renderCallback", "type(data.depthArr)(data.depthArr, %s + 1)" % pixels),
                ("renderCallback", "list(data.depthArr)[%s]" % pixels),
                ("renderCallback", "memoryview(data.rgbaArr)"),
                ("shadowCastCallback", "data.depthMaps.read(1, len(data.depthMaps))")]:
            with self.subTest(body=body):
                self.write("a.py", CALLBACK.replace("renderCallback", method).format(body=body))
                out, err = self.run_host("tri.obj", "--python", "a.py", "--output", "a.png",
                                         "--resolution", "5", "3", "--quiet", code=4)
                self.assertIn(body, err)
                self.assertRegex(err, "IndexError: (buffer|list) index out of range|fewer items|"
                                      "BufferError: the host lends")


# What a script sees of a frame: where the node is, the time unit, the settings and the geometry.
SEE = """
import OpenQuil, OpenQuilRender as r
def render(frame):
    path = OpenQuil.ZDagPath()
    selection = OpenQuil.ZSelectionList()
    selection.add("it")
    selection.getDagPath(0, path)
    settings = r.ZCommonRenderSettingsData()
    r.ZRenderUtil.getCommonRenderSettings(settings)
    print(frame, round(path.inclusiveMatrix()(3, 0), 6), OpenQuil.ZTime.uiUnit(),
          settings.frameStart.asUnits(3))
"""


class Moving(Case):
    def setUp(self):
        Case.setUp(self)
        # A triangle that moves by 5 in a second, and a texture that is left out.
        self.copy("moving.gltf")

    def test_scripts_see_the_frame(self):
        self.write("a.py", SEE)
        for rate, unit, starts in (("24", 6, 0.5), ("30", 8, 0.4)):
            out, err = self.run_host("moving.gltf", "--fps", rate, "--frames", "12,24", "--quiet",
                                     "--python", "a.py")
            self.assertEqual(out.splitlines(),
                             [str((frame, min(5 * frame / float(rate), 5), unit, starts))
                              for frame in (12, 24)])

    TOLD = ("moving.gltf: material 0 'paint\\u001b': its normal texture is not supported; it "
            "is left out")

    def test_what_is_not_honoured_is_told(self):
        out, err = self.run_host("moving.gltf", "--fps", "7.5", "--python-expr", "0")
        self.assertEqual(err.splitlines(), [
            "quilhost: notice: --fps: ZTime has no unit for this frame rate; its frames are those "
            "of 24 a second", "quilhost: notice: " + self.TOLD, "quilhost: 2 notices; see above"])
        out, err = self.run_host("moving.gltf", "--progress", "json", "--python-expr", "0")
        self.assertEqual([json.loads(line) for line in err.splitlines()], [
            {"event": "notice", "kind": "normal texture", "file": "moving.gltf",
             "place": "material 0 'paint\x1b'", "found": "its normal texture is not supported",
             "instead": "it is left out"}, {"event": "notices", "count": 1},
            {"event": "end", "code": 0, "why": ""}])
        for options, lines in ((("--quiet", "--strict"), 2), (("--quiet",), 0)):
            out, err = self.run_host("moving.gltf", "--output", "a.png", *options,
                                     code=3 if lines else 0)
            self.assertEqual(err.splitlines(), [
                "quilhost: notice: " + self.TOLD,
                "quilhost: with --strict, the notice is an error"][:lines])
            self.assertEqual("a.png" in self.files(), not lines)

    @unittest.skipUnless(HAS_PLAIN_INTERPRETER, "no plain interpreter")
    def test_plain_interpreter_has_standard_error(self):
        modules = os.path.join(os.path.dirname(os.path.dirname(QUILHOST)), "python")
        code = "import OpenQuil; OpenQuil.ZFileIO.open('moving.gltf')"
        child = subprocess.run([PYTHON2, "-c", code],
                               cwd=self.folder, env=dict(os.environ, PYTHONPATH=modules),
                               stderr=subprocess.PIPE, text=True, timeout=LIMIT)
        self.assertEqual((child.returncode, child.stderr), (
            0, "OpenQuil: %s\n" % self.TOLD))

    def test_script_asks_for_a_texture_that_is_not_there(self):
        self.write("tri.mtl", "newmtl paint\nKd 1 1 1\nmap_Kd here.png\n")
        self.write("tri.obj", "mtllib tri.mtl\nusemtl paint\n" + TRIANGLE)
        self.run_host("tri.obj", "--output", "here.png", "--resolution", "4", "4")
        script = ("import OpenQuil as q; s = q.ZSelectionList(); s.add('here.fileTextureName'); "
                  "p = q.ZPlug(); s.getPlug(0, p); p.setString('gone.png')")
        notice = ("notice: tri.obj: material 'paint', texture 'gone.png': the image is not there; "
                  "the material is shown without it")
        for options, code in ((("--strict",), 3), ((), 0)):
            out, err = self.run_host("tri.obj", "--python-expr", script, "--output", "a.png",
                                     *options, code=code)
            self.assertIn("quilhost: " + notice, err.splitlines())
            self.assertEqual("a.png" in self.files(), code == 0)
        # What renders tells it where nobody else looks.
        script += "; q.Frames.render('b.png'); q.Frames.render('b.png')"
        out, err = self.run_host("tri.obj", "--python-expr", script + "; raise ValueError", code=1)
        self.assertEqual(err.count(notice), 1)


if __name__ == "__main__":
    unittest.main()
