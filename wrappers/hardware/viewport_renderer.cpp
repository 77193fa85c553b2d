// SPDX-License-Identifier: MIT
// Renderers that take over viewports. Scripts get them from native code, and call their operations
// through the object's own virtual table.

#include "host/render/ZRenderingInfo.h"
#include "host/render/ZViewportRenderer.h"
#include "wrappers/rows/constants.h"

#define ROW_LIST "wrappers/hardware/viewport_renderer.def"
#define ROW_TABLE viewport_renderer_rows
#include "wrappers/rows/make_rows.h"

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
