// The renderers that a shading node supports.

#include "host/render/ZRenderProfile.h"
#include "wrappers/rows/wrapper_table.h"

ROWS_BEGIN

CONSTRUCTOR(ZRenderProfile, ZRenderProfile())
DESTRUCTOR(ZRenderProfile)
METHOD(ZRenderProfile, numberOfRenderers, unsigned int() const)
METHOD_CASE(ZRenderProfile, addRenderer, 1, void(ZRenderProfile::ZStandardRenderer))
METHOD_CASE(ZRenderProfile, addRenderer, 2, void(ZString const &, float))
OVERLOADS(ZRenderProfile, addRenderer, &ZRenderProfile_addRenderer_1, &ZRenderProfile_addRenderer_2)
METHOD_CASE(ZRenderProfile, hasRenderer, 1, bool(ZRenderProfile::ZStandardRenderer) const)
METHOD_CASE(ZRenderProfile, hasRenderer, 2, bool(ZString const &, float) const)
OVERLOADS(ZRenderProfile, hasRenderer, &ZRenderProfile_hasRenderer_1, &ZRenderProfile_hasRenderer_2)
PROXY(ZRenderProfile)

ROWS_END(render_profile_rows)

CONSTANTS(render_profile_constants, ENUMERATOR(ZRenderProfile, kQuilSoftware),
          ENUMERATOR(ZRenderProfile, kQuilOpenGL), ENUMERATOR(ZRenderProfile, kQuilD3D))
