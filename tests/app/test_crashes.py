# SPDX-License-Identifier: MIT
"""What quilhost says when a fatal signal ends it, in child processes and line by line."""
import os
import signal
import sys
import unittest

from host import HostCase

ADDRESS = " at address 0x[0-9a-f]{16}"

# Sends more pixels than there are: the host reads on until memory ends.
SEND = """from OpenQuil import DoubleBuffer
from OpenQuilRender import RV_PIXEL, ZRenderView
def send(size):
    ZRenderView.startRender(size, size)
    ZRenderView.updatePixels(0, size - 1, 0, size - 1, RV_PIXEL())
"""
STACK = r"Python stack \(most recent call first\):"
# The copying is inlined, but in a debug build.
NATIVE = r"  in (ZRenderView::updatePixels\(unsigned int, .*\)|.* std::.*) in libOpenQuilRender\.so"


class CrashTest(HostCase):
    def crashes(self, ending, source, address, *lines):
        """Runs the script; `lines` are patterns for those behind the first, which names `ending`
        and ends in `address`."""
        self.write("a.py", source)
        out, err = self.run_host("--quiet", "--python", "a.py", "tri.obj", "--output", "a.png",
                                 "--resolution", "4", "4", code=-ending)
        self.assertEqual(self.files(), ["a.py", "tri.obj"])
        told = err.splitlines()
        expected = ["quilhost: fatal signal " + ending.name + address] + list(lines)
        for line, pattern in zip(told, expected):
            self.assertRegex(line, "^%s$" % pattern)
        self.assertEqual(len(told), len(expected), err)

    def test_native_function_of_the_host(self):
        self.crashes(signal.SIGSEGV, SEND + "send(4000)", ADDRESS, NATIVE, STACK,
                     '  File "a.py", line 5, in send', '  File "a.py", line 6, in <module>')

    def test_in_a_callback(self):
        self.crashes(signal.SIGSEGV, SEND + """
from OpenQuilRender import ZRenderCallback
class Callback(ZRenderCallback):
    def renderCallback(self, data):
        send(4000)
callback = Callback()
ZRenderCallback.addCallback(callback, 0)
""", ADDRESS, NATIVE, STACK,
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
                # The processor does not say at which address that has no canonical form.
                (signal.SIGSEGV, "import ctypes\ndef fall():\n"
                 "    ctypes.c_char.from_address(1 << 62).value\nfall()", 3, ""),
                (signal.SIGABRT, "import os\ndef fall():\n    os.abort()\nfall()", 3, "")]:
            with self.subTest(signal=ending):
                self.crashes(ending, source, address, STACK,
                             '  File "a.py", line %d, in fall' % line,
                             '  File "a.py", line %d, in <module>' % (line + 1))

    def test_a_thread_renders_when_the_program_ends(self):
        self.write("a.py", "import threading, quilhost\nbegun = threading.Event()\n"
                   "def render_on():\n    begun.set()\n    while True:\n"
                   "        quilhost.render('a.png', 640, 480)\n"
                   "thread = threading.Thread(target=render_on)\nthread.daemon = True\n"
                   "thread.start()\nbegun.wait()")
        self.assertEqual(self.run_host("--quiet", "--python", "a.py", "tri.obj"), ("", ""))

    def test_jump_to_nowhere(self):
        # Nobody can follow such a stack; the script's is told all the same.
        self.crashes(signal.SIGSEGV, "import ctypes\ndef fall():\n"
                     "    ctypes.CFUNCTYPE(None)(0xffffffff00000000)()\nfall()", ADDRESS, STACK,
                     '  File "a.py", line 3, in fall', '  File "a.py", line 4, in <module>')

    def test_stack_that_is_used_up(self):
        frames = ['  File "a.py", line 4, in fall'] * 20
        for start in ("fall()", "import threading\nthread = threading.Thread(target=fall)\n"
                      "thread.start()\nthread.join()"):
            with self.subTest(start=start):
                self.crashes(signal.SIGSEGV, "import sys\nsys.setrecursionlimit(1 << 30)\n"
                             "def fall():\n    fall()\n" + start,
                             ADDRESS, STACK, *frames + [r"  and \d+ more"])


if __name__ == "__main__":
    HostCase.QUILHOST = os.path.abspath(sys.argv.pop(1))
    unittest.main()
