// SPDX-License-Identifier: MIT
// The image that a viewport renderer draws into.

#include "host/render/ZRenderTarget.h"

#define ROW_LIST "wrappers/render/render_target.def"
#define ROW_TABLE render_target_rows
#include "wrappers/rows/make_rows.h"
