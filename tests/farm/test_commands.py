# SPDX-License-Identifier: MIT
"""Drives quilfarm: what it refuses, what its tasks render, and what it tells of them. Slurm is a
stand-in here; tools/check_farm.py has a real one.

Usage: test_commands.py QUILFARM
"""
import json
import os
import pathlib
import re
import subprocess
import sys
import unittest

from farm_case import LIMIT, ROOT, Case

Case.quilfarm = pathlib.Path(sys.argv.pop(1)).resolve()
SMALL = ("--resolution", "32", "24")
# What a scene file must not be called.
ODD = "a 'b' \"c\" $d `e` \\f %g ü"
# A renderer in Python, which leaves its picture to the host.
SCRIPT = """
import os, signal, sys
def render(frame):
    if frame == 5 and not os.path.exists('again'):
        open('again', 'w').close()
        sys.stdout.flush()
        {}
"""


class BadInput(Case):
    def test_one_line_and_nothing_is_submitted(self):
        good = ("submit", "reed.gltf", "--engine", "local", "--output", "a.#.png")
        (self.folder / "a.7.png").touch()
        before = self.files()
        for words, arguments in [
                ("'move' is no command", ("move",)),
                ("'5-1x0'|step", good + ("--frames", "5-1x0")),
                ("--chunk", good + ("--chunk", "0")),
                ("'4'|4x4", good + ("--tiles", "4")),
                ("'0x4'", good + ("--tiles", "0x4")),
                ("'2x2x2'", good + ("--tiles", "2x2x2")),
                ("32 x 24", good + SMALL + ("--tiles", "33x1")),
                ("--engine", good[:2] + ("--engine", "moon") + good[4:]),
                ("not installed|slurm-wlm", good[:2] + good[4:]),
                ("a.png|####|2 frames", good[:-1] + ("a.png", "--frames", "1-2")),
                ("<Camera>", good[:-1] + ("<Camera>.#.png",)),
                ("'a.jpg'", good[:-1] + ("a.jpg",)),
                ("'none.gltf' does not exist", good[:1] + ("none.gltf",) + good[2:]),
                ("'none.py' does not exist", good[:1] + ("none.py",) + good[2:]),
                ("before", good[:1] + ("--camera", "c", "reed.gltf") + good[2:]),
                ("--wrong", good + ("--wrong",)),
                ("--progress", good + ("--progress", "plain")),
                ("renumberStart", good + ("--setting", "renumberStart=5")),
                ("1 of the pictures|a.7.png|--overwrite", good + ("--frames", "1-9")),
                ("no job '99'", ("status", "99")),
                ("output", ("check", "--frames", "1-3")),
                ("a.png|####", ("check", "--frames", "1-3", "--output", "a.png"))]:
            with self.subTest(arguments=arguments):
                out, err = self.farm(*arguments, code=2, PATH="/nowhere")
                self.assertEqual((out, len(err.splitlines())), ("", 1), err)
                for word in ["quilfarm: "] + words.split("|"):
                    self.assertIn(word, err)
                self.assertEqual(self.files(), before)


