# SPDX-License-Identifier: MIT
"""Runs clang-tidy over every source file of a build folder's compile database, on all cores, then
cppcheck. A file that clang-tidy passed is not looked at again until it, a header of it or a
.clang-tidy changes; cppcheck keeps such a memory of its own.

Usage: native.py BUILD_DIR CXX [--changed]
  --changed  only clang-tidy, and only over what differs from where the branch began: from the merge
             base with $LINT_BASE, or else with the main branch. A header is looked at through the
             source of its name, or the first that includes it.
"""
import concurrent.futures
import functools
import hashlib
import json
import os
import pathlib
import shlex
import subprocess
import sys

build, compiler = sys.argv[1:3]
passed, memory = os.path.join(build, "tidy"), os.path.join(build, "cppcheck")
database = os.path.join(build, "checked.json")


def output(*command):
    """What a command prints, in lines; none when it fails."""
    run = subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL,
                         universal_newlines=True)
    return [] if run.returncode else run.stdout.splitlines()


@functools.lru_cache(None)
def settings():
    """The .clang-tidy files: names are judged by that of the folder where they are declared."""
    files = output("git", "ls-files", "-co", "--exclude-standard", "--", ".clang-tidy",
                   "*/.clang-tidy")
    return b"".join(pathlib.Path(file).read_bytes() for file in files)


def check(entry):
    """The report on one source file, None when it was clean before."""
    source = entry["file"]
    words = shlex.split(entry["command"])
    words = words[words.index(next(word for word in words if word.startswith("-"))):]
    at = words.index("-o")
    rule = subprocess.run([compiler, "-MM"] + words[:at] + words[at + 2:], cwd=entry["directory"],
                          stdout=subprocess.PIPE, check=True, universal_newlines=True).stdout
    state = hashlib.sha256(settings() + repr(words).encode())
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


def changed(entries):
    """Those of the entries through which changed files are looked at."""
    given = os.environ.get("LINT_BASE")
    bases = [given] if given else ["origin/HEAD", "origin/main", "origin/master", "main", "master"]
    base = next(filter(None, (output("git", "merge-base", "HEAD", name) for name in bases)), None)
    if not base:
        print("clang-tidy: no main branch to compare with")
        return []
    names = output("git", "diff", "--name-only", *base)
    names += output("git", "ls-files", "-o", "--exclude-standard")
    sources = {os.path.relpath(entry["file"]): entry for entry in entries}
    chosen = set(names) & set(sources)
    for name in names:
        if name.endswith((".h", ".inc", ".def")):
            including = [source for source in sources
                         if '"%s"' % name in pathlib.Path(source).read_text()]
            own = os.path.splitext(name)[0] + ".cpp"
            chosen.update([own] if own in sources else including[:1])
    return [sources[source] for source in sorted(chosen)]


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
    # Without what the build generates; a source that several programs compile is checked
    # once, as the first of them compiles it.
    inside = os.path.realpath(build) + os.sep
    entries = {os.path.realpath(entry["file"]): entry for entry in reversed(every)}
    entries = [entry for path, entry in entries.items() if not path.startswith(inside)]
    if sys.argv[3:] == ["--changed"]:
        return 0 if tidy(changed(entries)) else 1
    results = [tidy(entries), cppcheck(entries)]
    return 0 if all(results) else 1


sys.exit(main())
