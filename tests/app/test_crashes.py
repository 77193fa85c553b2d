# SPDX-License-Identifier: MIT
"""What quilhost says when a fatal signal ends it, in child processes and line by line."""
import os
import resource
import signal
import subprocess
import sys
import tempfile
import unittest

QUILHOST = os.path.abspath(sys.argv.pop(1))
LIMIT = 60  # seconds for one child
ADDRESS = " at address 0x[0-9a-f]{16}"

# Sends more pixels than there are: the host reads on until memory ends.
SEND = """from OpenQuil import DoubleBuffer
from OpenQuilRender import RV_PIXEL, ZRenderView
def send(size):
    ZRenderView.startRender(size, size)
    ZRenderView.updatePixels(0, size - 1, 0, size - 1, RV_PIXEL())
"""
PROXY = r'  File ".*/OpenQuilRender\.py", line \d+, in updatePixels'
STACK = r"Python stack \(most recent call first\):"
NATIVE = r"  in ZRenderView::updatePixels\(unsigned int, .*\) in libOpenQuilRender\.so"


def no_core_dump():
    resource.setrlimit(resource.RLIMIT_CORE, (0, 0))


class CrashTest(unittest.TestCase):
    def crashes(self, ending, source, address, *lines):
        """Runs the script; `lines` are patterns for those behind the first, which names `ending`
        and ends in `address`."""
        with tempfile.TemporaryDirectory(prefix="quilhost_crash_") as folder:
            with open(os.path.join(folder, "a.py"), "w") as stream:
                stream.write(source)
            with open(os.path.join(folder, "a.obj"), "w") as stream:
                stream.write("v -1 -1 0\nv 1 -1 0\nv 0 1 0\nf 1 2 3\n")
            end = subprocess.run([QUILHOST, "--quiet", "--python", "a.py", "a.obj", "--output",
                                  "a.png", "--resolution", "4", "4"], cwd=folder, text=True,
                                 stdin=subprocess.DEVNULL, capture_output=True, timeout=LIMIT,
                                 preexec_fn=no_core_dump)
            self.assertEqual(sorted(os.listdir(folder)), ["a.obj", "a.py"])
        self.assertEqual(end.returncode, -ending, end.stderr)
        told = end.stderr.splitlines()
        expected = ["quilhost: fatal signal " + ending.name + address] + list(lines)
        for line, pattern in zip(told, expected):
            self.assertRegex(line, "^%s$" % pattern)
        self.assertEqual(len(told), len(expected), end.stderr)

    def test_native_function_of_the_host(self):
        self.crashes(signal.SIGSEGV, SEND + "send(4000)", ADDRESS, NATIVE, STACK, PROXY,
                     '  File "a.py", line 5, in send', '  File "a.py", line 6, in <module>')

    def test_in_a_callback(self):
        self.crashes(signal.SIGSEGV, SEND + """
from OpenQuilRender import ZRenderCallback
class Callback(ZRenderCallback):
    def renderCallback(self, data):
        send(4000)
callback = Callback()
ZRenderCallback.addCallback(callback, 0)
""", ADDRESS, NATIVE, STACK, PROXY,
                     '  File "a.py", line 5, in send',
                     '  File "a.py", line 10, in renderCallback')

    def test_signals(self):
        # One that a process sends has no address; a file that was cut short has.
        cut = ("import mmap\ndef fall():\n    with open('b', 'w+b') as f:\n"
               "        f.truncate(1)\n        m = mmap.mmap(f.fileno(), 1)\n"
               "        __import__('os').remove('b'); f.truncate(0)\n        m[0]\nfall()")
        send = "import os\ndef fall():\n    os.kill(os.getpid(), %d)\nfall()"
        for ending, source, line, address in [
                (signal.SIGBUS, cut, 7, ADDRESS), (signal.SIGFPE, send % signal.SIGFPE, 3, ""),
                (signal.SIGILL, send % signal.SIGILL, 3, ""),
                (signal.SIGSEGV, send % signal.SIGSEGV, 3, ""),
                (signal.SIGABRT, "import os\ndef fall():\n    os.abort()\nfall()", 3, "")]:
            with self.subTest(signal=ending):
                self.crashes(ending, source, address, STACK,
                             '  File "a.py", line %d, in fall' % line,
                             '  File "a.py", line %d, in <module>' % (line + 1))

    def test_stack_that_is_used_up(self):
        frames = ['  File "a.py", line 4, in fall'] * 20
        for start in ("fall()", "import threading\nthread = threading.Thread(target=fall)\n"
                      "thread.start()\nthread.join()"):
            with self.subTest(start=start):
                self.crashes(signal.SIGSEGV, "import sys\nsys.setrecursionlimit(1 << 30)\n"
                             "def fall():\n    fall()\n" + start,
                             ADDRESS, STACK, *frames + [r"  and \d+ more"])


if __name__ == "__main__":
    unittest.main()
