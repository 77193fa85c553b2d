// SPDX-License-Identifier: MIT
// The module's integer constants, group by group, in the order in which they are installed.

#include "wrappers/rows/module_tables.h"

#define FAMILIES(X)                     \
    X(common_render_settings_constants) \
    X(geometry_constants)               \
    X(uniform_parameter_constants)      \
    X(varying_parameter_constants)      \
    X(gl_token_constants)               \
    X(gl_extension_constants)           \
    X(gl_version_constants)             \
    X(hardware_renderer_constants)      \
    X(render_profile_constants)         \
    X(render_shadow_data_constants)     \
    X(render_util_constants)            \
    X(viewport_renderer_constants)

#define DECLARATION(family) extern const binding::Constants family;
FAMILIES(DECLARATION)

#define ADDRESS(family) &family,
static constexpr const binding::Constants *tables[] = {FAMILIES(ADDRESS)};

constinit const std::span<const binding::Constants *const> binding::constant_tables = tables;
