// SPDX-License-Identifier: MIT
#pragma once

// The depth maps that tell render callbacks about a light's shadows.

#include "devhost/raytrace/Shading.h"
#include "devhost/util/GuardedMemory.h"
#include "host/core/ZMatrix.h"
#include "host/core/ZPoint.h"
#include "host/render/ZRenderShadowData.h"

#include <vector>

namespace devhost {

inline constexpr char kShadowDepths[] = "the maps that shadow callbacks are lent (depthMaps)";

/// Shadow data with the maps that its depthMaps points to.
struct ShadowMaps {
    ZRenderShadowData data;
    LentVector<float, kShadowDepths> depths;
};

/// The size of one map in pixels, both ways.
inline constexpr unsigned kShadowMapSize = 256;

/// Makes a light's maps from the rendered meshes that cast shadows in its light. The light must not
/// be an ambient one.
OPENQUIL_API ShadowMaps makeShadowMaps(const WorldLight &light, const Scene &scene,
                                       const RayTracer &tracer);

/// Which of a point light's six maps shows a point in light space: +X, -X, +Y, -Y, +Z, -Z.
unsigned shadowMapFace(const ZPoint &inLight);
/// Turns light space so that the map's direction becomes -z.
ZMatrix shadowMapFaceMatrix(unsigned face);

} // namespace devhost
