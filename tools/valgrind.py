# SPDX-License-Identifier: MIT
"""Runs the tests of the runtime, the wrappers and the modules under valgrind, several at once, each
with twenty times its time limit. Leaks are the address-sanitized build's business.

Usage: valgrind.py BUILD_DIR [REGEX]
"""
import concurrent.futures
import json
import os
import subprocess
import sys

# Not gl.GlRecording: it compares long doubles, which valgrind keeps in 64 bits.
TESTS = r"^(runtime\.|wrappers\.|module\.|core_module\.|companion\.proxies)"
VALGRIND = ["valgrind", "--quiet", "--error-exitcode=99", "--trace-children=yes",
            "--trace-children-skip=/bin/*,/usr/bin/*,*/pyenv/*",
            "--suppressions=" + os.path.realpath("tools/sanitizers/valgrind.supp")]


def run(test):
    """The name and the output of a test; no output when it passed."""
    properties = {entry["name"]: entry["value"] for entry in test["properties"]}
    environment = dict(os.environ)
    environment.update(pair.split("=", 1) for pair in properties.get("ENVIRONMENT", ()))
    try:
        process = subprocess.run(VALGRIND + test["command"], env=environment,
                                 cwd=properties["WORKING_DIRECTORY"],
                                 timeout=20 * properties.get("TIMEOUT", 60), errors="replace",
                                 stdout=subprocess.PIPE, stderr=subprocess.STDOUT)
    except subprocess.TimeoutExpired as late:
        return test["name"], "does not end: %s\n" % late
    return test["name"], process.stdout + "exit code %d\n" % process.returncode \
        if process.returncode else ""


def main():
    build, chosen = sys.argv[1], (sys.argv[2:] + [TESTS])[0]
    listing = subprocess.run(["ctest", "--test-dir", build, "--show-only=json-v1", "-R", chosen],
                             stdout=subprocess.PIPE, check=True).stdout
    tests = json.loads(listing)["tests"]
    failed = 0
    with concurrent.futures.ThreadPoolExecutor(len(os.sched_getaffinity(0))) as workers:
        for done, (name, output) in enumerate(workers.map(run, tests), 1):
            print("%3d/%d %-50s %s" % (done, len(tests), name, "FAILED" if output else "passed"),
                  flush=True)
            print(output, end="")
            failed += bool(output)
    print("%d of %d tests failed under valgrind" % (failed, len(tests)))
    return 1 if failed or not tests else 0


sys.exit(main())
