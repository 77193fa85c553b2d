// Swatches: one in the making, and the registry of their generators. What a swatch consists of is
// read straight from the object; what generators override is called through the object's own table.

#include "host/render/ZSwatchRenderBase.h"
#include "host/render/ZSwatchRenderRegister.h"
#include "wrappers/rows/wrapper_table.h"

ROWS_BEGIN

CONSTRUCTOR(ZSwatchRenderBase, ZSwatchRenderBase(ZObject, ZObject, int))
DESTRUCTOR(ZSwatchRenderBase)
METHOD(ZSwatchRenderBase, doIteration, bool())
METHOD(ZSwatchRenderBase, renderParallel, bool())
METHOD(ZSwatchRenderBase, cancelParallelRendering, void())
METHOD(ZSwatchRenderBase, swatchNode, ZObject() const)
METHOD(ZSwatchRenderBase, node, ZObject() const)
METHOD(ZSwatchRenderBase, resolution, int() const)
METHOD(ZSwatchRenderBase, image, ZImage &())
METHOD(ZSwatchRenderBase, setRenderQuality, void(int))
METHOD(ZSwatchRenderBase, renderQuality, int() const)
STATIC(ZSwatchRenderBase, cancelCurrentSwatchRender, void())
STATIC(ZSwatchRenderBase, enableSwatchRender, void(bool))
PROXY(ZSwatchRenderBase)

CONSTRUCTOR(ZSwatchRenderRegister, ZSwatchRenderRegister())
DESTRUCTOR(ZSwatchRenderRegister)
STATIC(ZSwatchRenderRegister, registerSwatchRender, ZStatus(ZString, ZSwatchRenderCreatorFnPtr))
STATIC(ZSwatchRenderRegister, unregisterSwatchRender, ZStatus(ZString))
PROXY(ZSwatchRenderRegister)

ROWS_END(swatch_render_rows)
