// SPDX-License-Identifier: MIT
#include "devhost/raytrace/SurfaceLook.h"

#include "devhost/image/TextureImage.h"
#include "devhost/raytrace/Vectors.h"

#include <algorithm>

namespace devhost {

namespace {

ZFloatVector tinted(const ZVector &color, const double rgba[4]) {
    return ZFloatVector(float(color.x * rgba[0]), float(color.y * rgba[1]),
                        float(color.z * rgba[2]));
}

/// The opacity at a place where texture and vertices have that alpha.
float opacityAt(const Material &material, double alpha) {
    const double opacity = std::clamp(material.opacity, 0.0, 1.0);
    switch (material.alpha) {
    case Material::kMasked:
        return opacity * alpha < material.alphaCutoff ? 0 : 1;
    case Material::kBlended:
        return float(opacity * std::clamp(alpha, 0.0, 1.0));
    case Material::kIgnored:
        break;
    }
    return float(opacity);
}

} // namespace

SurfaceLooks::SurfaceLooks(const Scene &scene) {
    for (NodeId id : scene.materials()) {
        const Material &material = *scene.node(id)->material();
        for (NodeId texture : {material.texture, material.emissionTexture}) {
            std::shared_ptr<const Pixels> pixels;
            if (scene.node(texture) && texturePixels(texture, pixels, scene))
                images_[texture] = {*scene.node(texture)->texture(), pixels};
        }
    }
}

void SurfaceLooks::sample(NodeId texture, const TexturePlacement &placement,
                          const SurfaceCoordinates &where, double rgba[4]) const {
    std::fill_n(rgba, 4, 1.0);
    if (texture == kNoNode)
        return;
    const auto found = images_.find(texture);
    if (found == images_.end())
        return;
    const float *uv = placement.uvSet == 0 ? where.uv : where.secondUv;
    double place[2];
    for (int k = 0; k < 2; ++k)
        place[k] = uv[0] * placement.matrix[0][k] + uv[1] * placement.matrix[1][k] +
                   placement.matrix[2][k];
    sampleImage(*found->second.pixels, place[0], place[1], rgba, found->second.texture);
}

SurfaceLook SurfaceLooks::at(const Material &material, const SurfaceCoordinates &where) const {
    double rgba[4], glow[4];
    sample(material.texture, material.placement, where, rgba);
    for (int k = 0; k < 4; ++k)
        rgba[k] *= where.color[k];
    SurfaceLook look{tinted(material.diffuse, rgba), rounded(material.emission),
                     opacityAt(material, rgba[3])};
    if (material.emissionTexture != kNoNode) {
        sample(material.emissionTexture, material.emissionPlacement, where, glow);
        look.emission = tinted(material.emission, glow);
    }
    return look;
}

float SurfaceLooks::opacity(const Material &material, const SurfaceCoordinates &where) const {
    double rgba[4] = {1, 1, 1, 1};
    if (material.alpha != Material::kIgnored)
        sample(material.texture, material.placement, where, rgba);
    return opacityAt(material, rgba[3] * where.color[3]);
}

} // namespace devhost
