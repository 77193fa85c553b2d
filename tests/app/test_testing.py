# SPDX-License-Identifier: MIT
"""quilhost --test: what it finds, runs, tells and writes; and the documentation's example."""
import os
import re
import sys
import unittest
from xml.etree import ElementTree

from host import HostCase, ROOT

MIXED = """
import ctypes, sys, unittest
class A(unittest.TestCase):
    def test_good(self):
        print u"caf\\xe9"
    def test_bad(self):
        sys.stderr.write("see\\x1b")
        ctypes.CDLL(None).puts("native")
        self.assertEqual(1, 2)
    def test_error(self):
        raise KeyError("gone")
    @unittest.skip("not now")
    def test_skipped(self):
        pass
    @unittest.expectedFailure
    def test_surprise(self):
        pass
class B(unittest.TestCase):
    def test_good(self):
        sys.exit()
"""


class RunnerTest(HostCase):
    def outcomes(self, *arguments, code):
        """The outcomes as told, by the tests' names without their modules."""
        out, err = self.run_host("--test", *arguments, code=code)
        self.assertEqual(out, "")
        return dict(re.findall(r"^\w+\.(\S+) \.\.\. (\w+)$", err, re.MULTILINE)), err

    def test_outcomes(self):
        self.write("test_a.py", MIXED)
        told, err = self.outcomes("test_a.py", "--junit", "a.xml", code=1)
        self.assertEqual(told, {"A.test_good": "ok", "A.test_bad": "failure",
                                "A.test_error": "error", "A.test_skipped": "skipped",
                                "A.test_surprise": "failure", "B.test_good": "error"})
        self.assertTrue(err.rstrip().endswith("4 failed, 1 skipped"), err)
        self.assertIn("Standard output:\nnative", err)
        suite, = ElementTree.parse(os.path.join(self.folder, "a.xml")).getroot()
        self.assertEqual([suite.get(name) for name in ("name", "tests", "failures", "errors",
                                                       "skipped")], ["test_a", "6", "2", "2", "1"])
        cases = {case.get("classname")[-1] + "." + case.get("name"): case for case in suite}
        self.assertEqual(cases["A.test_good"].findtext("system-out"), "caf\xe9\n")
        bad = cases["A.test_bad"]
        self.assertEqual([child.tag for child in bad], ["failure", "system-out", "system-err"])
        self.assertEqual((bad[0].get("type"), bad[0].get("message"), bad[2].text),
                         ("AssertionError", "AssertionError: 1 != 2", "see?"))
        self.assertIn("line 9, in test_bad", bad[0].text)
        self.assertEqual(cases["A.test_error"][0].tag, "error")
        self.assertEqual(cases["A.test_skipped"].find("skipped").get("message"), "not now")

    def test_what_is_run(self):
        os.makedirs(os.path.join(self.folder, "tests", "deep"))
        one = "import unittest\nclass %s(unittest.TestCase):\n    def test_%s(self): pass\n" \
            "    def test_z(self): pass\n"
        self.write("tests/test_a.py", one % ("A", "x"))
        self.write("tests/deep/test_a.py", "from part import value\n" + one % ("B", "y"))
        self.write("tests/deep/part.py", "value = 1")
        self.write("tests/tool.py", "raise ValueError")
        for arguments, expected in [
                (("tests",), "A.test_x A.test_z B.test_y B.test_z"),
                (("tests", "-k", "B.", "-k", "*x"), "A.test_x B.test_y B.test_z"),
                (("tests/deep/test_a.py",), "B.test_y B.test_z"),
                (("tests/test_a.py", "tests/deep", "-k", "_z"), "A.test_z B.test_z")]:
            with self.subTest(arguments=arguments):
                self.assertEqual(" ".join(sorted(self.outcomes(*arguments, code=0)[0])), expected)
        self.write("test_c.py", one % ("C", "w"))
        self.assertEqual(list(self.outcomes("test_c.C.test_w", code=0)[0]), ["C.test_w"])
        self.assertIn("none found", self.outcomes("tests", "-k", "nothing", code=1)[1])

    def test_first_failure_ends_it(self):
        self.write("test_a.py", MIXED)
        self.assertEqual(self.outcomes("test_a.py", "--failfast", code=1)[0],
                         {"A.test_bad": "failure"})

    def test_modules_that_cannot_be_loaded(self):
        for name, source, words in [("import", "import nothing_like_it", "No module named"),
                                    ("syntax", "def", "SyntaxError"),
                                    ("exit", "import sys; sys.exit(0)", "SystemExit")]:
            self.write("test_%s.py" % name, source)
            told, err = self.outcomes("test_%s.py" % name, code=1)
            self.assertEqual(list(told.values()), ["error"], err)
            self.assertIn(words, err)
        self.assertIn("No module named test_no", self.outcomes("test_no.A", code=1)[1])

    def test_scenes(self):
        self.write("other.obj", "v 0 0 0\nv 9 0 0\nv 0 9 0\nf 1 2 3\n")
        source = """{scene}
import os, unittest
from OpenQuil import ZFileIO
class A(unittest.TestCase):
    def test_scene(self):
        self.assertEqual(os.path.basename(unicode(ZFileIO.currentFile())), {name!r})
        ZFileIO.newScene()
"""
        self.write("test_a.py", source.format(scene="SCENE = 'other.obj'", name="other.obj"))
        self.write("test_b.py", source.format(scene="", name="tri.obj"))
        self.run_host("tri.obj", "--test", "test_a.py", "test_b.py")
        self.write("test_b.py", source.format(scene="", name=""))
        self.run_host("--test", "test_a.py", "test_b.py")
        self.write("test_a.py", source.format(scene="SCENE = 'no.obj'", name=""))
        told, err = self.outcomes("test_a.py", code=1)
        self.assertEqual(told, {"SCENE": "error"})
        self.assertIn("no.obj", err)

    def test_mistakes(self):
        for words, arguments in [
                ("output folder 'no' does not exist", ("--test", ".", "--junit", "no/a.xml")),
                ("'no/test.py' does not exist", ("--test", "no/test.py")),
                ("--failfast requires --test", ("--failfast", "--python-expr", "1")),
                ("excludes", ("--test", ".", "--python-expr", "1"))]:
            out, err = self.run_host(*arguments, code=2)
            self.assertEqual(len(err.splitlines()), 1, err)
            self.assertIn(words, err)


