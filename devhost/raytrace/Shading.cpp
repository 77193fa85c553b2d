// SPDX-License-Identifier: MIT
// Diffuse and glossy shading with shadows, reflections and see-through surfaces.
#include "devhost/raytrace/Shading.h"

#include "devhost/session/RenderSession.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace devhost {

namespace {

// Between two mirrors a ray would go on for ever; what comes after this many is too faint to see.
constexpr int kDeepest = 16;
// A ray passes through so many holes of masked surfaces, one behind the other.
constexpr int kMostHoles = 1000;

ZFloatVector multiply(const ZFloatVector &a, const ZFloatVector &b) {
    return ZFloatVector(a.x * b.x, a.y * b.y, a.z * b.z);
}

ZFloatVector fromRow(const ZMatrix &matrix, int row) {
    return ZFloatVector(float(matrix[row][0]), float(matrix[row][1]), float(matrix[row][2]));
}

/// The meshes that are not chosen, by node; empty when all are.
std::vector<bool> meshesOutside(const Scene &scene, const NodeChoice &choice) {
    std::vector<bool> result;
    if (choice.except && choice.nodes.empty())
        return result;
    for (NodeId id : scene.meshes())
        if (!scene.isChosen(id, choice)) {
            result.resize(std::max(result.size(), size_t(id) + 1));
            result[size_t(id)] = true;
        }
    return result;
}

} // namespace

float WorldLight::attenuation(const ZFloatVector &point) const {
    if (light.kind == Light::kAmbient || light.kind == Light::kDirectional)
        return 1;
    const ZFloatVector way = point - position;
    const float distance = way.length();
    if (distance == 0)
        return 1; // at the light itself, where decay has no bound
    float share = float(std::pow(double(distance), -light.decay));
    if (light.kind == Light::kSpot) {
        const double angle = std::acos(std::clamp(double(way * direction) / distance, -1.0, 1.0));
        const double fade = light.outerCone - light.innerCone;
        if (angle >= light.outerCone)
            share = 0;
        else if (angle > light.innerCone && fade > 0)
            share *= float((light.outerCone - angle) / fade);
    }
    return share;
}

ZFloatVector WorldLight::towards(const ZFloatVector &point, float &distance) const {
    distance = std::numeric_limits<float>::infinity();
    if (light.kind == Light::kAmbient || light.kind == Light::kDirectional)
        return -direction;
    const ZFloatVector way = position - point;
    distance = way.length();
    return way.normal();
}

std::vector<WorldLight> worldLights(const Scene &scene, bool defaultLight) {
    std::vector<WorldLight> result;
    for (NodeId id : scene.lights()) {
        const Light &light = *scene.node(id)->light();
        if (!scene.isRendered(id) || (light.isDefault && !defaultLight))
            continue;
        const ZMatrix world = scene.worldMatrix(id);
        result.push_back({light, fromRow(world, 3), -fromRow(world, 2).normal(),
                          meshesOutside(scene, light.illuminated),
                          meshesOutside(scene, light.shadowCasters),
                          light.kind != Light::kAmbient &&
                              (light.shadowCasters.except || !light.shadowCasters.nodes.empty())});
    }
    return result;
}

ShadingOptions sessionShading(bool castShadows) {
    const RenderSession &session = renderSession();
    return {castShadows, session.settings.enableDefaultLight, std::exp2(session.exposure)};
}

Shader::Shader(const Scene &scene, const RayTracer &tracer, const ShadingOptions &options)
    : scene_(scene), tracer_(tracer), options_(options),
      lights_(worldLights(scene, options.defaultLights)), looks_(scene) {
    for (NodeId id : scene.materials()) {
        const Material &material = *scene.node(id)->material();
        seeThrough_ = seeThrough_ || material.opacity < 1 || material.alpha != Material::kIgnored;
    }
}

const Material &Shader::materialOf(NodeId id) const {
    static const Material grey;
    const Node *node = scene_.node(id);
    return node && node->material() ? *node->material() : grey;
}

