// SPDX-License-Identifier: MIT
// Colours.

#include "devhost/core_module/values.h"

#define ROW_LIST "devhost/core_module/color.def"
#define ROW_TABLE color_rows
#include "wrappers/rows/make_rows.h"
