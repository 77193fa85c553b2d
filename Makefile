# SPDX-License-Identifier: MIT
# Day-to-day commands; CMake does the work. PYTHON2=/path/to/python2.7 chooses the interpreter.
SCENE ?= /usr/share/glmark2/models/bunny.obj
# What is compiled at once, more of which takes longer in all, and what ctest runs at once.
export CMAKE_BUILD_PARALLEL_LEVEL ?= $(shell nproc)
export CTEST_PARALLEL_LEVEL ?= $(shell nproc)

PREFIX ?= /usr/local
.PHONY: programs install uninstall package docs check-docs
.PHONY: build setup demo test stress bench format clean
.PHONY: check-asan check-tsan check-valgrind check-bare check-farm coverage lint lint-fast strength

build: setup-tests
	cmake --preset release
	cmake --build --preset release

setup:
	@tools/setup.sh

# Builds the programs alone, and runs the two example renderers on SCENE.
demo: setup
	@tools/demo.sh "$(SCENE)"

# The programs, and what is installed beside them.
programs: setup-package
	cmake $(if $(wildcard build/build.ninja),build,--preset release -DOPENQUIL_TESTS=OFF)
	cmake --build --preset release --target programs man_pages

# Into PREFIX, and out of it again.
install: programs
	@tools/install.sh install "$(PREFIX)"
uninstall:
	@tools/install.sh uninstall "$(PREFIX)"

# A Debian package, in build/package.
package: programs
	cpack --config build/CPackConfig.cmake -B build/package

# The documentation as a site of static pages, in build/docs/html.
docs: programs setup-docs
	python3 docs/site/build.py build

# The site's links, and its pages in a browser without a window; screenshots in build/docs/screenshots.
# Debian's Python has Selenium.
check-docs: docs setup-docs-checks
	/usr/bin/python3 tools/check_docs.py build

test: build
	ctest --test-dir build --output-on-failure

# The long forms of the tests under load.
stress: build
	ctest --preset stress

setup-%:
	@tools/setup.sh --$*

# `make demo`, `make test` and the package from a clone of HEAD, in Debian roots with nothing else.
check-bare:
	@tools/check_bare.sh

# The whole suite, instrumented; what is tolerated is in tools/sanitizers.
check-asan check-tsan: check-%: setup-checks
	cmake --preset $*
	cmake --build --preset $*
	ctest --preset $*

# The runtime, wrapper and module tests.
check-valgrind: build setup-checks
	python3 tools/valgrind.py build

# quilfarm with a real Slurm, a cluster of this machine in a temporary folder (a minute).
check-farm: build setup-farm
	python3 tools/check_farm.py build

# Line and branch coverage; fails when a branch of runtime/ is not taken without a reason.
coverage: setup-checks
	cmake --preset coverage
	cmake --build --preset coverage
	find build-coverage -name '*.gcda' -delete
	ctest --preset coverage
	python3 tools/coverage.py build-coverage tests/runtime/unreached.tsv 94

# Layout, files, layers and scripts, and clang-tidy on what differs from the main branch (LINT_BASE
# names another).
lint-fast: setup-checks
	git ls-files -co --exclude-standard -- '*.h' '*.cpp' | xargs clang-format --dry-run -Werror
	python3 tools/lint/tracked.py
	python3 tools/lint/layers.py .
	python3 tools/lint/scripts.py build
	cmake --preset debug -B build-lint
	cmake --build build-lint --target second_host_headers
	python3 tools/lint/native.py build-lint $(or $(CXX),c++) --changed

# The same, clang-tidy (.clang-tidy) and cppcheck (tools/cppcheck.supp) on everything, whether the
# faults of `make strength` fit the sources, mypy and pyright on the stubs, which are built for that,
# and the ratio of test lines to code lines.
lint: lint-fast setup-stubs
	python3 tools/lint/native.py build-lint $(or $(CXX),c++)
	python3 tools/strength/plant_faults.py --check
	cmake --preset release
	cmake --build --preset release --target stubs
	python3 tools/lint/stubs.py build
	python3 tools/test_ratio.py

# What the tests catch: faults planted and operators flipped, one at a time (hours); writes
# docs/test_strength.md.
strength: setup-tests
	python3 tools/strength/plant_faults.py --output docs/test_strength.md

# Call times of the wrappers beside hand-written C, Cython and ctypes; see bench/run.py.
bench: build setup-bench
	cmake --build --preset release --target bench

format: setup-checks
	git ls-files -co --exclude-standard -- '*.h' '*.cpp' | xargs clang-format -i

clean:
	$(if $(wildcard build/build.ninja),cmake --build --preset release --target clean)
	rm -rf build/demo
