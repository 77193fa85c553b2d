// The module's rows, family by family, in the order in which they are installed.

#include "wrappers/module_tables.h"

extern const Rows common_render_settings_rows;
extern const Rows render_data_rows;
extern const Rows render_shadow_data_rows;
extern const Rows render_util_rows;
extern const Rows render_view_rows;
extern const Rows render_callback_rows;

static constexpr const Rows *tables[] = {
    &common_render_settings_rows, &render_data_rows, &render_shadow_data_rows,
    &render_util_rows,            &render_view_rows, &render_callback_rows,
};

constinit const std::span<const Rows *const> method_tables = tables;
