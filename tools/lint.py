"""Runs clang-tidy over every source file of a build folder's compile database, on all cores, then
cppcheck. A file that clang-tidy passed is not looked at again until it, a header of it or
.clang-tidy changes; cppcheck keeps such a memory of its own.

Usage: lint.py BUILD_DIR CXX
"""
import concurrent.futures
import hashlib
import json
import os
import pathlib
import shlex
import subprocess
import sys

build, compiler = sys.argv[1:]
passed, memory = os.path.join(build, "tidy"), os.path.join(build, "cppcheck")
database = os.path.join(build, "checked.json")


def settings(source):
    """The .clang-tidy files of a source file's folders."""
    files = [folder / ".clang-tidy" for folder in pathlib.Path(os.path.relpath(source)).parents]
    return b"".join(file.read_bytes() for file in files if file.exists())


def check(entry):
    """The report on one source file, None when it was clean before."""
    source = entry["file"]
    words = shlex.split(entry["command"])
    words = words[words.index(next(word for word in words if word.startswith("-"))):]
    at = words.index("-o")
    rule = subprocess.run([compiler, "-MM"] + words[:at] + words[at + 2:], cwd=entry["directory"],
                          stdout=subprocess.PIPE, check=True, universal_newlines=True).stdout
    state = hashlib.sha256(settings(source) + repr(words).encode())
    for path in rule.replace("\\\n", " ").split()[1:]:
        with open(os.path.join(entry["directory"], path), "rb") as file:
            state.update(file.read())
    stamp = os.path.join(passed, state.hexdigest())
    if os.path.exists(stamp):
        return None
    run = subprocess.run(["clang-tidy", "--quiet", "-p", build, source],
                         stdout=subprocess.PIPE, stderr=subprocess.PIPE, universal_newlines=True)
    if run.returncode == 0 and not run.stdout.strip():
        open(stamp, "w").close()
        return ""
    return run.stdout or run.stderr


def tidy(entries):
    """Prints the findings; whether there were none."""
    told, checked, clean, new = set(), 0, True, True
    with concurrent.futures.ThreadPoolExecutor(len(os.sched_getaffinity(0))) as workers:
        for report in workers.map(check, entries):
            checked += report is not None
            clean = clean and not report
            for line in (report or "").splitlines():
                # A header's findings come once with every source that includes it.
                if ": warning: " in line or ": error: " in line:
                    new = line not in told
                    told.add(line)
                if new:
                    print(line, flush=True)
    print("clang-tidy: %d of %d files checked, %d findings" % (checked, len(entries), len(told)))
    return clean


def cppcheck(entries):
    # Rows are specialisations numbered by __COUNTER__, which cppcheck does not parse.
    rows = ("wrappers/", "devhost/core_module/", "tests/wrappers/")
    with open(database, "w") as file:
        json.dump([entry for entry in entries
                   if not os.path.relpath(entry["file"]).startswith(rows)], file)
    return not subprocess.run(
        ["cppcheck", "--project=" + database, "--enable=warning,performance,portability",
         "--library=googletest", "--library=python", "--error-exitcode=1",
         "--suppressions-list=tools/cppcheck.supp", "--cppcheck-build-dir=" + memory,
         "--template=gcc", "--quiet", "-j%d" % len(os.sched_getaffinity(0))]).returncode


def main():
    for folder in passed, memory:
        os.makedirs(folder, exist_ok=True)
    with open(os.path.join(build, "compile_commands.json")) as file:
        every = json.load(file)
    # Without what the build generates; a source that several programs compile is checked once.
    inside = os.path.realpath(build) + os.sep
    entries = {os.path.realpath(entry["file"]): entry for entry in every}
    entries = [entries[path] for path in entries if not path.startswith(inside)]
    results = [tidy(entries), cppcheck(entries)]
    return 0 if all(results) else 1


sys.exit(main())
