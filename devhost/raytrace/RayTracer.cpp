// SPDX-License-Identifier: MIT
// Rays by Embree. Every mesh node becomes one geometry in world space; the geometry's number is its
// index in Impl::meshes.
#include "devhost/raytrace/RayTracer.h"

#include "devhost/raytrace/Vectors.h"
#include "devhost/scene/SceneLoader.h"
#include "devhost/session/Parallel.h"
#include "devhost/session/RenderSession.h"
#include "devhost/util/Timeline.h"

#include <embree3/rtcore.h>

#include <algorithm>
#include <cmath>
#include <mutex>
#include <new>
#include <stdexcept>
#include <string>

namespace devhost {

namespace {

[[noreturn]] void fail(RTCError error, const char *what) {
    if (error == RTC_ERROR_OUT_OF_MEMORY)
        throw std::bad_alloc();
    throw std::runtime_error("the ray tracing library " + std::string(what) + " (its error " +
                             std::to_string(error) + ")");
}

/// The threads that the library may have for its trees. It cannot do without one that it counts on,
/// and keeps them: those of the render come first.
size_t treeThreads() {
    const size_t wanted = renderThreads() - 1;
    return 1 + (std::max(startableThreads(2 * wanted), wanted) - wanted);
}

RTCDevice device() {
    // Never released: a tracer may outlive the main function's end.
    static auto *const theDevice = [] {
        auto *const made = rtcNewDevice(("threads=" + std::to_string(treeThreads())).c_str());
        if (!made)
            fail(rtcGetDeviceError(nullptr), "does not start on this machine");
        return made;
    }();
    return theDevice;
}

ZFloatVector vectorAt(const std::vector<float> &flat, unsigned index) {
    const float *p = &flat[size_t(index) * 3];
    return ZFloatVector(p[0], p[1], p[2]);
}

/// What lies between a triangle's corners; left as it is where the mesh has no such values.
template <size_t Width>
void interpolate(const std::vector<float> &values, const unsigned corners[3],
                 const float weights[3], float (&result)[Width]) {
    if (values.empty())
        return;
    for (size_t at = 0; at < Width; ++at) {
        result[at] = 0;
        for (int k = 0; k < 3; ++k)
            result[at] += values[size_t(corners[k]) * Width + at] * weights[k];
    }
}

/// Coordinates that add up to more are none that the ray library takes: it ends the process.
constexpr float kFarthest = 1e18f;

float sum(float x, float y, float z) {
    return std::abs(x) + std::abs(y) + std::abs(z);
}

/// False for a ray that can hit nothing: with an odd span, or from too far away.
bool canHit(const ZFloatVector &origin, const ZFloatVector &direction, const RaySpan &span) {
    return sum(origin.x, origin.y, origin.z) <= kFarthest &&
           sum(direction.x, direction.y, direction.z) <= kFarthest && span.from >= 0 &&
           span.to >= span.from;
}

template <class LibraryRay>
bool setRay(LibraryRay &ray, const ZFloatVector &origin, const ZFloatVector &direction,
            RaySpan span) {
    if (!canHit(origin, direction, span))
        return false;
    ray.org_x = origin.x;
    ray.org_y = origin.y;
    ray.org_z = origin.z;
    ray.dir_x = direction.x;
    ray.dir_y = direction.y;
    ray.dir_z = direction.z;
    ray.tnear = span.from;
    ray.tfar = span.to;
    ray.time = 0;
    ray.mask = ~0u;
    ray.id = 0;
    ray.flags = 0;
    return true;
}

/// Puts rays into a packet of the library's. `active` gets which of them can hit anything, as
/// canHit tells it, without branches.
void setRays(RTCRay16 &packet, std::span<const Ray> rays, int (&active)[kRaysTogether]) {
    for (size_t i = 0; i < kRaysTogether; ++i) {
        const Ray &ray = rays[i < rays.size() ? i : 0];
        packet.org_x[i] = ray.origin.x;
        packet.org_y[i] = ray.origin.y;
        packet.org_z[i] = ray.origin.z;
        packet.dir_x[i] = ray.direction.x;
        packet.dir_y[i] = ray.direction.y;
        packet.dir_z[i] = ray.direction.z;
        packet.tnear[i] = ray.span.from;
        packet.tfar[i] = ray.span.to;
    }
    for (size_t i = 0; i < kRaysTogether; ++i) {
        const int isNear = sum(packet.org_x[i], packet.org_y[i], packet.org_z[i]) <= kFarthest;
        const int isShort = sum(packet.dir_x[i], packet.dir_y[i], packet.dir_z[i]) <= kFarthest;
        const int isSpan = (packet.tnear[i] >= 0) & (packet.tfar[i] >= packet.tnear[i]);
        active[i] = -(isNear & isShort & isSpan);
    }
    std::fill(active + rays.size(), active + kRaysTogether, 0);
    std::fill_n(packet.time, kRaysTogether, 0.0f);
    std::fill_n(packet.mask, kRaysTogether, ~0u);
    std::fill_n(packet.flags, kRaysTogether, 0u);
}

} // namespace

struct RayTracer::Impl {
    struct WorldMesh {
        NodeId node;
        std::shared_ptr<const Mesh> mesh;
        std::vector<float> normals; // world space
    };

