#pragma once

// Colours of surfaces under the scene's lights. A white surface that squarely faces a light of
// intensity 1 without decay has the colour 1.

#include "devhost/raytrace/RayTracer.h"
#include "devhost/scene/SceneGraph.h"
#include "host/base/HostApi.h"
#include "host/core/ZFloatVector.h"

#include <memory>
#include <unordered_map>
#include <vector>

namespace devhost {

/// A light in world space.
struct WorldLight {
    Light light;
    ZFloatVector position;
    ZFloatVector direction;      // unit, the way the light shines
    std::vector<bool> ignored;   // by node, the meshes that it does not light
    PassThrough shadowless = {}; // the meshes that cast no shadow in its light

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

/// A point of a surface to shade.
struct SurfacePoint {
    ZFloatVector point, normal; // world space, the normal unit and turned to the viewer
    ZFloatVector viewDirection; // unit, from the viewer to the point
    float uv[2] = {0, 0};
    NodeId mesh = kNoNode; // whose light links count; every light lights a point of none
};

/// Shades with a snapshot of the lights and textures; may be used from several threads at once, as
/// long as neither scene nor tracer goes away.
class OPENQUIL_API Shader {
  public:
    Shader(const Scene &scene, const RayTracer &tracer, bool castShadows = true,
           bool defaultLight = true);

    /// The colour that comes back along a ray, with up to `depth` reflections; zero where the ray
    /// hits nothing. `first`, when given, gets the first hit.
    ZFloatVector trace(const ZFloatVector &origin, const ZFloatVector &direction, int depth,
                       Hit *first = nullptr) const;
    /// The colour of a surface point under the lights, without reflections.
    ZFloatVector surface(const Material &material, const SurfacePoint &at) const;

    /// Whether a mesh lies between the light and a surface point with that unit normal.
    bool shadowed(const WorldLight &light, const ZFloatVector &point,
                  const ZFloatVector &normal) const;
    /// A triangle's material, or the default grey.
    const Material &materialOf(NodeId id) const;
    /// The material's diffuse colour with its texture.
    ZFloatVector diffuseColor(const Material &material, const float uv[2]) const;

  private:
    const Scene &scene_;
    const RayTracer &tracer_;
    bool castShadows_;
    std::vector<WorldLight> lights_;
    std::unordered_map<NodeId, std::shared_ptr<const Pixels>> textures_;
};

} // namespace devhost