class Local(Case):
    def submit(self, *words, code=0):
        return self.farm("submit", *words, "--engine", "local", *SMALL, code=code)

    def test_tasks_render_what_one_run_does(self):
        for folder in ("one", ODD):
            (self.folder / folder).mkdir()
        (self.folder / "reed.gltf").rename(self.folder / (ODD + ".gltf"))
        frames = ("--frames", "-2,10-1x3,20")
        self.host(ODD + ".gltf", "--output", "one/%02d.exr", *frames, *SMALL)
        out, err = self.submit(ODD + ".gltf", *frames, "--chunk", "2", "--jobs", "2", "--output",
                               ODD + "/%02d.exr")
        self.assertEqual((out, len(err.splitlines())), ("local-1\n", 3))
        self.assert_same_pictures(ODD, "one", 6)
        log = (self.folder / "quilfarm.jobs/local-1/1.log").read_text().splitlines()
        events = [json.loads(line) for line in log]
        self.assertEqual([events[0][key] for key in ("event", "task", "frames")],
                         ["task", 1, "7,4"])
        self.assertEqual((events[-1]["event"], events[-1]["code"]), ("end", 0))
        self.assertEqual(self.farm("status", "local-1")[0], "6 frames: 6 whole\n")
        # Again: kept, or rendered anew.
        file = self.folder / ODD / "20.exr"
        file.write_bytes(file.read_bytes()[:-1])
        kept = self.folder / ODD / "10.exr"
        for flag, is_kept in (("--skip-existing", True), ("--overwrite", False)):
            before = kept.stat().st_mtime_ns
            self.submit(ODD + ".gltf", *frames, "--chunk", "9", flag, "--output", ODD + "/##.exr")
            self.assertEqual(kept.stat().st_mtime_ns == before, is_kept)
            self.assert_same_pictures(ODD, "one", 6)

    def test_a_task_that_is_killed(self):
        for folder in ("one", "farm"):
            (self.folder / folder).mkdir()
        self.host("reed.gltf", "--output", "one/#.png", "--frames", "1-8", *SMALL)
        (self.folder / "a.py").write_text(SCRIPT.format("os.kill(os.getpid(), signal.SIGKILL)"))
        job = ("reed.gltf", "--python", "a.py", "--chunk", "3", "--output", "farm/#.png")
        out, err = self.submit(*job, "--frames", "1-8", code=137)
        self.assertIn("task 1 (frames 4-6): exit code 137", err)
        four = (self.folder / "farm/4.png").stat().st_mtime_ns
        out, err = self.farm("status", "local-1", code=3)
        self.assertEqual(out, "8 frames: 6 whole, 2 missing (5-6)\n")
        missing, err = self.farm("check", "--frames", "1-8", "--output", "farm/#.png", "--list",
                                 code=3)
        self.submit(*job, "--frames", missing.strip(), "--skip-existing")
        self.assert_same_pictures("farm", "one", 8)
        self.assertEqual((self.folder / "farm/4.png").stat().st_mtime_ns, four)
        self.assertEqual(self.farm("check", "--frames", "1-8", "--output", "farm/#.png", "--list"),
                         ("", ""))

    def test_a_script_that_fails(self):
        # What looks like an event is the script's own.
        events = """print('{"event": 3}'); print('{"event": "end", "code": "x"}'); """
        (self.folder / "a.py").write_text(SCRIPT.format(
            events + "print('line\\n' * 9); sys.exit(7)"))
        out, err = self.submit("reed.gltf", "--python", "a.py", "--frames", "4-6", "--chunk", "9",
                               "--output", "#.png", code=7)
        out, err = self.farm("status", "local-1", code=3)
        self.assertEqual(out.splitlines()[1:], [
            "task 0 (frames 4-6) ended with exit code 7; %s begins:" %
            (self.folder / "quilfarm.jobs/local-1/0.log")] +
            ['    {"event": 3}'] + ["    line"] * 4)

    def test_signals_that_are_ignored(self):
        # As nohup does, and as some supervisors leave the ends of children.
        (self.folder / "a.py").write_text(SCRIPT.format("os.kill(os.getppid(), signal.SIGHUP)"))
        self.run_program(
            "sh", "-c", "trap '' HUP CHLD; exec \"$@\"", "sh", self.quilfarm, "submit", "reed.gltf",
            "--engine", "local", "--python", "a.py", "--frames", "5-6", "--output", "#.png", *SMALL)
        self.assertEqual(self.farm("check", "--frames", "5-6", "--output", "#.png")[0],
                         "2 frames: 2 whole\n")

    def test_two_jobs_with_the_same_pictures(self):
        words = [self.quilfarm, "submit", "reed.gltf", "--engine", "local", "--frames", "1-6",
                 "--skip-existing", "--chunk", "6", "--output", "#.exr", *SMALL]
        children = [subprocess.Popen(words, cwd=self.folder, stdout=subprocess.PIPE,
                                     stderr=subprocess.DEVNULL) for _ in range(2)]
        names = {child.communicate(timeout=LIMIT)[0] for child in children}
        self.assertEqual((names, [child.returncode for child in children]),
                         ({b"local-1\n", b"local-2\n"}, [0, 0]))
        self.farm("check", "--frames", "1-6", "--output", "#.exr", *SMALL)
        self.assertEqual(self.files(), ["%d.exr" % frame for frame in range(1, 7)] +
                         ["layers.gltf", "quilfarm.jobs", "reed.gltf"])