    RTCScene scene = nullptr;
    std::vector<WorldMesh> meshes;
    float size = 0; // of the scene

    /// Has the library look for the nearest hits.
    void follow(std::span<const Ray> rays, RTCRayHit16 &packet) const;
    /// Has it look for those of up to kRaysInStream rays, as single ones.
    void stream(std::span<const ZFloatVector> origins, std::span<const ZFloatVector> directions,
                RTCRayHit *queries) const;
    /// Fills in what was found for a single ray.
    void take(const RTCRayHit &query, const ZFloatVector &origin, Hit &hit) const;
    /// Fills in all but the distance and what depends on it.
    void describe(const RTCHit &found, Hit &hit) const;

    ~Impl() {
        if (scene)
            rtcReleaseScene(scene);
    }

    void add(const Scene &from, NodeId id) {
        const auto &mesh = std::get<std::shared_ptr<const Mesh>>(from.node(id)->payload);
        const ZMatrix world = from.worldMatrix(id);
        const ZMatrix forNormals = world.inverse().transpose();
        WorldMesh made{id, mesh, std::vector<float>(mesh->normals.size())};

        auto *const geometry = rtcNewGeometry(device(), RTC_GEOMETRY_TYPE_TRIANGLE);
        auto *positions = static_cast<float *>(
            rtcSetNewGeometryBuffer(geometry, RTC_BUFFER_TYPE_VERTEX, 0, RTC_FORMAT_FLOAT3,
                                    3 * sizeof(float), mesh->vertexCount()));
        auto *triangles = static_cast<unsigned *>(
            rtcSetNewGeometryBuffer(geometry, RTC_BUFFER_TYPE_INDEX, 0, RTC_FORMAT_UINT3,
                                    3 * sizeof(unsigned), mesh->triangleCount()));
        if (!positions || !triangles) {
            rtcReleaseGeometry(geometry);
            throw std::bad_alloc();
        }
        for (unsigned vertex = 0; vertex < mesh->vertexCount(); ++vertex) {
            const ZVector p = transformPoint(ZVector(vectorAt(mesh->positions, vertex)), world);
            const ZVector n = (ZVector(vectorAt(mesh->normals, vertex)) * forNormals).normal();
            for (unsigned k = 0; k < 3; ++k) {
                positions[vertex * 3 + k] = float(p[k]);
                made.normals[vertex * 3 + k] = float(n[k]);
            }
        }
        std::copy(mesh->triangles.begin(), mesh->triangles.end(), triangles);
        rtcCommitGeometry(geometry);
        rtcAttachGeometryByID(scene, geometry, unsigned(meshes.size()));
        rtcReleaseGeometry(geometry);
        meshes.push_back(std::move(made));
    }
};

void RayTracer::Impl::describe(const RTCHit &found, Hit &hit) const {
    const WorldMesh &mesh = meshes[found.geomID];
    const unsigned *corners = &mesh.mesh->triangles[size_t(found.primID) * 3];
    const float weights[3] = {1 - found.u - found.v, found.u, found.v};
    hit.hit = true;
    hit.u = found.u;
    hit.v = found.v;
    hit.mesh = mesh.node;
    hit.meshNumber = found.geomID;
    hit.triangle = int(found.primID);
    hit.material = mesh.mesh->materials[found.primID];
    hit.geometricNormal = unit(ZFloatVector(found.Ng_x, found.Ng_y, found.Ng_z));
    hit.normal = ZFloatVector();
    for (int k = 0; k < 3; ++k)
        hit.normal += vectorAt(mesh.normals, corners[k]) * weights[k];
    hit.normal = unit(hit.normal);
    if (!(hit.normal * hit.normal > 0.25f))
        hit.normal = hit.geometricNormal;
    if (hit.geometricNormal * hit.normal < 0) // a mirroring transform turned the triangle round
        hit.geometricNormal = -hit.geometricNormal;
}

namespace {

/// Less light than this counts as none.
constexpr float kDark = 1.0f / 1024;

/// What the ray library hands back to the filter.
template <class Tracer>
struct QueryContext {
    RTCIntersectContext base;
    const Tracer *tracer;
    const PassThrough *through;
    const Opacity *opacity;
    float transmitted = 1;

