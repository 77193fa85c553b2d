// SPDX-License-Identifier: MIT
// Diffuse and glossy shading with shadows, reflections and see-through surfaces.
#include "devhost/raytrace/Shading.h"

#include "devhost/raytrace/Few.h"
#include "devhost/raytrace/Vectors.h"
#include "devhost/session/RenderSession.h"

#include <algorithm>
#include <cmath>
#include <limits>
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
    return unit(way);
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
    : tracer_(tracer), options_(options), lights_(worldLights(scene, options.defaultLights)),
      looks_(scene) {
    for (NodeId id : scene.materials()) {
        const Material &material = *scene.node(id)->material();
        materials_.resize(std::max(materials_.size(), size_t(id) + 1));
        materials_[size_t(id)] = &material;
        seeThrough_ = seeThrough_ || material.opacity < 1 || material.alpha != Material::kIgnored;
        masked_ = masked_ || material.alpha == Material::kMasked;
    }
}

const Material &Shader::materialOf(NodeId id) const {
    static const Material grey;
    const bool isKnown = id >= 0 && size_t(id) < materials_.size() && materials_[size_t(id)];
    return isKnown ? *materials_[size_t(id)] : grey;
}

SurfaceCoordinates Shader::where(const Material &material, const Hit &hit) const {
    return tracer_.where(hit, material.texture != kNoNode || material.emissionTexture != kNoNode);
}

bool Shader::isHole(const Hit &hit) const {
    const Material &material = materialOf(hit.material);
    return material.alpha == Material::kMasked &&
           !(looks_.opacity(material, where(material, hit)) > 0);
}

void Shader::passHoles(const Ray &ray, Hit &hit) const {
    const ZFloatVector unit = ray.direction.normal();
    const RaySpan whole = ray.span * ray.direction.length();
    for (int holes = 0; holes < kMostHoles && isHole(hit); ++holes) {
        const float offset = tracer_.offset(hit.point);
        const ZFloatVector from =
            hit.point + hit.geometricNormal * (hit.geometricNormal * unit > 0 ? offset : -offset);
        if (!tracer_.intersect(from, unit, hit, {0, whole.to - hit.distance}))
            return;
        hit.distance = (hit.point - ray.origin) * unit;
    }
    if (isHole(hit))
        hit = Hit();
}

void Shader::intersect(std::span<const Ray> rays, Hit *hits) const {
    tracer_.intersect(rays, hits);
    for (size_t i = 0; masked_ && i < rays.size(); ++i)
        if (hits[i].hit)
            passHoles(rays[i], hits[i]);
}

void Shader::reach(std::span<const Ray> rays, float *multiples) const {
    if (!masked_) {
        tracer_.reach(rays, multiples);
        return;
    }
    Hit hits[kRaysTogether];
    intersect(rays, hits);
    for (size_t i = 0; i < rays.size(); ++i)
        multiples[i] = hits[i].hit ? hits[i].distance / rays[i].direction.length()
                                   : std::numeric_limits<float>::infinity();
}

Ray Shader::shadowRay(const WorldLight &light, const ZFloatVector &point,
                      const ZFloatVector &normal) const {
    float distance;
    const ZFloatVector way = light.towards(point, distance);
    const float offset = tracer_.offset(point);
    return {
        point + normal * (way * normal < 0 ? -offset : offset), way, {0, distance - 2 * offset}};
}

void Shader::unshadowed(const WorldLight &light, std::span<const SurfacePoint *const> at,
                        float *shares) const {
    if (!light.castsShadows) {
        std::fill_n(shares, at.size(), 1.0f);
        return;
    }
    Few<Ray, kRaysTogether> rays;
    for (const SurfacePoint *each : at)
        rays.add(shadowRay(light, each->point, each->normal));
    if (seeThrough_) {
        const Opacity opacity = [this](const Hit &hit) {
            const Material &material = materialOf(hit.material);
            return looks_.opacity(material, where(material, hit));
        };
        for (size_t i = 0; i < at.size(); ++i)
            shares[i] = tracer_.transmitted(rays[i].origin, rays[i].direction, rays[i].span,
                                            light.passThrough(), opacity);
        return;
    }
    bool dark[kRaysTogether];
    tracer_.occluded({rays.data(), at.size()}, dark, light.passThrough());
    for (size_t i = 0; i < at.size(); ++i)
        shares[i] = dark[i] ? 0 : 1;
}

