# SPDX-License-Identifier: MIT
"""A folder with a scene that moves, and quilfarm and quilhost in it."""
import os
import pathlib
import shutil
import subprocess
import tempfile
import unittest

ROOT = pathlib.Path(__file__).resolve().parents[2]
LIMIT = 120  # seconds for one child


class Case(unittest.TestCase):
    quilfarm = None  # the program, set by whoever runs the tests

    def setUp(self):
        self.folder = pathlib.Path(tempfile.mkdtemp(prefix="quilfarm_")).resolve()
        self.addCleanup(shutil.rmtree, self.folder)
        for name in ("reed.gltf", "layers.gltf"):
            shutil.copy(ROOT / "examples/scenes" / name, self.folder)

    def run_program(self, *words, code=0, folder=None, **environment):
        child = subprocess.run([str(word) for word in words], cwd=folder or self.folder,
                               env=dict(os.environ, **environment), text=True, timeout=LIMIT,
                               stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                               stderr=subprocess.PIPE)
        self.assertEqual(child.returncode, code, (words, child.stdout, child.stderr))
        return child.stdout, child.stderr

    def farm(self, *words, **options):
        return self.run_program(self.quilfarm, *words, **options)

    def host(self, *words):
        return self.run_program(self.quilfarm.parent / "quilhost", *words)

    def files(self, folder="."):
        return sorted(os.listdir(self.folder / folder))

    def assert_same_pictures(self, folder, other, count):
        self.assertEqual(len(self.files(folder)), count)
        self.assertEqual(self.files(folder), self.files(other))
        for name in self.files(folder):
            self.assertEqual((self.folder / folder / name).read_bytes(),
                             (self.folder / other / name).read_bytes(), name)