class Checks(Case):
    def test_missing_and_damaged_pictures(self):
        self.host("reed.gltf", "--output", "#.exr", "--frames", "1-9", *SMALL)
        (self.folder / "3.exr").unlink()
        (self.folder / "4.exr").write_bytes((self.folder / "4.exr").read_bytes()[:-1])
        (self.folder / "8.exr").write_bytes(b"")
        name = ("--output", "#.exr")
        out, err = self.farm("check", "--frames", "9-1", *name, code=3)
        self.assertEqual(out, "9 frames: 6 whole, 1 missing (3), 2 damaged (8,4)\n"
                              "'8.exr': it is empty\n")
        out, err = self.farm("check", "--frames", "9-1", "--list", *name, code=3)
        self.assertEqual(out, "8,4-3\n")
        self.farm("check", "--frames", "1-2,5-7", *name, *SMALL)
        out, err = self.farm("check", *name, "--resolution", "24", "32", code=3)
        self.assertIn("32 x 24", out)


class Tiles(Case):
    def setUp(self):
        super().setUp()
        for folder in ("one", "farm"):
            (self.folder / folder).mkdir()

    def render(self, name, tiles, *words):
        self.host("layers.gltf", "--output", "one/" + name, *words)
        self.farm("submit", "layers.gltf", "--engine", "local", "--jobs", "2", "--chunk", "2",
                  "--tiles", tiles, "--output", "farm/" + name, *words)

    def test_tiles_make_the_same_picture(self):
        # No side is a multiple of its tiles; EXR pictures have the layers of colours and depths.
        for name, tiles, words in [
                ("##.exr", "3x4", ("--frames", "1-3", "--resolution", "101", "67")),
                ("a.exr", "2x3", ("--resolution", "90", "80", "--region", "3", "60", "9", "75")),
                ("a.png", "4x1", ("--resolution", "53", "34"))]:
            with self.subTest(name=name):
                self.render(name, tiles, *words)
                job = ("--tiles", tiles, "--output", "farm/" + name) + words[:2] * ("#" in name)
                self.farm("check", *job)
                self.farm("assemble", *job)
        for tile in (self.folder / "farm").glob("*tile*"):
            tile.unlink()
        self.assert_same_pictures("farm", "one", 5)

    def test_tiles_that_do_not_fit(self):
        self.render("a.exr", "2x2", *SMALL)
        job = ("assemble", "--output", "farm/a.exr", "--tiles")
        tile = self.folder / "farm/a.tile-1-0-of-2x2.exr"
        whole = tile.read_bytes()
        left = (self.folder / "farm/a.tile-0-0-of-2x2.exr").read_bytes()
        other = whole.replace(b"Z\0\2", b"z\0\2")  # another channel
        for words, contents in [("missing (1)", None), ("damaged (1)", whole[:-1]),
                                ("channels", other),
                                ("not beside", left)]:
            tile.unlink(missing_ok=True)
            if contents is not None:
                tile.write_bytes(contents)
            out, err = self.farm(*job, "2x2", code=3)
            self.assertIn(words, err)
            self.assertNotIn("a.exr", self.files("farm"))
        tile.write_bytes(whole)
        self.farm(*job, "1x2", code=3)
        self.farm(*job, "2x2")


class Guide(Case):
    SMALLER = [("quilfarm submit", "quilfarm submit --engine local"), ("1-1000", "1-4"),
               ("--chunk 10", "--chunk 2"), ("1920 1080", "16 12"), ("16384 16384", "16 12"),
               ("hall.glb", "layers.gltf"), (" 57", " local-1")]

    def test_commands_as_printed(self):
        text = (ROOT / "docs/farm.md").read_text(encoding="utf-8")
        path = "%s:%s" % (self.quilfarm.parent, os.environ["PATH"])
        said = []
        for block in re.findall("```sh\n(.*?)```", text, re.DOTALL):
            for printed, smaller in self.SMALLER:
                block = block.replace(printed, smaller)
            if said:  # a picture that was there
                (self.folder / "out.0002.exr").unlink()
            said.append(self.run_program("sh", "-ec", block, PATH=path)[0].splitlines())
        self.assertEqual(said, [["local-1"] + 2 * ["4 frames: 4 whole"], ["local-2"], ["local-3"]])
        self.host("layers.gltf", "--output", "whole.exr", "--resolution", "16", "12")
        self.assertEqual((self.folder / "still.exr").read_bytes(),
                         (self.folder / "whole.exr").read_bytes())