class DocumentedTest(HostCase):
    def test_example(self):
        with open(os.path.join(ROOT, "docs", "testing.md"), encoding="utf-8") as stream:
            page = stream.read()
        names = re.findall(r"`((?:test_)?\w+\.(?:py|obj|mtl))`,? (?:has|renders|their)", page)
        blocks = re.findall(r"```(?:python)?\n((?:from|mtllib|newmtl).*?)```", page, re.DOTALL)
        self.assertEqual((names, len(blocks)), (["fog.py", "cards.obj", "cards.mtl",
                                                 "test_fog.py"], 4))
        for name, block in zip(names, blocks):
            self.write(name, block)
        self.assertIn("there is no reference picture", self.run_host("--test", "test_fog.py",
                                                                     code=1)[1])
        os.rename(os.path.join(self.folder, "fog.actual.png"), os.path.join(self.folder, "fog.png"))
        self.run_host("--test", "test_fog.py")
        show = "import quilhost_testing as t\nw, h, p = t.read_picture('fog.png')\n" \
            "print [tuple(p[4 * (18 * w + x):][:4]) for x in (0, 14, 34)]"
        self.assertEqual(self.run_host("--python-expr", show)[0],
                         "[(128, 128, 128, 255), (255, 0, 0, 255), (128, 128, 128, 255)]\n")
        self.write("fog.py", self.read("fog.py").replace("depth > 8", "depth > 1000"))
        out, err = self.run_host("--test", "test_fog.py", code=1)
        self.assertRegex(err, r"\d+ of 1728 pixels differ from '.*/fog.png', by up to 12[78]; ")
        self.assertIn("fog.actual.png", self.files())


if __name__ == "__main__":
    HostCase.QUILHOST = os.path.abspath(sys.argv.pop(1))
    unittest.main()
