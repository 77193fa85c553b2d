// Swatches with Direct3D 9. The device is opaque.

#include "host/render/ZD3D9Renderer.h"
#include "wrappers/rows/wrapper_table.h"

ROWS_BEGIN

STATIC(ZD3D9Renderer, theRenderer, ZD3D9Renderer *())
METHOD(ZD3D9Renderer, getD3D9Device, IDirect3DDevice9 *())
METHOD(ZD3D9Renderer, makeSwatchContextCurrent, ZStatus(unsigned int &, unsigned int &))
METHOD(ZD3D9Renderer, readSwatchContextPixels, ZStatus(ZImage &))
METHOD(ZD3D9Renderer, setBackgroundColor, ZStatus(ZColor const &))
CONSTRUCTOR(ZD3D9Renderer, ZD3D9Renderer())
DESTRUCTOR(ZD3D9Renderer)
PROXY(ZD3D9Renderer)

ROWS_END(d3d9_renderer_rows)
