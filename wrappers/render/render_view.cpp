// SPDX-License-Identifier: MIT
// The render view, and the plain structures that carry its pixels.

#include "host/core/ZDagPath.h"
#include "host/render/ZRenderView.h"

#define ROW_LIST "wrappers/render/render_view.def"
#define ROW_TABLE render_view_rows
#include "wrappers/rows/make_rows.h"
