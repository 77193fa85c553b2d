// SPDX-License-Identifier: MIT
// What a viewport renderer is asked to draw. Scripts only ever see the host's own object.

#include "host/render/ZRenderingInfo.h"

#define ROW_LIST "wrappers/render/rendering_info.def"
#define ROW_TABLE rendering_info_rows
#include "wrappers/rows/make_rows.h"
