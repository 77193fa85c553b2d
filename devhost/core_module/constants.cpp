// The core module's integer constants, group by group, in the order in which they are installed.

#include "wrappers/rows/module_tables.h"

extern const Constants image_constants;
extern const Constants rotation_constants;
extern const Constants time_constants;

static constexpr const Constants *tables[] = {
    &image_constants,
    &rotation_constants,
    &time_constants,
};

constinit const std::span<const Constants *const> constant_tables = tables;
