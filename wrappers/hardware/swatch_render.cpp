// SPDX-License-Identifier: MIT
// Swatches: one in the making, and the registry of their generators. What a swatch consists of is
// read straight from the object; what generators override is called through the object's own table.

#include "host/render/ZSwatchRenderBase.h"
#include "host/render/ZSwatchRenderRegister.h"

#define ROW_LIST "wrappers/hardware/swatch_render.def"
#define ROW_TABLE swatch_render_rows
#include "wrappers/rows/make_rows.h"
