# SPDX-License-Identifier: MIT
"""What the loader is told about a product file: its tables are bound and read-only before it runs,
its stack is guarded, and libraries are looked for beside it and beside the interpreter only.

Usage: test_products.py INTERPRETER_LIBRARY FILE...
"""
import os
import re
import subprocess
import sys


def readelf(option, file):
    return subprocess.run(["readelf", option, file], text=True, check=True,
                          stdout=subprocess.PIPE).stdout


def faults(file, interpreter_folder):
    dynamic, symbols = readelf("-dW", file), readelf("-sW", file)
    if not re.search(r"\((FLAGS|FLAGS_1)\).*\b(BIND_NOW|NOW)\b", dynamic):
        yield "is not bound when it is loaded"
    if "GNU_RELRO" not in readelf("-lW", file):
        yield "has no table that becomes read-only"
    if "__stack_chk_fail" not in symbols:
        yield "has no guarded function"
    if "(RPATH)" in dynamic:
        yield "has a run path that the environment cannot override"
    for folder in ":".join(re.findall(r"\(RUNPATH\).*\[(.*)\]", dynamic)).split(":"):
        if folder and not re.match(r"\$ORIGIN(/|$)", folder) and folder != interpreter_folder:
            yield "looks for libraries in " + folder


def main(interpreter_library, *files):
    # The loader looks into these by itself: no product has to name them.
    interpreter_folder = os.path.dirname(interpreter_library)
    if re.match("(/usr)?/lib(/|$)", interpreter_folder):
        interpreter_folder = None
    found = [f"{file} {fault}" for file in files for fault in faults(file, interpreter_folder)]
    print("\n".join(found) or f"{len(files)} files are as they should be")
    return 1 if found or not files else 0


sys.exit(main(*sys.argv[1:]))
