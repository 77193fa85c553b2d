// SPDX-License-Identifier: MIT
// The record that a render callback receives with the finished image.

#include "host/render/ZRenderData.h"

#define ROW_LIST "wrappers/render/render_data.def"
#define ROW_TABLE render_data_rows
#include "wrappers/rows/make_rows.h"
