// The record that a render callback receives when the shadow maps of a light were made.

#include "host/render/ZRenderShadowData.h"
#include "wrappers/rows/wrapper_table.h"

ROWS_BEGIN

MEMBER(ZRenderShadowData, perspective, bool)
MEMBER(ZRenderShadowData, useMidDistMap, bool)
MEMBER(ZRenderShadowData, lightType, ZRenderShadowData::LightType)
MEMBER(ZRenderShadowData, shadowResX, unsigned short)
MEMBER(ZRenderShadowData, shadowResY, unsigned short)
MEMBER(ZRenderShadowData, lightPosition, ZFloatPoint)
MEMBER(ZRenderShadowData, projectionMatrix, ZFloatMatrix)
MEMBER(ZRenderShadowData, perspectiveMatrix, ZFloatMatrix)
MEMBER(ZRenderShadowData, depthMaps, float *)
MEMBER(ZRenderShadowData, midDistMaps, float *)
MEMBER(ZRenderShadowData, internalData, void *)
METHOD(ZRenderShadowData, worldToZbuffer, void(ZFloatPoint const &, ZFloatPoint &) const)
METHOD(ZRenderShadowData, zbufferToWorld, void(ZFloatPoint const &, ZFloatPoint &) const)
CONSTRUCTOR(ZRenderShadowData, ZRenderShadowData())
DESTRUCTOR(ZRenderShadowData)
PROXY(ZRenderShadowData)

ROWS_END(render_shadow_data_rows)

CONSTANTS(render_shadow_data_constants, ENUMERATOR(ZRenderShadowData, kInvalid),
          ENUMERATOR(ZRenderShadowData, kPoint), ENUMERATOR(ZRenderShadowData, kDirectional),
          ENUMERATOR(ZRenderShadowData, kSpot))
