# SPDX-License-Identifier: MIT
"""Standard streams, SIGTERM and terminals, as farms and shells expect of quilhost."""
import os
import pty
import signal
import subprocess
import sys
import unittest

from host import HostCase, LIMIT

C = {"LC_ALL": "C", "PYTHONIOENCODING": "", "PYTHONUNBUFFERED": ""}
WAIT = """
import atexit, os, time
def wait():
    try:
        print "now"
        time.sleep(100)
    finally:
        print "finally"
def bye():
    print "at exit"
atexit.register(bye)
"""
CALLBACK = """
from OpenQuilRender import ZRenderCallback
class Callback(ZRenderCallback):
    def renderCallback(self, data):
        wait()
callback = Callback()
ZRenderCallback.addCallback(callback, 0)
"""


class StreamTest(HostCase):
    def test_pipes_are_utf_8(self):
        out, err = self.run_host(
            "--python", self.write("a.py", """
import sys
print u"caf\\xe9 \\U0001f40d", repr(unicode(sys.stdin.readline(), sys.stdin.encoding))
sys.stderr.write(u"\\u4e2d\\n")
"""), input="\u4e2d", environment=C)
        self.assertEqual((out, err), ("caf\xe9 \U0001f40d u'\\u4e2d'\n", "\u4e2d\n"))
        out, err = self.run_host("--python-expr", "print u'\\xe9'", code=1,
                                 environment=dict(C, PYTHONIOENCODING="ascii"))
        self.assertIn("UnicodeEncodeError: 'ascii' codec", err)

    def test_pipes_get_lines(self):
        # The second line is not finished.
        wait = "import sys; sys.stdout.write('a\\nb'); sys.stdin.read()"
        for unbuffered, expected in ("", b"a\n"), ("1", b"a\nb"):
            child = self.start("--python-expr", wait, stdin=subprocess.PIPE,
                               environment=dict(C, PYTHONUNBUFFERED=unbuffered))
            self.assertEqual(os.read(child.stdout.fileno(), 2), b"a\n")
            if unbuffered:
                self.assertEqual(os.read(child.stdout.fileno(), 1), b"b")
            self.assertEqual(child.communicate("\n", timeout=LIMIT)[0], "" if unbuffered else "b")
            self.assertEqual(child.returncode, 0)

    def test_script_on_standard_input(self):
        source = "import sys\nprint __name__, sys.argv\nraise ValueError"
        out, err = self.run_host("--python", "-", "--", "a", input=source, code=1)
        self.assertEqual(out, "__main__ ['-', 'a']\n")
        self.assertIn('File "<stdin>", line 3, in <module>', err)

    def test_bar_only_where_a_terminal_obeys(self):
        for variables, drawn in (({"TERM": "xterm", "NO_COLOR": ""}, True),
                                 ({"TERM": "dumb"}, False), ({"NO_COLOR": "1"}, False)):
            master, slave = pty.openpty()
            child = self.start("tri.obj", "--output", "a.png", "--resolution", "8", "8",
                               stderr=slave, environment=dict({"TERM": "xterm"}, **variables))
            os.close(slave)
            child.communicate(timeout=LIMIT)
            told = os.read(master, 65536)
            os.close(master)
            self.assertEqual((b"\x1b" in told, b"a.png" in told), (drawn, True), told)


class TerminationTest(HostCase):
    def ends(self, number, code, source, *arguments):
        child = self.start("tri.obj", "--output", "a.png", "--quiet", "--python",
                           self.write("a.py", WAIT + source), *arguments)
        self.assertEqual(child.stdout.readline(), "now\n")
        child.send_signal(number)
        out, err = child.communicate(timeout=LIMIT)
        self.assertEqual((child.returncode, self.files()), (code, ["a.py", "tri.obj"]), err)
        return out, err

    def terminates(self, *arguments):
        out, err = self.ends(signal.SIGINT, 130, *arguments)
        self.assertEqual(err.splitlines()[-1], "quilhost: interrupted")
        out, err = self.ends(signal.SIGTERM, 143, *arguments)
        self.assertEqual(err, "quilhost: terminated\n")
        return out

    def test_in_a_script(self):
        self.assertEqual(self.terminates("wait()"), "finally\nat exit\n")

    def test_in_a_callback(self):
        self.assertEqual(self.terminates(CALLBACK, "--resolution", "9", "9"),
                         "finally\nat exit\n")

    def test_in_the_render(self):
        self.assertEqual(self.terminates("print 'now'", "--resolution", "16000", "16000"),
                         "at exit\n")

    def test_script_handles_it(self):
        source = "import os, signal\nsignal.signal(signal.SIGTERM, lambda *_: %s)\n" \
            "os.kill(os.getpid(), signal.SIGTERM)\nprint 'on'"
        self.assertEqual(self.run_host("--python-expr", source % "0"), ("on\n", ""))


if __name__ == "__main__":
    HostCase.QUILHOST = os.path.abspath(sys.argv.pop(1))
    unittest.main()
