// SPDX-License-Identifier: MIT
// The renderers that a shading node supports.

#include "host/render/ZRenderProfile.h"
#include "wrappers/rows/constants.h"

#define ROW_LIST "wrappers/hardware/render_profile.def"
#define ROW_TABLE render_profile_rows
#include "wrappers/rows/make_rows.h"

CONSTANTS(render_profile_constants, ENUMERATOR(ZRenderProfile, kQuilSoftware),
          ENUMERATOR(ZRenderProfile, kQuilOpenGL), ENUMERATOR(ZRenderProfile, kQuilD3D))