class Slurm(Case):
    """The stand-ins keep what they are told; the array's largest size is Slurm's usual one."""

    def setUp(self):
        super().setUp()
        for name, text in [("sbatch", 'cat >script; echo "$@" >>calls; test ! -e broken || '
                                      '{ echo "no controller" >&2; exit 1; }; echo "7;cluster"'),
                           ("scontrol", "echo 'MaxArraySize            = 1001'"),
                           ("squeue", "echo RUNNING; echo PENDING; echo PENDING")]:
            self.write_program(name, text)

    def write_program(self, name, text):
        file = self.folder / "bin" / name
        file.parent.mkdir(exist_ok=True)
        file.write_text("#!/bin/sh\n" + text + "\n")
        file.chmod(0o755)

    def submit(self, *words, code=0):
        return self.farm("submit", *words, "--engine", "slurm", *SMALL, code=code,
                         PATH="%s/bin:/usr/bin:/bin" % self.folder)

    def test_one_call_for_all_frames(self):
        job = ("reed.gltf", "--frames", "1-100000", "--output", "#.png", "--threads", "4")
        out, err = self.submit(*job, "--chunk", "10", code=2)
        self.assertIn("10000 tasks", err)
        self.assertIn("--chunk 100 or more", err)
        out, err = self.submit(*job, "--chunk", "100", "--sbatch=--time=9")
        self.assertEqual(out, "7\n")
        self.assertEqual((self.folder / "calls").read_text(), "--parsable --time=9\n")
        script = (self.folder / "script").read_text().splitlines()
        self.assertEqual(script[:6], [
            "#!/bin/sh", "#SBATCH --job-name=quil-reed", "#SBATCH --array=0-999",
            "#SBATCH --requeue", "#SBATCH --output=/dev/null", "#SBATCH --cpus-per-task=4"])
        out, err = self.farm("status", "7", code=3, PATH="%s/bin:/usr/bin" % self.folder)
        self.assertEqual(out, "100000 frames: 0 whole, 100000 missing (1-100000)\n"
                              "Slurm's tasks: 2 PENDING, 1 RUNNING\n")
        (self.folder / "broken").touch()
        out, err = self.submit(*job, "--chunk", "100", code=3)
        self.assertEqual((out, err), ("", "quilfarm: sbatch failed: no controller\n"))
        self.assertEqual(self.files("quilfarm.jobs"), ["7", "slurm-1"])

    def test_the_script_s_tasks(self):
        folder = self.folder / ODD
        folder.mkdir()
        words = ("submit", "reed.gltf", "--frames", "1-5", "--chunk", "2", "--output",
                 ODD + "/#.exr", "--farm", ODD, "--setting", "preKos=" + ODD, *SMALL)
        script, err = self.farm(*words, "--dry-run=true")
        self.assertNotIn("--dry-run", script)
        (folder / "dry-run").mkdir()
        for index, frames in (("2", ["5"]), ("1", ["3", "4", "5"])):
            self.run_program("sh", "-c", script, folder="/", SLURM_ARRAY_TASK_ID=index)
            self.assertEqual(self.files(ODD), [f + ".exr" for f in frames] + ["dry-run"])
        # Started again, a task renders what is missing, and its log goes on.
        (folder / "4.exr").unlink()
        before = (folder / "3.exr").stat().st_mtime_ns
        self.run_program("sh", "-c", script, SLURM_ARRAY_TASK_ID="1", SLURM_RESTART_COUNT="1")
        self.assertEqual((folder / "3.exr").stat().st_mtime_ns, before)
        self.assertTrue((folder / "4.exr").exists())
        log = (folder / "dry-run/1.log").read_text().splitlines()
        begins = [json.loads(line) for line in log if '"event":"task"' in line]
        self.assertEqual([begin["restarts"] for begin in begins], [0, 1])

    def test_a_lost_disk(self):
        (self.folder / "disk").mkdir()
        script, err = self.farm("submit", "reed.gltf", "--output", "disk/#.exr", "--farm", ".",
                                "--dry-run", *SMALL)
        (self.folder / "dry-run").mkdir()
        full = "ulimit -f 16\n" + script.replace("'32' '24'", "'640' '480'")
        self.run_program("sh", "-c", full, code=3, SLURM_ARRAY_TASK_ID="0")
        self.assertEqual(self.files("disk"), [])
        (self.folder / "disk").rmdir()
        self.run_program("sh", "-c", script, code=3, SLURM_ARRAY_TASK_ID="0")
        log = (self.folder / "dry-run/0.log").read_text()
        self.assertIn("File too large", log)
        self.assertIn("'disk' does not exist", log)
        self.assertEqual(log.count('"code":3,"event":"end"'), 2)
        out, err = self.farm("check", "--output", "disk/#.exr", code=3)
        self.assertIn("1 missing (1)", out)


if __name__ == "__main__":
    unittest.main()