    QueryContext(const Tracer &theTracer, const PassThrough *meshesToPass,
                 const Opacity *weighing = nullptr)
        : tracer(&theTracer), through(meshesToPass), opacity(weighing) {
        rtcInitIntersectContext(&base);
        if (through || opacity)
            base.filter = filter;
    }
    /// Takes back the hit of a surface that the ray, or some of its light, passes through.
    static void filter(const RTCFilterFunctionNArguments *found) {
        auto *self = reinterpret_cast<QueryContext *>(found->context);
        const RTCHit hit = rtcGetHitFromHitN(found->hit, found->N, 0); // rays come one by one
        const auto node = size_t(self->tracer->meshes[hit.geomID].node);
        bool passes = self->through && node < self->through->size() && (*self->through)[node];
        if (!passes && self->opacity) {
            Hit described;
            self->tracer->describe(hit, described);
            self->transmitted *= 1 - (*self->opacity)(described);
            passes = self->transmitted > kDark;
        }
        if (passes)
            found->valid[0] = 0;
    }
};

} // namespace

void RayTracer::Impl::follow(std::span<const Ray> rays, RTCRayHit16 &packet) const {
    alignas(64) int active[kRaysTogether];
    setRays(packet.ray, rays, active);
    std::fill_n(packet.hit.geomID, kRaysTogether, RTC_INVALID_GEOMETRY_ID);
    std::fill_n(packet.hit.instID[0], kRaysTogether, RTC_INVALID_GEOMETRY_ID);
    QueryContext context(*this, nullptr);
    context.base.flags = RTC_INTERSECT_CONTEXT_FLAG_COHERENT;
    rtcIntersect16(active, scene, &context.base, &packet);
}

RayTracer::RayTracer(const Scene &scene) : impl_(std::make_unique<Impl>()) {
    impl_->scene = rtcNewScene(device());
    // Rays that graze an edge must not slip between the two triangles.
    rtcSetSceneFlags(impl_->scene, RTC_SCENE_FLAG_ROBUST | RTC_SCENE_FLAG_CONTEXT_FILTER_FUNCTION);
    for (NodeId id : scene.meshes())
        if (scene.isRendered(id))
            impl_->add(scene, id);
    rtcCommitScene(impl_->scene);
    if (const RTCError error = rtcGetDeviceError(device()); error != RTC_ERROR_NONE) {
        impl_->scene = nullptr; // it cannot be released half made
        fail(error, "cannot take up the scene");
    }
    impl_->size = float(scene.bounds().radius());
}

RayTracer::~RayTracer() = default;

namespace {

/// Asks for the nearest hit of a single ray; false for a ray that can hit nothing.
bool setQuery(RTCRayHit &query, const ZFloatVector &origin, const ZFloatVector &direction,
              RaySpan span) {
    query.hit.geomID = RTC_INVALID_GEOMETRY_ID;
    query.hit.instID[0] = RTC_INVALID_GEOMETRY_ID;
    return setRay(query.ray, origin, direction.normal(), span);
}

bool isHit(const RTCRayHit &query) {
    return query.hit.geomID != RTC_INVALID_GEOMETRY_ID;
}

ZFloatVector pointOf(const RTCRay &ray, const ZFloatVector &origin) {
    return origin + ZFloatVector(ray.dir_x, ray.dir_y, ray.dir_z) * ray.tfar;
}

} // namespace

void RayTracer::Impl::take(const RTCRayHit &query, const ZFloatVector &origin, Hit &hit) const {
    hit = Hit();
    if (!isHit(query))
        return;
    hit.distance = query.ray.tfar;
    hit.point = pointOf(query.ray, origin);
    describe(query.hit, hit);
}

bool RayTracer::intersect(const ZFloatVector &origin, const ZFloatVector &direction, Hit &hit,
                          RaySpan span, const PassThrough *through) const {
    RTCRayHit query;
    if (setQuery(query, origin, direction, span)) {
        QueryContext context(*impl_, through);
        rtcIntersect1(impl_->scene, &context.base, &query);
    }
    impl_->take(query, origin, hit);
    return hit.hit;
}

void RayTracer::intersect(std::span<const Ray> rays, Hit *hits) const {
    if (rays.size() == 1) { // a packet of one would take longer
        intersect(rays[0].origin, rays[0].direction, hits[0],
                  rays[0].span * rays[0].direction.length());
        return;
    }
    alignas(64) RTCRayHit16 packet;
    impl_->follow(rays, packet);
    for (size_t i = 0; i < rays.size(); ++i) {
        Hit &hit = hits[i];
        hit.hit = packet.hit.geomID[i] != RTC_INVALID_GEOMETRY_ID;
        if (!hit.hit)
            continue;
        const ZFloatVector &direction = rays[i].direction;
        hit.distance = packet.ray.tfar[i] * direction.length();
        hit.point = rays[i].origin + direction * packet.ray.tfar[i];
        impl_->describe(rtcGetHitFromHitN(reinterpret_cast<RTCHitN *>(&packet.hit), kRaysTogether,
                                          static_cast<unsigned>(i)),
                        hit);
    }
}

void RayTracer::Impl::stream(std::span<const ZFloatVector> origins,
                             std::span<const ZFloatVector> directions, RTCRayHit *queries) const {
    for (size_t i = 0; i < origins.size(); ++i)
        if (!setQuery(queries[i], origins[i], directions[i], {})) {
            setQuery(queries[i], ZFloatVector(), ZFloatVector(0, 0, 1), {});
            queries[i].ray.tfar = -1; // which the library passes over
        }
    // Without the flag for coherent rays they go the way of single ones and come to the same
    // numbers, bit by bit.
    QueryContext context(*this, nullptr);
    rtcIntersect1M(scene, &context.base, queries, unsigned(origins.size()), sizeof(RTCRayHit));
}

void RayTracer::hitPoints(std::span<const ZFloatVector> origins,
                          std::span<const ZFloatVector> directions, ZFloatVector *points,
                          bool *areHit) const {
    RTCRayHit queries[kRaysInStream];
    for (size_t begin = 0; begin < origins.size(); begin += kRaysInStream) {
        const size_t count = std::min(kRaysInStream, origins.size() - begin);
        impl_->stream(origins.subspan(begin, count), directions.subspan(begin, count), queries);
        for (size_t i = 0; i < count; ++i) {
            areHit[begin + i] = isHit(queries[i]);
            if (areHit[begin + i])
                points[begin + i] = pointOf(queries[i].ray, origins[begin + i]);
        }
    }
}

void RayTracer::intersectEach(std::span<const ZFloatVector> origins,
                              std::span<const ZFloatVector> directions, Hit *hits) const {
    RTCRayHit queries[kRaysInStream];
    impl_->stream(origins, directions, queries);
    for (size_t i = 0; i < origins.size(); ++i)
        impl_->take(queries[i], origins[i], hits[i]);
}

void RayTracer::reach(std::span<const Ray> rays, float *multiples,
                      const PassThrough *through) const {
    constexpr float nothing = std::numeric_limits<float>::infinity();
    if (through || rays.size() == 1) {
        for (size_t i = 0; i < rays.size(); ++i) {
            const float length = rays[i].direction.length();
            Hit hit;
            const bool found =
                intersect(rays[i].origin, rays[i].direction, hit, rays[i].span * length, through);
            multiples[i] = found ? hit.distance / length : nothing;
        }
        return;
    }
    alignas(64) RTCRayHit16 packet;
    impl_->follow(rays, packet);
    for (size_t i = 0; i < rays.size(); ++i)
        if (packet.hit.geomID[i] == RTC_INVALID_GEOMETRY_ID)
            multiples[i] = nothing;
        else
            multiples[i] = packet.ray.tfar[i];
}

void RayTracer::occluded(std::span<const Ray> rays, bool *results,
                         const PassThrough *through) const {
    if (through || rays.size() == 1) { // what rays pass through is looked up one by one
        for (size_t i = 0; i < rays.size(); ++i)
            results[i] = occluded(rays[i].origin, rays[i].direction,
                                  rays[i].span * rays[i].direction.length(), through);
        return;
    }
    alignas(64) RTCRay16 packet;
    alignas(64) int active[kRaysTogether];
    setRays(packet, rays, active);
    QueryContext context(*impl_, nullptr);
    rtcOccluded16(active, impl_->scene, &context.base, &packet);
    for (size_t i = 0; i < rays.size(); ++i)
        results[i] = active[i] && packet.tfar[i] < 0;
}

SurfaceCoordinates RayTracer::where(const Hit &hit, bool withTexture) const {
    SurfaceCoordinates result;
    const Mesh &mesh = *impl_->meshes[hit.meshNumber].mesh;
    const unsigned *corners = &mesh.triangles[size_t(hit.triangle) * 3];
    const float weights[3] = {1 - hit.u - hit.v, hit.u, hit.v};
    if (withTexture) {
        interpolate(mesh.uvs, corners, weights, result.uv);
        interpolate(mesh.secondUvs, corners, weights, result.secondUv);
    }
    interpolate(mesh.colors, corners, weights, result.color);
    return result;
}

bool RayTracer::occluded(const ZFloatVector &origin, const ZFloatVector &direction, RaySpan span,
                         const PassThrough *through) const {
    RTCRay ray;
    if (!setRay(ray, origin, direction.normal(), span))
        return false;
    QueryContext context(*impl_, through);
    rtcOccluded1(impl_->scene, &context.base, &ray);
    return ray.tfar < 0;
}

float RayTracer::transmitted(const ZFloatVector &origin, const ZFloatVector &direction,
                             RaySpan span, const PassThrough *through,
                             const Opacity &opacity) const {
    RTCRay ray;
    if (!setRay(ray, origin, direction.normal(), span))
        return 1;
    QueryContext context(*impl_, through, &opacity);
    rtcOccluded1(impl_->scene, &context.base, &ray);
    return ray.tfar < 0 ? 0 : context.transmitted;
}

float RayTracer::offset(const ZFloatVector &point) const {
    const float most = std::max({std::abs(point.x), std::abs(point.y), std::abs(point.z)});
    return std::max(2e-5f * impl_->size, 4e-6f * most);
}

const RayTracer &rayTracer() {
    static std::mutex mutex; // a script's threads may ask while the host renders
    static std::unique_ptr<RayTracer> current;
    static unsigned long revision = 0;
    const std::lock_guard lock(mutex);
    scene().deformMeshes();
    if (!current || revision != scene().revision()) {
        tellUnreadableTextures();
        const Stage stage("build");
        current.reset(); // first, so that two never take up memory
        current = std::make_unique<RayTracer>(scene());
        revision = scene().revision();
    }
    return *current;
}

} // namespace devhost
