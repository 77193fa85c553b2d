// SPDX-License-Identifier: MIT
// The core module's entry function. Nothing else is exported.

#include "host/base/HostApi.h"
#include "wrappers/rows/module_tables.h"

extern "C" {

OPENQUIL_API void init_OpenQuil();
void init_OpenQuil() {
    binding::initialise_module("_OpenQuil");
}
}
