# SPDX-License-Identifier: MIT
"""Tells the line and branch coverage of a run of the tests in a coverage build, and compares the
branches of runtime/ that no test took with the list of those that have a reason.

Branches that only an exception of a called function takes (the compiler adds them to every call)
are not counted: gcovr's --exclude-throw-branches. Nor are those of a line that only changes a
reference count (the interpreter's macro asks whether it was the last one) or makes a function's
static variable (the compiler's guard asks whether another thread does). The copy of the sources for
the second host is left out: of what it does not run, nothing tells which branches throw. A line of
the list is the file, how many branches of the source line are not taken, the source line itself,
and the reason, with tabs between.

Usage: coverage.py BUILD_DIR UNREACHED.tsv MINIMUM_PERCENT
"""
import collections
import json
import re
import subprocess
import sys

NOT_OURS = re.compile(r"Py_(X?(INC|DEC)REF|CLEAR)\(.*\);$|static .* = .*;$")
FOLDERS = "runtime", "wrappers"


def measured(build):
    """The files' lines, as gcovr tells them: {path: [line, ...]}."""
    command = ["gcovr", "--root", ".", "--json", "--exclude-throw-branches",
               "--gcov-ignore-parse-errors", "--exclude-directories", ".*/second_host", "-j", "2"]
    for folder in FOLDERS:
        command += ["--filter", folder + "/"]
    run = subprocess.run(command + [build], stdout=subprocess.PIPE, check=True)
    report = json.loads(run.stdout)
    files = {file["file"]: file["lines"] for file in report["files"]}
    for path, lines in files.items():
        with open(path) as file:
            source = file.read().splitlines()
        for line in lines:
            line["text"] = source[line["line_number"] - 1].strip()
            if NOT_OURS.match(line["text"]):
                line["branches"] = []
    return files


def told(files, folder):
    """Prints a folder's totals; its branch coverage in percent."""
    lines = [line for path in files if path.startswith(folder + "/") for line in files[path]
             if not line["gcovr/noncode"]]
    branches = [branch for line in lines for branch in line["branches"]]
    shares = []
    for name, counts in (("lines", [line["count"] for line in lines]),
                         ("branches", [branch["count"] for branch in branches])):
        taken = sum(count > 0 for count in counts)
        shares.append(100.0 * taken / len(counts))
        print("%-9s %-8s %5d of %5d  %5.1f %%" % (folder, name, taken, len(counts), shares[-1]))
    return shares[1]


def unreached(files, folder):
    """How many branches of each source line were not taken: {(path, text): count}."""
    result = collections.Counter()
    for path, lines in files.items():
        if not path.startswith(folder + "/"):
            continue
        for line in lines:
            missing = sum(not branch["count"] for branch in line["branches"])
            if missing:
                result[path, line["text"]] += missing
    return result


def main():
    build, reasons_path, minimum = sys.argv[1], sys.argv[2], float(sys.argv[3])
    files = measured(build)
    share = [told(files, folder) for folder in FOLDERS][0]
    missing = unreached(files, "runtime")
    with open(reasons_path) as file:
        rows = [line.rstrip("\n").split("\t") for line in file if not line.startswith("#")]
    allowed = {(path, text): int(count) for path, count, text, reason in rows if reason}
    failed = share < minimum
    for place, count in sorted(missing.items()):
        if count > allowed.get(place, 0):
            failed = True
            print("not taken, without a reason in %s:\n%s\t%d\t%s" %
                  (reasons_path, place[0], count, place[1]))
    for place in sorted(set(allowed) - set(missing)):
        failed = True
        print("in %s, but taken or gone:\n%s\t%s" % ((reasons_path,) + place))
    return 1 if failed else 0


sys.exit(main())
