// SPDX-License-Identifier: MIT
// The core module's integer constants, group by group, in the order in which they are installed.

#include "wrappers/rows/module_tables.h"

#define FAMILIES(X)       \
    X(image_constants)    \
    X(rotation_constants) \
    X(time_constants)

#define DECLARATION(family) extern const binding::Constants family;
FAMILIES(DECLARATION)

#define ADDRESS(family) &family,
static constexpr const binding::Constants *tables[] = {FAMILIES(ADDRESS)};

constinit const std::span<const binding::Constants *const> binding::constant_tables = tables;
