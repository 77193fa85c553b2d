// Renderers that take over viewports. Scripts get them from native code, and call their operations
// through the object's own virtual table.

#include "host/render/ZRenderingInfo.h"
#include "host/render/ZViewportRenderer.h"
#include "wrappers/rows/wrapper_table.h"

ROWS_BEGIN

DESTRUCTOR(ZViewportRenderer)
METHOD(ZViewportRenderer, initialize, ZStatus())
METHOD(ZViewportRenderer, uninitialize, ZStatus())
METHOD(ZViewportRenderer, render, ZStatus(ZRenderingInfo const &))
METHOD(ZViewportRenderer, nativelySupports, bool(ZViewportRenderer::RenderingAPI, float))
METHOD(ZViewportRenderer, override, bool(ZViewportRenderer::RenderingOverride))
METHOD(ZViewportRenderer, overrideThenStandardExclusion, int())
METHOD(ZViewportRenderer, registerRenderer, ZStatus() const)
METHOD(ZViewportRenderer, deregisterRenderer, ZStatus() const)
METHOD(ZViewportRenderer, name, ZString() const)
METHOD(ZViewportRenderer, UIname, ZString() const)
METHOD(ZViewportRenderer, setUIName, void(ZString const &))
METHOD(ZViewportRenderer, renderingOverride, ZViewportRenderer::RenderingOverride() const)
METHOD(ZViewportRenderer, setRenderingOverride, void(ZViewportRenderer::RenderingOverride))
REGISTRATION(ZViewportRenderer)

ROWS_END(viewport_renderer_rows)

CONSTANTS(
    viewport_renderer_constants, ENUMERATOR(ZViewportRenderer, kOpenGL),
    ENUMERATOR(ZViewportRenderer, kDirect3D), ENUMERATOR(ZViewportRenderer, kSoftware),
    ENUMERATOR(ZViewportRenderer, kNoOverride), ENUMERATOR(ZViewportRenderer, kOverrideAllDrawing),
    ENUMERATOR(ZViewportRenderer, kOverrideThenStandard),
    ENUMERATOR(ZViewportRenderer, kOverrideThenUI), ENUMERATOR(ZViewportRenderer, kExcludeNone),
    ENUMERATOR(ZViewportRenderer, kExcludeNurbsCurves),
    ENUMERATOR(ZViewportRenderer, kExcludeNurbsSurfaces),
    ENUMERATOR(ZViewportRenderer, kExcludeMeshes), ENUMERATOR(ZViewportRenderer, kExcludePlanes),
    ENUMERATOR(ZViewportRenderer, kExcludeLights), ENUMERATOR(ZViewportRenderer, kExcludeCameras),
    ENUMERATOR(ZViewportRenderer, kExcludeJoints), ENUMERATOR(ZViewportRenderer, kExcludeIkHandles),
    ENUMERATOR(ZViewportRenderer, kExcludeDeformers),
    ENUMERATOR(ZViewportRenderer, kExcludeDynamics),
    ENUMERATOR(ZViewportRenderer, kExcludeParticleInstancers),
    ENUMERATOR(ZViewportRenderer, kExcludeLocators),
    ENUMERATOR(ZViewportRenderer, kExcludeDimensions),
    ENUMERATOR(ZViewportRenderer, kExcludeSelectHandles),
    ENUMERATOR(ZViewportRenderer, kExcludePivots), ENUMERATOR(ZViewportRenderer, kExcludeTextures),
    ENUMERATOR(ZViewportRenderer, kExcludeGrid), ENUMERATOR(ZViewportRenderer, kExcludeCVs),
    ENUMERATOR(ZViewportRenderer, kExcludeHulls), ENUMERATOR(ZViewportRenderer, kExcludeStrokes),
    ENUMERATOR(ZViewportRenderer, kExcludeSubdivSurfaces),
    ENUMERATOR(ZViewportRenderer, kExcludeFluids), ENUMERATOR(ZViewportRenderer, kExcludeFollicles),
    ENUMERATOR(ZViewportRenderer, kExcludeHairSystems),
    ENUMERATOR(ZViewportRenderer, kExcludeImagePlane),
    ENUMERATOR(ZViewportRenderer, kExcludeNCloths), ENUMERATOR(ZViewportRenderer, kExcludeNRigids),
    ENUMERATOR(ZViewportRenderer, kExcludeDynamicConstraints),
    ENUMERATOR(ZViewportRenderer, kExcludeManipulators),
    ENUMERATOR(ZViewportRenderer, kExcludeNParticles),
    ENUMERATOR(ZViewportRenderer, kExcludeMotionTrails),
    ENUMERATOR(ZViewportRenderer, kExcludePluginShapes), ENUMERATOR(ZViewportRenderer, kExcludeAll))
