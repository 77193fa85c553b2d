// The record that a render callback receives with the finished image.

#include "host/render/ZRenderData.h"
#include "wrappers/rows/wrapper_table.h"

ROWS_BEGIN

MEMBER(ZRenderData, perspective, bool)
MEMBER(ZRenderData, resX, unsigned short)
MEMBER(ZRenderData, resY, unsigned short)
MEMBER(ZRenderData, left, unsigned short)
MEMBER(ZRenderData, bottom, unsigned short)
MEMBER(ZRenderData, right, unsigned short)
MEMBER(ZRenderData, top, unsigned short)
MEMBER(ZRenderData, bytesPerChannel, unsigned short)
MEMBER(ZRenderData, xsize, unsigned short)
MEMBER(ZRenderData, ysize, unsigned short)
MEMBER(ZRenderData, fieldOfView, float)
MEMBER(ZRenderData, aspectRatio, float)
MEMBER(ZRenderData, viewDirection, ZFloatVector)
MEMBER(ZRenderData, eyePoint, ZFloatPoint)
MEMBER(ZRenderData, worldToEyeMatrix, ZFloatMatrix)
MEMBER(ZRenderData, rgbaArr, unsigned char *)
MEMBER(ZRenderData, depthArr, float *)
MEMBER(ZRenderData, internalData, void *)
METHOD(ZRenderData, worldToScreen, void(ZFloatPoint const &, ZFloatPoint &) const)
METHOD(ZRenderData, screenToWorld, void(ZFloatPoint const &, ZFloatPoint &) const)
CONSTRUCTOR(ZRenderData, ZRenderData())
DESTRUCTOR(ZRenderData)
PROXY(ZRenderData)

ROWS_END(render_data_rows)
