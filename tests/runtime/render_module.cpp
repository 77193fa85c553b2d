// SPDX-License-Identifier: MIT
// The module under test, where it is the render module, compiled in.

#include "tests/runtime/python_fixture.h"

extern "C" void init_OpenQuilRender();

const char *pytest::make_module() {
    init_OpenQuilRender();
    return "_OpenQuilRender";
}