float Shader::unshadowed(const WorldLight &light, const ZFloatVector &point,
                         const ZFloatVector &normal) const {
    SurfacePoint at;
    at.point = point;
    at.normal = normal;
    const SurfacePoint *const points[] = {&at};
    float share;
    unshadowed(light, points, &share);
    return share;
}

namespace {

/// The light that a point gives back of one light's, for each unit of it that gets there.
ZFloatVector returned(const Material &material, const ZFloatVector &diffuse, const SurfacePoint &at,
                      const ZFloatVector &way) {
    const ZFloatVector specular = rounded(material.specular);
    if (specular == ZFloatVector())
        return diffuse;
    const ZFloatVector halfway = unit(way - at.viewDirection);
    const float glint = std::pow(std::max(halfway * at.normal, 0.0f), float(material.shininess));
    return diffuse + specular * glint;
}

} // namespace

void Shader::surfaces(std::span<const Material *const> materials, std::span<const SurfacePoint> at,
                      ZFloatVector *colors) const {
    Few<SurfaceLook, kRaysTogether> looks;
    for (size_t i = 0; i < at.size(); ++i) {
        looks.add(looks_.at(*materials[i], at[i].where));
        colors[i] = ZFloatVector();
    }
    for (const WorldLight &light : lights_) {
        const ZFloatVector color = rounded(light.light.color) * float(light.light.intensity);
        size_t lit[kRaysTogether], count = 0; // which points it may reach
        const SurfacePoint *points[kRaysTogether];
        Few<ZFloatVector, kRaysTogether> ways;
        float shares[kRaysTogether], through[kRaysTogether];
        for (size_t i = 0; i < at.size(); ++i) {
            if (!light.lights(at[i].mesh) || materials[i]->unlit)
                continue;
            if (light.light.kind == Light::kAmbient) {
                colors[i] += multiply(looks[i].diffuse, color);
                continue;
            }
            float distance;
            const ZFloatVector way = light.towards(at[i].point, distance);
            const float facing = way * at[i].normal;
            shares[count] = facing > 0 ? facing * light.attenuation(at[i].point) : 0;
            if (!(shares[count] > 0))
                continue;
            ways.add(way);
            points[count] = &at[i];
            lit[count++] = i;
        }
        if (!count)
            continue;
        const bool hasShadows = options_.castShadows && light.castsShadows;
        if (hasShadows)
            unshadowed(light, {points, count}, through);
        for (size_t k = 0; k < count; ++k) {
            const size_t i = lit[k];
            const float share = hasShadows ? shares[k] * through[k] : shares[k];
            if (share > 0)
                colors[i] +=
                    multiply(color, returned(*materials[i], looks[i].diffuse, at[i], ways[k])) *
                    share;
        }
    }
    for (size_t i = 0; i < at.size(); ++i)
        colors[i] =
            (materials[i]->unlit ? looks[i].diffuse
                                 : colors[i] * (1 / std::numbers::pi_v<float>)+looks[i].emission) *
            options_.exposure;
}

ZFloatVector Shader::surface(const Material &material, const SurfacePoint &at) const {
    const Material *const materials[] = {&material};
    ZFloatVector color;
    surfaces(materials, {&at, 1}, &color);
    return color;
}

Sight Shader::goOn(const Hit &hit, const ZFloatVector &flat, const ZFloatVector &direction,
                   int depth) const {
    return trace(hit.point + flat * tracer_.offset(hit.point), direction, depth);
}

Sight Shader::trace(const ZFloatVector &origin, const ZFloatVector &direction, int depth,
                    Hit *first, RaySpan span) const {
    const ZFloatVector unit = direction.normal();
    const Ray ray{origin, unit, span};
    Hit hit;
    Sight sight;
    trace({&ray, 1}, depth, first ? first : &hit, &sight);
    return sight;
}

