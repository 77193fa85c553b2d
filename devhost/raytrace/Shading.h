// SPDX-License-Identifier: MIT
#pragma once

// Colours of surfaces under the scene's lights, as linear light. A surface scatters the share
// diffuse / pi of the light that arrives on each unit of it: a white one that squarely faces a
// light of intensity pi without decay has the colour 1.

#include "devhost/raytrace/RayTracer.h"
#include "devhost/raytrace/SurfaceLook.h"
#include "devhost/scene/SceneGraph.h"
#include "host/base/HostApi.h"
#include "host/core/ZFloatVector.h"

#include <span>
#include <vector>

namespace devhost {

/// A light in world space.
struct WorldLight {
    Light light;
    ZFloatVector position;
    ZFloatVector direction;      // unit, the way the light shines
    std::vector<bool> ignored;   // by node, the meshes that it does not light
    PassThrough shadowless = {}; // the meshes that cast no shadow in its light
    bool castsShadows = true;    // whether any mesh does

    /// The share of the light that reaches a point if nothing is in the way: decay and cone.
    float attenuation(const ZFloatVector &point) const;
    /// Unit vector from the point towards the light, and how far the light is (infinite for
    /// directional lights).
    ZFloatVector towards(const ZFloatVector &point, float &distance) const;
    /// False for meshes that the light is linked not to light.
    bool lights(NodeId mesh) const {
        return mesh < 0 || size_t(mesh) >= ignored.size() || !ignored[mesh];
    }
    /// What its shadow rays pass through; null for nothing.
    const PassThrough *passThrough() const { return shadowless.empty() ? nullptr : &shadowless; }
};

/// The scene's rendered lights; the default light only when `defaultLight` is true.
OPENQUIL_API std::vector<WorldLight> worldLights(const Scene &scene, bool defaultLight = true);

/// How to shade.
struct ShadingOptions {
    /// Whether meshes block lights.
    bool castShadows = true;
    /// Whether a scene without lights is lit by the default ones.
    bool defaultLights = true;
    /// What all light is multiplied by.
    float exposure = 1;

    bool operator==(const ShadingOptions &) const = default;
};

/// The options of the render session.
OPENQUIL_API ShadingOptions sessionShading(bool castShadows = true);

/// What is seen along a ray: light, multiplied by the opacity of what it comes from.
struct Sight {
    ZFloatVector color;
    float opacity = 0;
};

/// What a ray sees that hits nothing, in a picture as in a mirror: clear black.
inline Sight background() {
    return {};
}

/// A point of a surface to shade.
struct SurfacePoint {
    ZFloatVector point, normal; // world space, the normal unit and turned to the viewer
    ZFloatVector viewDirection; // unit, from the viewer to the point
    SurfaceCoordinates where;
    NodeId mesh = kNoNode; // whose light links count; every light lights a point of none
};

/// Shades with a snapshot of the lights and textures; may be used from several threads at once, as
/// long as neither scene nor tracer goes away.
class OPENQUIL_API Shader {
  public:
    Shader(const Scene &scene, const RayTracer &tracer, const ShadingOptions &options = {});

    /// What is seen in the span of a ray, following up to `depth` reflections and see-through
    /// surfaces; the last one shows no reflection and nothing behind it. `first`, when given, gets
    /// the first hit.
    Sight trace(const ZFloatVector &origin, const ZFloatVector &direction, int depth,
                Hit *first = nullptr, RaySpan span = {}) const;
    /// As trace, for up to kRaysTogether rays. `hits` gets the first hits.
    void trace(std::span<const Ray> rays, int depth, Hit *hits, Sight *sights) const;
    /// As trace for each of any number of single rays, with the same numbers in less time: the
    /// first hits and the colours.
    void traceEach(std::span<const ZFloatVector> origins, std::span<const ZFloatVector> directions,
                   int depth, ZFloatVector *points, ZFloatVector *colors) const;
    /// The colour of a surface point under the lights, without reflections.
    ZFloatVector surface(const Material &material, const SurfacePoint &at) const;

    /// The share of a light, 0 to 1, that surfaces let through to a surface point with that unit
    /// normal.
    float unshadowed(const WorldLight &light, const ZFloatVector &point,
                     const ZFloatVector &normal) const;
    /// The lights that it shades with, as the scene has them.
    const std::vector<WorldLight> &lights() const { return lights_; }
    /// A triangle's material, or the default grey.
    const Material &materialOf(NodeId id) const;
    const SurfaceLooks &looks() const { return looks_; }
    /// As RayTracer's, through the holes of masked surfaces.
    void reach(std::span<const Ray> rays, float *multiples) const;

  private:
    /// The nearest hits of up to kRaysTogether rays that are no holes of masked surfaces.
    void intersect(std::span<const Ray> rays, Hit *hits) const;
    bool isHole(const Hit &hit) const;
    /// What is attached to a hit, as far as its material shows it.
    SurfaceCoordinates where(const Material &material, const Hit &hit) const;
    /// The nearest hit behind those holes that the first hit and what follows are.
    void passHoles(const Ray &ray, Hit &hit) const;
    /// A ray that goes on from a surface, off it to the side that the flat normal shows.
    Sight goOn(const Hit &hit, const ZFloatVector &flat, const ZFloatVector &direction,
               int depth) const;
    /// Fills in what is seen of those rays that found something.
    void shade(std::span<const Ray> rays, std::span<const size_t> found, int depth, const Hit *hits,
               Sight *sights) const;
    /// Adds what the surface mirrors and what is seen through it.
    void addSecondary(const Hit &hit, const Material &material, const SurfacePoint &at, int depth,
                      Sight &sight) const;
    /// As surface, for several points.
    void surfaces(std::span<const Material *const> materials, std::span<const SurfacePoint> at,
                  ZFloatVector *colors) const;
    /// The shares of a light that surfaces let through to points with those unit normals.
    void unshadowed(const WorldLight &light, std::span<const SurfacePoint *const> at,
                    float *shares) const;
    Ray shadowRay(const WorldLight &light, const ZFloatVector &point,
                  const ZFloatVector &normal) const;

    const RayTracer &tracer_;
    ShadingOptions options_;
    std::vector<WorldLight> lights_;
    std::vector<const Material *> materials_; // by node; null for others
    /// Whether any material can be seen through, or has holes.
    bool seeThrough_ = false, masked_ = false;
    SurfaceLooks looks_;
};

} // namespace devhost
