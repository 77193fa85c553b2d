# SPDX-License-Identifier: MIT
"""quilhost --trace and --stats: what ran when, and how often."""
import collections
import json
import os
import re
import sys
import unittest

from host import HostCase

# Three calls of outer, one of which fails, two levels of recursion each, and a thread.
SCRIPT = """
import threading
import _OpenQuilRender as native
from OpenQuilRender import ZRenderCallback, ZRenderUtil
def outer(x):
    inner(2)
    ZRenderUtil.noise1(0.5)
    return 1 / x
def inner(n):
    return n and inner(n - 1)
class Callback(ZRenderCallback):
    def renderCallback(self, data):
        outer(1)
callback = Callback()
ZRenderCallback.addCallback(callback, 0)
outer(1)
try:
    outer(0)
except ZeroDivisionError:
    pass
thread = threading.Thread(target=inner, args=(0,))
thread.start()
thread.join()
"""
# Of the script's own functions and what they call, over both frames.
CALLS = {"python outer (a.py:5)": 4, "python inner (a.py:9)": 13, "host load": 1, "host build": 1,
         "python renderCallback (a.py:12)": 2, "native _OpenQuilRender.ZRenderUtil_noise1": 4,
         "host renderCallback": 2, "host write": 2, "host render": 2}


class TimelineTest(HostCase):
    def setUp(self):
        HostCase.setUp(self)
        self.write("a.py", SCRIPT)
        self.arguments = ("tri.obj", "--quiet", "--python", "a.py", "--output", "a.#.png",
                          "--frames", "1-2", "--resolution", "32", "24", "--threads", "3")

    def test_trace(self):
        out, err = self.run_host(*self.arguments, "--trace", "t.json")
        self.assertEqual(err, "")
        events = json.loads(self.read("t.json"))["traceEvents"]
        threads = {event["tid"]: event["args"]["name"] for event in events if event["ph"] == "M"}
        calls, open_names, parents = collections.Counter(), collections.defaultdict(list), {}
        times = collections.defaultdict(float)
        for event in events:
            if event["ph"] == "M":
                continue
            # Each thread's events are in order, and an end is that of what began last.
            self.assertGreaterEqual(event["ts"], times[event["tid"]])
            times[event["tid"]] = event["ts"]
            stack, name = open_names[event["tid"]], event["cat"] + " " + event["name"]
            if event["ph"] == "B":
                calls[name] += 1
                parents.setdefault(name, set()).add(stack[-1] if stack else threads[event["tid"]])
                stack.append(name)
            elif event["ph"] == "E":
                self.assertEqual(stack.pop(), name)
        self.assertEqual([stack for stack in open_names.values() if stack], [])
        self.assertEqual({name: calls[name] for name in CALLS}, CALLS)
        self.assertEqual(parents["python renderCallback (a.py:12)"], {"host renderCallback"})
        self.assertEqual(parents["host renderCallback"], {"host render"})
        self.assertLessEqual(parents["host tiles"],
                             {"host render", "render thread 1", "render thread 2"})
        self.assertEqual([event["name"] for event in events if event["ph"] == "i"],
                         ["frame 1", "frame 2"])
        self.assertEqual(len([name for name in threads.values() if name.startswith("thread ")]), 1)

    def test_two_crews_at_once(self):
        # A script's thread traces rays while the host renders, both with threads of their own.
        self.write("c.py", """
import threading, quilhost
from OpenQuil import ZFloatVector, ZFloatVectorArray
from OpenQuilRender import ZRenderUtil
origins, directions = ZFloatVectorArray(), ZFloatVectorArray()
for _ in range(2000):
    origins.append(ZFloatVector(0, 0, 5))
    directions.append(ZFloatVector(0, 0, -1))
def trace():
    while not ended:
        ZRenderUtil.raytrace(origins, directions, None, None, 1, ZFloatVectorArray(),
                             ZFloatVectorArray())
ended = []
thread = threading.Thread(target=trace)
thread.start()
for _ in range(3):
    quilhost.render("c.png", 200, 150)
ended.append(True)
thread.join()
""")
        self.run_host("tri.obj", "--quiet", "--python", "c.py", "--threads", "3",
                      "--trace", "c.json")
        stacks = collections.defaultdict(list)
        for event in json.loads(self.read("c.json"))["traceEvents"]:
            if event["ph"] == "B":
                stacks[event["tid"]].append(event["name"])
            elif event["ph"] == "E":
                self.assertEqual(stacks[event["tid"]].pop(), event["name"])

    def test_a_profile_function_outlives_the_script(self):
        self.write("a.py", SCRIPT + """
def heard(frame, event, argument):
    if event == "call":
        print(frame.f_code.co_name)
import sys
sys.setprofile(heard)
""")
        out, err = self.run_host(*self.arguments)
        self.assertEqual((out.split()[:10], err),
                         (["renderCallback", "outer", "inner", "inner", "inner"] * 2, ""))

    def test_stats(self):
        out, err = self.run_host(*self.arguments, "--stats")
        rows = {}
        for line in err.splitlines()[1:]:
            if match := re.match(r" *(\d+) +([\d.]+) +([\d.]+)  (.*)", line):
                rows[match[4]] = int(match[1]), float(match[2]), float(match[3])
        self.assertEqual({name: rows[name][0] for name in CALLS if name in rows},
                         {name: CALLS[name] for name in CALLS if name in rows})
        self.assertIn("host render", rows)
        owns = [own for calls, total, own in rows.values()]
        self.assertEqual(owns, sorted(owns, reverse=True))
        for name, (calls, total, own) in rows.items():
            self.assertLessEqual(own, total + 0.001, name)

    def test_own_time_and_recursion(self):
        self.write("b.py", "import time\ndef a(n):\n    time.sleep(0.2)\n    if n: a(n - 1)\n"
                   "def b():\n    a(1)\nb()")
        out, err = self.run_host("--python", "b.py", "--stats")
        found = {name: (int(calls), float(total), float(own)) for calls, total, own, name in
                 re.findall(r" *(\d+) +([\d.]+) +([\d.]+)  python ([ab]) ", err)}
        self.assertEqual((found["a"][0], found["b"][0]), (2, 1))
        # The recursion counts once, and what b waits for is not its own.
        self.assertGreaterEqual(found["a"][1], 0.4)
        self.assertAlmostEqual(found["a"][1], found["a"][2], 2)
        self.assertAlmostEqual(found["b"][1] - found["b"][2], found["a"][1], 2)

    def test_ends(self):
        self.assertIn("output folder 'no' does not exist", self.run_host(
            "--python-expr", "1", "--trace", "no/t.json", code=2)[1])
        self.run_host("--python-expr", "def f(): import sys; sys.exit(7)\nf()", "--trace", "t.json",
                      code=7)
        events = json.loads(self.read("t.json"))["traceEvents"]
        kinds = collections.Counter(event["ph"] for event in events)
        self.assertEqual(kinds["B"], kinds["E"])
        self.assertIn("f (<string>:1)", [event["name"] for event in events])


if __name__ == "__main__":
    HostCase.QUILHOST = os.path.abspath(sys.argv.pop(1))
    unittest.main()
