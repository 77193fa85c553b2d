#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Measures the module's wrappers beside a hand-written extension, Cython and ctypes, and prints
tables; the numbers go to a JSON file as well.

Times are the least of many alternated batches. Where valgrind is installed, the instructions per
call are counted too: (run with 2N calls - run with N calls) / N. They do not depend on what else
the machine does, so their ratios are the ones to judge by.
"""
import argparse
import concurrent.futures
import json
import os
import re
import shutil
import subprocess
import sys
import tempfile
import time

HERE = os.path.dirname(os.path.abspath(__file__))
BENCH = os.path.join(HERE, "bench.py")
# Enough that what a driver's own threads do in the meantime does not show.
COUNTED_CALLS = 5000
IMPORT_PROCESSES = 25

IMPORT_SCRIPT = """
import ctypes, gc, sys, time
gc.disable()
del sys.path[0]  # the working folder is no place to import from
for library in sys.argv[2:]:
    ctypes.CDLL(library, ctypes.RTLD_GLOBAL)
start = time.time()
if sys.argv[1] != "nothing":
    __import__(sys.argv[1])
print(time.time() - start)
sys.stdout.flush()
__import__("os")._exit(0)
"""


class Bench:
    def __init__(self, options):
        self.options = options
        self.environment = dict(os.environ, PYTHONPATH=f"{options.modules}:{options.bench_modules}",
                                PYTHONDONTWRITEBYTECODE="1", PYTHONHASHSEED="0")

    def python(self, *arguments, valgrind=()):
        # -S: the site packages are of no use here and only add to what is counted.
        command = [*valgrind, self.options.python, "-S", *arguments]
        done = subprocess.run(command, env=self.environment, capture_output=True, text=True)
        if done.returncode:
            sys.exit(f"bench: {' '.join(command)} failed:\n{done.stdout}{done.stderr}")
        return done

    def instructions(self, *arguments):
        done = self.python(*arguments, valgrind=(
            "valgrind", "--tool=callgrind", "--callgrind-out-file=/dev/null"))
        return int(re.search(r"Collected : (\d+)", done.stderr).group(1))

    def times(self):
        return json.loads(self.python(BENCH, "time", str(self.options.rounds)).stdout)

    def counts(self, shapes_of):
        """Instructions per call, for the shapes that each implementation has."""
        cases = [("empty loop", "module")]
        cases += [(shape, who) for shape, names in shapes_of.items() for who in names]

        def per_call(case):
            few, many = (self.instructions(BENCH, "count", *case, str(n * COUNTED_CALLS))
                         for n in (1, 2))
            return (many - few) / COUNTED_CALLS

        with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
            values = dict(zip(cases, pool.map(per_call, cases)))
        overhead = values.pop(("empty loop", "module"))
        result = {}
        for (shape, who), value in values.items():
            own = value if shape == "callback" else value - overhead
            result.setdefault(shape, {})[who] = own
        return result

    def imports(self, count):
        """Import of the module and of one with the same rows and constants only, the host
        libraries already loaded, as they are in a host."""
        libraries = self.options.host_libraries
        modules = {"module": "_OpenQuilRender", "floor": "_import_floor"}
        times = {who: float("inf") for who in modules}
        for _ in range(IMPORT_PROCESSES):
            for who, name in modules.items():
                done = self.python("-c", IMPORT_SCRIPT, name, *libraries)
                times[who] = min(times[who], float(done.stdout) * 1e3)
        result = {"milliseconds": times}
        if count:
            base = self.instructions("-c", IMPORT_SCRIPT, "nothing", *libraries)
            result["instructions"] = {
                who: self.instructions("-c", IMPORT_SCRIPT, name, *libraries) - base
                for who, name in modules.items()}
        return result

    def stripped_size(self):
        module = os.path.join(self.options.modules, "_OpenQuilRender.so")
        with tempfile.TemporaryDirectory() as folder:
            stripped = os.path.join(folder, "stripped.so")
            subprocess.run(["strip", "-o", stripped, module], check=True)
            return os.path.getsize(stripped)


def compile_times(source, python, hosts):
    """Seconds of a clean build of the module on two cores: of the host libraries that it needs,
    and of the module itself."""
    # A compiler cache would time itself.
    environment = dict(os.environ, CCACHE_DISABLE="1")

    def cmake(*arguments):
        command = ["cmake", *arguments]
        done = subprocess.run(command, env=environment, capture_output=True, text=True)
        if done.returncode:
            sys.exit(f"bench: {' '.join(command)} failed:\n{done.stdout}{done.stderr}")

    with tempfile.TemporaryDirectory() as folder:
        cmake("-S", source, "-B", folder, "-G", "Ninja", "-DCMAKE_BUILD_TYPE=Release",
              "-DCMAKE_CXX_COMPILER_LAUNCHER=", f"-DPYTHON2_EXECUTABLE={python}")
        result = {}
        for part, targets in {"host": hosts, "module": ["_OpenQuilRender"]}.items():
            start = time.monotonic()
            cmake("--build", folder, "--parallel", "2", "--target", *targets)
            result[part] = time.monotonic() - start
    return result


def library_target(path):
    return re.fullmatch(r"lib(\w+)\.so", os.path.basename(path)).group(1)


def ratios(values):
    return {shape: {who: row["module"] / value for who, value in row.items() if who != "module"}
            for shape, row in values.items()}


def print_table(title, values, shapes, names, digits):
    others = [who for who in names if who != "module"]
    print(f"\n{title}")
    print(f"{'':56}" + "".join(f"{who:>9}" for who in names) +
          "".join(f"{'/ ' + who:>10}" for who in others))
    for shape, text in shapes:
        row = values[shape]
        line = f"{text:56}"
        for who in names:
            line += f"{row[who]:9.{digits}f}" if who in row else f"{'-':>9}"
        for who in others:
            line += f"{row['module'] / row[who]:10.2f}" if who in row else f"{'-':>10}"
        print(line)


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--python", required=True, help="the python2.7 program")
    parser.add_argument("--modules", required=True, help="folder of the product's modules")
    parser.add_argument("--bench-modules", required=True, help="folder of the bench's modules")
    parser.add_argument("--host-libraries", nargs="*", default=[])
    parser.add_argument("--output", required=True, help="JSON file to write")
    parser.add_argument("--rounds", type=int, default=100)
    parser.add_argument("--no-count", action="store_true", help="times only")
    parser.add_argument("--compile-time", metavar="SOURCE",
                        help="time a clean build of the module from this source folder too")
    options = parser.parse_args()

    bench = Bench(options)
    known = json.loads(bench.python(BENCH, "names").stdout)
    shapes, names = known["shapes"], known["implementations"]
    count = not options.no_count and shutil.which("valgrind") is not None

    result = {"shapes": dict(shapes)}
    result["nanoseconds"] = bench.times()
    result["time_ratios"] = ratios(result["nanoseconds"])
    print_table("Nanoseconds per call", result["nanoseconds"], shapes, names, 0)
    if count:
        result["instructions"] = bench.counts(result["nanoseconds"])
        result["instruction_ratios"] = ratios(result["instructions"])
        print_table("Instructions per call", result["instructions"], shapes, names, 0)
    else:
        print("\nInstructions were not counted: valgrind is not installed or was not wanted.")

    result["import"] = bench.imports(count)
    print("\nImport of the module, beside one with the same rows and constants only")
    for unit, row in result["import"].items():
        print(f"  {unit:14}{row['module']:14,.2f}{row['floor']:14,.2f}"
              f"   ratio {row['module'] / row['floor']:.2f}")
    result["stripped_size"] = bench.stripped_size()
    print(f"\nStripped size of _OpenQuilRender.so: {result['stripped_size']:,} bytes")

    if options.compile_time:
        times = compile_times(options.compile_time, options.python,
                              [library_target(path) for path in options.host_libraries])
        result["compile_seconds"] = times
        print(f"Clean build of _OpenQuilRender on two cores: {sum(times.values()):.0f} s, "
              f"of which the module itself {times['module']:.0f} s", flush=True)

    with open(options.output, "w") as output:
        json.dump(result, output, indent=2, sort_keys=True)
    print(f"Written to {options.output}")


if __name__ == "__main__":
    main()
