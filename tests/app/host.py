# SPDX-License-Identifier: MIT
"""quilhost in child processes, each with a folder of its own and a time limit."""
import os
import resource
import shutil
import subprocess
import tempfile
import unittest

SANITIZER = os.environ.get("SANITIZER")
LIMIT = 280 if SANITIZER else 120  # seconds for one child
ROOT = os.path.dirname(os.path.dirname(os.path.dirname(os.path.abspath(__file__))))
HAS_PLAIN_INTERPRETER = not SANITIZER  # which has to be in a process from its start
TRIANGLE = "v -1 -1 0\nv 1 -1 0\nv 0 1 0\nvn 0 0 1\nf 1//1 2//1 3//1\n"


def _leave_no_core_dump():
    resource.setrlimit(resource.RLIMIT_CORE, (0, 0))


class HostCase(unittest.TestCase):
    QUILHOST = None  # the program, which the test's own main sets

    def setUp(self):
        self.folder = os.path.realpath(tempfile.mkdtemp(prefix="quilhost_"))
        self.addCleanup(shutil.rmtree, self.folder)
        self.write("tri.obj", TRIANGLE)

    def write(self, name, text):
        with open(os.path.join(self.folder, name), "w", encoding="utf-8") as stream:
            stream.write(text)
        return name

    def read(self, name):
        with open(os.path.join(self.folder, name), encoding="utf-8") as stream:
            return stream.read()

    def files(self):
        return sorted(os.listdir(self.folder))

    def start(self, *arguments, environment=(), **options):
        options.setdefault("stdin", subprocess.DEVNULL)
        options.setdefault("stderr", subprocess.PIPE)
        # A module that is written again within a second is taken for the one that was compiled.
        variables = dict(os.environ, PYTHONDONTWRITEBYTECODE="1", **dict(environment))
        return subprocess.Popen([self.QUILHOST] + list(arguments), cwd=self.folder,
                                stdout=subprocess.PIPE, text=True, encoding="utf-8", env=variables,
                                preexec_fn=_leave_no_core_dump, **options)

    def run_host(self, *arguments, code=0, input=None, environment=()):
        """Standard output and error of a run that ends with the code."""
        child = self.start(*arguments, environment=environment,
                           stdin=subprocess.DEVNULL if input is None else subprocess.PIPE)
        try:
            out, err = child.communicate(input, timeout=LIMIT)
        finally:
            child.kill()
            child.wait()
        self.assertEqual(child.returncode, code, (arguments, out, err))
        return out, err
