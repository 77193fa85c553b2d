// SPDX-License-Identifier: MIT
// Swatches with Direct3D 9. The device is opaque.

#include "host/render/ZD3D9Renderer.h"

#define ROW_LIST "wrappers/hardware/d3d9_renderer.def"
#define ROW_TABLE d3d9_renderer_rows
#include "wrappers/rows/make_rows.h"
