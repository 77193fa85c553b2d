// SPDX-License-Identifier: MIT
// The extension module: its entry function, and the release of the host's programming interface
// that it was built against. Nothing else is exported.

#include "host/base/HostApi.h"
#include "wrappers/rows/module_tables.h"

extern "C" {

extern OPENQUIL_API const char ZApiVersion[];
const char ZApiVersion[] = "201600";

OPENQUIL_API void init_OpenQuilRender();
void init_OpenQuilRender() {
    binding::initialise_module("_OpenQuilRender");
}
}