bool Shader::intersect(const ZFloatVector &origin, const ZFloatVector &direction, Hit &hit,
                       RaySpan span) const {
    const ZFloatVector unit = direction.normal();
    ZFloatVector from = origin;
    float passed = 0;
    for (int holes = 0; holes < kMostHoles && tracer_.intersect(from, unit, hit, span); ++holes) {
        const Material &material = materialOf(hit.material);
        span = {0, span.to - hit.distance};
        hit.distance += passed;
        passed = hit.distance;
        if (material.alpha != Material::kMasked || looks_.opacity(material, hit.where) > 0)
            return true;
        const float offset = tracer_.offset(hit.point);
        from =
            hit.point + hit.geometricNormal * (hit.geometricNormal * unit > 0 ? offset : -offset);
    }
    hit = Hit();
    return false;
}

float Shader::unshadowed(const WorldLight &light, const ZFloatVector &point,
                         const ZFloatVector &normal) const {
    if (!light.castsShadows)
        return 1;
    float distance;
    const ZFloatVector way = light.towards(point, distance);
    const float offset = tracer_.offset(point);
    const ZFloatVector origin = point + normal * (way * normal < 0 ? -offset : offset);
    const RaySpan span{0, distance - 2 * offset};
    if (!seeThrough_)
        return tracer_.occluded(origin, way, span, light.passThrough()) ? 0 : 1;
    return tracer_.transmitted(origin, way, span, light.passThrough(), [this](const Hit &hit) {
        return looks_.opacity(materialOf(hit.material), hit.where);
    });
}

ZFloatVector Shader::surface(const Material &material, const SurfacePoint &at) const {
    const SurfaceLook look = looks_.at(material, at.where);
    const ZFloatVector &diffuse = look.diffuse;
    if (material.unlit)
        return diffuse * options_.exposure;
    const ZFloatVector specular(material.specular);
    ZFloatVector result;
    for (const WorldLight &light : lights_) {
        if (!light.lights(at.mesh))
            continue;
        const ZFloatVector color = ZFloatVector(light.light.color) * float(light.light.intensity);
        if (light.light.kind == Light::kAmbient) {
            result += multiply(diffuse, color);
            continue;
        }
        float distance;
        const ZFloatVector way = light.towards(at.point, distance);
        const float facing = way * at.normal;
        float share = facing > 0 ? light.attenuation(at.point) : 0;
        if (share > 0 && options_.castShadows)
            share *= unshadowed(light, at.point, at.normal);
        if (!(share > 0))
            continue;
        const ZFloatVector halfway = (way - at.viewDirection).normal();
        const float glint =
            float(std::pow(std::max(halfway * at.normal, 0.0f), material.shininess));
        result += multiply(color, diffuse + specular * glint) * (facing * share);
    }
    result *= 1 / std::numbers::pi_v<float>;
    return (result + look.emission) * options_.exposure;
}

Sight Shader::trace(const ZFloatVector &origin, const ZFloatVector &direction, int depth,
                    Hit *first, RaySpan span) const {
    Hit hit;
    const bool found = intersect(origin, direction, hit, span);
    if (first)
        *first = hit;
    if (!found)
        return background();
    const Material &material = materialOf(hit.material);
    // Surfaces show both sides.
    const ZFloatVector unit = direction.normal();
    const bool inside = hit.geometricNormal * unit > 0;
    SurfacePoint at;
    at.point = hit.point;
    at.normal = inside ? -hit.normal : hit.normal;
    at.viewDirection = unit;
    at.where = hit.where;
    at.mesh = hit.mesh;
    Sight result{surface(material, at), 1};
    if (depth <= 0)
        return result;
    const int depthLeft = std::min(depth, kDeepest) - 1;

    const float offset = tracer_.offset(hit.point);
    const ZFloatVector flat = inside ? -hit.geometricNormal : hit.geometricNormal;
    const ZFloatVector mirrored(material.reflectivity);
    if (mirrored.x > 0 || mirrored.y > 0 || mirrored.z > 0) {
        const ZFloatVector away = unit - at.normal * (2 * (unit * at.normal));
        result.color += multiply(mirrored, trace(hit.point + flat * offset, away, depthLeft).color);
    }
    if (const float opaque = looks_.opacity(material, hit.where); opaque < 1) {
        const Sight behind = trace(hit.point - flat * offset, unit, depthLeft);
        result.color = result.color * opaque + behind.color * (1 - opaque);
        result.opacity = opaque + behind.opacity * (1 - opaque);
    }
    return result;
}

} // namespace devhost
