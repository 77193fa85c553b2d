# Day-to-day commands; CMake does the work. PYTHON2=/path/to/python2.7 chooses the interpreter.
SCENE ?= /usr/share/glmark2/models/bunny.obj

.PHONY: build setup demo test strength bench format clean

build: setup
	cmake --preset release
	cmake --build --preset release

setup:
	@tools/setup.sh

# The two example renderers, run on SCENE.
demo: build
	@tools/demo.sh "$(SCENE)"

test: build
	ctest --test-dir build --output-on-failure -j2

# What the tests catch: faults planted one at a time (an hour); writes docs/test_strength.md.
strength: setup
	python3 tests/strength/plant_faults.py --folder build/strength --output docs/test_strength.md

# Call times of the wrappers beside hand-written C, Cython and ctypes; see bench/run.py.
bench: build
	cmake --build --preset release --target bench

format:
	git ls-files -co --exclude-standard -- '*.h' '*.cpp' | xargs clang-format -i

clean:
	$(if $(wildcard build/build.ninja),cmake --build --preset release --target clean)
	rm -rf build/demo