void Shader::trace(std::span<const Ray> rays, int depth, Hit *hits, Sight *sights) const {
    intersect(rays, hits);
    size_t count = 0, found[kRaysTogether];
    for (size_t i = 0; i < rays.size(); ++i) {
        sights[i] = background();
        found[count] = i;
        count += hits[i].hit;
    }
    if (count > 0)
        shade(rays, {found, count}, depth, hits, sights);
}

void Shader::traceEach(std::span<const ZFloatVector> origins,
                       std::span<const ZFloatVector> directions, int depth, ZFloatVector *points,
                       ZFloatVector *colors) const {
    ZFloatVector units[kRaysInStream];
    Hit hits[kRaysInStream];
    for (size_t begin = 0; begin < origins.size(); begin += kRaysInStream) {
        const size_t count = std::min(kRaysInStream, origins.size() - begin);
        for (size_t i = 0; i < count; ++i)
            units[i] = directions[begin + i].normal();
        tracer_.intersectEach(origins.subspan(begin, count), {units, count}, hits);
        for (size_t i = 0; i < count; ++i) {
            // Shaded one by one, as shadow rays that go together come to other numbers.
            const Ray ray{origins[begin + i], units[i], {}};
            if (masked_ && hits[i].hit)
                passHoles(ray, hits[i]);
            Sight sight = background();
            constexpr size_t first = 0;
            if (hits[i].hit)
                shade({&ray, 1}, {&first, 1}, depth, &hits[i], &sight);
            points[begin + i] = hits[i].point;
            colors[begin + i] = sight.color;
        }
    }
}

namespace {

/// Whether a surface mirrors something or may be seen through.
bool showsMore(const Material &material) {
    const ZVector &mirrored = material.reflectivity;
    return mirrored.x > 0 || mirrored.y > 0 || mirrored.z > 0 || material.opacity < 1 ||
           material.alpha != Material::kIgnored;
}

} // namespace

void Shader::shade(std::span<const Ray> rays, std::span<const size_t> found, int depth,
                   const Hit *hits, Sight *sights) const {
    const Material *materials[kRaysTogether];
    Few<SurfacePoint, kRaysTogether> points;
    Few<ZFloatVector, kRaysTogether> colors;
    for (size_t k = 0; k < found.size(); ++k) {
        const Hit &hit = hits[found[k]];
        const Material &material = materialOf(hit.material);
        const ZFloatVector direction = unit(rays[found[k]].direction);
        // Surfaces show both sides.
        const bool inside = hit.geometricNormal * direction > 0;
        points.add(hit.point, inside ? -hit.normal : hit.normal, direction, where(material, hit),
                   hit.mesh);
        colors.add();
        materials[k] = &material;
    }
    surfaces({materials, found.size()}, {points.data(), found.size()}, colors.data());
    for (size_t k = 0; k < found.size(); ++k) {
        Sight &sight = sights[found[k]] = {colors[k], 1};
        if (depth > 0 && showsMore(*materials[k]))
            addSecondary(hits[found[k]], *materials[k], points[k], std::min(depth, kDeepest) - 1,
                         sight);
    }
}

void Shader::addSecondary(const Hit &hit, const Material &material, const SurfacePoint &at,
                          int depth, Sight &sight) const {
    const ZFloatVector &ahead = at.viewDirection;
    const ZFloatVector flat =
        hit.geometricNormal * ahead > 0 ? -hit.geometricNormal : hit.geometricNormal;
    const ZFloatVector mirrored = rounded(material.reflectivity);
    if (mirrored.x > 0 || mirrored.y > 0 || mirrored.z > 0) {
        const ZFloatVector away = ahead - at.normal * (2 * (ahead * at.normal));
        sight.color += multiply(mirrored, goOn(hit, flat, away, depth).color);
    }
    if (const float opaque = looks_.opacity(material, at.where); opaque < 1) {
        const Sight behind = goOn(hit, -flat, ahead, depth);
        sight.color = sight.color * opaque + behind.color * (1 - opaque);
        sight.opacity = opaque + behind.opacity * (1 - opaque);
    }
}

} // namespace devhost
