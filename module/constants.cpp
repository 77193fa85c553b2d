// The module's integer constants, group by group, in the order in which they are installed.

#include "wrappers/rows/module_tables.h"

extern const Constants common_render_settings_constants;
extern const Constants geometry_constants;
extern const Constants gl_extension_constants;
extern const Constants gl_token_constants;
extern const Constants gl_version_constants;
extern const Constants hardware_renderer_constants;
extern const Constants render_profile_constants;
extern const Constants render_shadow_data_constants;
extern const Constants render_util_constants;
extern const Constants uniform_parameter_constants;
extern const Constants varying_parameter_constants;
extern const Constants viewport_renderer_constants;

static constexpr const Constants *tables[] = {
    &common_render_settings_constants,
    &geometry_constants,
    &uniform_parameter_constants,
    &varying_parameter_constants,
    &gl_token_constants,
    &gl_extension_constants,
    &gl_version_constants,
    &hardware_renderer_constants,
    &render_profile_constants,
    &render_shadow_data_constants,
    &render_util_constants,
    &viewport_renderer_constants,
};

constinit const std::span<const Constants *const> constant_tables = tables;
