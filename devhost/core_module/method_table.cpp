// SPDX-License-Identifier: MIT
// The core module's rows, family by family, in the order in which they are installed.

#include "wrappers/rows/module_tables.h"

#define FAMILIES(X)      \
    X(string_rows)       \
    X(vector_rows)       \
    X(point_rows)        \
    X(color_rows)        \
    X(matrix_rows)       \
    X(rotation_rows)     \
    X(time_rows)         \
    X(array_rows)        \
    X(scene_rows)        \
    X(image_rows)        \
    X(buffer_rows)       \
    X(pixel_buffer_rows) \
    X(swatch_rows)       \
    X(viewport_rows)     \
    X(frame_rows)        \
    X(node_type_rows)    \
    X(layer_buffer_rows)

#define DECLARATION(family) extern const binding::Rows family;
FAMILIES(DECLARATION)

#define ADDRESS(family) &family,
static constexpr const binding::Rows *tables[] = {FAMILIES(ADDRESS)};

constinit const std::span<const binding::Rows *const> binding::method_tables = tables;
