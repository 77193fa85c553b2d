// The module's rows, family by family, in the order in which they are installed.

#include "wrappers/rows/module_tables.h"

extern const Rows common_render_settings_rows;
extern const Rows d3d9_renderer_rows;
extern const Rows draw_procedure_rows;
extern const Rows geometry_rows;
extern const Rows gl_function_rows;
extern const Rows hardware_renderer_rows;
extern const Rows hw_texture_manager_rows;
extern const Rows hwr_callback_rows;
extern const Rows layer_rows;
extern const Rows light_links_rows;
extern const Rows render_data_rows;
extern const Rows render_profile_rows;
extern const Rows render_shadow_data_rows;
extern const Rows render_target_rows;
extern const Rows render_util_rows;
extern const Rows render_view_rows;
extern const Rows rendering_info_rows;
extern const Rows swatch_render_rows;
extern const Rows uniform_parameter_rows;
extern const Rows varying_parameter_rows;
extern const Rows render_callback_rows;
extern const Rows viewport_renderer_rows;

static constexpr const Rows *tables[] = {
    &common_render_settings_rows,
    &d3d9_renderer_rows,
    &draw_procedure_rows,
    &layer_rows,
    &geometry_rows,
    &uniform_parameter_rows,
    &varying_parameter_rows,
    &gl_function_rows,
    &hardware_renderer_rows,
    &hwr_callback_rows,
    &hw_texture_manager_rows,
    &light_links_rows,
    &render_data_rows,
    &rendering_info_rows,
    &render_profile_rows,
    &render_shadow_data_rows,
    &render_target_rows,
    &render_util_rows,
    &render_view_rows,
    &swatch_render_rows,
    &viewport_renderer_rows,
    &render_callback_rows,
};

constinit const std::span<const Rows *const> method_tables = tables;
