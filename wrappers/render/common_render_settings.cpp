// SPDX-License-Identifier: MIT
// The record of render settings that every renderer shares.

#include "host/core/ZObject.h"
#include "host/render/ZCommonRenderSettings.h"
#include "wrappers/rows/constants.h"

#define ROW_LIST "wrappers/render/common_render_settings.def"
#define ROW_TABLE common_render_settings_rows
#include "wrappers/rows/make_rows.h"

CONSTANTS(common_render_settings_constants, ENUMERATOR(ZCommonRenderSettingsData, kRelativePath),
          ENUMERATOR(ZCommonRenderSettingsData, kFullPathImage),
          ENUMERATOR(ZCommonRenderSettingsData, kFullPathTmp))
