// SPDX-License-Identifier: MIT
// The static helpers for software renderers and shading plug-ins.

#include "host/core/ZDagPath.h"
#include "host/core/ZDoubleArray.h"
#include "host/core/ZFloatArray.h"
#include "host/core/ZFloatMatrix.h"
#include "host/core/ZFloatPointArray.h"
#include "host/core/ZFloatVector.h"
#include "host/core/ZFloatVectorArray.h"
#include "host/core/ZIntArray.h"
#include "host/core/ZObject.h"
#include "host/core/ZSelectionList.h"
#include "host/core/ZVectorArray.h"
#include "host/render/ZCommonRenderSettings.h"
#include "host/render/ZRenderUtil.h"
#include "wrappers/rows/constants.h"

#define ROW_LIST "wrappers/render/render_util.def"
#define ROW_TABLE render_util_rows
#include "wrappers/rows/make_rows.h"

CONSTANTS(render_util_constants, ENUMERATOR(ZRenderUtil, kNotRendering),
          ENUMERATOR(ZRenderUtil, kBatchRender), ENUMERATOR(ZRenderUtil, kInteractiveRender),
          ENUMERATOR(ZRenderUtil, kIprRender), ENUMERATOR(ZRenderUtil, kHardwareRender),
          ENUMERATOR(ZRenderUtil, kAll), ENUMERATOR(ZRenderUtil, kColorOnly),
          ENUMERATOR(ZRenderUtil, kShadowOnly), ENUMERATOR(ZRenderUtil, kAmbientOnly),
          ENUMERATOR(ZRenderUtil, kDiffuseOnly), ENUMERATOR(ZRenderUtil, kSpecularOnly))
