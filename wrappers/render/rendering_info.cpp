// What a viewport renderer is asked to draw. Scripts only ever see the host's own object.

#include "host/render/ZRenderingInfo.h"
#include "wrappers/rows/wrapper_table.h"

ROWS_BEGIN

METHOD(ZRenderingInfo, originX, int() const)
METHOD(ZRenderingInfo, originY, int() const)
METHOD(ZRenderingInfo, width, int() const)
METHOD(ZRenderingInfo, height, int() const)
METHOD(ZRenderingInfo, renderingAPI, ZViewportRenderer::RenderingAPI() const)
METHOD(ZRenderingInfo, renderingVersion, float() const)
METHOD(ZRenderingInfo, cameraPath, ZDagPath const &() const)
METHOD(ZRenderingInfo, renderTarget, ZRenderTarget const &() const)
METHOD(ZRenderingInfo, viewMatrix, ZMatrix const &() const)
METHOD(ZRenderingInfo, projectionMatrix, ZMatrix const &() const)
REGISTRATION(ZRenderingInfo)

ROWS_END(rendering_info_rows)
