// SPDX-License-Identifier: MIT
// The record that a render callback receives when the shadow maps of a light were made.

#include "host/render/ZRenderShadowData.h"
#include "wrappers/rows/constants.h"

#define ROW_LIST "wrappers/render/render_shadow_data.def"
#define ROW_TABLE render_shadow_data_rows
#include "wrappers/rows/make_rows.h"

CONSTANTS(render_shadow_data_constants, ENUMERATOR(ZRenderShadowData, kInvalid),
          ENUMERATOR(ZRenderShadowData, kPoint), ENUMERATOR(ZRenderShadowData, kDirectional),
          ENUMERATOR(ZRenderShadowData, kSpot))
