// SPDX-License-Identifier: MIT
// The module's rows, family by family, in the order in which they are installed.

#include "wrappers/rows/module_tables.h"

#define FAMILIES(X)                \
    X(common_render_settings_rows) \
    X(d3d9_renderer_rows)          \
    X(draw_procedure_rows)         \
    X(layer_rows)                  \
    X(geometry_rows)               \
    X(uniform_parameter_rows)      \
    X(varying_parameter_rows)      \
    X(gl_function_rows)            \
    X(hardware_renderer_rows)      \
    X(hwr_callback_rows)           \
    X(hw_texture_manager_rows)     \
    X(light_links_rows)            \
    X(render_data_rows)            \
    X(rendering_info_rows)         \
    X(render_profile_rows)         \
    X(render_shadow_data_rows)     \
    X(render_target_rows)          \
    X(render_util_rows)            \
    X(render_view_rows)            \
    X(swatch_render_rows)          \
    X(viewport_renderer_rows)      \
    X(render_callback_rows)

#define DECLARATION(family) extern const binding::Rows family;
FAMILIES(DECLARATION)

#define ADDRESS(family) &family,
static constexpr const binding::Rows *tables[] = {FAMILIES(ADDRESS)};

constinit const std::span<const binding::Rows *const> binding::method_tables = tables;
