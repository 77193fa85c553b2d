// SPDX-License-Identifier: MIT
#pragma once

// Rays into the meshes that are rendered: the visible ones of the current render layer.

#include "devhost/scene/SceneGraph.h"
#include "host/base/HostApi.h"
#include "host/core/ZFloatVector.h"

#include <functional>
#include <limits>
#include <memory>
#include <span>
#include <vector>

namespace devhost {

/// What is attached to a place of a surface; where a mesh has none, coordinates are zero and the
/// colour is white.
struct SurfaceCoordinates {
    float uv[2] = {0, 0}, secondUv[2] = {0, 0};
    float color[4] = {1, 1, 1, 1};
};

struct Hit {
    bool hit = false;
    float distance = 0;           // along the unit direction
    ZFloatVector point;           // world space
    ZFloatVector normal;          // unit, world space, interpolated between the vertices
    ZFloatVector geometricNormal; // unit, world space, of the flat triangle
    float u = 0, v = 0;           // barycentric, of the triangle's second and third vertex
    NodeId mesh = kNoNode;
    unsigned meshNumber = 0; // the tracer's own
    int triangle = -1;
    NodeId material = kNoNode;
};

/// Whether a ray passes through a mesh, by node; meshes beyond its end stop rays.
using PassThrough = std::vector<bool>;

/// The part of a ray that counts, in multiples of its unit direction.
struct RaySpan {
    float from = 0, to = std::numeric_limits<float>::infinity();

    RaySpan operator*(float factor) const { return {from * factor, to * factor}; }
};

/// One of several rays that are followed together.
struct Ray {
    ZFloatVector origin, direction; // of any length but zero
    RaySpan span;                   // in multiples of the direction
};

/// So many rays are followed together at most.
inline constexpr size_t kRaysTogether = 16;

/// So many rays go in one stream.
inline constexpr size_t kRaysInStream = 128;

/// How much of the light a surface stops where it is hit: 1 for all of it.
using Opacity = std::function<float(const Hit &)>;

/// A snapshot of a scene's rendered meshes, ready for rays. Rays may come from several threads at
/// once.
class OPENQUIL_API RayTracer {
  public:
    explicit RayTracer(const Scene &scene);
    ~RayTracer();
    RayTracer(const RayTracer &) = delete;
    RayTracer &operator=(const RayTracer &) = delete;

    /// The nearest hit in the span. The direction may have any length but zero.
    bool intersect(const ZFloatVector &origin, const ZFloatVector &direction, Hit &hit,
                   RaySpan span = {}, const PassThrough *through = nullptr) const;
    /// The nearest hits of up to kRaysTogether rays; those that lie close together take less time
    /// than one by one. Of a ray that hits nothing only Hit::hit is set.
    void intersect(std::span<const Ray> rays, Hit *hits) const;
    /// The points that intersect() finds for single rays, of any number of them; in streams, which
    /// take less time. A point is only set where something is hit.
    void hitPoints(std::span<const ZFloatVector> origins, std::span<const ZFloatVector> directions,
                   ZFloatVector *points, bool *areHit) const;
    /// The hits that intersect() finds for single rays, of up to kRaysInStream, in one stream.
    void intersectEach(std::span<const ZFloatVector> origins,
                       std::span<const ZFloatVector> directions, Hit *hits) const;
    /// How far up to kRaysTogether rays reach, in multiples of their directions; infinitely where
    /// they hit nothing.
    void reach(std::span<const Ray> rays, float *multiples,
               const PassThrough *through = nullptr) const;
    /// Whether anything lies in the spans of up to kRaysTogether rays.
    void occluded(std::span<const Ray> rays, bool *results,
                  const PassThrough *through = nullptr) const;
    /// What is attached to the place of a hit; without the texture coordinates where nobody needs
    /// them.
    SurfaceCoordinates where(const Hit &hit, bool withTexture = true) const;
    /// Whether anything lies in the span.
    bool occluded(const ZFloatVector &origin, const ZFloatVector &direction, RaySpan span = {},
                  const PassThrough *through = nullptr) const;
    /// The share of the light, 0 to 1, that gets through all surfaces in the span.
    float transmitted(const ZFloatVector &origin, const ZFloatVector &direction, RaySpan span,
                      const PassThrough *through, const Opacity &opacity) const;

    /// How far to move a ray's origin off a surface at that point, so that it does not hit it
    /// again.
    float offset(const ZFloatVector &point) const;

  private:
    struct Impl;
    std::unique_ptr<Impl> impl_;
};

/// The tracer of the process's scene, rebuilt first when the scene changed; textures that cannot be
/// read are then told of. Any thread may ask; the result lasts until one asks after a change.
OPENQUIL_API const RayTracer &rayTracer();

} // namespace devhost
