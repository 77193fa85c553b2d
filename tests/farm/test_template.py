# SPDX-License-Identifier: MIT
"""Reads job templates back: every field against the rules of jobtemplate-2023-09, written down here
as tables, and then runs their tasks as a farm would.

Usage: test_template.py QUILFARM
"""
import json
import pathlib
import re
import sys
import unittest

from farm_case import Case

Case.quilfarm = pathlib.Path(sys.argv.pop(1)).resolve()
UI = {"STRING": "LINE_EDIT MULTILINE_EDIT DROPDOWN_LIST CHECK_BOX HIDDEN",
      "PATH": "CHOOSE_INPUT_FILE CHOOSE_OUTPUT_FILE CHOOSE_DIRECTORY DROPDOWN_LIST HIDDEN",
      "INT": "SPIN_BOX DROPDOWN_LIST HIDDEN"}
MORE = {"STRING": "allowedValues minLength maxLength", "INT": "allowedValues minValue maxValue",
        "PATH": "allowedValues minLength maxLength objectType dataFlow"}
NAME = re.compile(r"[A-Za-z_][A-Za-z0-9_]{0,63}$")


def expand(expression):
    """The values of a range expression; an error where elements overlap or values decrease."""
    spans, values = [], []
    for element in expression.split(","):
        first, last, step = re.match(r"(-?\d+)(?:-(-?\d+)(?::(\d+))?)?$", element).groups()
        first, last, step = int(first), int(last or first), int(step or 1)
        assert first <= last and step > 0, element
        spans.append((first, last))
        values += range(first, last + 1, step)
    spans.sort()
    assert all(a[1] < b[0] for a, b in zip(spans, spans[1:])), expression
    return sorted(values)


class Template(Case):
    def keys(self, part, required, optional=""):
        self.assertLessEqual(set(required.split()), set(part))
        self.assertLessEqual(set(part), set((required + " " + optional).split()))

    def check_parameter(self, part):
        kind = part["type"]
        self.keys(part, "name type", "default description userInterface " + MORE[kind])
        self.assertRegex(part["name"], NAME)
        self.assertIs(type(part["default"]), int if kind == "INT" else str)
        self.assertIn(part["default"], part.get("allowedValues", [part["default"]]))
        self.keys(part["userInterface"], "control", "label groupLabel")
        self.assertIn(part["userInterface"]["control"], UI[kind].split())
        self.assertIn(part.get("objectType", "FILE"), ("FILE", "DIRECTORY"))
        self.assertIn(part.get("dataFlow", "NONE"), ("NONE", "IN", "OUT", "INOUT"))

    def check_document(self, document):
        self.keys(document, "specificationVersion name steps", "description parameterDefinitions")
        self.assertEqual(document["specificationVersion"], "jobtemplate-2023-09")
        self.assertRegex(document["name"], r"^[^\x00-\x1f\x7f]{1,128}$")
        for part in document["parameterDefinitions"]:
            self.check_parameter(part)
        [step] = document["steps"]
        self.keys(step, "name", "dependencies hostRequirements parameterSpace script")
        self.keys(step["parameterSpace"], "taskParameterDefinitions", "combination")
        [task] = step["parameterSpace"]["taskParameterDefinitions"]
        self.keys(task, "name type range")
        if task["type"] == "STRING":
            self.assertTrue(1 <= len(task["range"]) <= 1024)
        run = step["script"]["actions"]["onRun"]
        self.keys(run, "command", "args timeout cancelation")
        self.assertEqual(run["cancelation"]["mode"], "NOTIFY_THEN_TERMINATE")
        self.assertTrue(0 < run["cancelation"]["notifyPeriodInSeconds"] <= 600)
        known = {"Param." + part["name"] for part in document["parameterDefinitions"]}
        for word in run["args"]:
            for name in re.findall(r"{{\s*(.*?)\s*}}", word):
                self.assertIn(name, known | {"Task.Param." + task["name"]})
        return step, task, run

    def commands(self, text, **values):
        """The command lines of all tasks, with the parameters' defaults but for `values`."""
        document = json.loads(text)
        step, task, run = self.check_document(document)
        parameters = {part["name"]: values.get(part["name"], part["default"])
                      for part in document["parameterDefinitions"]}

        def fill(word, more={}):
            values = dict({"Param." + name: value for name, value in parameters.items()}, **more)
            for name, value in values.items():
                word = word.replace("{{%s}}" % name, str(value))
            return word
        items = task["range"]
        if task["type"] == "INT":
            items = expand(fill(items))
        return [[run["command"]] + [fill(word, {"Task.Param." + task["name"]: item})
                                    for word in run["args"]] for item in items]

    def test_tasks_render_what_one_run_does(self):
        for folder in ("one", "frames", "chunks"):
            (self.folder / folder).mkdir()
        (self.folder / "reed.gltf").rename(self.folder / "Schilf ü \"1\".gltf")
        (self.folder / "a.py").write_text("import sys\nassert sys.argv[1] == 'x y'\n"
                                          "def render(frame): pass\n")
        frames = ("--frames", "10-1x3,-2,20-16x2")
        job = ("Schilf ü \"1\".gltf", "--python", "a.py", "--threads", "1", "--exr", "float")
        self.host(*job, *frames, "--output", "one/##.exr", "--resolution", "32", "24", "--", "x y")
        for folder, chunk, tasks in (("frames", "1", 8), ("chunks", "3", 3)):
            text, err = self.farm("template", *job, *frames, "--chunk", chunk, "--output",
                                  folder + "/##.exr", "--", "x y")
            document = json.loads(text)
            self.assertEqual(document["name"], "Schilf ü \"1\"")
            self.assertEqual(document["steps"][0]["hostRequirements"],
                             {"amounts": [{"name": "amount.worker.vcpu", "min": 1}]})
            commands = self.commands(text, Width=32, Height=24)
            self.assertEqual(len(commands), tasks)
            for words in commands:
                out, err = self.run_program(*words, folder="/")
                self.assertIn("openjd_progress: 100.0", err.splitlines())
            self.assert_same_pictures(folder, "one", 8)
        # Frames of the template can be others, where there is a task for each.
        text, err = self.farm("template", "a.py", "--frames", "1", "--output", "#.png", "--", "x y")
        self.assertEqual([[w for w in words if "frames" in w]
                          for words in self.commands(text, Frames="4-6:2")],
                         [["--frames=4"], ["--frames=6"]])

    def test_what_a_template_cannot_have(self):
        job = ("template", "reed.gltf", "--output", "#.png")
        text, err = self.farm(*job, "--frames", "1-2048", "--chunk", "2")
        [tasks] = json.loads(text)["steps"][0]["parameterSpace"]["taskParameterDefinitions"]
        self.assertEqual(tasks["range"][1022:], ["2045-2046", "2047-2048"])  # all that fit
        for command, shows in ("template", False), ("submit", True):
            self.assertEqual("--tiles" in self.farm(command, "--help")[0], shows)
        for words, arguments in [("1025 chunks|--chunk 3 or more",
                                  ("--frames", "1-2050", "--chunk", "2")),
                                 ("{{", ("--camera", "{{Param.X}}")),
                                 ("UTF-8", ("--camera", "\udcff")),
                                 ("--tiles", ("--tiles", "2x2"))]:
            out, err = self.farm(*job, *arguments, code=2)
            self.assertEqual((out, len(err.splitlines())), ("", 1))
            for word in words.split("|"):
                self.assertIn(word, err)


if __name__ == "__main__":
    unittest.main()
