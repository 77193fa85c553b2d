// SPDX-License-Identifier: MIT
#include "devhost/raytrace/ShadowMaps.h"

#include "devhost/raytrace/ViewFrame.h"
#include "devhost/session/Parallel.h"

#include <algorithm>
#include <cmath>

namespace devhost {
namespace {

/// The projection of a symmetric view to the square -1 to 1. The columns for z and w make it
/// invertible; the maps' depths are distances and do not use them.
ZFloatMatrix projection(const ViewRays &rays) {
    ZFloatMatrix result;
    result(0, 0) = static_cast<float>(1 / rays.halfWidth);
    result(1, 1) = static_cast<float>(1 / rays.halfHeight);
    if (rays.perspective) {
        result(2, 3) = result(3, 2) = -1;
        result(2, 2) = result(3, 3) = 0;
    }
    return result;
}

ZVector faceDirection(unsigned face) {
    ZVector direction;
    direction[face / 2] = face % 2 ? -1 : 1;
    return direction;
}

const ZVector kUp(0, 1, 0);

void fillMap(float *depths, const ViewRays &rays, const RayTracer &tracer,
             const PassThrough *through) {
    static_assert(kShadowMapSize % kRaysTogether == 0);
    forBlocks(kShadowMapSize, 8, [&](size_t begin, size_t end) {
        Ray packet[kRaysTogether];
        for (size_t i = begin * kShadowMapSize; i < end * kShadowMapSize; i += kRaysTogether) {
            for (size_t k = 0; k < kRaysTogether; ++k) {
                const size_t column = (i + k) % kShadowMapSize, row = i / kShadowMapSize;
                const double x = (double(column) + 0.5) * 2 / kShadowMapSize - 1;
                const double y = (double(row) + 0.5) * 2 / kShadowMapSize - 1;
                packet[k] = {rays.origin(x, y), rays.direction(x, y), {}};
            }
            tracer.reach(packet, depths + i, through);
        }
    });
}

} // namespace

unsigned shadowMapFace(const ZPoint &inLight) {
    const double size[] = {std::abs(inLight.x), std::abs(inLight.y), std::abs(inLight.z)};
    const auto axis = static_cast<unsigned>(std::max_element(size, size + 3) - size);
    return 2 * axis + (inLight[axis] < 0);
}

ZMatrix shadowMapFaceMatrix(unsigned face) {
    return ViewFrame(ZVector(), faceDirection(face), kUp).worldToView();
}

ShadowMaps makeShadowMaps(const WorldLight &light, const Scene &scene, const RayTracer &tracer) {
    ShadowMaps maps;
    auto &data = maps.data;
    data.shadowResX = data.shadowResY = kShadowMapSize;
    const ZVector position(light.position), direction(light.direction);
    std::vector<ViewRays> views;
    if (light.light.kind == Light::kPoint) {
        data.lightType = ZRenderShadowData::kPoint;
        for (unsigned face = 0; face < 6; ++face)
            views.push_back({ViewFrame(position, faceDirection(face), kUp), true, 1, 1});
        // Light space keeps the world's axes, which the six maps look along.
        data.projectionMatrix =
            ZFloatMatrix(ViewFrame(position, ZVector(0, 0, -1), kUp).worldToView());
    } else {
        ViewRays view{ViewFrame(position, direction, kUp), true, 1, 1};
        if (light.light.kind == Light::kSpot) {
            data.lightType = ZRenderShadowData::kSpot;
            // A cone that is nearly flat has no projection.
            view.halfWidth = view.halfHeight =
                std::tan(std::clamp(light.light.outerCone, 0.005, 1.5));
        } else {
            data.lightType = ZRenderShadowData::kDirectional;
            const Bounds bounds = scene.bounds();
            const double radius =
                std::max(1e-3, bounds.empty ? 1.0 : (bounds.high - bounds.low).length() / 2);
            const ZVector centre = bounds.empty ? ZVector() : (bounds.low + bounds.high) * 0.5;
            view.frame.eye = centre - view.frame.forward * (2 * radius);
            view.perspective = false;
            view.halfWidth = view.halfHeight = radius;
        }
        data.projectionMatrix = ZFloatMatrix(view.frame.worldToView());
        views.push_back(view);
    }
    data.perspective = views.front().perspective;
    data.perspectiveMatrix = projection(views.front());
    data.lightPosition = ZFloatPoint(ZFloatVector(views.front().frame.eye));

    constexpr size_t mapSize = size_t(kShadowMapSize) * kShadowMapSize;
    maps.depths.resize(mapSize * views.size());
    data.depthMaps = maps.depths.data();
    for (size_t i = 0; i < views.size(); ++i)
        fillMap(data.depthMaps + i * mapSize, views[i], tracer, light.passThrough());
    return maps;
}

} // namespace devhost
