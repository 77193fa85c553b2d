// The core module's rows, family by family, in the order in which they are installed.

#include "wrappers/rows/module_tables.h"

extern const Rows array_rows;
extern const Rows buffer_rows;
extern const Rows color_rows;
extern const Rows frame_rows;
extern const Rows image_rows;
extern const Rows layer_buffer_rows;
extern const Rows matrix_rows;
extern const Rows pixel_buffer_rows;
extern const Rows point_rows;
extern const Rows rotation_rows;
extern const Rows scene_rows;
extern const Rows string_rows;
extern const Rows swatch_rows;
extern const Rows time_rows;
extern const Rows vector_rows;
extern const Rows viewport_rows;

static constexpr const Rows *tables[] = {
    &string_rows, &vector_rows,   &point_rows, &color_rows,        &matrix_rows, &rotation_rows,
    &time_rows,   &array_rows,    &scene_rows, &image_rows,        &buffer_rows, &pixel_buffer_rows,
    &swatch_rows, &viewport_rows, &frame_rows, &layer_buffer_rows,
};

constinit const std::span<const Rows *const> method_tables = tables;
