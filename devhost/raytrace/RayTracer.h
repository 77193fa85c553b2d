#pragma once

// Rays into the meshes that are rendered: the visible ones of the current render layer.

#include "devhost/scene/SceneGraph.h"
#include "host/base/HostApi.h"
#include "host/core/ZFloatVector.h"

#include <limits>
#include <memory>
#include <vector>

namespace devhost {

struct Hit {
    bool hit = false;
    float distance = 0;           // along the unit direction
    ZFloatVector point;           // world space
    ZFloatVector normal;          // unit, world space, interpolated between the vertices
    ZFloatVector geometricNormal; // unit, world space, of the flat triangle
    float u = 0, v = 0;           // barycentric, of the triangle's second and third vertex
    float uv[2] = {0, 0};         // texture coordinates; zero where the mesh has none
    NodeId mesh = kNoNode;
    int triangle = -1;
    NodeId material = kNoNode;
};

/// Whether a ray passes through a mesh, by node; meshes beyond its end stop rays.
using PassThrough = std::vector<bool>;

/// A snapshot of a scene's rendered meshes, ready for rays. Rays may come from several threads at
/// once.
class OPENQUIL_API RayTracer {
  public:
    explicit RayTracer(const Scene &scene);
    ~RayTracer();
    RayTracer(const RayTracer &) = delete;
    RayTracer &operator=(const RayTracer &) = delete;

    /// The nearest hit nearer than maxDistance. The direction may have any length but zero.
    bool intersect(const ZFloatVector &origin, const ZFloatVector &direction, Hit &hit,
                   float maxDistance = std::numeric_limits<float>::infinity(),
                   const PassThrough *through = nullptr) const;
    /// Whether anything lies between the origin and maxDistance.
    bool occluded(const ZFloatVector &origin, const ZFloatVector &direction,
                  float maxDistance = std::numeric_limits<float>::infinity(),
                  const PassThrough *through = nullptr) const;

    /// How far to move a ray's origin off a surface at that point, so that it does not hit it
    /// again.
    float offset(const ZFloatVector &point) const;

  private:
    struct Impl;
    std::unique_ptr<Impl> impl_;
};

/// The tracer of the process's scene, rebuilt first when the scene changed. Call it on one thread,
/// then share the result.
OPENQUIL_API const RayTracer &rayTracer();

} // namespace devhost
