// The module's integer constants, group by group, in the order in which they are installed.

#include "wrappers/module_tables.h"

extern const Constants common_render_settings_constants;
extern const Constants render_shadow_data_constants;
extern const Constants render_util_constants;

static constexpr const Constants *tables[] = {
    &common_render_settings_constants,
    &render_shadow_data_constants,
    &render_util_constants,
};

constinit const std::span<const Constants *const> constant_tables = tables;
