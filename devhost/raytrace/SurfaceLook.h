// SPDX-License-Identifier: MIT
#pragma once

// What materials look like at a place of a surface, before any light falls on it.

#include "devhost/raytrace/RayTracer.h"
#include "devhost/scene/SceneGraph.h"
#include "host/core/ZFloatVector.h"

#include <memory>
#include <unordered_map>

namespace devhost {

struct SurfaceLook {
    ZFloatVector diffuse, emission;
    float opacity = 1;
};

/// The materials of a scene with a snapshot of their textures; those that cannot be read are left
/// out. May be used from several threads at once.
class SurfaceLooks {
  public:
    explicit SurfaceLooks(const Scene &scene);

    SurfaceLook at(const Material &material, const SurfaceCoordinates &where) const;
    /// The share, 0 to 1, that the surface hides of what lies behind.
    float opacity(const Material &material, const SurfaceCoordinates &where) const;

  private:
    /// The texture's colour and alpha; white where there is none.
    void sample(NodeId texture, const TexturePlacement &placement, const SurfaceCoordinates &where,
                double rgba[4]) const;

    struct Image {
        Texture texture;
        std::shared_ptr<const Pixels> pixels;
    };
    std::unordered_map<NodeId, Image> images_;
};

} // namespace devhost
