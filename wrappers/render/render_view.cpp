// The render view, and the plain structures that carry its pixels.

#include "host/core/ZDagPath.h"
#include "host/render/ZRenderView.h"
#include "wrappers/rows/wrapper_table.h"

ROWS_BEGIN

CONSTRUCTOR(RV_PIXEL, RV_PIXEL())
DESTRUCTOR(RV_PIXEL)
MEMBER(RV_PIXEL, r, float)
MEMBER(RV_PIXEL, g, float)
MEMBER(RV_PIXEL, b, float)
MEMBER(RV_PIXEL, a, float)
PROXY(RV_PIXEL)

CONSTRUCTOR(RV_AOV, RV_AOV())
DESTRUCTOR(RV_AOV)
MEMBER(RV_AOV, numberOfChannels, unsigned int)
MEMBER(RV_AOV, name, ZString)
MEMBER(RV_AOV, pPixels, float *)
PROXY(RV_AOV)

CONSTRUCTOR(ZRenderView, ZRenderView())
DESTRUCTOR(ZRenderView)
STATIC(ZRenderView, doesRenderEditorExist, bool())
STATIC(ZRenderView, setCurrentCamera, ZStatus(ZDagPath &))
STATIC(ZRenderView, getRenderRegion,
       ZStatus(unsigned int &, unsigned int &, unsigned int &, unsigned int &))
STATIC(ZRenderView, startRender, ZStatus(unsigned int, unsigned int, bool, bool), false, false)
STATIC(ZRenderView, startRegionRender,
       ZStatus(unsigned int, unsigned int, unsigned int, unsigned int, unsigned int, unsigned int,
               bool, bool),
       false, false)
STATIC(ZRenderView, updatePixels,
       ZStatus(unsigned int, unsigned int, unsigned int, unsigned int, RV_PIXEL *, bool,
               unsigned int, RV_AOV const *const),
       false, 0, 0)
STATIC(ZRenderView, refresh, ZStatus(unsigned int, unsigned int, unsigned int, unsigned int))
STATIC(ZRenderView, endRender, ZStatus())
STATIC(ZRenderView, setDrawTileBoundary, ZStatus(bool))
STATIC(ZRenderView, className, char const *())
PROXY(ZRenderView)

ROWS_END(render_view_rows)
