// The image that a viewport renderer draws into.

#include "host/render/ZRenderTarget.h"
#include "wrappers/rows/wrapper_table.h"

ROWS_BEGIN

METHOD(ZRenderTarget, width, unsigned int() const)
METHOD(ZRenderTarget, height, unsigned int() const)
METHOD(ZRenderTarget, makeTargetCurrent, ZStatus() const)
METHOD(ZRenderTarget, writeColorBuffer, ZStatus(ZImage const &, short, short, bool) const, 0, 0,
       false)
REGISTRATION(ZRenderTarget)

ROWS_END(render_target_rows)
